// SPDX-License-Identifier: MIT
// The communication library's functions, as the driver shows them to whoever looks them up by name.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

#include "aglink/AGLink40.h"

namespace ostravel::host::check {

// A function of the library failed; what() is one line with the library's own words.
struct LibraryFailure : std::runtime_error {
  LibraryFailure(const std::string& text, agl_int32_t failure) : std::runtime_error(text), code(failure) {}
  agl_int32_t code;
};

class Library {
 public:
  // Gives the address of a function, null when there is none.
  using Find = std::function<void*(const char*)>;

  // Throws NoDriver when a function is missing; source names in it what was asked.
  Library(const Find& find, const std::string& source);

// NOLINTNEXTLINE(bugprone-macro-parentheses): the argument is a name
#define OSTRAVEL_LIBRARY_FUNCTION(name) decltype(&::AGL_##name) name = nullptr;
#include "host/check/functions.def"
#undef OSTRAVEL_LIBRARY_FUNCTION

  // "path leads to no symbol (0xFFE10041)": the library's words where it has some, always with the code.
  std::string text_of(agl_int32_t code) const;
};

// A handle of the library, freed with it.
class LibraryHandle {
 public:
  LibraryHandle() = default;
  LibraryHandle(const Library& library, HandleType value) : library_(&library), value_(value) {}
  LibraryHandle(LibraryHandle&& other) noexcept : library_(other.library_), value_(other.value_) {
    other.value_ = 0;
  }
  LibraryHandle& operator=(LibraryHandle&& other) noexcept;
  ~LibraryHandle();

  HandleType get() const { return value_; }
  explicit operator bool() const { return value_ != 0; }

 private:
  const Library* library_ = nullptr;
  HandleType value_ = 0;
};

}  // namespace ostravel::host::check
