// SPDX-License-Identifier: MIT
#include "symbolic/bufferreader.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "symbolic/accessbuffer.h"
#include "symbolic/assertion.h"
#include "symbolic/errorhelper.h"

namespace {

constexpr AssertionPlace kUnknownValueType = {
    "bufferreader.cpp", 172,
    "void BufferReader::GetBufferValue(const SymbolicRW_t&, const size_t&, std::vector<unsigned char>&)"};
constexpr const char* kReadString16 =
    "void BufferReader::ReadString16(const SymbolicRW_t&, const size_t&, std::vector<unsigned char>&)";
constexpr const char* kSystemSpecific =
    "void BufferReader::GetSystemSpecificBufferValue(const SymbolicRW_t&, const size_t&, "
    "std::vector<unsigned char>&)";

// The way of every value that one library function delivers: fetch, then append or report.
template <class T>
void read_value(agl_int32_t (*get)(HandleType, const void*, agl_int32_t, agl_int32_t, T*), const char* name,
                const SymbolicRW_t& rw, const size_t& elementIndex, std::vector<unsigned char>& data) {
  T value{};
  const agl_int32_t res = get(rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex), &value);
  if (res != AGL40_SUCCESS) {
    ErrorHelper::ShowError(res, name);
    return;
  }
  BufferReader::SetupDataVector(value, data);
}

// Characters that the library may write, as it takes the number; of a size beyond 32 bits not what is left of
// it.
agl_int32_t room_of(std::int64_t size) {
  using Limits = std::numeric_limits<agl_int32_t>;
  return static_cast<agl_int32_t>(std::clamp<std::int64_t>(size, Limits::min(), Limits::max()));
}

// Makes data exactly size bytes long and puts the first count bytes of text at its start. A string that
// leaves no byte raises std::out_of_range.
void replace_by_text(const void* text, std::int64_t count, std::int64_t size,
                     std::vector<unsigned char>& data) {
  data.resize(static_cast<std::size_t>(std::max<std::int64_t>(size, 0)));
  unsigned char& first = data.at(0);
  const std::int64_t taken = std::clamp<std::int64_t>(count, 0, size);
  std::copy_n(static_cast<const unsigned char*>(text), taken, &first);
}

}  // namespace

void BufferReader::GetBufferValues(const SymbolicRW_t& rw, std::vector<unsigned char>& data) {
  agl_int32_t elementCount = 0;
  AGL_Symbolic_GetAccessBufferElementCount(rw.AccessHandle, &elementCount);
  if (rw.Result != AGL40_SUCCESS || rw.SError != 0) return;
  for (agl_int32_t i = 0; i < elementCount; ++i) {
    GetBufferValue(rw, static_cast<size_t>(i), data);
  }
}

void BufferReader::GetBufferValue(const SymbolicRW_t& rw, const size_t& elementIndex,
                                  std::vector<unsigned char>& data) {
  ValueType_t::enum_t valueType = ValueType_t::vt_UNDEFINED;
  AGL_Symbolic_GetAccessElementValueType(rw.AccessHandle, &valueType);
  switch (valueType) {
    case ValueType_t::vt_SYSTEM_SPECIFIC:
      return GetSystemSpecificBufferValue(rw, elementIndex, data);
    case ValueType_t::vt_UINT8:
      return ReadUInt8(rw, elementIndex, data);
    case ValueType_t::vt_UINT16:
      return ReadUInt16(rw, elementIndex, data);
    case ValueType_t::vt_UINT32:
      return ReadUInt32(rw, elementIndex, data);
    case ValueType_t::vt_UINT64:
      return ReadUInt64(rw, elementIndex, data);
    case ValueType_t::vt_INT8:
      return ReadInt8(rw, elementIndex, data);
    case ValueType_t::vt_INT16:
      return ReadInt16(rw, elementIndex, data);
    case ValueType_t::vt_INT32:
      return ReadInt32(rw, elementIndex, data);
    case ValueType_t::vt_INT64:
      return ReadInt64(rw, elementIndex, data);
    case ValueType_t::vt_CHAR8:
      return ReadChar8(rw, elementIndex, data);
    case ValueType_t::vt_CHAR16:
      return ReadChar16(rw, elementIndex, data);
    case ValueType_t::vt_STRING8:
      return ReadString8(rw, elementIndex, data);
    case ValueType_t::vt_STRING16:
      return ReadString16(rw, elementIndex, data);
    case ValueType_t::vt_FLOAT32:
      return ReadFloat32(rw, elementIndex, data);
    case ValueType_t::vt_FLOAT64:
      return ReadFloat64(rw, elementIndex, data);
    default:
      fail_assertion("false", kUnknownValueType);
  }
}

