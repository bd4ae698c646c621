// SPDX-License-Identifier: MIT
#include "fuzzing/support/memoryfile.h"

#include <sys/mman.h>
#include <unistd.h>

#include "fuzzing/support/demand.h"

namespace fuzz {

MemoryFile::MemoryFile() : file_(memfd_create("input", 0)), name_("/proc/self/fd/" + std::to_string(file_)) {
  FUZZ_DEMAND(file_ >= 0);
}

MemoryFile::~MemoryFile() {
  close(file_);
}

void MemoryFile::hold(std::span<const unsigned char> bytes) {
  FUZZ_DEMAND(ftruncate(file_, 0) == 0);
  FUZZ_DEMAND(bytes.empty() ||
              pwrite(file_, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
}

}  // namespace fuzz
