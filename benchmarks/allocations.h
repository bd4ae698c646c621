// SPDX-License-Identifier: MIT
// Counts the heap allocations of the program that it is linked into, those of its libraries included.
#pragma once

namespace bench {

// Blocks asked for since the start: malloc, calloc, realloc, aligned blocks, and with them operator new.
unsigned long allocations();

}  // namespace bench
