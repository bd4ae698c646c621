// SPDX-License-Identifier: MIT
// Keeps the tool's own output apart from what the driver prints to standard output.
#pragma once

#include <cstdio>
#include <string>

namespace ostravel::host {

// While it lives, standard output as the driver knows it leads elsewhere, and stream() to where it led
// before.
class OwnOutput {
 public:
  // The driver's lines go to the file, which is replaced; an empty name discards them; "-" leaves them on
  // standard output. Throws UserError when the file cannot be written.
  explicit OwnOutput(const std::string& driver_output = {});
  OwnOutput(const OwnOutput&) = delete;
  OwnOutput& operator=(const OwnOutput&) = delete;
  ~OwnOutput();

  std::FILE* stream() const { return stream_; }
  bool is_terminal() const;
  // False once whoever read from the pipe has gone (head, a pager): who prints rarely would notice it late or
  // never.
  bool has_reader() const;
  // Throws UserError when something printed did not arrive, on a full disk for instance.
  void finish() const;

 private:
  std::FILE* stream_ = nullptr;
};

}  // namespace ostravel::host
