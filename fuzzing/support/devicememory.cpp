// SPDX-License-Identifier: MIT
// Memory for devices, kept from input to input: a device is large, and to map its pages anew takes longer
// than most sessions. A block that is not in use is poisoned, as freed memory is.
#include <sanitizer/asan_interface.h>

#include <cstdlib>
#include <new>
#include <vector>

#include "driver/gdata.h"

namespace {

// Never destroyed: the leak check at the program's end must still find the blocks.
std::vector<void*>& all_blocks() {
  static auto& blocks = *new std::vector<void*>;
  return blocks;
}
std::vector<void*>& free_blocks() {
  static auto& blocks = *new std::vector<void*>;
  return blocks;
}

bool give_back(void* memory) {
  for (void* const block : all_blocks()) {
    if (block != memory) continue;
    __asan_poison_memory_region(memory, sizeof(GData));
    free_blocks().push_back(memory);
    return true;
  }
  return false;
}

}  // namespace

extern "C" {

// The linker sends the program's calls of operator new and delete here.
void* __real__Znwm(std::size_t size);
void __real__ZdlPv(void* memory);
void __real__ZdlPvm(void* memory, std::size_t size);
void* __wrap__Znwm(std::size_t size);
void __wrap__ZdlPv(void* memory);
void __wrap__ZdlPvm(void* memory, std::size_t size);

void* __wrap__Znwm(std::size_t size) {
  if (size != sizeof(GData)) return __real__Znwm(size);
  if (free_blocks().empty()) {
    all_blocks().push_back(std::malloc(size));
    return all_blocks().back();
  }
  void* const memory = free_blocks().back();
  free_blocks().pop_back();
  __asan_unpoison_memory_region(memory, size);
  return memory;
}

void __wrap__ZdlPv(void* memory) {
  if (all_blocks().empty() || !give_back(memory)) __real__ZdlPv(memory);
}

void __wrap__ZdlPvm(void* memory, std::size_t size) {
  if (size != sizeof(GData) || !give_back(memory)) __real__ZdlPvm(memory, size);
}
}
