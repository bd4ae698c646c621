// SPDX-License-Identifier: MIT
// What the driver knows of each data type, once: every group by type in the filters comes from this table.
#pragma once

#include <array>
#include <cstdint>

#include "driver/hostrecords.h"

// How value bytes become host words.
enum class WordForm : std::uint8_t {
  None,    // no word: the type cannot be delivered
  Bool,    // a byte a word, the same for 16 elements
  Byte,    // a byte a word
  Direct,  // bytes as they are
  String,  // a byte a word or bytes as they are, by the table's version
};

struct alignas(8) DataTypeInfo {
  BYTE code;           // DATA_TYPE
  BYTE runtime_type;   // the runtime's number for it; 0: it has none
  BYTE element_bytes;  // of one element in a response; 0: the type is not known to requests
  BYTE write_bytes;    // of one element in the host's words of a write; 0: never a single element of an array
  WordForm form;       // of a value read
  BYTE bit_source;     // bytes of the value that a bit access looks into; 0: its bits read as 0
  BYTE offline_words;  // of one element in offline simulation; 0: it holds no value
};

// clang-format off
// Byte-wide types take a whole host word in a write, deliberately. DT_LTIME is in the runtime's list of codes only.
inline constexpr std::array kDataTypes = {
    //           code       runtime bytes write form              bits offline
    DataTypeInfo{DT_BYTE,   2,      1,    2,    WordForm::Byte,   1,   1},
    DataTypeInfo{DT_WORD,   3,      2,    2,    WordForm::Direct, 2,   1},
    DataTypeInfo{DT_DWORD,  4,      4,    4,    WordForm::Direct, 4,   2},
    DataTypeInfo{DT_UDINT,  6,      4,    4,    WordForm::Direct, 4,   2},
    DataTypeInfo{DT_LWORD,  16,     8,    8,    WordForm::Direct, 4,   4},
    DataTypeInfo{DT_LINT,   13,     8,    8,    WordForm::Direct, 4,   4},
    DataTypeInfo{DT_ULINT,  14,     8,    8,    WordForm::Direct, 4,   4},
    DataTypeInfo{DT_LREAL,  15,     8,    8,    WordForm::Direct, 4,   4},
    DataTypeInfo{DT_UINT,   11,     2,    2,    WordForm::Direct, 2,   1},
    DataTypeInfo{DT_USINT,  12,     1,    2,    WordForm::Byte,   1,   1},
    DataTypeInfo{DT_LTIME,  0,      0,    0,    WordForm::None,   0,   0},
    DataTypeInfo{DT_BOOL,   1,      1,    0,    WordForm::Bool,   0,   1},
    DataTypeInfo{DT_SINT,   7,      1,    2,    WordForm::Byte,   1,   1},
    DataTypeInfo{DT_INT,    9,      2,    2,    WordForm::Direct, 2,   1},
    DataTypeInfo{DT_DINT,   10,     4,    4,    WordForm::Direct, 4,   2},
    DataTypeInfo{DT_REAL,   5,      4,    4,    WordForm::Direct, 4,   2},
    DataTypeInfo{DT_BITARY, 1,      1,    1,    WordForm::Byte,   0,   1},
    DataTypeInfo{DT_STRING, 7,      1,    2,    WordForm::String, 1,   1},
};
// clang-format on

namespace data_type_detail {
consteval std::array<DataTypeInfo, 256> by_code() {
  std::array<DataTypeInfo, 256> rows{};
  for (const DataTypeInfo& row : kDataTypes) rows[row.code] = row;
  return rows;
}
inline constexpr std::array<DataTypeInfo, 256> kByCode = by_code();
}  // namespace data_type_detail

// The row of a code; for a code without one a row of zeros.
constexpr const DataTypeInfo& data_type_info(BYTE code) {
  return data_type_detail::kByCode[code];
}
