// SPDX-License-Identifier: MIT
// A program's variables as a table for the driver's project file.
//
// Header line: name,type,count,first,elements,device,id
//   name      path of the variable, quoted where needed
//   type      the driver's type name: BOOL, BitArray, SINT, INT, DINT, REAL, BYTE, WORD, DWORD, UDINT, LWORD,
//   LINT,
//             ULINT, LREAL, UINT, USINT, STRING
//   count     number of elements; of a text the declared characters
//   first     lower bound of an array, 0 for one of several dimensions, empty for a scalar; of the bytes of a
//             date and time, where they begin in what the driver reads
//   elements  number of texts of an array of texts, else 1
//   device,id device is 1, id counts from 1
#pragma once

#include <string>
#include <vector>

#include "simulator/program/paths.h"
#include "simulator/program/program.h"

namespace ostravel::plc {

constexpr unsigned tag_row_limit = 100'000;

struct LeftOut {
  Leaf leaf;
  std::string reason;
};

struct TagTable {
  std::string csv;  // lines end in "\n", fields are quoted as RFC 4180 says
  // Variables of which not every byte is in the table. An array that needs more than tag_word_limit words is
  // not among them: it is split into rows that differ in first.
  std::vector<LeftOut> left_out;
};

// The program must outlive the table.
TagTable export_tags(const Program& program);

// A warning for each reason and variable; the same member of the elements of an array counts as one.
std::vector<std::string> warnings_of(const TagTable& table);

}  // namespace ostravel::plc
