// SPDX-License-Identifier: MIT
#include "host/driverlibrary.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <array>
#include <cstring>

namespace ostravel::host {
namespace {

// Tables have as many rows as the driver has types; a driver that knows more than these would write past
// them, so there is ample room.
constexpr std::size_t kTableRows = 256;

void* load(const std::filesystem::path& path, int flags) {
  void* handle = dlopen(path.c_str(), flags);
  if (handle == nullptr) {
    const char* reason = dlerror();
    throw NoDriver(fmt::format("{}: cannot be loaded: {}", path.string(), reason));
  }
  return handle;
}

template <std::size_t Cells, std::size_t Width>
std::vector<std::vector<std::string>> texts(const char (*table)[Cells][Width], int rows) {
  std::vector<std::vector<std::string>> result;
  for (int row = 0; row < rows && row < static_cast<int>(kTableRows); ++row) {
    std::vector<std::string> cells;
    for (const auto& cell : table[row]) {
      cells.emplace_back(cell, strnlen(cell, Width));
    }
    while (!cells.empty() && cells.back().empty()) {
      cells.pop_back();
    }
    result.push_back(std::move(cells));
  }
  return result;
}

}  // namespace

DriverLibrary::DriverLibrary(const std::filesystem::path& path)
    : handle_(load(std::filesystem::absolute(path), RTLD_NOW | RTLD_LOCAL)) {
// NOLINTBEGIN(bugprone-macro-parentheses): the arguments are declarations
#define OSTRAVEL_ENTRY_POINT(name, result, arguments)                                                   \
  name = reinterpret_cast<result(*) arguments>(dlsym(handle_, "KORVALE_DRV_" #name));                   \
  if (name == nullptr) {                                                                                \
    throw NoDriver(                                                                                     \
        fmt::format("{}: has no entry point KORVALE_DRV_" #name "; is it the driver?", path.string())); \
  }
#include "host/entrypoints.def"
#undef OSTRAVEL_ENTRY_POINT
  // NOLINTEND(bugprone-macro-parentheses)
}

void* DriverLibrary::find(const char* name) const {
  return dlsym(handle_, name);
}

void preload_library(const std::filesystem::path& path) {
  load(std::filesystem::absolute(path), RTLD_NOW | RTLD_GLOBAL);
}

DriverDescription describe(const DriverLibrary& driver) {
  DriverDescription description{};
  driver.GetAttributeEx(&description.attribute);
  const auto& name = description.attribute.cName;
  description.name.assign(name, strnlen(name, sizeof(name)));

  std::vector<std::array<std::array<char, 30>, 15>> devices(kTableRows);
  auto* device_table = reinterpret_cast<char(*)[15][30]>(devices.data());
  int rows = 0;
  driver.GetDeviceTableEx(device_table, &rows);
  description.device_table = texts<15, 30>(device_table, rows);

  std::vector<std::array<std::array<char, 10>, 9>> limits(kTableRows);
  auto* limit_table = reinterpret_cast<char(*)[9][10]>(limits.data());
  rows = 0;
  driver.GetCommandSizeLimitInfo(limit_table, &rows);
  description.size_limits = texts<9, 10>(limit_table, rows);
  return description;
}

int runtime_type_number(const DriverLibrary& driver, BYTE data_type) {
  std::array<BYTE, kTagDataBlockSize> block{};
  block[kTagDataTypeOffset] = data_type;
  int number = -1;
  driver.GetDataType(block.data(), nullptr, number);
  return number;
}

}  // namespace ostravel::host
