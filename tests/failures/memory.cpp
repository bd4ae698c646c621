// SPDX-License-Identifier: MIT
// The memory that the driver takes: every block is known until it is freed, and the nth is refused.
#include <cstdlib>
#include <new>
#include <unordered_map>

#include "tests/failures/injection.h"

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
void __wrap_free(void* block);
}

namespace injection {

bool driver_is_at_work();

namespace {

// The list of blocks is not itself in it.
template <class T>
struct Aside {
  using value_type = T;
  Aside() = default;
  template <class U>
  Aside(const Aside<U>&) {}  // NOLINT(google-explicit-constructor): what a container asks for
  T* allocate(std::size_t count) { return static_cast<T*>(__real_malloc(count * sizeof(T))); }
  void deallocate(T* block, std::size_t) { __real_free(block); }
  friend bool operator==(const Aside&, const Aside&) { return true; }
};

using Blocks = std::unordered_map<void*, std::size_t, std::hash<void*>, std::equal_to<>,
                                  Aside<std::pair<void* const, std::size_t>>>;

// Lives longer than whatever is freed at the program's end.
Blocks& blocks() {
  alignas(Blocks) static unsigned char room[sizeof(Blocks)];
  static Blocks& list = *new (room) Blocks;
  return list;
}

void* noted(void* block, std::size_t size) {
  if (block != nullptr && driver_is_at_work()) blocks().insert_or_assign(block, size);
  return block;
}

void release(void* block) {
  if (block == nullptr) return;
  blocks().erase(block);
  __real_free(block);
}

void* take(std::size_t size) {
  if (fails(Kind::Memory, "operator new")) throw std::bad_alloc();
  void* block = noted(__real_malloc(size == 0 ? 1 : size), size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

std::size_t blocks_alive() {
  return blocks().size();
}

std::size_t bytes_alive() {
  std::size_t bytes = 0;
  for (const auto& [block, size] : blocks()) bytes += size;
  return bytes;
}

}  // namespace injection

using injection::Kind;

void* __wrap_malloc(std::size_t size) {
  if (injection::fails(Kind::Memory, "malloc")) return nullptr;
  return injection::noted(__real_malloc(size), size);
}
void* __wrap_calloc(std::size_t count, std::size_t size) {
  if (injection::fails(Kind::Memory, "calloc")) return nullptr;
  return injection::noted(__real_calloc(count, size), count * size);
}
void* __wrap_realloc(void* block, std::size_t size) {
  if (injection::fails(Kind::Memory, "realloc")) return nullptr;
  void* moved = __real_realloc(block, size);
  if (moved != nullptr) injection::blocks().erase(block);
  return injection::noted(moved, size);
}
void __wrap_free(void* block) {
  injection::release(block);
}

void* operator new(std::size_t size) {
  return injection::take(size);
}
void* operator new[](std::size_t size) {
  return injection::take(size);
}
void operator delete(void* block) noexcept {
  injection::release(block);
}
void operator delete[](void* block) noexcept {
  injection::release(block);
}
void operator delete(void* block, std::size_t) noexcept {
  injection::release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  injection::release(block);
}
