// SPDX-License-Identifier: MIT
#include <ctime>

#include "driver/driver.h"

std::int64_t GetCurSystemUS_Tick() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC_RAW, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1'000'000 + now.tv_nsec / 1000;
}

std::uint32_t GetCurSystemMS_Tick() {
  return static_cast<std::uint32_t>(GetCurSystemUS_Tick() / 1000);
}
