// SPDX-License-Identifier: MIT
// The state that the loader and the forwarding functions share. Private to aglink, and hidden in the driver's
// shared object so that the forwarding functions reach it without a detour through the global offset table.
//
// hLib and the pointers are read without a lock by every forwarding function. Two threads that load at the
// same time store the same values, so atomic stores and loads are all that keeps this free of a data race.
#ifndef OSTRAVEL_AGLINK_BINDING_H_
#define OSTRAVEL_AGLINK_BINDING_H_

#include <cstdint>

#define AGL_PRIVATE __attribute__((visibility("hidden")))

extern "C" {

// What dlopen returned; null while no library is open.
extern AGL_PRIVATE void* hLib;

// All pointers pAGL_* and pAGLSym_* as one array, in the order of functions.def. Defined in forwarding.S.
extern AGL_PRIVATE void* aglPointers[581];

// Where the first call of a function goes on to.
struct AglDestination {
  void* function;             // null: return failureBits instead of calling
  std::uint64_t failureBits;  // the failure value, for the integer and for the floating-point result register
};

// Loads the library for the function whose pointer is at `pointer` (an element of aglPointers). firstArgument
// is the caller's first integer argument, which some functions hand back when they cannot be reached. The
// shared slow path in forwarding_*.inc calls this with all argument registers saved.
AGL_PRIVATE AglDestination aglReachFunction(void* const* pointer, std::uint64_t firstArgument);

}  // extern "C"

namespace aglink {

template <typename Pointer>
Pointer load(const Pointer& shared) {
  return __atomic_load_n(&shared, __ATOMIC_ACQUIRE);
}

template <typename Pointer>
void store(Pointer& shared, Pointer value) {
  __atomic_store_n(&shared, value, __ATOMIC_RELEASE);
}

}  // namespace aglink

#endif  // OSTRAVEL_AGLINK_BINDING_H_
