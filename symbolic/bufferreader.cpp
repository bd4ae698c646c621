// SPDX-License-Identifier: MIT
#include "symbolic/bufferreader.h"

#include <cstdint>
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

ValueType_t::enum_t value_type_of(const SymbolicRW_t& rw) {
  ValueType_t::enum_t valueType = ValueType_t::vt_UNDEFINED;
  AGL_Symbolic_GetAccessElementValueType(rw.AccessHandle, &valueType);
  return valueType;
}

// The way of every value that one library function delivers: fetch, then append or report.
template <class T>
void read_value(agl_int32_t (*get)(HandleType, const void*, agl_int32_t, agl_int32_t, T*), const char* name,
                const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) {
  T value{};
  const agl_int32_t res = get(rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex), &value);
  if (res != AGL40_SUCCESS) {
    ErrorHelper::ShowError(res, name);
    return;
  }
  data.Append(value);
}

// A reader that is nothing but a library function: its name is in the error report as well.
#define OSTRAVEL_VALUE_READER(reader, Function)                                \
  void reader(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) { \
    read_value(Function, #Function, rw, elementIndex, data);                   \
  }

OSTRAVEL_VALUE_READER(read_uint8, AGL_Symbolic_GetAccessBufferUInt8)
OSTRAVEL_VALUE_READER(read_uint16, AGL_Symbolic_GetAccessBufferUInt16)
OSTRAVEL_VALUE_READER(read_uint32, AGL_Symbolic_GetAccessBufferUInt32)
OSTRAVEL_VALUE_READER(read_uint64, AGL_Symbolic_GetAccessBufferUInt64)
OSTRAVEL_VALUE_READER(read_int8, AGL_Symbolic_GetAccessBufferInt8)
OSTRAVEL_VALUE_READER(read_int16, AGL_Symbolic_GetAccessBufferInt16)
OSTRAVEL_VALUE_READER(read_int32, AGL_Symbolic_GetAccessBufferInt32)
OSTRAVEL_VALUE_READER(read_int64, AGL_Symbolic_GetAccessBufferInt64)
OSTRAVEL_VALUE_READER(read_float32, AGL_Symbolic_GetAccessBufferFloat32)
OSTRAVEL_VALUE_READER(read_float64, AGL_Symbolic_GetAccessBufferFloat64)
OSTRAVEL_VALUE_READER(read_char8, AGL_Symbolic_GetAccessBufferChar8)
OSTRAVEL_VALUE_READER(read_counter, AGL_Symbolic_GetAccessBufferS7_Counter)
OSTRAVEL_VALUE_READER(read_s5time, AGL_Symbolic_GetAccessBufferS7_S5TimeMs)
#undef OSTRAVEL_VALUE_READER

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

using Reader = void (*)(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data);

// Reads elements from the first on for as long as the library says that they are of the same type, which it
// is asked before each; type is that of the first. Returns the first element left, with type its type.
template <Reader read>
size_t read_run(const SymbolicRW_t& rw, size_t element, size_t end, ValueType_t::enum_t& type,
                ValueBytes& data) {
  const ValueType_t::enum_t run_type = type;
  for (;;) {
    read(rw, element, data);
    if (++element == end) return end;
    type = value_type_of(rw);
    if (type != run_type) return element;
  }
}

size_t read_run(const SymbolicRW_t& rw, size_t element, size_t end, ValueType_t::enum_t& type,
                ValueBytes& data) {
  switch (type) {
    case ValueType_t::vt_SYSTEM_SPECIFIC:
      return read_run<read_system_specific>(rw, element, end, type, data);
    case ValueType_t::vt_UINT8:
      return read_run<read_uint8>(rw, element, end, type, data);
    case ValueType_t::vt_UINT16:
      return read_run<read_uint16>(rw, element, end, type, data);
    case ValueType_t::vt_UINT32:
      return read_run<read_uint32>(rw, element, end, type, data);
    case ValueType_t::vt_UINT64:
      return read_run<read_uint64>(rw, element, end, type, data);
    case ValueType_t::vt_INT8:
      return read_run<read_int8>(rw, element, end, type, data);
    case ValueType_t::vt_INT16:
      return read_run<read_int16>(rw, element, end, type, data);
    case ValueType_t::vt_INT32:
      return read_run<read_int32>(rw, element, end, type, data);
    case ValueType_t::vt_INT64:
      return read_run<read_int64>(rw, element, end, type, data);
    case ValueType_t::vt_CHAR8:
      return read_run<read_char8>(rw, element, end, type, data);
    case ValueType_t::vt_CHAR16:
      return read_run<read_char16>(rw, element, end, type, data);
    case ValueType_t::vt_STRING8:
      return read_run<read_string8>(rw, element, end, type, data);
    case ValueType_t::vt_STRING16:
      return read_run<read_string16>(rw, element, end, type, data);
    case ValueType_t::vt_FLOAT32:
      return read_run<read_float32>(rw, element, end, type, data);
    case ValueType_t::vt_FLOAT64:
      return read_run<read_float64>(rw, element, end, type, data);
    default:
      fail_assertion("false", kUnknownValueType);
  }
}

void read_element(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) {
  ValueType_t::enum_t type = value_type_of(rw);
  read_run(rw, elementIndex, elementIndex + 1, type, data);
}

void read_all(const SymbolicRW_t& rw, size_t, ValueBytes& data) {
  BufferReader::GetBufferValues(rw, data);
}

}  // namespace

void BufferReader::GetBufferValues(const SymbolicRW_t& rw, ValueBytes& data) {
  agl_int32_t elementCount = 0;
  AGL_Symbolic_GetAccessBufferElementCount(rw.AccessHandle, &elementCount);
  if (rw.Result != AGL40_SUCCESS || rw.SError != 0 || elementCount <= 0) return;
  const auto count = static_cast<size_t>(elementCount);
  ValueType_t::enum_t type = value_type_of(rw);
  for (size_t element = 0; element < count;) element = read_run(rw, element, count, type, data);
}

namespace {

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