void BufferReader::GetSystemSpecificBufferValue(const SymbolicRW_t& rw, const size_t& elementIndex,
                                                std::vector<unsigned char>& data) {
  SystemType_t::enum_t systemType = SystemType_t::st_UNDEFINED;
  if (AGL_Symbolic_GetAccessElementSystemType(rw.AccessHandle, &systemType) != AGL40_SUCCESS) {
    fail_assertion("res == AGL40_SUCCESS", {"bufferreader.cpp", 460, kSystemSpecific});
  }
  switch (systemType) {
    case SystemType_t::st_S7_Counter:
      return ReadS7Counter(rw, elementIndex, data);
    case SystemType_t::st_S7_S5Time:
      return ReadS5Time(rw, elementIndex, data);
    case SystemType_t::st_S7_Date_And_Time:
      return ReadS7DateAndtime(rw, elementIndex, data);
    case SystemType_t::st_S7_DTL:
      return ReadDTL(rw, elementIndex, data);
    default:
      fail_assertion("false", {"bufferreader.cpp", 484, kSystemSpecific});
  }
}

// A reader that is nothing but a library function: its name is in the error report as well.
#define OSTRAVEL_VALUE_READER(Reader, Function)                                 \
  void BufferReader::Reader(const SymbolicRW_t& rw, const size_t& elementIndex, \
                            std::vector<unsigned char>& data) {                 \
    read_value(Function, #Function, rw, elementIndex, data);                    \
  }

OSTRAVEL_VALUE_READER(ReadUInt8, AGL_Symbolic_GetAccessBufferUInt8)
OSTRAVEL_VALUE_READER(ReadUInt16, AGL_Symbolic_GetAccessBufferUInt16)
OSTRAVEL_VALUE_READER(ReadUInt32, AGL_Symbolic_GetAccessBufferUInt32)
OSTRAVEL_VALUE_READER(ReadUInt64, AGL_Symbolic_GetAccessBufferUInt64)
OSTRAVEL_VALUE_READER(ReadInt8, AGL_Symbolic_GetAccessBufferInt8)
OSTRAVEL_VALUE_READER(ReadInt16, AGL_Symbolic_GetAccessBufferInt16)
OSTRAVEL_VALUE_READER(ReadInt32, AGL_Symbolic_GetAccessBufferInt32)
OSTRAVEL_VALUE_READER(ReadInt64, AGL_Symbolic_GetAccessBufferInt64)
OSTRAVEL_VALUE_READER(ReadFloat32, AGL_Symbolic_GetAccessBufferFloat32)
OSTRAVEL_VALUE_READER(ReadFloat64, AGL_Symbolic_GetAccessBufferFloat64)
OSTRAVEL_VALUE_READER(ReadChar8, AGL_Symbolic_GetAccessBufferChar8)
OSTRAVEL_VALUE_READER(ReadS7Counter, AGL_Symbolic_GetAccessBufferS7_Counter)
OSTRAVEL_VALUE_READER(ReadS5Time, AGL_Symbolic_GetAccessBufferS7_S5TimeMs)
#undef OSTRAVEL_VALUE_READER

// Four zero bytes whatever the PLC holds, deliberately: a 16-bit character reads as a 32-bit zero.
void BufferReader::ReadChar16(const SymbolicRW_t&, const size_t&, std::vector<unsigned char>& data) {
  SetupDataVector(std::uint32_t{0}, data);
}

void BufferReader::ReadString8(const SymbolicRW_t& rw, const size_t& elementIndex,
                               std::vector<unsigned char>& data) {
  agl_int32_t StringSize = 0;
  agl_int32_t res = AGL_Symbolic_GetAccessStringSize(rw.AccessHandle, &StringSize);
  if (res != AGL40_SUCCESS) {
    ErrorHelper::ShowError(res, "AGL_Symbolic_GetAccessStringSize");
    return;
  }
  const std::int64_t size = std::int64_t{StringSize} + 1;
  const auto text = zeroed_memory(size);
  agl_int32_t CharCount = 0;
  res =
      AGL_Symbolic_GetAccessBufferString8(rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex),
                                          static_cast<agl_char8_t*>(text.get()), room_of(size), &CharCount);
  if (res != AGL40_SUCCESS) {
    ErrorHelper::ShowError(res, "AGL_Symbolic_GetAccessBufferString8");
    return;
  }
  replace_by_text(text.get(), std::int64_t{CharCount} + 1, size, data);
}

