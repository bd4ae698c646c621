// SPDX-License-Identifier: MIT
// Bytes of a file in order, a chunk at a time, so that a table of a million rows costs a few thousand reads
// and no more memory than its rows need. Past the end of the file there are no bytes: nothing fails.
#pragma once

#include <cstddef>
#include <cstdio>
#include <span>
#include <vector>

#include "driver/hostrecords.h"
#include "driver/unaligned.h"

class SectionReader {
 public:
  // Reads on from where file stands; file stays the caller's.
  explicit SectionReader(std::FILE* file) : file_(file) {}
  explicit SectionReader(std::span<const BYTE> bytes) : window_(bytes) {}

  // The next bytes, which stay valid until the next call; fewer than count only at the end of the file.
  std::span<const BYTE> TakeUpTo(std::size_t count) {
    if (window_.size() < count) Refill(count);
    const std::span<const BYTE> taken = window_.first(count < window_.size() ? count : window_.size());
    window_ = window_.subspan(taken.size());
    return taken;
  }

  // The next number; zero, and the end of the file, when it is not there whole.
  template <class T>
  T Number() {
    const std::span<const BYTE> bytes = TakeUpTo(sizeof(T));
    return bytes.size() == sizeof(T) ? load_unaligned<T>(bytes.data()) : T{};
  }

 private:
  static constexpr std::size_t kChunk = 65536;

  void Refill(std::size_t count) {
    if (file_ == nullptr) return;
    std::vector<BYTE> chunk(window_.begin(), window_.end());
    const std::size_t kept = chunk.size();
    chunk.resize(count > kChunk ? count : kChunk);
    const std::size_t read = std::fread(&chunk[kept], 1, chunk.size() - kept, file_);
    chunk_.swap(chunk);
    window_ = std::span<const BYTE>(chunk_).first(kept + read);
  }

  std::FILE* file_ = nullptr;
  std::vector<BYTE> chunk_;
  std::span<const BYTE> window_;
};
