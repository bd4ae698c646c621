// SPDX-License-Identifier: MIT
#include "host/record/timestamp.h"

#include <fmt/format.h>

#include <charconv>

namespace ostravel::host::record {
namespace {

// Takes digits and signs from the front of a text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  std::optional<int> digits(std::size_t count) {
    int value = 0;
    if (text_.size() < count) {
      return std::nullopt;
    }
    const auto [end, error] = std::from_chars(text_.data(), text_.data() + count, value);
    if (error != std::errc() || end != text_.data() + count || text_.front() == '-') {
      return std::nullopt;
    }
    text_.remove_prefix(count);
    return value;
  }

  bool one_of(std::string_view signs) {
    if (text_.empty() || signs.find(text_.front()) == std::string_view::npos) {
      return false;
    }
    taken_ = text_.front();
    text_.remove_prefix(1);
    return true;
  }

  // Decimals of a second as milliseconds; what is finer is dropped.
  int milliseconds() {
    int value = 0;
    int weight = 100;
    while (!text_.empty() && text_.front() >= '0' && text_.front() <= '9') {
      value += (text_.front() - '0') * weight;
      weight /= 10;
      text_.remove_prefix(1);
    }
    return value;
  }

  char taken() const { return taken_; }
  bool done() const { return text_.empty(); }

 private:
  std::string_view text_;
  char taken_ = 0;
};

// Nothing when what is left is no zone.
std::optional<std::chrono::minutes> zone(Scanner& scanner) {
  if (scanner.done() || (scanner.one_of("Zz") && scanner.done())) {
    return std::chrono::minutes(0);
  }
  if (!scanner.one_of("+-")) {
    return std::nullopt;
  }
  const int sign = scanner.taken() == '-' ? -1 : 1;
  const auto hours = scanner.digits(2);
  scanner.one_of(":");
  const auto minutes = scanner.digits(2);
  if (!hours || !minutes || !scanner.done()) {
    return std::nullopt;
  }
  return std::chrono::minutes(sign * (*hours * 60 + *minutes));
}

}  // namespace

Moment now() {
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

std::string iso_text(Moment moment) {
  const auto day = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(moment - day);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}Z", static_cast<int>(date.year()),
                     static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                     time.hours().count(), time.minutes().count(), time.seconds().count(),
                     time.subseconds().count());
}

std::optional<Moment> parse_iso(std::string_view text) {
  Scanner scanner(text);
  const auto year = scanner.digits(4);
  const bool dash = scanner.one_of("-");
  const auto month = scanner.digits(2);
  const bool second_dash = scanner.one_of("-");
  const auto day = scanner.digits(2);
  const bool between = scanner.one_of("Tt ");
  const auto hour = scanner.digits(2);
  const bool colon = scanner.one_of(":");
  const auto minute = scanner.digits(2);
  const bool second_colon = scanner.one_of(":");
  const auto second = scanner.digits(2);
  if (!year || !dash || !month || !second_dash || !day || !between || !hour || !colon || !minute ||
      !second_colon || !second) {
    return std::nullopt;
  }
  const int fraction = scanner.one_of(".,") ? scanner.milliseconds() : 0;
  const auto offset = zone(scanner);
  const std::chrono::year_month_day date(std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day)));
  if (!offset || !date.ok() || *hour > 23 || *minute > 59 || *second > 60) {
    return std::nullopt;
  }
  return Moment(std::chrono::sys_days(date)) + std::chrono::hours(*hour) + std::chrono::minutes(*minute) +
         std::chrono::seconds(*second) + std::chrono::milliseconds(fraction) - *offset;
}

}  // namespace ostravel::host::record
