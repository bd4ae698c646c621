// SPDX-License-Identifier: MIT
// What the driver cannot deliver as the PLC holds it, so that tables of tags can leave it out and say why.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/program/program.h"

namespace ostravel::plc {

// The largest value one command of the driver can carry, in 16-bit words; smaller elements take a word each.
constexpr unsigned tag_word_limit = 2048;
// The highest index of an array that a command can name.
constexpr std::int64_t tag_index_limit = 65'534;

// A wide text of this length travels a character a word, any other a byte a word.
constexpr std::uint32_t paired_wide_length = 254;

// Why a variable cannot be read through the driver; empty when it can. The path is its own.
std::string why_unreadable(const Symbol& symbol, std::string_view path);

// Whether texts of an array have to be named one by one: the driver names an element by cutting the path at
// its last bracket, and gives it one index.
bool texts_need_own_names(const Symbol& symbol, std::string_view path);

}  // namespace ostravel::plc
