// SPDX-License-Identifier: MIT
// How the sanitizers of all targets work. An allocation beyond the limit fails as it would on a panel: the
// driver answers a refused access buffer by std::bad_alloc, and everything else that asks for so much is a
// finding, since no input is long enough to justify it.
// What a failed assertion leaves behind is freed without knowing how it was allocated: see outcome.cpp.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1:max_allocation_size_mb=64:quarantine_size_mb=8:malloc_context_size=4:"
         "detect_stack_use_after_return=0:handle_abort=1:alloc_dealloc_mismatch=0";
}

extern "C" const char* __ubsan_default_options();
extern "C" const char* __ubsan_default_options() {
  return "print_stacktrace=1";
}
