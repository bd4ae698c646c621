// SPDX-License-Identifier: MIT
#include "host/watch/cells.h"

#include <algorithm>
#include <array>
#include <optional>

namespace ostravel::host::watch {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Of Unicode's tables what occurs in names and values of plants: East Asian scripts, full-width forms,
// symbols.
constexpr auto kTwoCells = std::to_array<Range>({{0x1100, 0x115F},
                                                 {0x2E80, 0x303E},
                                                 {0x3041, 0x33FF},
                                                 {0x3400, 0x4DBF},
                                                 {0x4E00, 0x9FFF},
                                                 {0xA000, 0xA4CF},
                                                 {0xA960, 0xA97F},
                                                 {0xAC00, 0xD7A3},
                                                 {0xF900, 0xFAFF},
                                                 {0xFE30, 0xFE6F},
                                                 {0xFF00, 0xFF60},
                                                 {0xFFE0, 0xFFE6},
                                                 {0x1F300, 0x1F64F},
                                                 {0x1F900, 0x1F9FF},
                                                 {0x20000, 0x3FFFD}});
constexpr auto kNoCell = std::to_array<Range>({{0x0300, 0x036F},
                                               {0x0483, 0x0489},
                                               {0x0591, 0x05BD},
                                               {0x0610, 0x061A},
                                               {0x064B, 0x065F},
                                               {0x0E31, 0x0E31},
                                               {0x0E34, 0x0E3A},
                                               {0x0E47, 0x0E4E},
                                               {0x1AB0, 0x1AFF},
                                               {0x1DC0, 0x1DFF},
                                               {0x200B, 0x200D},
                                               {0x20D0, 0x20FF},
                                               {0x3099, 0x309A},
                                               {0xFE00, 0xFE0F},
                                               {0xFE20, 0xFE2F}});
// Not to be shown: they turn the direction of what follows.
constexpr auto kDirections = std::to_array<Range>({{0x200E, 0x200F}, {0x202A, 0x202E}, {0x2066, 0x2069}});

template <typename Ranges>
bool is_in(const Ranges& ranges, char32_t code) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [code](const Range& range) { return code >= range.first && code <= range.last; });
}

bool is_tail(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

struct Character {
  char32_t code;
  std::size_t bytes;
};

// The character at the beginning; nothing when these bytes are none.
std::optional<Character> first_of(std::string_view text) {
  const auto head = static_cast<unsigned char>(text.front());
  if (head < 0x80) {
    return Character{head, 1};
  }
  const std::size_t bytes = head >= 0xF0 && head <= 0xF4 ? 4 : head >= 0xE0 ? 3 : head >= 0xC2 ? 2 : 0;
  if (bytes == 0 || head > 0xF4 || text.size() < bytes) {
    return std::nullopt;
  }
  constexpr auto kLowest = std::to_array<char32_t>({0, 0, 0x80, 0x800, 0x10000});
  char32_t code = head & (0xFFU >> (bytes + 1));
  for (std::size_t i = 1; i < bytes; ++i) {
    if (!is_tail(text[i])) {
      return std::nullopt;
    }
    code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < kLowest[bytes] || code > 0x10FFFF || surrogate ? std::nullopt
                                                               : std::optional(Character{code, bytes});
}

bool can_show(char32_t code, Charset charset) {
  const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0);
  return !control && !is_in(kDirections, code) && (charset == Charset::Utf8 || code < 0x80);
}

std::size_t cells_of(char32_t code) {
  if (code < 0x300) {
    return 1;
  }
  return is_in(kNoCell, code) ? 0 : is_in(kTwoCells, code) ? 2 : 1;
}

const char* mark_of(Charset charset) {
  return charset == Charset::Utf8 ? "…" : "~";
}

// How many bytes from the beginning take at most that many cells, and how many cells they take.
struct Head {
  std::size_t bytes = 0;
  std::size_t cells = 0;
};
Head head_of(std::string_view text, std::size_t cells) {
  Head head;
  while (head.bytes < text.size()) {
    const auto next = first_of(text.substr(head.bytes)).value_or(Character{'?', 1});
    const auto width = cells_of(next.code);
    if (head.cells + width > cells) {
      break;
    }
    head.bytes += next.bytes;
    head.cells += width;
  }
  return head;
}

}  // namespace

std::string printable(std::string_view text, Charset charset) {
  std::string shown;
  shown.reserve(text.size());
  while (!text.empty()) {
    const auto next = first_of(text);
    if (next && can_show(next->code, charset)) {
      shown += text.substr(0, next->bytes);
    } else {
      shown += '?';
    }
    text.remove_prefix(next ? next->bytes : 1);
  }
  return shown;
}

std::size_t cells_of(std::string_view text) {
  return head_of(text, std::string_view::npos).cells;
}

std::string cut(std::string_view text, std::size_t cells, Charset charset) {
  const auto whole = head_of(text, cells);
  if (whole.bytes == text.size()) {
    return std::string(text);
  }
  if (cells == 0) {
    return {};
  }
  const auto head = head_of(text, cells - 1);
  return std::string(text.substr(0, head.bytes)) + mark_of(charset);
}

std::string cut_front(std::string_view text, std::size_t cells, Charset charset) {
  auto left = cells_of(text);
  if (left <= cells || cells == 0) {
    return cut(text, cells, charset);
  }
  std::string_view tail = text;
  while (left > cells - 1) {
    const auto next = first_of(tail).value_or(Character{'?', 1});
    left -= cells_of(next.code);
    tail.remove_prefix(next.bytes);
  }
  return std::string(mark_of(charset)).append(tail);
}

std::string fit_left(std::string_view text, std::size_t cells, Charset charset) {
  auto fitted = cut(text, cells, charset);
  return fitted.append(cells - cells_of(fitted), ' ');
}

std::string fit_right(std::string_view text, std::size_t cells, Charset charset) {
  const auto fitted = cut(text, cells, charset);
  return std::string(cells - cells_of(fitted), ' ') + fitted;
}

}  // namespace ostravel::host::watch
