// SPDX-License-Identifier: MIT
#include "symbolic/partreaders.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "symbolic/accessbuffer.h"
#include "symbolic/assertion.h"
#include "symbolic/errorhelper.h"

namespace {

constexpr const char* kReadString16 =
    "void BufferReader::ReadString16(const SymbolicRW_t&, const size_t&, std::vector<unsigned char>&)";

// Bytes of a text of StringSize characters and its terminating zero, in characters of so many bytes.
agl_int32_t size_with_end(agl_int32_t StringSize, agl_int32_t bytes) {
  return bytes * (std::clamp(StringSize, -kLongestText, kLongestText) + 1);
}

// Makes data exactly size bytes long and puts the first count bytes of text at its start. A string that
// leaves no byte raises std::out_of_range.
void replace_by_text(const void* text, std::int64_t count, std::int64_t size, ValueBytes& data) {
  data.Resize(static_cast<std::size_t>(std::max<std::int64_t>(size, 0)));
  if (size <= 0) (void)std::vector<unsigned char>().at(0);
  const std::int64_t taken = std::clamp<std::int64_t>(count, 0, size);
  std::copy_n(static_cast<const unsigned char*>(text), taken, data.data());
}

}  // namespace

void read_string8(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) {
  agl_int32_t StringSize = 0;
  agl_int32_t res = AGL_Symbolic_GetAccessStringSize(rw.AccessHandle, &StringSize);
  if (res != AGL40_SUCCESS) {
    ErrorHelper::ShowError(res, "AGL_Symbolic_GetAccessStringSize");
    return;
  }
  const agl_int32_t size = size_with_end(StringSize, 1);
  const auto text = zeroed_memory(size);
  agl_int32_t CharCount = 0;
  res =
      AGL_Symbolic_GetAccessBufferString8(rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex),
                                          static_cast<agl_char8_t*>(text.get()), size, &CharCount);
  if (res != AGL40_SUCCESS) {
    ErrorHelper::ShowError(res, "AGL_Symbolic_GetAccessBufferString8");
    return;
  }
  replace_by_text(text.get(), std::int64_t{CharCount} + 1, size, data);
}

void read_string16(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) {
  agl_int32_t StringSize = 0;
  if (AGL_Symbolic_GetAccessStringSize(rw.AccessHandle, &StringSize) != AGL40_SUCCESS) {
    fail_assertion("res == AGL40_SUCCESS", {"bufferreader.cpp", 414, kReadString16});
  }
  const agl_int32_t size = size_with_end(StringSize, 2);
  const auto text = zeroed_memory(size * std::int64_t{sizeof(agl_char16_t)});
  agl_int32_t CharCount = 0;
  const agl_int32_t res = AGL_Symbolic_GetAccessBufferString16(
      rw.AccessHandle, rw.Buffer, length_of(rw), element_of(elementIndex),
      static_cast<agl_char16_t*>(text.get()), size, &CharCount);
  if (res != AGL40_SUCCESS) {
    ErrorHelper::ShowError(res, "AGL_Symbolic_GetAccessBufferString16");
    return;
  }
  // Of the terminating zero character only the low byte is taken, deliberately.
  replace_by_text(text.get(), 2 * std::int64_t{CharCount} + 1, size, data);
}

void read_date_and_time(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) {
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
  data.Append(Year);
  for (const agl_uint8_t part : {Month, Day, WeekDay, Hour, Minute, Second}) data.Append(part);
  data.Append(Millisecond);
}

void read_dtl(const SymbolicRW_t& rw, size_t elementIndex, ValueBytes& data) {
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
  data.Append(Year);
  for (const agl_uint8_t part : {Month, Day, WeekDay, Hour, Minute, Second}) data.Append(part);
  data.Append(Nanoseconds);
}
