// SPDX-License-Identifier: MIT
// What a forwarding function does when its pointer is not there yet, or never will be.
#include <cstddef>

#include "aglink/AGLink40.h"
#include "aglink/binding.h"
#include "aglink/functiontable.h"

AglDestination aglReachFunction(void* const* pointer, std::uint64_t firstArgument) {
  // Deliberately also when the library is open and lacks just this name: nothing marks a name as tried.
  if (LoadDll() >= 1) {
    if (void* const function = aglink::load(*pointer); function != nullptr) return {function, 0};
  }
  const aglink::LibraryFunction& missing =
      aglink::functionTable.at(static_cast<std::size_t>(pointer - aglPointers));
  const bool handsBack = missing.failure == aglink::Failure::FirstArgument;
  return {nullptr, handsBack ? firstArgument : missing.failureBits};
}
