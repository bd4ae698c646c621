// SPDX-License-Identifier: MIT
#include "symbolic/bufferwriter.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "symbolic/accessbuffer.h"
#include "symbolic/assertion.h"
#include "symbolic/errorhelper.h"

namespace {

constexpr AssertionPlace kUnwritableValueType = {
    "bufferwriter.cpp", 191,
    "void BufferWriter::WriteBufferValue(SymbolicRW_t&, const size_t&, std::vector<unsigned char>, size_t)"};

using Bytes = std::span<const unsigned char>;

// Raises std::out_of_range, in the words of a vector, unless the data has a byte there.
[[gnu::noinline, gnu::cold]] void check_range(Bytes data, size_t position) {
  (void)std::vector<unsigned char>(data.begin(), data.end()).at(position);
}

unsigned char first_byte(Bytes data) {
  if (data.empty()) check_range(data, 0);
  return data[0];
}

// A value that is not there whole. It must start inside data at position; what lies past its end is zero.
template <class T>
[[gnu::noinline, gnu::cold]] T cut_value_at(Bytes data, size_t position, size_t offset) {
  check_range(data, position);
  T value{};
  const size_t start = position + offset;
  if (start < data.size()) std::memcpy(&value, &data[start], std::min(sizeof value, data.size() - start));
  return value;
}

// The value at position + offset of data.
template <class T>
T value_at(Bytes data, size_t position, size_t offset = 0) {
  const size_t start = position + offset;
  if (start > data.size() || data.size() - start < sizeof(T)) return cut_value_at<T>(data, position, offset);
  T value;
  std::memcpy(&value, &data[start], sizeof value);
  return value;
}

template <class T>
using Setter = agl_int32_t (*)(HandleType, void*, agl_int32_t, agl_int32_t, T);

constexpr const char* kUnreported = nullptr;

// The way of every value that one library function takes.
template <class T>
void write_value(Setter<T> set, const char* name, SymbolicRW_t& rw, size_t elementIndex, T value) {
  const agl_int32_t res = set(rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex), value);
  if (res != AGL40_SUCCESS && name != kUnreported) ErrorHelper::ShowError(res, name);
}

// False, with a line that says so, when the library fails; type is then what it left, undefined of itself.
bool ask_type_to_write(const SymbolicRW_t& rw, ValueType_t::enum_t& type) {
  type = ValueType_t::vt_UNDEFINED;
  if (AGL_Symbolic_GetAccessElementValueType(rw.AccessHandle, &type) == AGL40_SUCCESS) return true;
  std::puts("AGL_Symbolic_GetAccessElementValueType ERROR");
  return false;
}

SystemType_t::enum_t system_type_of(const SymbolicRW_t& rw) {
  SystemType_t::enum_t systemType = SystemType_t::st_UNDEFINED;
  AGL_Symbolic_GetAccessElementSystemType(rw.AccessHandle, &systemType);
  return systemType;
}

// A failure is reported, and the size is what the library left: 0 of itself.
agl_int32_t string_size_of(const SymbolicRW_t& rw) {
  agl_int32_t StringSize = 0;
  const agl_int32_t res = AGL_Symbolic_GetAccessStringSize(rw.AccessHandle, &StringSize);
  if (res != AGL40_SUCCESS) ErrorHelper::ShowError(res, "AGL_Symbolic_GetAccessStringSize");
  return StringSize;
}

void write_s5time(SymbolicRW_t& rw, size_t elementIndex, Bytes data, size_t writeIndex) {
  constexpr agl_int32_t kRound = 1;
  const agl_int32_t res = AGL_Symbolic_SetAccessBufferS7_S5TimeMs(
      rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex),
      value_at<agl_uint32_t>(data, writeIndex), kRound);
  if (res != AGL40_SUCCESS) ErrorHelper::ShowError(res, "AGL_Symbolic_SetAccessBufferS7_S5TimeMs");
}

void write_date_and_time(SymbolicRW_t& rw, size_t elementIndex, Bytes data, size_t writeIndex) {
  const auto part = [&](size_t offset) { return value_at<agl_uint8_t>(data, writeIndex, offset); };
  const agl_int32_t res = AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts(
      rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex),
      value_at<agl_uint16_t>(data, writeIndex), part(2), part(3), part(4), part(5), part(6), part(7),
      value_at<agl_uint16_t>(data, writeIndex, 8));
  if (res != AGL40_SUCCESS) ErrorHelper::ShowError(res, "AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts");
}

