// SPDX-License-Identifier: MIT
// The least that the same work can cost: bare loops that make the same library calls in the same order, with
// the same arguments, through plain function pointers, and copy the bytes. In a shared library of their own,
// so that their instructions can be told from the measuring program's.
#pragma once

#include <cstddef>
#include <vector>

#include "benchmarks/libraryfunctions.h"
#include "benchmarks/shapes.h"
#include "driver/hostrecords.h"

#define BENCH_FLOOR __attribute__((visibility("default")))

namespace bench::least {

// One tag of a poll, or the target of a write. `word_bytes` lie between two elements in the runtime's words.
struct Tag {
  const char* path;
  Value value;
  int word_bytes;
  void* buffer;  // large enough for the access
};

inline constexpr HandleType kRoot = 1;
inline constexpr agl_int32_t kConnection = 1;

// Zero in each record behind nothing: only the words of the values are written.
BENCH_FLOOR void poll(const LibraryFunctions& library, const Tag* tags, int count, INPUT_DATA* records);

// Elements that the words hold; of a string all words as text. With elements == 0 nothing is encoded.
BENCH_FLOOR void write(const LibraryFunctions& library, const Tag& tag, const WORD* words, int elements);

// Offline there is no library: what is left is the copy.
struct Copy {
  const void* from;
  void* to;
  std::size_t bytes;
};
BENCH_FLOOR void copy(const Copy* copies, int count);

// The whole file into memory that is there; returns the bytes read, 0 when it cannot be read.
BENCH_FLOOR std::size_t read_file(const char* name, void* memory, std::size_t size);

// FreeHandle through a pointer, as its own function.
BENCH_FLOOR extern decltype(&AGL_Symbolic_FreeHandle) free_handle_pointer;
BENCH_FLOOR agl_int32_t free_handle(HandleType handle);

}  // namespace bench::least
