// SPDX-License-Identifier: MIT
// Failures inside the stand-in are exceptions; at the edge of the library they become its result codes.
#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <new>
#include <optional>
#include <string_view>

#include "simulator/standin/agltypes.h"

namespace ostravel::standin {

enum class Error : agl_int32_t {
#define STANDIN_ERROR(name, code, text) name = static_cast<agl_int32_t>(code),
#include "simulator/standin/errors.def"
#undef STANDIN_ERROR
};

constexpr agl_int32_t code_of(Error error) {
  return static_cast<agl_int32_t>(error);
}

// Nothing for a code that the stand-in does not use; 0 has a text too.
std::optional<std::string_view> text_of(agl_int32_t code);

struct Failure : std::exception {
  explicit Failure(Error why) : error(why) {}
  const char* what() const noexcept override { return "stand-in failure"; }
  Error error;
};

inline void require(bool condition, Error otherwise) {
  if (!condition) throw Failure(otherwise);
}

// Adds the time of a call to that which its thread has spent in the library.
class Stay {
 public:
  Stay() = default;
  ~Stay() { spent_ += std::chrono::steady_clock::now() - start_; }
  Stay(const Stay&) = delete;
  Stay& operator=(const Stay&) = delete;

  static std::chrono::nanoseconds spent() { return spent_; }

 private:
  static inline thread_local std::chrono::nanoseconds spent_{0};
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// Runs the body of an exported function; no exception leaves the library.
template <typename Body>
agl_int32_t guarded(Body&& body) noexcept {
  const Stay stay;
  try {
    body();
    return 0;
  } catch (const Failure& failure) {
    return code_of(failure.error);
  } catch (const std::bad_alloc&) {
    return code_of(Error::OutOfMemory);
  } catch (...) {
    return code_of(Error::Internal);
  }
}

}  // namespace ostravel::standin
