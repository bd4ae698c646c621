// SPDX-License-Identifier: MIT
// Numbers at odd offsets: the one place where bytes become little-endian words and back.
#pragma once

#include <bit>
#include <cstring>
#include <type_traits>

static_assert(std::endian::native == std::endian::little, "records and value bytes are little-endian");

template <class T>
T load_unaligned(const void* source) {
  static_assert(std::is_trivially_copyable_v<T>);
  T value;
  std::memcpy(&value, source, sizeof value);
  return value;
}

template <class T>
void store_unaligned(void* target, T value) {
  static_assert(std::is_trivially_copyable_v<T>);
  std::memcpy(target, &value, sizeof value);
}
