// SPDX-License-Identifier: MIT
// Offline simulation: one 64-bit value per tag element in the device's GMap stands for the PLC. What was
// never written reads as 0.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "driver/arrayelement.h"
#include "driver/datatypes.h"
#include "driver/driver.h"
#include "driver/statuscodes.h"
#include "driver/valueconversion.h"

namespace {

// The index that a string's name ends with; a name without one counts as 0.
long index_in_name(std::string_view name) {
  const std::size_t open = name.rfind('[');
  if (open == std::string_view::npos || name.rfind(']') == std::string_view::npos) return 0;
  return std::strtol(name.data() + open + 1, nullptr, 10);
}

// A string element whose name says another index than the request's is known by its own name and table row.
void rename_string_element(GData& device, stTag& tag) {
  const std::string_view name = tag.pTagName;
  if (tag.DataType != DT_STRING || IsMultiDimensionArray(name)) return;
  const long index = index_in_name(name);
  if (index == kNoArrayIndex || index == tag.ArrayIndex) return;
  auto entry = device.rebuilt_names.find({tag.TagIndex, tag.ArrayIndex});
  if (entry == device.rebuilt_names.end()) {
    GData::RebuiltName rebuilt = {with_index(without_index(name), tag.ArrayIndex), 0};
    rebuilt.row = device.GTagTable.get_index_by_name(rebuilt.name.c_str());
    entry = device.rebuilt_names.try_emplace({tag.TagIndex, tag.ArrayIndex}, std::move(rebuilt)).first;
  }
  const GData::RebuiltName& rebuilt = entry->second;
  tag.pTagName = rebuilt.name.c_str();
  tag.TagIndex = rebuilt.row;
}

using Entry = std::map<stTag, std::uint64_t>::iterator;

// The element's entry, made with the value 0 when there is none. An element's entry lies behind that of the
// one before, so that is where it is looked for first.
Entry entry_of(GData& device, Entry expected, const stTag& tag) {
  if (expected != device.GMap.end()) {
    const stTag& found = expected->first;
    if (found.pTagName == tag.pTagName && found.TagIndex == tag.TagIndex &&
        found.ArrayIndex == tag.ArrayIndex && found.DataType == tag.DataType &&
        found.BitIndex == tag.BitIndex) {
      return expected;
    }
  }
  return device.GMap.try_emplace(expected, tag, 0);
}

// Reads the elements of one request into its command's buffer.
void read_request(GData& device, GUI_REQUEST& request, stCmdDesc& command) {
  stTag tag;
  const INT count = FillTagStruct(&device.GTagTable, &tag, request.byDriverData);
  command.DataType = tag.DataType;
  command.ElementCounts = static_cast<USHORT>(count);
  command.BitIndex = tag.BitIndex;
  tag.BitIndex = -1;  // all bits of one element share one entry
  rename_string_element(device, tag);

  const std::size_t words = data_type_info(tag.DataType).offline_words;
  std::size_t position = 0;
  Entry expected = device.GMap.end();
  for (INT i = 0; i < count; ++i, position += words, ++tag.ArrayIndex) {
    const Entry entry = entry_of(device, expected, tag);
    expected = std::next(entry);
    if (words == 0 || position >= kDataBufferWords) continue;
    // A 32-bit element stores all 8 bytes and is overwritten from its middle by the next one, deliberately.
    const std::size_t bytes = words == 1 ? sizeof(WORD) : sizeof entry->second;
    const std::size_t start = position * sizeof(WORD);
    const std::size_t end = std::min(start + bytes, kDataBufferSize);
    std::memcpy(command.DataBuffer + start, &entry->second, end - start);
    command.DataBytes = std::max(command.DataBytes, end);
  }
}

void write_bit(GData& device, stTag tag, BYTE bit_value) {
  const int bit = tag.BitIndex & 31;
  tag.BitIndex = -1;
  // Sign-extended, deliberately: bit 31 stands for bits 31 to 63.
  const auto mask = static_cast<std::uint64_t>(std::int64_t{static_cast<std::int32_t>(1U << bit)});
  std::uint64_t& value = device.GMap[tag];
  value = bit_value != 0 ? value | mask : value & ~mask;
}

// The value of element i of a word write; running is the element's before it, and what an element beyond the
// record's words takes.
std::uint64_t element_value(const GUI_REQUEST& request, BYTE data_type, std::size_t i,
                            std::uint64_t running) {
  if (data_type == DT_BITARY || data_type == DT_BOOL) return request.stCommand.stBitWrite.byData;
  const std::size_t words = data_type_info(data_type).offline_words;
  const std::size_t first = i * words;
  if (words == 0 || first + words > kRecordWords) return running;
  const WORD* source = request.stCommand.stWORDWrite.wData + first;
  // The upper half of a 32-bit element keeps what the one before it left, deliberately.
  std::memcpy(&running, source, words * sizeof(WORD));
  if (words == 1) running &= 0xFFFF;
  return running;
}

void write_words(GData& device, const GUI_REQUEST& request, stTag tag, INT count) {
  rename_string_element(device, tag);
  std::uint64_t value = 0;
  Entry expected = device.GMap.end();
  for (INT i = 0; i < count; ++i, ++tag.ArrayIndex) {
    value = element_value(request, tag.DataType, static_cast<std::size_t>(i), value);
    const Entry entry = entry_of(device, expected, tag);
    entry->second = value;
    expected = std::next(entry);
  }
}

void deliver(const stCmdDesc& command, INPUT_DATA& record) {
  if (command.BitIndex == -1) {
    const std::size_t words =
        std::size_t{command.ElementCounts} * data_type_info(command.DataType).offline_words;
    std::memcpy(record.wData, command.DataBuffer, std::min(words, kDataBufferWords) * sizeof(WORD));
  } else {
    // Of a bit number below -1 the lowest five bits count.
    deliver_bits(command.DataBuffer, command.DataType, command.BitIndex & 31, command.ElementCounts, record);
  }
}

}  // namespace