void write_dtl(SymbolicRW_t& rw, size_t elementIndex, Bytes data, size_t writeIndex) {
  const auto part = [&](size_t offset) { return value_at<agl_uint8_t>(data, writeIndex, offset); };
  const agl_int32_t res = AGL_Symbolic_SetAccessBufferS7_DTLParts(
      rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex),
      value_at<agl_uint16_t>(data, writeIndex), part(2), part(3), part(4), part(5), part(6), part(7),
      value_at<agl_uint32_t>(data, writeIndex, 8));
  if (res != AGL40_SUCCESS) ErrorHelper::ShowError(res, "AGL_Symbolic_SetAccessBufferS7_DTLParts");
}

void write_uint8(SymbolicRW_t& rw, size_t elementIndex, Bytes data, size_t writeIndex) {
  // A Bool is judged by the first byte of the data wherever its element lies, deliberately.
  const bool is_bool = system_type_of(rw) == SystemType_t::st_S7_Bool;
  const agl_uint8_t value = is_bool ? first_byte(data) != 0 : value_at<agl_uint8_t>(data, writeIndex);
  write_value(AGL_Symbolic_SetAccessBufferUInt8, "AGL_Symbolic_SetAccessBufferUInt8", rw, elementIndex,
              value);
}

void write_uint16(SymbolicRW_t& rw, size_t elementIndex, Bytes data, size_t writeIndex) {
  const auto value = value_at<agl_uint16_t>(data, writeIndex);
  // The first two bytes also go into the access buffer as they are, deliberately; the library's call may
  // overwrite them.
  const auto first = value_at<agl_uint16_t>(data, 0);
  if (rw.Buffer != nullptr && rw.BufferLen > 0) {
    std::memcpy(rw.Buffer, &first, std::min(sizeof first, static_cast<size_t>(rw.BufferLen)));
  }
  write_value<agl_uint16_t>(AGL_Symbolic_SetAccessBufferUInt16, "AGL_Symbolic_SetAccessBufferUInt16", rw,
                            elementIndex, value);
}

// A 16-bit character is not written, deliberately.
void write_char16(SymbolicRW_t&, size_t, Bytes, size_t) {}

void write_string8(SymbolicRW_t& rw, size_t elementIndex, Bytes data, size_t) {
  if (string_size_of(rw) <= 0) return;
  first_byte(data);
  // As long as the data, zeros and all, and not limited to the declared size, deliberately.
  std::string text(data.begin(), data.end());
  // Two zero bytes are the host's empty string. One zero byte alone raises, deliberately.
  if (text[0] == '\0' && text.at(1) == '\0' && text.size() == 2) text.clear();
  const agl_int32_t res =
      AGL_Symbolic_SetAccessBufferString8(rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex),
                                          text.c_str(), static_cast<agl_int32_t>(text.size()));
  if (res != AGL40_SUCCESS) ErrorHelper::ShowError(res, "AGL_Symbolic_SetAccessBufferString8");
}

void write_string16(SymbolicRW_t& rw, size_t elementIndex, Bytes data, size_t) {
  if (string_size_of(rw) <= 0) return;
  first_byte(data);
  // The count handed over is one of bytes, deliberately: twice the characters. The text is as long as it
  // says.
  std::vector<agl_char16_t> text(data.size());
  std::memcpy(text.data(), data.data(), data.size());
  const agl_int32_t res = AGL_Symbolic_SetAccessBufferString16(rw.AccessHandle, rw.Buffer, length_of(rw),
                                                               element_of(elementIndex), text.data(),
                                                               static_cast<agl_int32_t>(data.size()));
  // The 8-bit function's name, deliberately.
  if (res != AGL40_SUCCESS) ErrorHelper::ShowError(res, "AGL_Symbolic_SetAccessBufferString8");
}

void write_system_specific(SymbolicRW_t& rw, size_t elementIndex, Bytes data, size_t writeIndex) {
  switch (system_type_of(rw)) {
    case SystemType_t::st_S7_Counter:
      return write_value(AGL_Symbolic_SetAccessBufferS7_Counter, "AGL_Symbolic_SetAccessBufferS7_Counter", rw,
                         elementIndex, value_at<agl_uint16_t>(data, writeIndex));
    case SystemType_t::st_S7_S5Time:
      return write_s5time(rw, elementIndex, data, writeIndex);
    case SystemType_t::st_S7_Date_And_Time:
      return write_date_and_time(rw, elementIndex, data, writeIndex);
    case SystemType_t::st_S7_DTL:
      return write_dtl(rw, elementIndex, data, writeIndex);
    default:
      return;  // silently, deliberately: the reader aborts here
  }
}