void BufferReader::ReadString16(const SymbolicRW_t& rw, const size_t& elementIndex,
                                std::vector<unsigned char>& data) {
  agl_int32_t StringSize = 0;
  if (AGL_Symbolic_GetAccessStringSize(rw.AccessHandle, &StringSize) != AGL40_SUCCESS) {
    fail_assertion("res == AGL40_SUCCESS", {"bufferreader.cpp", 414, kReadString16});
  }
  const std::int64_t size = 2 * (std::int64_t{StringSize} + 1);
  const auto text = zeroed_memory(size * static_cast<std::int64_t>(sizeof(agl_char16_t)));
  agl_int32_t CharCount = 0;
  const agl_int32_t res = AGL_Symbolic_GetAccessBufferString16(
      rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex),
      static_cast<agl_char16_t*>(text.get()), room_of(size), &CharCount);
  if (res != AGL40_SUCCESS) {
    ErrorHelper::ShowError(res, "AGL_Symbolic_GetAccessBufferString16");
    return;
  }
  // Of the terminating zero character only the low byte is taken, deliberately.
  replace_by_text(text.get(), 2 * std::int64_t{CharCount} + 1, size, data);
}

void BufferReader::ReadS7DateAndtime(const SymbolicRW_t& rw, const size_t& elementIndex,
                                     std::vector<unsigned char>& data) {
  agl_uint16_t Year = 0;
  agl_uint8_t Month = 0, Day = 0, WeekDay = 0, Hour = 0, Minute = 0, Second = 0;
  agl_uint16_t Millisecond = 0;
  const agl_int32_t res = AGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts(
      rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex), &Year, &Month, &Day, &WeekDay,
      &Hour, &Minute, &Second, &Millisecond);
  if (res != AGL40_SUCCESS) {
    ErrorHelper::ShowError(res, "AGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts");
    return;
  }
  SetupDataVector(Year, data);
  data.insert(data.end(), {Month, Day, WeekDay, Hour, Minute, Second});
  SetupDataVector(Millisecond, data);
}

void BufferReader::ReadDTL(const SymbolicRW_t& rw, const size_t& elementIndex,
                           std::vector<unsigned char>& data) {
  agl_uint16_t Year = 0;
  agl_uint8_t Month = 0, Day = 0, WeekDay = 0, Hour = 0, Minute = 0, Second = 0;
  agl_uint32_t Nanoseconds = 0;
  const agl_int32_t res = AGL_Symbolic_GetAccessBufferS7_DTLParts(
      rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex), &Year, &Month, &Day, &WeekDay,
      &Hour, &Minute, &Second, &Nanoseconds);
  if (res != AGL40_SUCCESS) {
    ErrorHelper::ShowError(res, "AGL_Symbolic_GetAccessBufferS7_DTLParts");
    return;
  }
  SetupDataVector(Year, data);
  data.insert(data.end(), {Month, Day, WeekDay, Hour, Minute, Second});
  SetupDataVector(Nanoseconds, data);
}
