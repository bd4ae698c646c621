// SPDX-License-Identifier: MIT
#include "tests/fake/item.h"

#include <limits>

namespace fake {
namespace {

Item make(ValueType_t::enum_t value_type, SystemType_t::enum_t system_type, agl_int32_t element_size,
          std::vector<Value> values) {
  Item item;
  item.value_type = value_type;
  item.system_type = system_type;
  item.values = std::move(values);
  item.element_count = static_cast<agl_int32_t>(item.values.size());
  item.element_size = element_size;
  item.buffer_size = item.element_count * element_size;
  return item;
}

template <class T>
std::vector<Value> numbers(const std::vector<T>& plain) {
  std::vector<Value> values;
  for (const auto number : plain) {
    Value value;
    value.number =
        static_cast<std::uint64_t>(number);  // NOLINT(bugprone-signed-char-misuse): sign-extends on purpose
    values.push_back(value);
  }
  return values;
}

template <class T>
std::vector<Value> reals(const std::vector<T>& plain) {
  std::vector<Value> values;
  for (const auto real : plain) {
    Value value;
    value.real = static_cast<double>(real);
    values.push_back(value);
  }
  return values;
}

std::vector<Value> texts_of(const std::vector<std::string>& texts) {
  std::vector<Value> values;
  for (const auto& text : texts) {
    Value value;
    value.text = text;
    values.push_back(value);
  }
  return values;
}

std::vector<Value> wides_of(const std::vector<std::u16string>& texts) {
  std::vector<Value> values;
  for (const auto& text : texts) {
    Value value;
    value.wide = text;
    values.push_back(value);
  }
  return values;
}

std::vector<Value> moment(const Parts& parts) {
  Value value;
  value.parts = parts;
  return {value};
}

using V = ValueType_t;
using S = SystemType_t;

}  // namespace

Item Item::Bool(bool value) {
  return Bool(std::vector<bool>{value});
}
Item Item::Bool(const std::vector<bool>& values) {
  return make(V::vt_UINT8, S::st_S7_Bool, 1, numbers(values));
}
Item Item::UInt8(std::uint8_t value) {
  return UInt8(std::vector<std::uint8_t>{value});
}
Item Item::UInt8(const std::vector<std::uint8_t>& values) {
  return make(V::vt_UINT8, S::st_S7_USInt, 1, numbers(values));
}
Item Item::UInt16(std::uint16_t value) {
  return UInt16(std::vector<std::uint16_t>{value});
}
Item Item::UInt16(const std::vector<std::uint16_t>& values) {
  return make(V::vt_UINT16, S::st_S7_UInt, 2, numbers(values));
}
Item Item::UInt32(std::uint32_t value) {
  return UInt32(std::vector<std::uint32_t>{value});
}
Item Item::UInt32(const std::vector<std::uint32_t>& values) {
  return make(V::vt_UINT32, S::st_S7_UDInt, 4, numbers(values));
}
Item Item::UInt64(std::uint64_t value) {
  return UInt64(std::vector<std::uint64_t>{value});
}
Item Item::UInt64(const std::vector<std::uint64_t>& values) {
  return make(V::vt_UINT64, S::st_S7_ULInt, 8, numbers(values));
}
Item Item::Int8(std::int8_t value) {
  return Int8(std::vector<std::int8_t>{value});
}
Item Item::Int8(const std::vector<std::int8_t>& values) {
  return make(V::vt_INT8, S::st_S7_SInt, 1, numbers(values));
}
Item Item::Int16(std::int16_t value) {
  return Int16(std::vector<std::int16_t>{value});
}
Item Item::Int16(const std::vector<std::int16_t>& values) {
  return make(V::vt_INT16, S::st_S7_Int, 2, numbers(values));
}
Item Item::Int32(std::int32_t value) {
  return Int32(std::vector<std::int32_t>{value});
}
Item Item::Int32(const std::vector<std::int32_t>& values) {
  return make(V::vt_INT32, S::st_S7_DInt, 4, numbers(values));
}
Item Item::Int64(std::int64_t value) {
  return Int64(std::vector<std::int64_t>{value});
}
Item Item::Int64(const std::vector<std::int64_t>& values) {
  return make(V::vt_INT64, S::st_S7_LInt, 8, numbers(values));
}
Item Item::Float32(float value) {
  return Float32(std::vector<float>{value});
}
Item Item::Float32(const std::vector<float>& values) {
  return make(V::vt_FLOAT32, S::st_S7_Real, 4, reals(values));
}
Item Item::Float64(double value) {
  return Float64(std::vector<double>{value});
}
Item Item::Float64(const std::vector<double>& values) {
  return make(V::vt_FLOAT64, S::st_S7_LReal, 8, reals(values));
}
Item Item::Char8(char value) {
  return Char8(std::vector<char>{value});
}
Item Item::Char8(const std::vector<char>& values) {
  return make(V::vt_CHAR8, S::st_S7_Char, 1, numbers(values));
}
Item Item::Char16(std::uint16_t value) {
  return Char16(std::vector<std::uint16_t>{value});
}
Item Item::Char16(const std::vector<std::uint16_t>& values) {
  return make(V::vt_CHAR16, S::st_S7_WChar, 2, numbers(values));
}
Item Item::String8(const std::string& text, agl_int32_t declared_size) {
  return Strings8(std::vector<std::string>{text}, declared_size);
}
Item Item::Strings8(const std::vector<std::string>& texts, agl_int32_t declared_size) {
  return make(V::vt_STRING8, S::st_S7_String, declared_size + 2, texts_of(texts)).stringSize(declared_size);
}
Item Item::String16(const std::u16string& text, agl_int32_t declared_size) {
  return Strings16(std::vector<std::u16string>{text}, declared_size);
}
Item Item::Strings16(const std::vector<std::u16string>& texts, agl_int32_t declared_size) {
  return make(V::vt_STRING16, S::st_S7_WString, 2 * declared_size + 4, wides_of(texts))
      .stringSize(declared_size);
}
Item Item::Counter(std::uint16_t value) {
  return make(V::vt_SYSTEM_SPECIFIC, S::st_S7_Counter, 2, numbers(std::vector<std::uint16_t>{value}));
}
Item Item::S5Time(std::uint32_t milliseconds) {
  return make(V::vt_SYSTEM_SPECIFIC, S::st_S7_S5Time, 2, numbers(std::vector<std::uint32_t>{milliseconds}));
}
Item Item::DateAndTime(const Parts& parts) {
  return make(V::vt_SYSTEM_SPECIFIC, S::st_S7_Date_And_Time, 8, moment(parts));
}
Item Item::Dtl(const Parts& parts) {
  return make(V::vt_SYSTEM_SPECIFIC, S::st_S7_DTL, 12, moment(parts));
}
Item Item::Untyped(ValueType_t::enum_t value_type, SystemType_t::enum_t system_type) {
  return make(value_type, system_type, 4, {Value{}});
}

Item& Item::array(agl_int32_t lower, agl_int32_t upper) {
  dimensions.push_back({lower, upper});
  return *this;
}
Item& Item::index(agl_int32_t value) {
  indices.push_back(value);
  return *this;
}
Item& Item::valueType(ValueType_t::enum_t type) {
  value_type = type;
  return *this;
}
Item& Item::systemType(SystemType_t::enum_t type) {
  system_type = type;
  return *this;
}
Item& Item::elementCount(agl_int32_t count) {
  element_count = count;
  return *this;
}
Item& Item::elementSize(agl_int32_t bytes) {
  element_size = bytes;
  return *this;
}
Item& Item::bufferSize(agl_int32_t bytes) {
  buffer_size = bytes;
  return *this;
}
Item& Item::stringSize(agl_int32_t characters) {
  string_size = characters;
  return *this;
}
Item& Item::charCount(agl_int32_t count) {
  set_char_count = true;
  char_count = count;
  return *this;
}
Item& Item::failCreate(agl_int32_t code) {
  create_result = code;
  return *this;
}
Item& Item::failBufferSize(agl_int32_t code) {
  buffer_size_result = code;
  return *this;
}
Item& Item::result(agl_int32_t code) {
  job_result = code;
  return *this;
}
Item& Item::sError(agl_int32_t code) {
  job_serror = code;
  return *this;
}

agl_int32_t Item::linearIndex(const std::vector<agl_int32_t>& element_indices) const {
  if (dimensions.empty() || element_indices.size() != dimensions.size()) return -1;
  std::int64_t linear = 0;
  for (std::size_t i = 0; i < dimensions.size(); ++i) {
    const auto [lower, upper] = dimensions[i];
    if (element_indices[i] < lower || element_indices[i] > upper) return -1;
    linear = linear * (std::int64_t{upper} - lower + 1) + (std::int64_t{element_indices[i]} - lower);
    if (linear > std::numeric_limits<agl_int32_t>::max()) return -1;
  }
  return static_cast<agl_int32_t>(linear);
}

Item Item::element(agl_int32_t linear_index) const {
  Item one = *this;
  one.dimensions.clear();
  const auto position = static_cast<std::size_t>(linear_index);
  one.values.assign(1, position < values.size() ? values[position] : Value{});
  one.element_count = 1;
  one.buffer_size = element_size;
  return one;
}

}  // namespace fake
