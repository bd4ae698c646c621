// SPDX-License-Identifier: MIT
#include "host/check/library.h"

#include <fmt/format.h>

#include <array>
#include <cstring>
#include <utility>

#include "host/driverlibrary.h"

namespace ostravel::host::check {

Library::Library(const Find& find, const std::string& source) {
// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a name
#define OSTRAVEL_LIBRARY_FUNCTION(name)                                                                \
  name = reinterpret_cast<decltype(name)>(find("AGL_" #name));                                         \
  if (name == nullptr) {                                                                               \
    throw NoDriver(fmt::format(                                                                        \
        "{}: has no AGL_" #name "; check needs a driver that shows the library's functions", source)); \
  }
#include "host/check/functions.def"
#undef OSTRAVEL_LIBRARY_FUNCTION
  // NOLINTEND(bugprone-macro-parentheses)
}

std::string Library::text_of(agl_int32_t code) const {
  const auto number = fmt::format("0x{:08X}", static_cast<std::uint32_t>(code));
  if (code == AGL40_LIB_NOT_LOADED) {
    return fmt::format("the communication library, or this function of it, is missing ({})", number);
  }
  std::array<char, 256> text{};
  const bool known = GetErrorMsg(code, text.data(), static_cast<agl_int32_t>(text.size())) == AGL40_SUCCESS;
  const std::string words(text.data(), strnlen(text.data(), text.size()));
  return known && !words.empty() ? fmt::format("{} ({})", words, number) : fmt::format("error {}", number);
}

LibraryHandle& LibraryHandle::operator=(LibraryHandle&& other) noexcept {
  std::swap(library_, other.library_);
  std::swap(value_, other.value_);
  return *this;
}

LibraryHandle::~LibraryHandle() {
  if (value_ != 0) {
    library_->Symbolic_FreeHandle(value_);
  }
}

}  // namespace ostravel::host::check
