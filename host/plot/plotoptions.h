// SPDX-License-Identifier: MIT
// What the command plot was asked for.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace ostravel::host::plot {

struct PlotOptions {
  std::vector<std::string> words;  // FILE TAG..., live TAG...
  bool live = false;
  std::string svg;  // file; empty: the terminal
  bool force = false;
  std::string title;
  std::string unit;
  std::string from;  // ISO 8601; empty: from the beginning
  std::string to;
  bool stacked = false;
  bool steps = false;
  bool ascii = false;
  int width = 0;   // 0: the terminal's
  int height = 0;  // 0: as the terminal has room
  std::chrono::milliseconds interval{500};
  std::chrono::milliseconds window{60'000};
  std::chrono::milliseconds length{0};  // 0: until Ctrl+C
  std::uint64_t count = 0;
};

}  // namespace ostravel::host::plot
