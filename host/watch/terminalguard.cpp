// SPDX-License-Identifier: MIT
#include "host/watch/terminalguard.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace ostravel::host::watch {
namespace {

constexpr auto kFaults = std::to_array<int>({SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL});

// Everything here is used by signal handlers, so it is plain memory that was filled in before.
struct Saved {
  std::atomic<bool> armed{false};
  int terminal = -1;  // that the screen is drawn on
  int own = -1;       // the same terminal by another descriptor
  int nowhere = -1;
  termios modes{};
  bool has_modes = false;
  std::array<char, 512> farewell{};
  std::size_t farewell_size = 0;
  int real_errors = -1;  // where standard error led; -1 when it is not held back
  int held_errors = -1;
};
Saved saved;

void write_all(int file, const char* data, std::size_t size) {
  while (size > 0) {
    const auto written = write(file, data, size);
    if (written <= 0) {
      return;
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
}

void release_errors() {
  if (saved.real_errors < 0) {
    return;
  }
  dup2(saved.real_errors, STDERR_FILENO);
  lseek(saved.held_errors, 0, SEEK_SET);
  std::array<char, 4096> chunk{};
  for (ssize_t count = 0; (count = read(saved.held_errors, chunk.data(), chunk.size())) > 0;) {
    write_all(STDERR_FILENO, chunk.data(), static_cast<std::size_t>(count));
  }
  close(saved.real_errors);
  close(saved.held_errors);
  saved.real_errors = -1;
}

// For ends that nobody prepared.
void give_back() {
  if (!saved.armed.exchange(false)) {
    return;
  }
  // Another thread may still be drawing; nobody is to see that.
  dup2(saved.nowhere, saved.terminal);
  write_all(saved.own, saved.farewell.data(), saved.farewell_size);
  if (saved.has_modes) {
    tcsetattr(saved.own, TCSANOW, &saved.modes);
  }
  release_errors();
}

void on_fault(int signal) {
  give_back();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void hold_errors() {
  if (isatty(STDERR_FILENO) == 0) {
    return;
  }
  const int held = memfd_create("errors", MFD_CLOEXEC);
  const int real = dup(STDERR_FILENO);
  if (held < 0 || real < 0) {
    close(held);
    close(real);
    return;
  }
  dup2(held, STDERR_FILENO);
  saved.held_errors = held;
  saved.real_errors = real;
}

}  // namespace

TerminalGuard::TerminalGuard(int terminal, const std::string& farewell) {
  saved.terminal = terminal;
  saved.own = fcntl(terminal, F_DUPFD_CLOEXEC, 0);
  saved.nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  saved.has_modes = tcgetattr(terminal, &saved.modes) == 0;
  saved.farewell_size = std::min(farewell.size(), saved.farewell.size());
  std::memcpy(saved.farewell.data(), farewell.data(), saved.farewell_size);
  hold_errors();
  static const bool registered = std::atexit(give_back) == 0;
  saved.armed = registered;
  for (const int fault : kFaults) {
    std::signal(fault, on_fault);
  }
}

TerminalGuard::~TerminalGuard() {
  for (const int fault : kFaults) {
    std::signal(fault, SIG_DFL);
  }
  if (saved.armed.exchange(false)) {
    release_errors();
    close(saved.own);
    close(saved.nowhere);
  }
}

}  // namespace ostravel::host::watch
