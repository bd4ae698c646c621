// SPDX-License-Identifier: MIT
// The screen as lines of styled text. Pure: the same browser, model and time give the same lines.
//
//   127.0.0.1 online                     31 tags  poll 12 ms every 500 ms  recovered 0x    title
//   TAG            TYPE  VALUE      QUALITY    AGE  CH/S  LAST MINUTE                      heading
//   Plant.Level    REAL  47.11      0 ok       0s   1.9   ▁▂▃▄▅▆▇█                         body
//   Plant.Level = 47.11  0/5 ok: the value was delivered                                   detail
//   q quit  / filter  ...                                              1-1 of 1            keys
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/watch/browser.h"
#include "host/watch/cells.h"
#include "host/watch/model.h"

namespace ostravel::host::watch {

// What a text is, so that the screen can give it a look. None is told by its colour alone.
enum class Style : std::uint8_t { Plain, Title, Heading, Faint, Good, Doubtful, Bad, Trend, KeyName };

struct Span {
  std::string text;  // printable
  Style style = Style::Plain;
  bool selected = false;  // part of the row under the cursor
  bool operator==(const Span&) const = default;
};
using StyledLine = std::vector<Span>;

// Exactly as many lines as the screen has, each at most as wide as it.
std::vector<StyledLine> draw(const Model& model, const Browser& browser, TimePoint now, Charset charset);

// The text of a line, without blanks at its end.
std::string text_of(const StyledLine& line);

}  // namespace ostravel::host::watch
