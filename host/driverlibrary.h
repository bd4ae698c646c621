// SPDX-License-Identifier: MIT
// The driver as a runtime has it: a shared library and its entry points, looked up by name.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "driver/hostrecords.h"

namespace ostravel::host {

// Throws NoDriver when the library cannot be loaded or lacks an entry point, with one line that says which.
class DriverLibrary {
 public:
  explicit DriverLibrary(const std::filesystem::path& path);
  DriverLibrary(const DriverLibrary&) = delete;
  DriverLibrary& operator=(const DriverLibrary&) = delete;
  // Never unloaded: a connection thread of the driver may still be at work when the host is done with it.
  ~DriverLibrary() = default;

// NOLINTNEXTLINE(bugprone-macro-parentheses): the arguments are declarations
#define OSTRAVEL_ENTRY_POINT(name, result, arguments) result(*name) arguments = nullptr;
#include "host/entrypoints.def"
#undef OSTRAVEL_ENTRY_POINT

  // An exported function that is no entry point; null when there is none.
  void* find(const char* name) const;

 private:
  void* handle_ = nullptr;
};

// Loads a library so that a later look-up of its SONAME, such as the driver's of the communication library,
// is satisfied by it. Throws NoDriver.
void preload_library(const std::filesystem::path& path);

struct NoDriver : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// What the driver says of itself.
struct DriverDescription {
  std::string name;
  DRIVER_ATTRIBUTE attribute;
  std::vector<std::vector<std::string>> device_table;  // up to 15 cells a row, empty ones at the end left out
  std::vector<std::vector<std::string>> size_limits;   // up to 9 cells a row
};
DriverDescription describe(const DriverLibrary& driver);

// The runtime's number of a data type, -1 when the driver names none.
int runtime_type_number(const DriverLibrary& driver, BYTE data_type);

}  // namespace ostravel::host
