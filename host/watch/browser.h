// SPDX-License-Identifier: MIT
// What the person at the keyboard has chosen: where the table stands, what it is sorted and filtered by.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/watch/listing.h"

namespace ostravel::host::watch {

// A Unicode character, or one of those below, which lie beyond Unicode.
using Key = char32_t;
namespace key {
inline constexpr Key kNone = 0;
inline constexpr Key kEnter = '\n';
inline constexpr Key kEscape = 0x1B;
inline constexpr Key kUp = 0x110000;
inline constexpr Key kDown = 0x110001;
inline constexpr Key kLeft = 0x110002;
inline constexpr Key kRight = 0x110003;
inline constexpr Key kPageUp = 0x110004;
inline constexpr Key kPageDown = 0x110005;
inline constexpr Key kHome = 0x110006;
inline constexpr Key kEnd = 0x110007;
inline constexpr Key kBackspace = 0x110008;
inline constexpr Key kResize = 0x110009;
}  // namespace key

struct Size {
  std::size_t lines = 24;
  std::size_t columns = 80;
  bool operator==(const Size&) const = default;
};

// Which lines of the screen are there for what; the rest is left out on a small one.
struct Areas {
  bool heading = false;  // of the table, under the title line
  bool detail = false;   // the tag under the cursor
  bool keys = false;     // last line
  std::size_t body = 0;  // lines of the table
};
Areas areas_of(Size size);

class Browser {
 public:
  enum class Page : std::uint8_t { Table, Details, Help };

  // The model must outlive it.
  Browser(const Model& model, std::chrono::milliseconds interval);

  // False when it is time to end.
  bool press(Key key);
  void resize(Size size);
  // To be called before anything is drawn.
  void update(TimePoint now);

  Size size() const { return size_; }
  Page page() const { return page_; }
  const Listing& listing() const { return listing_; }
  std::size_t top() const { return top_; }        // place in the listing of the first row shown
  std::size_t cursor() const { return cursor_; }  // place in the listing
  // The model's row under the cursor; nothing when none is shown.
  std::optional<std::size_t> current() const;
  // The model's rows on the screen.
  std::vector<std::size_t> visible() const;
  // What is being typed behind "/".
  bool typing_filter() const { return typing_; }
  bool paused() const { return paused_; }
  std::chrono::milliseconds interval() const { return interval_; }

 private:
  bool press_in_table(Key key);
  void press_in_filter(Key key);
  bool press_move(Key key);
  void next_sort(int step);
  void follow() { followed_ = current(); }
  void clamp();

  Listing listing_;
  Size size_;
  Page page_ = Page::Table;
  std::size_t top_ = 0;
  std::size_t cursor_ = 0;
  std::optional<std::size_t> followed_;  // row that the cursor stays on when the listing changes
  bool typing_ = false;
  std::string filter_before_;
  bool paused_ = false;
  std::chrono::milliseconds interval_;
};

}  // namespace ostravel::host::watch
