// SPDX-License-Identifier: MIT
#include "tests/plant/withheld.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace ostravel::plant {
namespace {

using std::chrono::nanoseconds;

// The second of the file's three numbers.
nanoseconds delay_in(const char* text) {
  unsigned long long ran = 0;
  unsigned long long waited = 0;
  return nanoseconds(std::sscanf(text, "%llu %llu", &ran, &waited) == 2 ? waited : 0);
}

}  // namespace

nanoseconds withheld_from_this_thread() {
  thread_local const int file = open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC);
  std::array<char, 128> text{};
  return pread(file, text.data(), text.size() - 1, 0) > 0 ? delay_in(text.data()) : nanoseconds(0);
}

void Withheld::look_at(pid_t process) {
  std::error_code gone;
  for (const auto& thread :
       std::filesystem::directory_iterator(fmt::format("/proc/{}/task", process), gone)) {
    std::ifstream file(thread.path() / "schedstat");
    std::string line;
    if (!std::getline(file, line)) continue;
    auto& seen = threads_[static_cast<pid_t>(std::stol(thread.path().filename()))];
    seen = std::max(seen, delay_in(line.c_str()));
  }
}

nanoseconds Withheld::total() const {
  nanoseconds total{0};
  for (const auto& [thread, delay] : threads_) total += delay;
  return total;
}

}  // namespace ostravel::plant
