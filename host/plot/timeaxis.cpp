// SPDX-License-Identifier: MIT
#include "host/plot/timeaxis.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ctime>

namespace ostravel::host::plot {
namespace {

constexpr std::int64_t kSecond = 1000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

constexpr std::array kSteps{std::int64_t{1},
                            std::int64_t{2},
                            std::int64_t{5},
                            std::int64_t{10},
                            std::int64_t{20},
                            std::int64_t{50},
                            std::int64_t{100},
                            std::int64_t{200},
                            std::int64_t{500},
                            kSecond,
                            2 * kSecond,
                            5 * kSecond,
                            10 * kSecond,
                            15 * kSecond,
                            30 * kSecond,
                            kMinute,
                            2 * kMinute,
                            5 * kMinute,
                            10 * kMinute,
                            15 * kMinute,
                            30 * kMinute,
                            kHour,
                            2 * kHour,
                            3 * kHour,
                            6 * kHour,
                            12 * kHour,
                            kDay,
                            2 * kDay,
                            7 * kDay,
                            14 * kDay};

std::int64_t floor_to(std::int64_t value, std::int64_t step) {
  const auto rest = value % step;
  return value - (rest < 0 ? rest + step : rest);
}

// time is that of the zone's clock.
std::string label(std::int64_t time, std::int64_t step, std::int64_t span) {
  const Moment moment{std::chrono::milliseconds(time)};
  const auto text = record::iso_text(moment);  // 2024-03-05T13:14:15.500Z
  if (step < kSecond) {
    return text.substr(11, 12);
  }
  if (step >= kDay) {
    return span >= 300 * kDay ? text.substr(0, 10) : text.substr(5, 5);
  }
  if (span >= kDay) {
    return text.substr(5, 5) + " " + text.substr(11, 5);
  }
  return text.substr(11, step < kMinute ? 8 : 5);
}

std::vector<std::int64_t> multiples(std::int64_t from, std::int64_t to, std::int64_t step) {
  std::vector<std::int64_t> times;
  for (auto time = floor_to(from - 1, step) + step; time <= to; time += step) {
    times.push_back(time);
  }
  return times;
}

// The first of every month, quarter, half year, year, or of every so many years.
std::vector<std::int64_t> month_starts(std::int64_t from, std::int64_t to, int at_most) {
  using namespace std::chrono;
  const auto month_of = [](std::int64_t time) {
    const year_month_day day(floor<days>(Moment(milliseconds(time))));
    return static_cast<int>(day.year()) * 12 + static_cast<int>(static_cast<unsigned>(day.month())) - 1;
  };
  const int first = month_of(from);
  const int last = month_of(to);
  int step = 1;
  for (const int next : {3, 6, 12}) {
    step = (last - first) / step + 1 > std::max(at_most, 1) ? next : step;
  }
  while ((last - first) / step + 1 > std::max(at_most, 1)) {
    step *= 2;
  }
  std::vector<std::int64_t> times;
  for (int number = (first + step - 1) / step * step; number <= last; number += step) {
    const auto day = year(number / 12) / month(static_cast<unsigned>(number % 12 + 1)) / 1;
    const auto time = Moment(sys_days(day)).time_since_epoch().count();
    if (time >= from && time <= to) {
      times.push_back(time);
    }
  }
  return times;
}

}  // namespace

std::chrono::minutes local_offset(Moment moment) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
  const auto time = static_cast<std::time_t>(seconds);
  std::tm local{};
  localtime_r(&time, &local);
  return std::chrono::minutes(local.tm_gmtoff / 60);
}

TimeAxis time_axis(Moment begin, Moment end, int at_most, std::chrono::minutes offset) {
  if (end <= begin) {
    begin -= std::chrono::milliseconds(500);
    end = begin + std::chrono::milliseconds(1000);
  }
  const auto shift = std::chrono::milliseconds(offset).count();
  const auto from = begin.time_since_epoch().count() + shift;
  const auto to = end.time_since_epoch().count() + shift;
  const auto fits = [&](std::int64_t step) { return (to - from) / step + 1 <= std::max(at_most, 1); };
  const auto* found = std::find_if(kSteps.begin(), kSteps.end(), fits);
  const auto sign = offset.count() < 0 ? '-' : '+';
  const auto minutes = std::abs(offset.count());
  TimeAxis axis{begin, end, {}, "UTC"};
  if (minutes != 0) {
    axis.zone += fmt::format("{}{:02}:{:02}", sign, minutes / 60, minutes % 60);
  }
  const auto times = found == kSteps.end() ? month_starts(from, to, at_most) : multiples(from, to, *found);
  for (const auto time : times) {
    const auto step = found == kSteps.end() ? 30 * kDay : *found;
    axis.ticks.push_back({Moment(std::chrono::milliseconds(time - shift)), label(time, step, to - from)});
  }
  return axis;
}

}  // namespace ostravel::host::plot
