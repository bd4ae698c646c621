// SPDX-License-Identifier: MIT
// A program's variables as a table for the driver's project file.
//
// Header line: name,type,count,first,elements,device,id
//   name      path of the variable, quoted where needed
//   type      the driver's type name: BOOL, BitArray, SINT, INT, DINT, REAL, BYTE, WORD, DWORD, UDINT, LWORD,
//   LINT,
//             ULINT, LREAL, UINT, USINT, STRING
//   count     number of elements; of a text the declared characters
//   first     lower bound of an array, 0 for one of several dimensions, empty for a scalar
//   elements  number of texts of an array of texts, else 1
//   device,id device is 1, id counts from 1
#pragma once

#include <string>
#include <vector>

#include "simulator/program/program.h"

namespace ostravel::plc {

// The largest value one command of the driver can carry, in 16-bit words; smaller elements take a word each.
constexpr unsigned tag_word_limit = 2048;
constexpr unsigned tag_row_limit = 100'000;

// Lines end in "\n", fields are quoted as RFC 4180 says. An array that needs more than tag_word_limit words
// is split into rows that differ in first; what cannot be split, and what the driver has no type for, is left
// out with a warning.
std::string export_tags_csv(const Program& program, std::vector<std::string>* warnings = nullptr);

}  // namespace ostravel::plc
