// SPDX-License-Identifier: MIT
// A child process whose standard input and output are pipes to this one.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostravel::host {

class Process {
 public:
  // Starts the program; arguments come without its name. Throws std::runtime_error when it cannot be started.
  Process(const std::string& program, const std::vector<std::string>& arguments);
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  // Kills it when it still runs.
  ~Process();

  // False when the process no longer reads.
  bool write(std::string_view text);
  // One line without its end; nothing when the time ran out or the process closed its output.
  std::optional<std::string> read_line(std::chrono::milliseconds timeout);
  // Everything up to the end of its output.
  std::string read_all();

  void close_input();
  void kill(int signal);
  // Waits for the end: its exit code, or 128 + the signal that ended it.
  int wait();
  pid_t id() const { return id_; }

 private:
  bool fill(std::chrono::milliseconds timeout);

  pid_t id_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string pending_;
  std::optional<int> ended_;
};

}  // namespace ostravel::host
