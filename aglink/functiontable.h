// SPDX-License-Identifier: MIT
// functions.def as a table of constants, for the loader and for the first call of a function. Private to
// aglink.
#ifndef OSTRAVEL_AGLINK_FUNCTIONTABLE_H_
#define OSTRAVEL_AGLINK_FUNCTIONTABLE_H_

#include <array>
#include <cstdint>

namespace aglink {

enum class Failure { NotLoaded, Zero, FirstArgument, Nothing };
enum class Lookup { Resolved, Unresolved };

struct LibraryFunction {
  const char* name;
  bool forwarded;  // false for those that this project answers itself
  Lookup lookup;
  Failure failure;
  std::uint64_t failureBits;  // the failure value as its register holds it; 0 for FirstArgument and Nothing
};

// One entry a row, so that an index into this table is an index into aglPointers (binding.h) as well.
extern const std::array<LibraryFunction, 581> functionTable;

}  // namespace aglink

#endif  // OSTRAVEL_AGLINK_FUNCTIONTABLE_H_
