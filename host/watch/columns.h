// SPDX-License-Identifier: MIT
// The table's columns and how wide each is on a screen: the less needed ones give way on a narrow one.
#pragma once

#include <cstddef>

namespace ostravel::host::watch {

struct Columns {
  std::size_t tag = 0;
  std::size_t type = 0;
  std::size_t value = 0;
  std::size_t quality = 0;
  std::size_t age = 0;
  std::size_t rate = 0;
  std::size_t trend = 0;  // a divisor of the minute's 60 seconds, or 0

  static constexpr std::size_t kGap = 1;
};

// A column of width 0 is left out. The widest label and type name are of the whole model, so that the
// columns stay where they are while one scrolls.
Columns columns_for(std::size_t screen, std::size_t widest_label, std::size_t widest_type);

}  // namespace ostravel::host::watch
