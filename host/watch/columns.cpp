// SPDX-License-Identifier: MIT
#include "host/watch/columns.h"

#include <algorithm>
#include <array>

namespace ostravel::host::watch {
namespace {

constexpr std::size_t kQuality = 12;  // "13 not ready"
constexpr std::size_t kAge = 4;       // "59s", "12m"
constexpr std::size_t kRate = 5;      // "CH/S" and the mark of sorting
constexpr std::size_t kLeastTag = 16;
constexpr std::size_t kLeastValue = 10;
constexpr std::size_t kHeadingType = 5;  // likewise "TYPE"
constexpr std::size_t kMostType = 8;

std::size_t trend_for(std::size_t screen) {
  constexpr std::size_t kNarrow = 90;
  constexpr std::size_t kMiddle = 130;
  constexpr std::size_t kWide = 180;
  return screen < kNarrow ? 12 : screen < kMiddle ? 20 : screen < kWide ? 30 : 60;
}

std::size_t with_gap(std::size_t width) {
  return width == 0 ? 0 : width + Columns::kGap;
}

}  // namespace

Columns columns_for(std::size_t screen, std::size_t widest_label, std::size_t widest_type) {
  Columns columns;
  columns.quality = kQuality;
  columns.age = kAge;
  columns.rate = kRate;
  columns.type = std::clamp(widest_type, kHeadingType, kMostType);
  columns.trend = trend_for(screen);
  const auto fixed = [&columns] {
    return Columns::kGap + with_gap(columns.type) + with_gap(columns.quality) + with_gap(columns.age) +
           with_gap(columns.rate) + with_gap(columns.trend);
  };
  const auto given_up = std::to_array<std::size_t*>(
      {&columns.trend, &columns.rate, &columns.type, &columns.age, &columns.quality});
  for (auto* column : given_up) {
    if (fixed() + kLeastTag + kLeastValue <= screen) {
      break;
    }
    *column = 0;
  }
  const auto rest = screen > fixed() ? screen - fixed() : 0;
  columns.tag = std::min(std::max(widest_label, kLeastTag), std::max(kLeastTag, rest * 3 / 5));
  columns.tag = std::min(columns.tag, rest);
  columns.value = rest - columns.tag;
  return columns;
}

}  // namespace ostravel::host::watch
