// SPDX-License-Identifier: MIT
// What stands behind the word of a console command, taken piece by piece from the left. Every complaint knows
// its place in the line.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ostravel::plc {

struct CommandError : std::runtime_error {
  CommandError(const std::string& what, std::size_t position) : std::runtime_error(what), at(position) {}
  std::size_t at;  // byte of the line at which it stops to fit
};

// A command that is right, but not now: what it asks for depends on the moment.
struct NotNow : CommandError {
  using CommandError::CommandError;
};

class Arguments {
 public:
  // The line must outlive this object. Takes the word in front of it.
  explicit Arguments(std::string_view line);

  std::string_view word() const { return word_; }
  bool empty() const { return rest_.empty(); }
  // Where the next piece starts, and the last one taken started, in bytes of the line.
  std::size_t position() const { return static_cast<std::size_t>(rest_.data() - line_.data()); }
  std::size_t last() const { return last_; }

  // Up to the first blank that stands neither in quotes nor in brackets. Empty at the end.
  std::string_view path();
  // Everything that is left, without blanks around it.
  std::string_view rest();
  // The names of files, in quotes when they hold blanks; at least one.
  std::vector<std::string> files();
  // A span of time; a bare number means milliseconds.
  std::chrono::milliseconds duration(std::chrono::milliseconds longest);
  // "@123", the number of a cycle.
  std::uint64_t cycle();

  // Throws when there is more.
  void expect_end() const;
  [[noreturn]] void complain(const std::string& what) const;  // of the piece taken last

 private:
  std::string_view take(std::size_t length);

  std::string_view line_;
  std::string_view rest_;
  std::string_view word_;
  std::size_t last_ = 0;
};

}  // namespace ostravel::plc
