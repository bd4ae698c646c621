// SPDX-License-Identifier: MIT
#include "symbolic/bufferreader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "symbolic/accessbuffer.h"
#include "symbolic/assertion.h"
#include "symbolic/errorhelper.h"
#include "symbolic/partreaders.h"

namespace {

constexpr AssertionPlace kUnknownValueType = {
    "bufferreader.cpp", 172,
    "void BufferReader::GetBufferValue(const SymbolicRW_t&, const size_t&, std::vector<unsigned char>&)"};
constexpr const char* kSystemSpecific =
    "void BufferReader::GetSystemSpecificBufferValue(const SymbolicRW_t&, const size_t&, "
    "std::vector<unsigned char>&)";

void ask_value_type(const SymbolicRW_t& rw, ValueType_t::enum_t& type) {
  type = ValueType_t::vt_UNDEFINED;
  AGL_Symbolic_GetAccessElementValueType(rw.AccessHandle, &type);
}

// The way of every number, which one library function delivers: fetch, then append or report.
template <class T>
using Getter = agl_int32_t (*)(HandleType, const void*, agl_int32_t, agl_int32_t, T*);

template <class T>
void read_number(Getter<T> get, const char* name, const SymbolicRW_t& rw, size_t elementIndex,
                 ValueBytes& data) {
  T value{};
  const agl_int32_t res = get(rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex), &value);
  if (res == AGL40_SUCCESS) {
    data.Append(value);
  } else {
    ErrorHelper::ShowError(res, name);
  }
}

// The same for elements from the first on for as long as the library says that they are of the run's type,
// which it is asked before each: the first one's has been. Returns the first element left, with type its
// type. Most of what a poll of arrays costs is spent here: room is made for many elements at a time, and the
// library puts them where they belong.
template <ValueType_t::enum_t run_type, class T>
[[gnu::always_inline]] inline size_t read_numbers(Getter<T> get, const char* name, const SymbolicRW_t& rw,
                                                  size_t element, size_t end, ValueType_t::enum_t& type,
                                                  ValueBytes& data) {
  if (data.size() % sizeof(T) != 0) {
    // Behind a number of another size, which a library that changes its mind leaves, there is no place for
    // it.
    read_number(get, name, rw, element, data);
    if (++element != end) ask_value_type(rw, type);
    return element;
  }
  // Few enough for a count that the library made up to cost nothing in advance.
  constexpr size_t kAtATime = 512;
  const size_t stop = std::min(end, element + kAtATime);
  T* next = data.MakeRoomFor<T>(stop - element);
  ValueType_t::enum_t next_type = run_type;
  for (;;) {
    const agl_int32_t res = get(rw.AccessHandle, rw.Buffer, length_of(rw), element_of(element), next);
    if (res == AGL40_SUCCESS) {
      ++next;
    } else {
      ErrorHelper::ShowError(res, name);
      *next = T{};
    }
    if (++element == stop) break;
    ask_value_type(rw, next_type);
    if (next_type != run_type) break;
  }
  data.EndAt(next);
  if (element == stop && element != end) ask_value_type(rw, next_type);
  type = next_type;
  return element;
}

