// SPDX-License-Identifier: MIT
// The shipped driver on the null library, as the bench programs use it.
#pragma once

#include <string>

#include "benchmarks/libraryfunctions.h"
#include "driver/hostrecords.h"

namespace bench {

class Driver {
 public:
  // Throws std::runtime_error, with one line, for a library that cannot be loaded or lacks a name. The null
  // library is loaded first: it then is what the driver finds by the communication library's name.
  Driver(const std::string& driver_file, const std::string& null_library_file);

// NOLINTNEXTLINE(bugprone-macro-parentheses): the arguments are declarations
#define OSTRAVEL_ENTRY_POINT(name, result, arguments) result(*name) arguments = nullptr;
#include "host/entrypoints.def"
#undef OSTRAVEL_ENTRY_POINT

  decltype(&AGL_Symbolic_FreeHandle) forwarded = nullptr;  // the driver's own FreeHandle
  LibraryFunctions library;                                // the null library's functions
  // Of the recording form of the null library; null in the other one.
  const char* (*recorded)() = nullptr;
  void (*forget)() = nullptr;
};

}  // namespace bench