FRAME_DATA KORVALE_DRV_OutputFilterExOffLine(GUI_REQUEST* pstCurQueueData, int nCmdCount) {
  if (nCmdCount <= 0) return empty_frame();
  GUI_REQUEST& request = pstCurQueueData[0];
  GData& device = *device_of(request.pdwMemAddr);
  const BYTE function = request.stCmdType.byFunCode;
  if (function == kFunctionWordWrite || function == kFunctionBitWrite) {
    stTag tag;
    const INT count = FillTagStruct(&device.GTagTable, &tag, request.byDriverData);
    if (tag.BitIndex != -1) {
      write_bit(device, tag, request.stCommand.stBitWrite.byData);
    } else {
      write_words(device, request, tag, count);
    }
    return empty_frame();
  }
  device.batch_is_whole = false;
  for (int i = 0; i < std::min(nCmdCount, kCommandPoolSize); ++i) {
    read_request(device, pstCurQueueData[i], device.GCmdDesc[i]);
  }
  device.batch_is_whole = true;
  request.nResponseLength = 0;
  request.byWaitResponse = 0;
  return empty_frame();
}

void KORVALE_DRV_InputFilterExOffLine(INPUT_DATA* pstInput, FRAME_DATA*, DEVICE_INFO* pstDeviceInfo,
                                      int nCmdCount) {
  if (nCmdCount <= 0) return;
  const GData& device = *device_of(pstDeviceInfo[0].pdwMemAddr);
  pstInput[0].byErrCode = kOk;
  pstInput[0].byCurSysStatus = kInputStatus;
  pstInput[0].nLength = 0;
  if (pstDeviceInfo[0].bRead == FALSE) return;
  for (int i = 0; i < nCmdCount; ++i) {
    INPUT_DATA& record = pstInput[i];
    if (i >= kCommandPoolSize || !device.batch_is_whole) {
      record.byErrCode = kNoData;  // no command holds its value
      continue;
    }
    record.byErrCode = kOk;
    record.byCurSysStatus = kInputStatus;
    record.nLength = pstDeviceInfo[i].nReadWORDSize;
    deliver(device.GCmdDesc[i], record);
  }
}
