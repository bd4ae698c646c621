// SPDX-License-Identifier: MIT
// Bytes of a file in order, a chunk at a time, so that a section is read no further than it goes. Past the
// end of the file there are no bytes: nothing fails. A read that fails is the end of the file too.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "driver/hostrecords.h"
#include "driver/unaligned.h"

class SectionReader {
 public:
  using Chunks = std::vector<std::unique_ptr<BYTE[]>>;

  // Reads on from where file stands; file stays the caller's. bytes_left is what the file holds from there.
  SectionReader(std::FILE* file, std::size_t bytes_left) : file_(file), bytes_left_(bytes_left) {}
  explicit SectionReader(std::span<const BYTE> bytes) {
    window_ = {NewChunk(bytes.size()), bytes.size()};
    std::ranges::copy(bytes, window_.begin());
  }

  // The next bytes, fewer than count only at the end of the file. They stay where they are, and the caller's
  // to change, for as long as the chunks live.
  std::span<BYTE> TakeUpTo(std::size_t count) {
    if (window_.size() < count) Refill(count);
    const std::span<BYTE> taken = window_.first(std::min(count, window_.size()));
    window_ = window_.subspan(taken.size());
    return taken;
  }

  // The next number; zero, and the end of the file, when it is not there whole.
  template <class T>
  T Number() {
    const std::span<const BYTE> bytes = TakeUpTo(sizeof(T));
    return bytes.size() == sizeof(T) ? load_unaligned<T>(bytes.data()) : T{};
  }

  // Hands over the memory of all bytes taken. There is nothing to read afterwards.
  Chunks TakeChunks() {
    window_ = {};
    file_ = nullptr;
    return std::move(chunks_);
  }

 private:
  static constexpr std::size_t kChunk = 262144;

  BYTE* NewChunk(std::size_t size) {
    chunks_.push_back(std::make_unique_for_overwrite<BYTE[]>(size));
    return chunks_.back().get();
  }

  // Carries what is left over into a chunk that has room for count bytes.
  [[gnu::cold]] void Refill(std::size_t count) {
    if (file_ == nullptr) return;
    const std::size_t kept = window_.size();
    const std::size_t size = std::max(count, std::min(kChunk, kept + bytes_left_));
    BYTE* chunk = NewChunk(size);
    std::ranges::copy(window_, chunk);
    const std::size_t read = std::fread(chunk + kept, 1, size - kept, file_);
    bytes_left_ -= std::min(bytes_left_, read);
    // Whatever a further read might bring lies somewhere else in the section.
    if (read < size - kept) file_ = nullptr;
    window_ = {chunk, kept + read};
  }

  std::FILE* file_ = nullptr;
  std::size_t bytes_left_ = 0;
  Chunks chunks_;
  std::span<BYTE> window_;
};
