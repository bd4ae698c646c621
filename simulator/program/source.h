// SPDX-License-Identifier: MIT
// Loads a PLC's program from text sources (.db, .udt, .scl): DATA_BLOCK, TYPE and FUNCTION_BLOCK declarations
// in any order and spread over any number of files. Code of function blocks and functions is skipped.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/program/program.h"

namespace ostravel::plc {

// What a source cannot be loaded for. what() is one line: "file:line:column: what is wrong and how to mend
// it". Lines and columns count from 1; a column counts characters, not bytes.
struct SourceError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct LoadOptions {
  // Global constants, which live in tag tables and not in the sources: name without quotes to a literal such
  // as "10" or "16#FF". Names compare without case.
  std::map<std::string, std::string> constants;
  // A program that needs more memory than this is refused.
  std::uint64_t memory_limit = 64ULL << 20U;
  // Adds a data block "NAME_DB" for each function block and type NAME of which no data block is an instance,
  // so that sources without data blocks have variables too.
  bool instances = false;
  // Lets clients read and write every variable, whatever ExternalAccessible,
  // ExternalWritable and READ_ONLY say.
  bool accessible = false;
};

// Loads all files, then resolves names, so that their order does not matter except for the order of the
// blocks in the result. Throws SourceError; nothing else is thrown for bad input. Warnings, one line each in
// the form of an error, are appended to *warnings unless it is null.
Program load_program(std::span<const std::filesystem::path> files, const LoadOptions& options = {},
                     std::vector<std::string>* warnings = nullptr);

// The same from one text in memory; name stands for the file in messages.
Program load_text(std::string_view text, std::string_view name, const LoadOptions& options = {},
                  std::vector<std::string>* warnings = nullptr);

}  // namespace ostravel::plc
