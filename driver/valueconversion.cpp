// SPDX-License-Identifier: MIT
#include "driver/valueconversion.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "driver/datatypes.h"
#include "driver/unaligned.h"

namespace {

constexpr WORD kBitSet = 0xFFFF;           // not 1, deliberately
constexpr std::size_t kSignedWords = 270;  // sign-extended whatever the command's length, deliberately
constexpr unsigned kElementsPerBoolByte = 16;

unsigned char byte_at(std::span<const unsigned char> data, std::size_t position) {
  if (position >= data.size()) throw std::out_of_range("value shorter than the element asked for");
  return data[position];
}

void put_word(stCmdDesc& command, std::size_t index, WORD word) {
  store_unaligned(command.DataBuffer + index * sizeof(WORD), word);
}

std::size_t words_that_fit(const stCmdDesc& command) {
  return std::min<std::size_t>(command.WordCount, kDataBufferWords);
}

void fill_direct(stCmdDesc& command, std::span<const unsigned char> data, std::size_t start) {
  byte_at(data, start);
  const std::size_t length = std::min(words_that_fit(command) * sizeof(WORD), data.size() - start);
  std::memcpy(command.DataBuffer, data.data() + start, length);
}

void fill_string(stCmdDesc& command, std::span<const unsigned char> data, std::uint32_t table_version) {
  const bool wide =
      data.size() <= 0xFFFF && is_wstring_type(command.DataType, static_cast<unsigned short>(data.size()));
  if (wide) command.is_wstring = true;
  if (!command.is_wstring && (table_version & kVersionCharPairedStrings) == 0) {
    const std::size_t count = std::min(data.size(), kDataBufferWords);
    for (std::size_t i = 0; i < count; ++i) put_word(command, i, data[i]);
  } else {
    std::memcpy(command.DataBuffer, data.data(), std::min(data.size(), kDataBufferSize));
  }
}

void sign_extend(stCmdDesc& command) {
  for (std::size_t i = 0; i < kSignedWords; ++i) {
    const BYTE low = command.DataBuffer[i * sizeof(WORD)];
    command.DataBuffer[i * sizeof(WORD) + 1] = low >= 0x80 ? 0xFF : 0x00;
  }
}

}  // namespace

void fill_data_buffer(stCmdDesc& command, std::span<const unsigned char> data, WORD offset,
                      std::uint32_t table_version) {
  const DataTypeInfo& type = data_type_info(command.DataType);
  switch (type.form) {
    case WordForm::None:
      return;  // the words stay zero and count as delivered, deliberately
    case WordForm::Bool:
      for (std::size_t i = 0; i < words_that_fit(command); ++i) {
        put_word(command, i, byte_at(data, offset / kElementsPerBoolByte));
      }
      return;
    case WordForm::Byte:
      for (std::size_t i = 0; i < words_that_fit(command); ++i)
        put_word(command, i, byte_at(data, offset + i));
      return;
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
  std::memcpy(record.wData, command.DataBuffer, words_that_fit(command) * sizeof(WORD));
}

void deliver_bits(const BYTE* buffer, BYTE data_type, int first_bit, USHORT count, INPUT_DATA& record) {
  DWORD value = 0;
  std::memcpy(&value, buffer, data_type_info(data_type).bit_source);
  const int words = std::min<int>(count, kRecordWords);
  for (int i = 0; i < words; ++i) {
    record.wData[i] = ((value >> ((first_bit + i) % 32)) & 1U) != 0 ? kBitSet : WORD{0};
  }
}
