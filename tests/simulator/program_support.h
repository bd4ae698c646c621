// SPDX-License-Identifier: MIT
// What the tests of the PLC's program share: a program from one text, the line a bad text is refused with,
// and the bytes of a variable.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/program/encoding.h"
#include "simulator/program/program.h"
#include "simulator/program/source.h"

namespace ostravel::plc::testing {

using Octets = std::vector<std::uint8_t>;

// The members of one data block named D.
inline std::string block_of(std::string_view members, std::string_view assignments = "") {
  return "DATA_BLOCK \"D\"\nVERSION : 0.1\nSTRUCT\n" + std::string(members) + "\nEND_STRUCT;\nBEGIN\n" +
         std::string(assignments) + "\nEND_DATA_BLOCK\n";
}

inline Program load(std::string_view text, const LoadOptions& options = {},
                    std::vector<std::string>* warnings = nullptr) {
  return load_text(text, "test.db", options, warnings);
}

// The line a text is refused with; empty when it is not refused.
inline std::string refusal(std::string_view text, const LoadOptions& options = {}) {
  try {
    load(text, options);
  } catch (const SourceError& error) {
    return error.what();
  }
  return {};
}

inline Target target(const Program& program, std::string_view path) {
  const std::optional<Target> found = resolve(program.blocks, path);
  EXPECT_TRUE(found) << path;
  return found.value_or(Target{});
}

// The bytes a variable starts with; none when there is no such variable.
inline Octets bytes(const Program& program, std::string_view path) {
  const std::optional<Target> found = resolve(program.blocks, path);
  if (!found) {
    ADD_FAILURE() << "no " << path;
    return {};
  }
  const Bytes part = bytes_of(*found, Bytes(program.initial));
  return {part.begin(), part.end()};
}

}  // namespace ostravel::plc::testing
