// SPDX-License-Identifier: MIT
#include "driver/valueconversion.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "driver/datatypes.h"
#include "driver/unaligned.h"

// Most values are single numbers, and what those need is kept free of what texts and arrays need: hence the
// functions that are not to be compiled into their callers.
namespace {

constexpr WORD kBitSet = 0xFFFF;           // not 1, deliberately
constexpr std::size_t kSignedWords = 270;  // sign-extended whatever the command's length, deliberately
constexpr unsigned kElementsPerBoolByte = 16;

[[noreturn, gnu::cold]] void raise_too_short() {
  throw std::out_of_range("value shorter than the element asked for");
}

// The bytes of data from start on, at least one.
std::span<const unsigned char> bytes_from(std::span<const unsigned char> data, std::size_t start) {
  if (start >= data.size()) raise_too_short();
  return data.subspan(start);
}

std::size_t words_that_fit(const stCmdDesc& command) {
  return std::min<std::size_t>(command.WordCount, kDataBufferWords);
}

// Most values are one word, two or four, and need no call for it.
void copy_words(void* to, const void* from, std::size_t words) {
  switch (words) {
    case 1:
      return void(std::memcpy(to, from, 1 * sizeof(WORD)));
    case 2:
      return void(std::memcpy(to, from, 2 * sizeof(WORD)));
    case 4:
      return void(std::memcpy(to, from, 4 * sizeof(WORD)));
    default:
      std::memcpy(to, from, words * sizeof(WORD));
  }
}

// A byte a word.
void spread(std::span<const unsigned char> bytes, BYTE* words) {
  for (std::size_t i = 0; i < bytes.size(); ++i) store_unaligned(words + i * sizeof(WORD), WORD{bytes[i]});
}

[[gnu::noinline]] void fill_bool(stCmdDesc& command, std::span<const unsigned char> data, WORD offset) {
  const std::size_t count = words_that_fit(command);
  const WORD word = count != 0 ? bytes_from(data, offset / kElementsPerBoolByte)[0] : WORD{0};
  for (std::size_t i = 0; i < count; ++i) store_unaligned(command.DataBuffer + i * sizeof(WORD), word);
  command.EndData(count * sizeof(WORD));
}

[[gnu::noinline]] void fill_bytes(stCmdDesc& command, std::span<const unsigned char> data, WORD offset) {
  const std::size_t count = words_that_fit(command);
  if (count != 0) {
    bytes_from(data, offset + count - 1);  // each byte must be there
    spread(data.subspan(offset, count), command.DataBuffer);
  }
  command.EndData(count * sizeof(WORD));
}

void fill_direct(stCmdDesc& command, std::span<const unsigned char> data, std::size_t start) {
  const auto bytes = bytes_from(data, start);
  const std::size_t words = words_that_fit(command);
  if (words * sizeof(WORD) <= bytes.size()) {
    copy_words(command.DataBuffer, bytes.data(), words);
    command.EndData(words * sizeof(WORD));
  } else {
    std::memcpy(command.DataBuffer, bytes.data(), bytes.size());
    command.EndData(bytes.size());
  }
}

[[gnu::noinline]] void fill_string(stCmdDesc& command, std::span<const unsigned char> data,
                                   std::uint32_t table_version) {
  const bool wide =
      data.size() <= 0xFFFF && is_wstring_type(command.DataType, static_cast<unsigned short>(data.size()));
  if (wide) command.is_wstring = true;
  if (!command.is_wstring && (table_version & kVersionCharPairedStrings) == 0) {
    const auto characters = data.first(std::min(data.size(), kDataBufferWords));
    spread(characters, command.DataBuffer);
    command.EndData(characters.size() * sizeof(WORD));
  } else {
    const std::size_t bytes = std::min(data.size(), kDataBufferSize);
    std::memcpy(command.DataBuffer, data.data(), bytes);
    command.EndData(bytes);
  }
}

[[gnu::noinline]] void sign_extend(stCmdDesc& command) {
  // What follows is zero, and stays so.
  const std::size_t count = std::min(kSignedWords, (command.DataBytes + 1) / sizeof(WORD));
  for (std::size_t i = 0; i < count; ++i) {
    BYTE* word = command.DataBuffer + i * sizeof(WORD);
    store_unaligned(word, static_cast<std::int16_t>(static_cast<std::int8_t>(*word)));
  }
  command.DataBytes = std::max(command.DataBytes, count * sizeof(WORD));
}

}  // namespace

void fill_data_buffer(stCmdDesc& command, std::span<const unsigned char> data, WORD offset,
                      std::uint32_t table_version) {
  const DataTypeInfo& type = data_type_info(command.DataType);
  switch (type.form) {
    case WordForm::None:
      return command.EndData(0);  // the words stay zero and count as delivered, deliberately
    case WordForm::Bool:
      return fill_bool(command, data, offset);
    case WordForm::Byte:
      return fill_bytes(command, data, offset);
    case WordForm::Direct:
      return fill_direct(command, data, std::size_t{offset} * type.element_bytes);
    case WordForm::String:
      return fill_string(command, data, table_version);
  }
}

void deliver_words(stCmdDesc& command, std::uint32_t table_version, INPUT_DATA& record) {
  const bool char_paired = (table_version & kVersionCharPairedStrings) != 0 || command.is_wstring;
  const bool signed_bytes = command.DataType == DT_SINT || (command.DataType == DT_STRING && !char_paired);
  if (signed_bytes) sign_extend(command);
  copy_words(record.wData, command.DataBuffer, words_that_fit(command));
}

void deliver_bits(const BYTE* buffer, BYTE data_type, int first_bit, USHORT count, INPUT_DATA& record) {
  DWORD value = 0;
  std::memcpy(&value, buffer, data_type_info(data_type).bit_source);
  const int words = std::min<int>(count, kRecordWords);
  for (int i = 0; i < words; ++i) {
    record.wData[i] = ((value >> ((first_bit + i) % 32)) & 1U) != 0 ? kBitSet : WORD{0};
  }
}
