// SPDX-License-Identifier: MIT
// The fake's functions that take values out of an access buffer and put them in. Values come from the item,
// not from the buffer; scalars that are put in also go to the buffer, little-endian, at their element.
#pragma once

#include <type_traits>

namespace fake {

// Points a slot of the binding to a function of the fake. Atomic: a connection thread may just look.
template <class Function>
void install(Function*& slot, std::type_identity_t<Function>* function) {
  __atomic_store_n(&slot, function, __ATOMIC_RELEASE);
}

void install_element_functions();

}  // namespace fake
