// SPDX-License-Identifier: MIT
#include "host/watch/browser.h"

#include <algorithm>
#include <array>

namespace ostravel::host::watch {
namespace {

using std::chrono::milliseconds;

constexpr auto kIntervals = std::to_array<milliseconds>(
    {milliseconds(50), milliseconds(100), milliseconds(200), milliseconds(500), milliseconds(1000),
     milliseconds(2000), milliseconds(5000), milliseconds(10'000), milliseconds(60'000)});

milliseconds longer(milliseconds interval) {
  const auto found = std::upper_bound(kIntervals.begin(), kIntervals.end(), interval);
  return found == kIntervals.end() ? interval : *found;
}

milliseconds shorter(milliseconds interval) {
  const auto found = std::lower_bound(kIntervals.begin(), kIntervals.end(), interval);
  return found == kIntervals.begin() ? interval : *std::prev(found);
}

std::string utf8(char32_t code) {
  const auto byte = [](char32_t bits) { return static_cast<char>(static_cast<unsigned char>(bits)); };
  const auto tail = [&byte](char32_t bits) { return byte(0x80 | (bits & 0x3F)); };
  if (code < 0x80) {
    return {byte(code)};
  }
  if (code < 0x800) {
    return {byte(0xC0 | code >> 6), tail(code)};
  }
  if (code < 0x10000) {
    return {byte(0xE0 | code >> 12), tail(code >> 6), tail(code)};
  }
  return {byte(0xF0 | code >> 18), tail(code >> 12), tail(code >> 6), tail(code)};
}

void drop_last_character(std::string& text) {
  while (!text.empty()) {
    const auto byte = static_cast<unsigned char>(text.back());
    text.pop_back();
    if ((byte & 0xC0) != 0x80) {
      break;
    }
  }
}

}  // namespace

Areas areas_of(Size size) {
  constexpr std::size_t kForKeys = 3;
  constexpr std::size_t kForHeading = 4;
  constexpr std::size_t kForDetail = 8;
  Areas areas;
  areas.keys = size.lines >= kForKeys;
  areas.heading = size.lines >= kForHeading;
  areas.detail = size.lines >= kForDetail;
  const std::size_t others =
      1U + (areas.keys ? 1U : 0U) + (areas.heading ? 1U : 0U) + (areas.detail ? 1U : 0U);
  areas.body = size.lines > others ? size.lines - others : 0;
  return areas;
}

Browser::Browser(const Model& model, milliseconds interval) : listing_(model), interval_(interval) {}

bool Browser::press(Key key) {
  if (typing_) {
    press_in_filter(key);
    return true;
  }
  if (page_ != Page::Table) {
    page_ = Page::Table;
    return key != 'q';
  }
  return press_move(key) || press_in_table(key);
}

bool Browser::press_move(Key key) {
  const auto page = std::max<std::size_t>(areas_of(size_).body, 1);
  const auto last = listing_.rows().empty() ? 0 : listing_.rows().size() - 1;
  const auto back = [this](std::size_t steps) { cursor_ -= std::min(cursor_, steps); };
  switch (key) {
    case key::kUp:
    case 'k':
      back(1);
      return true;
    case key::kDown:
    case 'j':
      cursor_ = std::min(cursor_ + 1, last);
      return true;
    case key::kPageUp:
      back(page);
      top_ -= std::min(top_, page);
      return true;
    case key::kPageDown:
    case ' ':
      cursor_ = std::min(cursor_ + page, last);
      top_ += page;
      return true;
    case key::kHome:
    case 'g':
      cursor_ = 0;
      return true;
    case key::kEnd:
    case 'G':
      cursor_ = last;
      return true;
    default:
      return false;
  }
}

bool Browser::press_in_table(Key key) {
  switch (key) {
    case 'q':
      return false;
    case '/':
      typing_ = true;
      filter_before_ = listing_.filter();
      break;
    case key::kEscape:
      follow();
      listing_.set_filter({});
      listing_.set_only_bad(false);
      break;
    case 'b':
      follow();
      listing_.set_only_bad(!listing_.only_bad());
      break;
    case '<':
    case key::kLeft:
      next_sort(-1);
      break;
    case '>':
    case key::kRight:
      next_sort(1);
      break;
    case 'r':
      follow();
      listing_.set_descending(!listing_.descending());
      break;
    case 'p':
      paused_ = !paused_;
      break;
    case '+':
      interval_ = longer(interval_);
      break;
    case '-':
      interval_ = shorter(interval_);
      break;
    case key::kEnter:
      page_ = current() ? Page::Details : Page::Table;
      break;
    case '?':
    case 'h':
      page_ = Page::Help;
      break;
    default:
      break;
  }
  return true;
}

void Browser::next_sort(int step) {
  follow();
  const int next = (static_cast<int>(listing_.sort()) + step + kSortKeys) % kSortKeys;
  listing_.set_sort(static_cast<SortKey>(next));
}

void Browser::press_in_filter(Key key) {
  auto filter = listing_.filter();
  if (key == key::kEnter) {
    typing_ = false;
  } else if (key == key::kEscape) {
    typing_ = false;
    filter = filter_before_;
  } else if (key == key::kBackspace) {
    drop_last_character(filter);
  } else if (key >= ' ' && key != 0x7F && key <= 0x10FFFF) {
    filter += utf8(key);
  }
  if (filter != listing_.filter()) {
    follow();
    listing_.set_filter(filter);
  }
}

void Browser::resize(Size size) {
  size_ = size;
  clamp();
}

void Browser::update(TimePoint now) {
  listing_.update(now);
  if (followed_) {
    cursor_ = listing_.place_of(*followed_).value_or(0);
    followed_.reset();
  }
  clamp();
}

void Browser::clamp() {
  const auto count = listing_.rows().size();
  const auto body = areas_of(size_).body;
  cursor_ = std::min(cursor_, count == 0 ? 0 : count - 1);
  top_ = std::min(top_, count > body ? count - body : 0);
  top_ = std::min(top_, cursor_);
  if (body > 0 && cursor_ >= top_ + body) {
    top_ = cursor_ + 1 - body;
  }
}

std::optional<std::size_t> Browser::current() const {
  return cursor_ < listing_.rows().size() ? std::optional(listing_.rows()[cursor_]) : std::nullopt;
}

std::vector<std::size_t> Browser::visible() const {
  const auto& rows = listing_.rows();
  const auto from = static_cast<std::ptrdiff_t>(std::min(top_, rows.size()));
  const auto to = static_cast<std::ptrdiff_t>(std::min(top_ + areas_of(size_).body, rows.size()));
  return {rows.begin() + from, rows.begin() + to};
}

}  // namespace ostravel::host::watch
