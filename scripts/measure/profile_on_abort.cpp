// SPDX-License-Identifier: MIT
// Linked into the test programs whose coverage is measured: a process that aborts, as those of death tests do
// by design, leaves its counters all the same.
#include <csignal>

// Weak: the configuration links programs without counters, too.
extern "C" [[gnu::weak]] int __llvm_profile_write_file();

namespace {

void write_and_abort(int signal) {
  std::signal(signal, SIG_DFL);
  if (__llvm_profile_write_file != nullptr) __llvm_profile_write_file();
  std::raise(signal);
}

[[maybe_unused]] const auto installed = std::signal(SIGABRT, write_and_abort);

}  // namespace
