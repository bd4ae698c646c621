// SPDX-License-Identifier: MIT
// The texts of the table, read: addresses, writes, words, and the project that has all tags of the table.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/driver/projectfile.h"
#include "tests/driver/requestbuilder.h"

namespace tables {

inline constexpr const char* kGuard = "Guard";

// The DATA_TYPE of a type's name; fails the test program for a name that is none.
int code_of(const std::string& type);

// "Array @2 x3 .4" as the block that a request of this type carries.
TagBlock tag_block(const std::string& type, const std::string& address);

// "0041 00C4*3" as numbers.
std::vector<std::uint64_t> numbers_of(const std::string& text);
std::vector<WORD> words_of(const std::string& text);

// A word write of "0041 00C4", or a bit write of "set", "set 80" or "clear".
RequestBuilder write_of(const TagBlock& block, const std::string& words);
// "Value x2 = 0041 00C4", "Value .3 set", "Value clear".
RequestBuilder write_step(const std::string& type, const std::string& step);

std::vector<std::string> split(const std::string& text, char separator);

// All tags that the table names, in either layout of texts.
ProjectFile project(bool paired);

}  // namespace tables