// A number's reader, and what the error report calls it.
#define OSTRAVEL_NUMBER_READER(reader, Function)                               \
  void reader(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) { \
    read_number(Function, #Function, rw, elementIndex, data);                  \
  }
OSTRAVEL_NUMBER_READER(read_counter, AGL_Symbolic_GetAccessBufferS7_Counter)
OSTRAVEL_NUMBER_READER(read_s5time, AGL_Symbolic_GetAccessBufferS7_S5TimeMs)

// The numbers that have a value type of their own: type, reader, library function.
#define OSTRAVEL_NUMBERS(X)                                        \
  X(vt_UINT8, read_uint8, AGL_Symbolic_GetAccessBufferUInt8)       \
  X(vt_UINT16, read_uint16, AGL_Symbolic_GetAccessBufferUInt16)    \
  X(vt_UINT32, read_uint32, AGL_Symbolic_GetAccessBufferUInt32)    \
  X(vt_UINT64, read_uint64, AGL_Symbolic_GetAccessBufferUInt64)    \
  X(vt_INT8, read_int8, AGL_Symbolic_GetAccessBufferInt8)          \
  X(vt_INT16, read_int16, AGL_Symbolic_GetAccessBufferInt16)       \
  X(vt_INT32, read_int32, AGL_Symbolic_GetAccessBufferInt32)       \
  X(vt_INT64, read_int64, AGL_Symbolic_GetAccessBufferInt64)       \
  X(vt_CHAR8, read_char8, AGL_Symbolic_GetAccessBufferChar8)       \
  X(vt_FLOAT32, read_float32, AGL_Symbolic_GetAccessBufferFloat32) \
  X(vt_FLOAT64, read_float64, AGL_Symbolic_GetAccessBufferFloat64)

#define OSTRAVEL_NUMBER(type, reader, Function)                                                     \
  OSTRAVEL_NUMBER_READER(reader, Function)                                                          \
  [[gnu::noinline]] size_t reader##_run(const SymbolicRW_t& rw, size_t element, size_t end,         \
                                        ValueType_t::enum_t& next_type, ValueBytes& data) {         \
    return read_numbers<ValueType_t::type>(Function, #Function, rw, element, end, next_type, data); \
  }
OSTRAVEL_NUMBERS(OSTRAVEL_NUMBER)
#undef OSTRAVEL_NUMBER

// Four zero bytes whatever the PLC holds, deliberately: a 16-bit character reads as a 32-bit zero.
void read_char16(const SymbolicRW_t&, size_t, ValueBytes& data) {
  data.Append(std::uint32_t{0});
}

void read_system_specific(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) {
  SystemType_t::enum_t systemType = SystemType_t::st_UNDEFINED;
  if (AGL_Symbolic_GetAccessElementSystemType(rw.AccessHandle, &systemType) != AGL40_SUCCESS) {
    fail_assertion("res == AGL40_SUCCESS", {"bufferreader.cpp", 460, kSystemSpecific});
  }
  switch (systemType) {
    case SystemType_t::st_S7_Counter:
      return read_counter(rw, elementIndex, data);
    case SystemType_t::st_S7_S5Time:
      return read_s5time(rw, elementIndex, data);
    case SystemType_t::st_S7_Date_And_Time:
      return read_date_and_time(rw, elementIndex, data);
    case SystemType_t::st_S7_DTL:
      return read_dtl(rw, elementIndex, data);
    default:
      fail_assertion("false", {"bufferreader.cpp", 484, kSystemSpecific});
  }
}

void read_value(ValueType_t::enum_t type, const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) {
  switch (type) {
#define OSTRAVEL_NUMBER(type, reader, Function) \
  case ValueType_t::type:                       \
    return reader(rw, elementIndex, data);
    OSTRAVEL_NUMBERS(OSTRAVEL_NUMBER)
#undef OSTRAVEL_NUMBER
    case ValueType_t::vt_SYSTEM_SPECIFIC:
      return read_system_specific(rw, elementIndex, data);
    case ValueType_t::vt_CHAR16:
      return read_char16(rw, elementIndex, data);
    case ValueType_t::vt_STRING8:
      return read_string8(rw, elementIndex, data);
    case ValueType_t::vt_STRING16:
      return read_string16(rw, elementIndex, data);
    default:
      fail_assertion("false", kUnknownValueType);
  }
}

// Reads at least the first element, which is of the type given. Returns and types as read_numbers does.
size_t read_run(const SymbolicRW_t& rw, size_t element, size_t end, ValueType_t::enum_t& run_type,
                ValueBytes& data) {
  switch (run_type) {
#define OSTRAVEL_NUMBER(type, reader, Function) \
  case ValueType_t::type:                       \
    return reader##_run(rw, element, end, run_type, data);
    OSTRAVEL_NUMBERS(OSTRAVEL_NUMBER)
#undef OSTRAVEL_NUMBER
    default:
      read_value(run_type, rw, element, data);
      if (++element != end) ask_value_type(rw, run_type);
      return element;
  }
}

void read_element(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) {
  ValueType_t::enum_t type;
  ask_value_type(rw, type);
  read_value(type, rw, elementIndex, data);
}

void read_all(const SymbolicRW_t& rw, size_t, ValueBytes& data) {
  BufferReader::GetBufferValues(rw, data);
}

}  // namespace

