// SPDX-License-Identifier: MIT
// A file that lives in memory, with a name under which it can be opened.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace fuzz {

class MemoryFile {
 public:
  MemoryFile();
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  void hold(std::span<const unsigned char> bytes);
  char* name() { return name_.data(); }

 private:
  int file_;
  std::string name_;
};

}  // namespace fuzz
