// SPDX-License-Identifier: MIT
// A program on a terminal of its own.
#pragma once

#include <sys/types.h>
#include <termios.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/watch/picture/terminal.h"

namespace ostravel::host::picture {

class PtyProgram {
 public:
  // The program with its arguments; of the environment, NAME=VALUE replaces and NAME alone removes. Throws
  // std::runtime_error.
  PtyProgram(const std::vector<std::string>& words, const std::vector<std::string>& environment,
             std::size_t lines = 24, std::size_t columns = 80);
  PtyProgram(const PtyProgram&) = delete;
  PtyProgram& operator=(const PtyProgram&) = delete;
  // Kills it when it still runs.
  ~PtyProgram();

  const Terminal& terminal() const { return terminal_; }
  const std::string& written() const { return written_; }  // everything, as it came

  void type(std::string_view keys) const;
  void resize(std::size_t lines, std::size_t columns);
  void kill(int signal) const;
  // Takes what it writes until the terminal is as wanted; false when the time ran out, or it ended, before.
  bool wait_until(const std::function<bool(const Terminal&)>& wanted,
                  std::chrono::milliseconds timeout = std::chrono::seconds(60));
  // Takes what it writes for that long.
  void run_for(std::chrono::milliseconds time);
  // Waits for its end: exit code, or 128 + the signal that ended it; nothing when the time ran out.
  std::optional<int> wait(std::chrono::milliseconds timeout = std::chrono::seconds(60));
  // The terminal's modes before the program had it, and as they are now.
  const termios& first_modes() const { return first_modes_; }
  termios modes() const;

 private:
  bool take(std::chrono::milliseconds timeout);
  bool has_ended();

  Terminal terminal_;
  std::string written_;
  pid_t id_ = -1;
  int master_ = -1;
  int slave_ = -1;  // kept, so that nothing is lost when the program ends
  termios first_modes_{};
  std::optional<int> ended_;
};

}  // namespace ostravel::host::picture
