// SPDX-License-Identifier: MIT
// The pointers, and one forwarding function for each row of functions.def. They are in assembly since nobody
// here knows the parameters of most functions: a jump passes on every register and the stack as the caller
// left them. The processor's own file brings two macros: `forward name` makes a forwarding function,
// `first_call` the path that all of them share as long as the library's function is not known.
#if defined(__x86_64__)
#include "aglink/forwarding_x86_64.inc"
#elif defined(__aarch64__)
#include "aglink/forwarding_aarch64.inc"
#else
#error "No forwarding functions for this processor: add a file like forwarding_aarch64.inc"
#endif

// The local name spares the forwarding functions the global offset table, which the exported one would need.
.macro pointer name
  .globl p\name
  .type p\name, %object
  .size p\name, 8
p\name:
.Lpointer_\name:
  .zero 8
.endm

  .bss
  .balign 8
  .globl aglPointers
  .hidden aglPointers
  .type aglPointers, %object
aglPointers:
#define AGL_FUNCTION(Result, Name, Failure, Lookup, Parameters) pointer Name
#define AGL_LOCAL_FUNCTION(Result, Name, Parameters) pointer Name
#include "aglink/functions.def"
  .size aglPointers, . - aglPointers

  .hidden hLib
  .hidden aglReachFunction

  .text
  .balign 16
  .type aglFirstCall, %function
aglFirstCall:
  .cfi_startproc
  first_call
  .cfi_endproc
  .size aglFirstCall, . - aglFirstCall

.macro forwarding_function name
  .balign 16
  .globl \name
  .type \name, %function
\name:
  .cfi_startproc
  forward \name
  .cfi_endproc
  .size \name, . - \name
.endm

// The reporting functions are written in C++.
#define AGL_FUNCTION(Result, Name, Failure, Lookup, Parameters) forwarding_function Name
#define AGL_REPORTING_FUNCTION(Result, Name, Failure, Lookup, Parameters)
#include "aglink/functions.def"

  .section .note.GNU-stack, "", %progbits
