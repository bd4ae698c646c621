// SPDX-License-Identifier: MIT
// A communication library inside the target. By itself it answers honestly for a few variables; with lies,
// each of its functions takes a byte of them and may fail, tell odd numbers, or both. It uses every byte of
// every buffer that it is handed as a library may, and remembers what it said last: a driver may end by
// exception or assertion only after certain answers.
//
// Variables are named KIND or KIND.ANYTHING, KIND being a name of kinds() and a form: none for a scalar, A
// for an array from 0, N and P for one from a negative and from a positive index, M for a matrix. Behind an
// index one element is meant.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "aglink/AGLink40.h"
#include "fuzzing/support/input.h"

namespace fuzz {

struct Kind {
  std::string_view name;
  ValueType_t::enum_t value_type;
  SystemType_t::enum_t system_type;
  agl_int32_t size;  // bytes of an element
};
std::span<const Kind> kinds();

class Library {
 public:
  // Puts its functions into the binding, once a program.
  static Library& installed();

  // A new world without handles. lies may be null; it must outlive the world.
  void begin(Input* lies);
  // The next loads from file, PLC or job of an honest library fail.
  bool file_loads = false;
  bool plc_loads = true;
  bool jobs_succeed = true;

  // What was said since clear_said.
  struct Said {
    agl_int32_t first_value_type = -1;  // that the driver saw
    agl_int32_t value_type = -1;        // the last one, and so on
    agl_int32_t system_result = 0;
    agl_int32_t system_type = -1;
    agl_int32_t string_result = 0;
    agl_int32_t string_size = 0;
    std::int64_t bytes = 0;  // all sizes of buffers and texts in sum: what the driver may try to allocate
    bool any_value_type = false;
  } said;

  // For the functions.
  struct Opened {
    const Kind* kind = nullptr;
    char form = 0;  // 0 for an element or a scalar
  };
  enum class Answer { Honest, Fail, Odd, FailAndOdd };
  Answer next();
  agl_int32_t odd_number();
  HandleType open(std::string_view path);  // 0: unknown
  const Opened* opened(HandleType handle) const;
  std::uint64_t pattern() { return pattern_ += 0x9E3779B97F4A7C15U; }

 private:
  Input* lies_ = nullptr;
  std::uint8_t choice_ = 0;
  std::vector<Opened> opened_;
  std::uint64_t pattern_ = 0;
};

inline constexpr HandleType kRoot = 0x1'0000'0007;
inline constexpr agl_int32_t kUnknown = -1001;

// Bounds of the forms.
inline constexpr agl_int32_t kElements = 6;

// Touches the ends of the memory, and with bytes of its own when it is the library's to fill.
void read_memory(const void* memory, std::int64_t size);
void fill_memory(void* memory, std::int64_t size, std::uint64_t pattern);

// Puts the functions that get and set elements into the binding.
void install_element_functions();

// Answers with one number.
template <class T>
agl_int32_t tell(Library& library, T honest, T* out) {
  switch (library.next()) {
    case Library::Answer::Honest:
      *out = honest;
      return AGL40_SUCCESS;
    case Library::Answer::Fail:
      return library.odd_number() | 1;
    case Library::Answer::Odd:
      *out = static_cast<T>(library.odd_number());
      return AGL40_SUCCESS;
    case Library::Answer::FailAndOdd:
      *out = static_cast<T>(library.odd_number());
      return kUnknown;
  }
  return AGL40_SUCCESS;
}

}  // namespace fuzz
