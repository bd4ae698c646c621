// SPDX-License-Identifier: MIT
// Tag names that say what the tag is, so that the null library answers without a symbol tree:
//
//   name  = length-mark filler type:1 count:4 lower:1 number:3      of 10, 40 or 120 characters
//   path  = name [ "[" index "]" ]                                  an element's path: count and base are
//   gone
//
// All names of one length begin with the same characters and differ in the last few, as the names of one
// machine's tags do.
#pragma once

#include <cstddef>
#include <cstdint>

namespace bench {

enum class Value : std::uint8_t {
  None,
  Bool,
  UInt8,
  UInt16,
  UInt32,
  UInt64,
  Int8,
  Int16,
  Int32,
  Int64,
  Float32,
  Float64,
  String8,
  String16,
};

inline constexpr int kStringCharacters = 254;

struct Shape {
  Value value = Value::None;
  std::uint16_t count = 0;  // elements
  std::uint8_t lower = 0;   // index of the first one; 0 or 1
  bool array = false;       // the node has a dimension: a name that stands for more than one element
};

// A shape as the handle that stands for a node or an access.
inline constexpr std::int64_t kShapeHandle = std::int64_t{1} << 40;

constexpr std::int64_t handle_of(const Shape& shape) {
  return kShapeHandle | static_cast<std::int64_t>(shape.value) | std::int64_t{shape.count} << 8 |
         std::int64_t{shape.lower} << 24 | std::int64_t{shape.array ? 1 : 0} << 32;
}

constexpr Shape shape_of(std::int64_t handle) {
  return {static_cast<Value>(handle & 0xFF), static_cast<std::uint16_t>(handle >> 8),
          static_cast<std::uint8_t>(handle >> 24), (handle >> 32 & 1) != 0};
}

inline constexpr int kNameLengths[] = {10, 40, 120};
inline constexpr char kFirstLengthMark = 'A';
inline constexpr char kFirstValueMark = 'a';
inline constexpr int kTail = 9;

// A path that is none of these names gives Value::None.
constexpr Shape shape_of(const char* path) {
  const int mark = path[0] - kFirstLengthMark;
  if (mark < 0 || mark > 2) return {};
  const char* end = path + kNameLengths[mark];
  const char* tail = end - kTail;
  Shape shape;
  shape.value = static_cast<Value>(tail[0] - kFirstValueMark);
  if (*end == '[') {
    shape.count = 1;
    return shape;
  }
  for (int i = 1; i <= 4; ++i) shape.count = static_cast<std::uint16_t>(shape.count * 10 + (tail[i] - '0'));
  shape.lower = static_cast<std::uint8_t>(tail[5] - '0');
  shape.array = shape.count > 1;
  return shape;
}

}  // namespace bench
