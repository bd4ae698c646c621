// SPDX-License-Identifier: MIT
// Text as a terminal has it: in cells, of which a letter takes one, a Chinese character two and an accent
// that combines with the letter before it none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ostravel::host::watch {

// What the terminal can show.
enum class Charset : std::uint8_t { Utf8, Ascii };

// A text that can do the terminal no harm: control characters, invalid UTF-8 and what the charset lacks
// become question marks.
std::string printable(std::string_view text, Charset charset);

// Cells of a printable text.
std::size_t cells_of(std::string_view text);

// A printable text in exactly that many cells: filled with blanks, or cut, with a mark in the last cell.
std::string fit_left(std::string_view text, std::size_t cells, Charset charset);
// The same with the blanks in front.
std::string fit_right(std::string_view text, std::size_t cells, Charset charset);
// Without blanks: the text, or what fits of it with the mark.
std::string cut(std::string_view text, std::size_t cells, Charset charset);
// The same with the mark in the first cell and the end of the text behind it.
std::string cut_front(std::string_view text, std::size_t cells, Charset charset);

}  // namespace ostravel::host::watch
