// SPDX-License-Identifier: MIT
// One PLC variable as the recording fake of the library serves it: types, values, array bounds, and the
// answers that a test wants to be wrong. A factory sets everything from the values; a test then changes what
// it is about:
//   Item::Int16({1, -2, 3})                       an access of three elements
//   Item::Int16({10, 20, 30, 40}).array(1, 4)     ARRAY[1..4] OF INT
//   Item::String8("abc", 10)                      STRING[10]
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "aglink/AGLink40.h"

namespace fake {

// A DTL (fraction in nanoseconds) or a DATE_AND_TIME (fraction in milliseconds).
struct Parts {
  std::uint16_t year = 0;
  std::uint8_t month = 0;
  std::uint8_t day = 0;
  std::uint8_t weekday = 0;
  std::uint8_t hour = 0;
  std::uint8_t minute = 0;
  std::uint8_t second = 0;
  std::uint32_t fraction = 0;

  bool operator==(const Parts&) const = default;
};

// The value of one element; which field counts follows from the item's type.
struct Value {
  std::uint64_t number = 0;  // integers, sign-extended; Bool; characters; counter; S5TIME milliseconds
  double real = 0;
  std::string text;
  std::u16string wide;
  Parts parts;
};

struct Bounds {
  agl_int32_t lower;
  agl_int32_t upper;
};

struct Item {
  ValueType_t::enum_t value_type = ValueType_t::vt_UNDEFINED;
  SystemType_t::enum_t system_type = SystemType_t::st_UNKNOWN;
  std::vector<Value> values;
  std::vector<Bounds> dimensions;    // of the node; empty: no array
  std::vector<agl_int32_t> indices;  // of the node, for GetIndexSize and GetIndex

  // What the library reports about the access. A factory sets them from the values.
  agl_int32_t element_count = 0;
  agl_int32_t element_size = 0;  // bytes
  agl_int32_t buffer_size = 0;   // bytes
  agl_int32_t string_size = 0;   // declared characters

  // Failures of this path alone; 0 is success.
  agl_int32_t create_result = 0;       // CreateAccessByPath; no handle is made
  agl_int32_t buffer_size_result = 0;  // GetAccessBufferSize; the size is left untouched
  agl_int32_t job_result = 0;          // Result of the access in a job
  agl_int32_t job_serror = 0;          // SError of the access in a job

  // CharCount that a string read reports instead of the text's length, when set_char_count is true.
  bool set_char_count = false;
  agl_int32_t char_count = 0;

  static Item Bool(bool value);
  static Item Bool(const std::vector<bool>& values);
  static Item UInt8(std::uint8_t value);
  static Item UInt8(const std::vector<std::uint8_t>& values);
  static Item UInt16(std::uint16_t value);
  static Item UInt16(const std::vector<std::uint16_t>& values);
  static Item UInt32(std::uint32_t value);
  static Item UInt32(const std::vector<std::uint32_t>& values);
  static Item UInt64(std::uint64_t value);
  static Item UInt64(const std::vector<std::uint64_t>& values);
  static Item Int8(std::int8_t value);
  static Item Int8(const std::vector<std::int8_t>& values);
  static Item Int16(std::int16_t value);
  static Item Int16(const std::vector<std::int16_t>& values);
  static Item Int32(std::int32_t value);
  static Item Int32(const std::vector<std::int32_t>& values);
  static Item Int64(std::int64_t value);
  static Item Int64(const std::vector<std::int64_t>& values);
  static Item Float32(float value);
  static Item Float32(const std::vector<float>& values);
  static Item Float64(double value);
  static Item Float64(const std::vector<double>& values);
  static Item Char8(char value);
  static Item Char8(const std::vector<char>& values);
  static Item Char16(std::uint16_t value);
  static Item Char16(const std::vector<std::uint16_t>& values);
  static Item String8(const std::string& text, agl_int32_t declared_size = 254);
  static Item Strings8(const std::vector<std::string>& texts, agl_int32_t declared_size = 254);
  static Item String16(const std::u16string& text, agl_int32_t declared_size = 254);
  static Item Strings16(const std::vector<std::u16string>& texts, agl_int32_t declared_size = 254);
  static Item Counter(std::uint16_t value);
  static Item S5Time(std::uint32_t milliseconds);
  static Item DateAndTime(const Parts& parts);
  static Item Dtl(const Parts& parts);
  // No value at all: for types that cannot be fetched.
  static Item Untyped(ValueType_t::enum_t value_type, SystemType_t::enum_t system_type);

  // Appends one dimension; call it twice for a matrix. Values lie in row-major order.
  Item& array(agl_int32_t lower, agl_int32_t upper);
  Item& index(agl_int32_t value);
  Item& valueType(ValueType_t::enum_t type);
  Item& systemType(SystemType_t::enum_t type);
  Item& elementCount(agl_int32_t count);
  Item& elementSize(agl_int32_t bytes);
  Item& bufferSize(agl_int32_t bytes);
  Item& stringSize(agl_int32_t characters);
  Item& charCount(agl_int32_t count);
  Item& failCreate(agl_int32_t code);
  Item& failBufferSize(agl_int32_t code);
  Item& result(agl_int32_t code);
  Item& sError(agl_int32_t code);

  // Row-major position of the element at these indices, or -1 when their number or one of them is wrong.
  agl_int32_t linearIndex(const std::vector<agl_int32_t>& element_indices) const;
  // The item that an element path such as Table[2] names.
  Item element(agl_int32_t linear_index) const;
};

}  // namespace fake
