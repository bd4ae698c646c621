// SPDX-License-Identifier: MIT
// Bytes that values are appended to. Unlike a vector's, its memory stays initialised when it is emptied, so
// that an append is a store, and it is kept: what is filled at every poll allocates once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

class ValueBytes {
 public:
  ValueBytes() = default;
  // Goes on behind what the vector holds, in the vector's memory.
  explicit ValueBytes(std::vector<unsigned char>&& bytes)
      : storage_(std::move(bytes)), size_(storage_.size()) {}

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  unsigned char* data() { return storage_.data(); }
  std::span<const unsigned char> view() const { return {storage_.data(), size_}; }
  operator std::span<const unsigned char>() const { return view(); }

  std::vector<unsigned char> TakeVector() {
    storage_.resize(size_);
    size_ = 0;
    return std::move(storage_);
  }

  // Empties it. Memory beyond kKept bytes is given back: the next value is a usual one again.
  void Clear() {
    size_ = 0;
    if (storage_.size() > kKept) storage_ = {};
  }

  template <class T>
  void Append(T value) {
    std::memcpy(MakeRoom(sizeof value), &value, sizeof value);
    size_ += sizeof value;
  }

  // Room for count zeros of type T at the end, to be filled and then counted in by EndAt(behind the last one
  // filled). The size so far must be a multiple of T's.
  template <class T>
  T* MakeRoomFor(std::size_t count) {
    unsigned char* room = MakeRoom(count * sizeof(T));
    std::memset(room, 0, count * sizeof(T));
    return reinterpret_cast<T*>(room);
  }
  void EndAt(const void* end) {
    size_ = static_cast<std::size_t>(static_cast<const unsigned char*>(end) - storage_.data());
  }

  // New bytes are zero.
  void Resize(std::size_t size) {
    if (size > size_) {
      if (size > storage_.size()) Grow(size - size_);
      std::memset(storage_.data() + size_, 0, size - size_);
    }
    size_ = size;
  }

  // Puts count zero bytes in front of what there is.
  void PrependZeros(std::size_t count) {
    const std::size_t size = size_;
    if (count == 0) return;
    Resize(size + count);
    std::memmove(storage_.data() + count, storage_.data(), size);
    std::memset(storage_.data(), 0, count);
  }

 private:
  static constexpr std::size_t kKept = 65536;

  // Room for count bytes at the end.
  unsigned char* MakeRoom(std::size_t count) {
    if (storage_.size() - size_ < count) Grow(count);
    return storage_.data() + size_;
  }

  // To twice the size, so that what is appended value by value is moved seldom; to no more than it takes when
  // that is more at once.
  [[gnu::cold]] void Grow(std::size_t more) {
    constexpr std::size_t kSmallest = 16;
    storage_.resize(std::max({kSmallest, 2 * storage_.size(), size_ + more}));
  }

  std::vector<unsigned char> storage_;
  std::size_t size_ = 0;
};
