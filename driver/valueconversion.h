// SPDX-License-Identifier: MIT
// A command's value between the bytes that the symbolic engine delivers, the command's DataBuffer and the
// runtime's words. No I/O.
#pragma once

#include <cstdint>
#include <span>

#include "driver/cmddesc.h"
#include "driver/hostrecords.h"

// Fills command.DataBuffer with WordCount words of the value that lies at element offset of data, or as many
// of them as data and buffer hold; the rest becomes zero. data is not empty. Marks a wide string. Raises
// std::out_of_range when the element, or a single byte taken one by one, lies outside data.
void fill_data_buffer(stCmdDesc& command, std::span<const unsigned char> data, WORD offset,
                      std::uint32_t table_version);

// Puts the command's value, or its bits, into the record's words. A string that travels a character a word
// and a SINT are sign-extended in DataBuffer first.
void deliver_words(stCmdDesc& command, std::uint32_t table_version, INPUT_DATA& record);

// Bits first_bit, first_bit + 1, ... (modulo 32) of the value at the start of buffer, count of them, as
// 0xFFFF or 0. Of a type whose bits cannot be told apart they are 0. first_bit is 0 or more.
void deliver_bits(const BYTE* buffer, BYTE data_type, int first_bit, USHORT count, INPUT_DATA& record);
