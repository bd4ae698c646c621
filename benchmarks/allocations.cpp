// SPDX-License-Identifier: MIT
// The program's own definitions of malloc and its kin win over the C library's, for all that it loads as
// well.
#include "benchmarks/allocations.h"

#include <atomic>
#include <cerrno>
#include <cstddef>

namespace {

std::atomic<unsigned long> count;

void count_one() {
  count.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

unsigned long bench::allocations() {
  return count.load(std::memory_order_relaxed);
}

extern "C" {

void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);

__attribute__((visibility("default"))) void* malloc(std::size_t size) {
  count_one();
  return __libc_malloc(size);
}
__attribute__((visibility("default"))) void* calloc(std::size_t number, std::size_t size) {
  count_one();
  return __libc_calloc(number, size);
}
__attribute__((visibility("default"))) void* realloc(void* block, std::size_t size) {
  count_one();
  return __libc_realloc(block, size);
}
__attribute__((visibility("default"))) void* aligned_alloc(std::size_t alignment, std::size_t size) {
  count_one();
  return __libc_memalign(alignment, size);
}
__attribute__((visibility("default"))) void* memalign(std::size_t alignment, std::size_t size) {
  count_one();
  return __libc_memalign(alignment, size);
}
__attribute__((visibility("default"))) int posix_memalign(void** block, std::size_t alignment,
                                                          std::size_t size) {
  count_one();
  *block = __libc_memalign(alignment, size);
  return *block == nullptr ? ENOMEM : 0;
}

}  // extern "C"
