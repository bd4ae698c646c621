// SPDX-License-Identifier: MIT
// The memory of access jobs, and how the library takes its length and elements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <span>

#include "aglink/AGLink40.h"

// The access functions take length and element as 32 bits.
inline agl_int32_t length_of(const SymbolicRW_t& rw) {
  return static_cast<agl_int32_t>(rw.BufferLen);
}
inline agl_int32_t element_of(std::size_t elementIndex) {
  return static_cast<agl_int32_t>(elementIndex);
}

// The runtime addresses an element by a 16-bit index, the widest takes 8 bytes, and a command takes at most
// 4096 bytes from there. What a value has beyond can be neither seen nor asked for, so a library that makes
// sizes up costs no more than this.
inline constexpr std::size_t kAddressableBytes = 65536 * 8 + 4096;

// PLCs have six dimensions and texts of 16,382 characters at most; more than this is not believed.
inline constexpr agl_int32_t kMostDimensions = 1024;
inline constexpr agl_int32_t kLongestText = 1 << 20;

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

// The buffers of all accesses of a job, one behind the other in memory that is kept for the next job.
class AccessMemory {
 public:
  // Gives each access a zeroed buffer of as many bytes as its BufferLen says, none for a negative one. The
  // buffers live until the next Attach or Clear. Raises std::bad_alloc as zeroed_memory does.
  void Attach(std::span<SymbolicRW_t> accesses) {
    std::size_t total = 0;
    for (const SymbolicRW_t& rw : accesses) total += room_of(rw);
    if (total > size_) {
      size_ = 0;
      memory_ = zeroed_memory(static_cast<std::int64_t>(total));
      size_ = total;
    } else if (total > 0) {
      std::memset(memory_.get(), 0, total);
    }
    auto* next = static_cast<unsigned char*>(memory_.get());
    for (SymbolicRW_t& rw : accesses) {
      rw.Buffer = rw.BufferLen >= 0 ? next : nullptr;
      next += room_of(rw);
    }
  }

  // Gives back what is more than a usual job needs.
  void Clear() {
    constexpr std::size_t kKept = std::size_t{1} << 20;
    if (size_ <= kKept) return;
    memory_.reset();
    size_ = 0;
  }

 private:
  // Each buffer begins where one of its own would: at a multiple of 16. One without bytes has an address too.
  static std::size_t room_of(const SymbolicRW_t& rw) {
    if (rw.BufferLen < 0) return 0;
    constexpr std::size_t kAlignment = alignof(std::max_align_t);
    return (static_cast<std::size_t>(rw.BufferLen) / kAlignment + 1) * kAlignment;
  }

  ZeroedMemory memory_;
  std::size_t size_ = 0;
};
