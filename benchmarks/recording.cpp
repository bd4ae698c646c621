// SPDX-License-Identifier: MIT
#include "benchmarks/recording.h"

#include <mutex>
#include <string>

namespace {

std::mutex lines_mutex;  // connection threads record too
std::string lines;

}  // namespace

void bench::record(const char* function, const char* text, std::int64_t a, std::int64_t b, std::int64_t c,
                   std::int64_t d) {
  const std::lock_guard one_at_a_time(lines_mutex);
  lines += std::string(function) + " " + text;
  for (const std::int64_t number : {a, b, c, d}) lines += " " + std::to_string(number);
  lines += "\n";
}

const char* bench_recorded() {
  return lines.c_str();
}

void bench_forget() {
  lines.clear();
}
