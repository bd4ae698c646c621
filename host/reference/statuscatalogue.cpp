// SPDX-License-Identifier: MIT
#include "host/reference/statuscatalogue.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string>

namespace ostravel::host {
namespace {

constexpr auto kEntries = std::to_array<StatusEntry>({
#define OSTRAVEL_STATUS(source, written, number, name, cause, remedy) \
  {StatusSource::source, written, number, name, cause, remedy},
#include "host/reference/statuscatalogue.def"
#undef OSTRAVEL_STATUS
});

bool same(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

bool begins_with(std::string_view text, std::string_view beginning) {
  return same(text.substr(0, beginning.size()), beginning);
}

template <typename Number>
std::optional<Number> whole_number(std::string_view text, int base) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  return number;
}

bool is_library(const StatusEntry& entry) {
  return entry.source == StatusSource::Library || entry.source == StatusSource::StandIn;
}

// The code in front of an optional "/STATUS".
std::optional<std::uint8_t> input_error(std::string_view text) {
  const auto slash = text.find('/');
  if (slash != std::string_view::npos && !whole_number<std::uint8_t>(text.substr(slash + 1), 10)) {
    return std::nullopt;
  }
  return whole_number<std::uint8_t>(text.substr(0, slash), 10);
}

template <typename Wanted>
std::vector<StatusEntry> entries_that(Wanted wanted) {
  std::vector<StatusEntry> found;
  std::copy_if(kEntries.begin(), kEntries.end(), std::back_inserter(found), wanted);
  return found;
}

}  // namespace

std::string_view to_text(StatusSource source) {
  switch (source) {
    case StatusSource::Input:
      return "INPUT_DATA";
    case StatusSource::Output:
      return "output filter";
    case StatusSource::Loader:
      return "symbol loader";
    case StatusSource::Host:
      return "ostravel-host";
    case StatusSource::Library:
      return "library";
    case StatusSource::StandIn:
      return "stand-in library";
  }
  return "";
}

std::span<const StatusEntry> status_catalogue() {
  return kEntries;
}

const StatusEntry* find_status(StatusSource source, std::uint32_t number) {
  const auto* found = std::find_if(kEntries.begin(), kEntries.end(), [=](const StatusEntry& entry) {
    return entry.source == source && entry.number == number;
  });
  return found == kEntries.end() ? nullptr : found;
}

std::string_view input_status_name(std::uint8_t error) {
  const auto* entry = find_status(StatusSource::Input, error);
  return entry == nullptr ? "unknown" : entry->name;
}

std::optional<std::uint32_t> library_result(std::string_view text) {
  if (text.starts_with('-')) {
    const auto number = whole_number<std::int32_t>(text, 10);
    return number ? std::optional(static_cast<std::uint32_t>(*number)) : std::nullopt;
  }
  const bool marked = begins_with(text, "0x");
  const auto digits = marked ? text.substr(2) : text;
  constexpr std::size_t kAllDigits = 8;
  return marked || digits.size() == kAllDigits ? whole_number<std::uint32_t>(digits, 16) : std::nullopt;
}

std::vector<StatusEntry> look_up_status(std::string_view text) {
  if (const auto error = input_error(text)) {
    return entries_that([&](const StatusEntry& entry) {
      return entry.source == StatusSource::Input && entry.number == *error;
    });
  }
  if (const auto result = library_result(text)) {
    return entries_that(
        [&](const StatusEntry& entry) { return is_library(entry) && entry.number == *result; });
  }
  auto found = entries_that(
      [&](const StatusEntry& entry) { return same(entry.written, text) || same(entry.name, text); });
  constexpr std::size_t kShortestBeginning = 3;
  if (found.empty() && text.size() >= kShortestBeginning) {
    found = entries_that([&](const StatusEntry& entry) {
      return begins_with(entry.name, text) || begins_with(entry.written, text);
    });
  }
  return found;
}

}  // namespace ostravel::host
