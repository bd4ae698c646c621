// SPDX-License-Identifier: MIT
#include "host/watch/wording.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/reference/statuscatalogue.h"
#include "host/table.h"

namespace ostravel::host::watch {
namespace {

// The double that a REAL became has digits that the REAL never had.
std::string real_text(const nlohmann::json& value) {
  return value.is_number_float() ? fmt::format("{}", static_cast<float>(value.get<double>()))
                                 : value_text(value);
}

}  // namespace

std::string shown_value(const Row& row) {
  const auto& value = row.value();
  if (row.type() != "REAL") {
    return value_text(value);
  }
  if (!value.is_array()) {
    return real_text(value);
  }
  std::string text = "[";
  for (const auto& element : value) {
    text += (text.size() > 1 ? "," : "") + real_text(element);
  }
  return text + "]";
}

std::string quality_text(const Row& row) {
  return fmt::format("{} {}", row.error(), input_status_name(row.error()));
}

Explanation explain(const Row& row, LinkState link) {
  const bool by_device = !row.is_good() && link != LinkState::Online;
  const auto* entry = by_device ? find_status(StatusSource::Host, static_cast<std::uint32_t>(link))
                                : find_status(StatusSource::Input, row.error());
  return entry == nullptr ? Explanation{"the catalogue does not know this status", "see ostravel-host status"}
                          : Explanation{entry->cause, entry->remedy};
}

std::string age_text(std::optional<std::chrono::milliseconds> age) {
  if (!age) {
    return "-";
  }
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(*age).count();
  constexpr std::int64_t kMinute = 60;
  constexpr std::int64_t kHour = 60 * kMinute;
  constexpr std::int64_t kDay = 24 * kHour;
  if (seconds < kMinute) {
    return fmt::format("{}s", seconds);
  }
  if (seconds < kHour) {
    return fmt::format("{}m", seconds / kMinute);
  }
  return seconds < kDay ? fmt::format("{}h", seconds / kHour)
                        : fmt::format("{}d", std::min<std::int64_t>(seconds / kDay, 999));
}

std::string rate_text(std::optional<double> rate) {
  constexpr double kOneDigit = 9.95;
  constexpr double kFourCells = 1000;
  if (!rate) {
    return "-";
  }
  if (*rate >= kFourCells) {
    return "1k+";
  }
  return *rate < kOneDigit ? fmt::format("{:.1f}", *rate) : fmt::format("{:.0f}", *rate);
}

std::string time_text(std::chrono::microseconds time) {
  constexpr double kSecond = 1e6;
  constexpr double kTenMilliseconds = 1e4;
  const auto count = static_cast<double>(time.count());
  if (count > 0 && count < kTenMilliseconds) {
    return fmt::format("{:.1f} ms", count / 1000);
  }
  return count < kSecond ? fmt::format("{:.0f} ms", count / 1000) : fmt::format("{:.4g} s", count / kSecond);
}

std::string count_text(std::size_t count) {
  auto text = std::to_string(count);
  for (auto i = static_cast<std::ptrdiff_t>(text.size()) - 3; i > 0; i -= 3) {
    text.insert(text.begin() + i, ',');
  }
  return text;
}

std::string device_text(const DeviceState& device) {
  auto text = (device.name.empty() ? device.address : device.name) + " " + to_text(device.link);
  if (device.link != LinkState::Online && device.attempts > 0) {
    text += fmt::format(" (attempt {})", device.attempts);
  }
  return text;
}

}  // namespace ostravel::host::watch