void BufferReader::GetBufferValues(const SymbolicRW_t& rw, ValueBytes& data) {
  agl_int32_t elementCount = 0;
  AGL_Symbolic_GetAccessBufferElementCount(rw.AccessHandle, &elementCount);
  if (rw.Result != AGL40_SUCCESS || rw.SError != 0 || elementCount <= 0) return;
  // Each element has a byte at least.
  const auto count = std::min(static_cast<size_t>(elementCount), kAddressableBytes);
  ValueType_t::enum_t type;
  ask_value_type(rw, type);
  if (count == 1) return read_value(type, rw, 0, data);
  for (size_t element = 0; element < count;) element = read_run(rw, element, count, type, data);
}

namespace {

using Reader = void (*)(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data);

// A reader that appends to a vector.
template <Reader read>
void read_into(std::vector<unsigned char>& data, const SymbolicRW_t& rw, size_t elementIndex) {
  ValueBytes bytes(std::move(data));
  read(rw, elementIndex, bytes);
  data = bytes.TakeVector();
}

}  // namespace

void BufferReader::GetBufferValues(const SymbolicRW_t& rw, std::vector<unsigned char>& data) {
  read_into<read_all>(data, rw, 0);
}

#define OSTRAVEL_VECTOR_READER(Reader, reader)                                  \
  void BufferReader::Reader(const SymbolicRW_t& rw, const size_t& elementIndex, \
                            std::vector<unsigned char>& data) {                 \
    read_into<reader>(data, rw, elementIndex);                                  \
  }

OSTRAVEL_VECTOR_READER(GetBufferValue, read_element)
OSTRAVEL_VECTOR_READER(GetSystemSpecificBufferValue, read_system_specific)
OSTRAVEL_VECTOR_READER(ReadUInt8, read_uint8)
OSTRAVEL_VECTOR_READER(ReadUInt16, read_uint16)
OSTRAVEL_VECTOR_READER(ReadUInt32, read_uint32)
OSTRAVEL_VECTOR_READER(ReadUInt64, read_uint64)
OSTRAVEL_VECTOR_READER(ReadInt8, read_int8)
OSTRAVEL_VECTOR_READER(ReadInt16, read_int16)
OSTRAVEL_VECTOR_READER(ReadInt32, read_int32)
OSTRAVEL_VECTOR_READER(ReadInt64, read_int64)
OSTRAVEL_VECTOR_READER(ReadFloat32, read_float32)
OSTRAVEL_VECTOR_READER(ReadFloat64, read_float64)
OSTRAVEL_VECTOR_READER(ReadChar8, read_char8)
OSTRAVEL_VECTOR_READER(ReadChar16, read_char16)
OSTRAVEL_VECTOR_READER(ReadString8, read_string8)
OSTRAVEL_VECTOR_READER(ReadString16, read_string16)
OSTRAVEL_VECTOR_READER(ReadS7Counter, read_counter)
OSTRAVEL_VECTOR_READER(ReadS5Time, read_s5time)
OSTRAVEL_VECTOR_READER(ReadS7DateAndtime, read_date_and_time)
OSTRAVEL_VECTOR_READER(ReadDTL, read_dtl)
#undef OSTRAVEL_VECTOR_READER
#undef OSTRAVEL_NUMBER_READER
#undef OSTRAVEL_NUMBERS