// The numbers that are nothing but a library function: type, writer, library function, C++ type and the name
// in the error report. The name of the unsigned 32-bit one is spelt so deliberately, and failures of the
// 16-bit integer and the reals go unreported deliberately.
#define OSTRAVEL_NUMBERS(X)                                                                                \
  X(vt_UINT32, write_uint32, AGL_Symbolic_SetAccessBufferUInt32, agl_uint32_t,                             \
    "AGL_Symbolic_SetAccessBufferUint32")                                                                  \
  X(vt_UINT64, write_uint64, AGL_Symbolic_SetAccessBufferUInt64, agl_uint64_t,                             \
    "AGL_Symbolic_SetAccessBufferUInt64")                                                                  \
  X(vt_INT8, write_int8, AGL_Symbolic_SetAccessBufferInt8, agl_int8_t, "AGL_Symbolic_SetAccessBufferInt8") \
  X(vt_INT16, write_int16, AGL_Symbolic_SetAccessBufferInt16, agl_int16_t, kUnreported)                    \
  X(vt_INT32, write_int32, AGL_Symbolic_SetAccessBufferInt32, agl_int32_t,                                 \
    "AGL_Symbolic_SetAccessBufferInt32")                                                                   \
  X(vt_INT64, write_int64, AGL_Symbolic_SetAccessBufferInt64, agl_int64_t,                                 \
    "AGL_Symbolic_SetAccessBufferInt64")                                                                   \
  X(vt_FLOAT32, write_float32, AGL_Symbolic_SetAccessBufferFloat32, agl_float32_t, kUnreported)            \
  X(vt_FLOAT64, write_float64, AGL_Symbolic_SetAccessBufferFloat64, agl_float64_t, kUnreported)            \
  X(vt_CHAR8, write_char8, AGL_Symbolic_SetAccessBufferChar8, agl_char8_t,                                 \
    "AGL_Symbolic_SetAccessBufferChar8")

// Elements element to end - 1, and where the first one's value lies in data; chunk bytes further lies the
// next. All chunks lie in the data, except that a chunk of 0 bytes says nothing of it.
struct Elements {
  size_t element;
  size_t end;
  size_t writeIndex;
  size_t chunk;
};

using Writer = void (*)(SymbolicRW_t& rw, size_t elementIndex, Bytes data, size_t writeIndex);

// Writes elements from the first on for as long as the library says that they are of the run's type, which it
// is asked before each: the first one's has been. Leaves the elements that are not written, with type the
// first one's.
template <Writer write>
void write_run(SymbolicRW_t& rw, Elements& elements, Bytes data, ValueType_t::enum_t& type) {
  const ValueType_t::enum_t run_type = type;
  do {
    write(rw, elements.element, data, elements.writeIndex);
    elements.writeIndex += elements.chunk;
    if (++elements.element == elements.end) return;
    ask_type_to_write(rw, type);
  } while (type == run_type);
}

// The same for numbers. Most of what a write of an array costs is spent here, so what lies in the data is
// found out once, not for each element.
template <Writer write, ValueType_t::enum_t run_type, class T>
[[gnu::always_inline]] inline void write_numbers(Setter<T> set, const char* name, SymbolicRW_t& rw,
                                                 Elements& elements, Bytes data, ValueType_t::enum_t& type) {
  if (elements.chunk < sizeof(T)) return write_run<write>(rw, elements, data, type);
  const unsigned char* next = &data[elements.writeIndex];
  size_t element = elements.element;
  ValueType_t::enum_t next_type = run_type;
  for (;;) {
    T value;
    std::memcpy(&value, next, sizeof value);
    write_value<T>(set, name, rw, element, value);
    next += elements.chunk;
    if (++element == elements.end) break;
    ask_type_to_write(rw, next_type);
    if (next_type != run_type) break;
  }
  elements.writeIndex += (element - elements.element) * elements.chunk;
  elements.element = element;
  type = next_type;
}

#define OSTRAVEL_NUMBER(type, writer, Function, Type, Name)                                   \
  void writer(SymbolicRW_t& rw, size_t elementIndex, Bytes data, size_t writeIndex) {         \
    write_value<Type>(Function, Name, rw, elementIndex, value_at<Type>(data, writeIndex));    \
  }                                                                                           \
  [[gnu::noinline]] void writer##_run(SymbolicRW_t& rw, Elements& elements, Bytes data,       \
                                      ValueType_t::enum_t& next) {                            \
    write_numbers<writer, ValueType_t::type, Type>(Function, Name, rw, elements, data, next); \
  }
