// SPDX-License-Identifier: MIT
#include "aglink/functiontable.h"

#include <algorithm>
#include <bit>
#include <type_traits>

#include "aglink/AGLink40.h"

namespace aglink {
namespace {

// AGL40_LIB_NOT_LOADED converted to the result type and extended to 64 bits as the type's sign asks for.
template <typename Result>
consteval std::uint64_t notLoadedBits() {
  if constexpr (std::is_floating_point_v<Result>) {
    return std::bit_cast<std::uint32_t>(static_cast<Result>(AGL40_LIB_NOT_LOADED));
  } else {
    return static_cast<std::uint64_t>(static_cast<Result>(AGL40_LIB_NOT_LOADED));
  }
}

template <typename Result, Failure failure>
consteval std::uint64_t failureBits() {
  static_assert(std::is_void_v<Result> == (failure == Failure::Nothing));
  if constexpr (failure == Failure::NotLoaded) {
    return notLoadedBits<Result>();
  } else {
    return 0;
  }
}

constexpr std::array<LibraryFunction, 581> kTable{{
#define AGL_FUNCTION(Result, Name, OnFailure, LookedUp, Parameters)  \
  LibraryFunction{#Name, true, Lookup::LookedUp, Failure::OnFailure, \
                  failureBits<Result, Failure::OnFailure>()},
#define AGL_LOCAL_FUNCTION(Result, Name, Parameters) \
  LibraryFunction{#Name, false, Lookup::Resolved, Failure::Nothing, 0},
#include "aglink/functions.def"
}};

// A row too few would leave a null name at the end, a row too many does not compile.
static_assert(kTable.back().name != nullptr);
static_assert(std::count_if(kTable.begin(), kTable.end(),
                            [](const LibraryFunction& f) { return f.forwarded; }) == 576);
static_assert(std::count_if(kTable.begin(), kTable.end(),
                            [](const LibraryFunction& f) { return f.lookup == Lookup::Resolved; }) == 443);

}  // namespace

constinit const std::array<LibraryFunction, 581> functionTable = kTable;

}  // namespace aglink
