// SPDX-License-Identifier: MIT
// The memory of one access job, and how the library takes its length and elements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

#include "aglink/AGLink40.h"

// The access functions take length and element as 32 bits.
inline agl_int32_t length_of(const SymbolicRW_t& rw) {
  return static_cast<agl_int32_t>(rw.BufferLen);
}
inline agl_int32_t element_of(std::size_t elementIndex) {
  return static_cast<agl_int32_t>(elementIndex);
}

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
using ZeroedMemory = std::unique_ptr<void, FreeMemory>;

// bytes of zeros (one at least). Untouched pages cost nothing, so an absurd size is the allocator's to
// refuse: then std::bad_alloc is raised.
inline ZeroedMemory zeroed_memory(std::int64_t bytes) {
  ZeroedMemory memory(std::calloc(bytes > 0 ? static_cast<std::size_t>(bytes) : 1U, 1));
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

// Gives rw a zeroed buffer of size bytes, which lives as long as what is returned. A negative size allocates
// nothing, but BufferLen carries it.
inline ZeroedMemory attach_buffer(SymbolicRW_t& rw, agl_int32_t size) {
  ZeroedMemory buffer = size >= 0 ? zeroed_memory(size) : nullptr;
  rw.Buffer = buffer.get();
  rw.BufferLen = size;
  return buffer;
}