OSTRAVEL_NUMBERS(OSTRAVEL_NUMBER)
#undef OSTRAVEL_NUMBER

void write_run(SymbolicRW_t& rw, Elements& elements, Bytes data, ValueType_t::enum_t& run_type) {
  switch (run_type) {
#define OSTRAVEL_NUMBER(type, writer, Function, Type, Name) \
  case ValueType_t::type:                                   \
    return writer##_run(rw, elements, data, run_type);
    OSTRAVEL_NUMBERS(OSTRAVEL_NUMBER)
#undef OSTRAVEL_NUMBER
    case ValueType_t::vt_SYSTEM_SPECIFIC:
      return write_run<write_system_specific>(rw, elements, data, run_type);
    case ValueType_t::vt_UINT8:
      return write_run<write_uint8>(rw, elements, data, run_type);
    case ValueType_t::vt_UINT16:
      return write_run<write_uint16>(rw, elements, data, run_type);
    case ValueType_t::vt_CHAR16:
      return write_run<write_char16>(rw, elements, data, run_type);
    case ValueType_t::vt_STRING8:
      return write_run<write_string8>(rw, elements, data, run_type);
    case ValueType_t::vt_STRING16:
      return write_run<write_string16>(rw, elements, data, run_type);
    default:
      fail_assertion("false", kUnwritableValueType);
  }
}

void write_elements(SymbolicRW_t& rw, Elements elements, Bytes data) {
  if (elements.element >= elements.end) return;
  ValueType_t::enum_t type;
  ask_type_to_write(rw, type);
  while (elements.element < elements.end) write_run(rw, elements, data, type);
}

}  // namespace

void BufferWriter::WriteBufferValues(SymbolicRW_t& rws, const std::vector<unsigned char>& data,
                                     unsigned short source_index, unsigned char trunk_size_for_byte) {
  agl_int32_t elementCount = 0;
  AGL_Symbolic_GetAccessBufferElementCount(rws.AccessHandle, &elementCount);
  if (rws.Result != AGL40_SUCCESS || rws.SError != 0) return;
  ValueType_t::enum_t valueType;
  if (!ask_type_to_write(rws, valueType)) valueType = ValueType_t::vt_UNDEFINED;
  if (valueType == ValueType_t::vt_STRING8 || valueType == ValueType_t::vt_STRING16) {
    WriteBufferValue(rws, 0, data, data.size());
    return;
  }
  // Against the first index only, deliberately: what lies beyond the count is the library's to reject.
  if (trunk_size_for_byte == 0 || elementCount < source_index) return;
  const size_t units = data.size() / trunk_size_for_byte;
  write_elements(rws, {source_index, source_index + units, 0, trunk_size_for_byte}, data);
}

void BufferWriter::WriteBufferValue(SymbolicRW_t& rw, const size_t& elementIndex,
                                    const std::vector<unsigned char>& data, size_t writeIndex) {
  write_elements(rw, {elementIndex, elementIndex + 1, writeIndex, 0}, data);
}

// What the functions above do, each under a name of its own.
#define OSTRAVEL_MEMBER(Writer, writer)                                                  \
  void BufferWriter::Writer(SymbolicRW_t& rw, const size_t& elementIndex,                \
                            const std::vector<unsigned char>& data, size_t writeIndex) { \
    writer(rw, elementIndex, data, writeIndex);                                          \
  }

OSTRAVEL_MEMBER(WriteUint8, write_uint8)
OSTRAVEL_MEMBER(WriteUint16, write_uint16)
OSTRAVEL_MEMBER(WriteUint32, write_uint32)
OSTRAVEL_MEMBER(WriteUint64, write_uint64)
OSTRAVEL_MEMBER(WriteInt8, write_int8)
OSTRAVEL_MEMBER(WriteInt16, write_int16)
OSTRAVEL_MEMBER(WriteInt32, write_int32)
OSTRAVEL_MEMBER(WriteInt64, write_int64)
OSTRAVEL_MEMBER(WriteFloat32, write_float32)
OSTRAVEL_MEMBER(WriteFloat64, write_float64)
OSTRAVEL_MEMBER(WriteChar8, write_char8)
OSTRAVEL_MEMBER(WriteChar16, write_char16)
OSTRAVEL_MEMBER(WriteString8, write_string8)
OSTRAVEL_MEMBER(WriteString16, write_string16)
OSTRAVEL_MEMBER(WriteSystemSpecific, write_system_specific)
#undef OSTRAVEL_MEMBER
