// SPDX-License-Identifier: MIT
// A fuzzer's bytes, taken from the front. Behind their end there are zeros, so that every input means
// something.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace fuzz {

class Input {
 public:
  Input() = default;
  Input(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  bool empty() const { return bytes_.empty(); }
  std::size_t left() const { return bytes_.size(); }

  std::uint8_t byte() { return number<std::uint8_t>(); }

  template <class T>
  T number() {
    T value{};
    const auto taken = take(sizeof value);
    if (!taken.empty()) std::memcpy(&value, taken.data(), taken.size());
    return value;
  }

  // As many as there are.
  std::span<const std::uint8_t> take(std::size_t count) {
    const auto taken = bytes_.first(std::min(count, bytes_.size()));
    bytes_ = bytes_.subspan(taken.size());
    return taken;
  }
  std::span<const std::uint8_t> rest() { return take(bytes_.size()); }

  // A text that a length byte announces.
  std::string_view text() {
    const auto taken = take(byte());
    return {reinterpret_cast<const char*>(taken.data()), taken.size()};
  }

  // Fills size bytes; those that are not there become zero.
  void fill(void* to, std::size_t size) {
    const auto taken = take(size);
    if (size == 0) return;
    std::memset(to, 0, size);
    if (!taken.empty()) std::memcpy(to, taken.data(), taken.size());
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

}  // namespace fuzz
