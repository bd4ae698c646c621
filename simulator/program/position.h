// SPDX-License-Identifier: MIT
// Places in sources and the one form in which they are reported.
#pragma once

#include <string>
#include <string_view>

namespace ostravel::plc {

// The file's name is owned by whoever loads the sources and outlives all places in it.
struct Position {
  std::string_view file;
  unsigned line = 1;
  unsigned column = 1;
};

// "file:line:column: message" in one line, whatever characters the message quotes from a source.
std::string located(const Position& position, std::string_view message);

// Throws SourceError with that line.
[[noreturn]] void fail(const Position& position, std::string_view message);

// A piece of a source for a message: in single quotes, shortened when it is long.
std::string quoted_piece(std::string_view text);

}  // namespace ostravel::plc
