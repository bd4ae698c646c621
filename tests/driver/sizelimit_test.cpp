// SPDX-License-Identifier: MIT
// The size table, typed out character by character.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "driver/driver.h"

namespace {

constexpr const char* kRows[17][3] = {
    {"196", "256", "2"},   {"194", "256", "1"}, {"195", "256", "1"}, {"202", "256", "2"}, {"2", "256", "1"},
    {"3", "256", "1"},     {"4", "256", "2"},   {"6", "256", "2"},   {"7", "256", "4"},   {"8", "256", "4"},
    {"9", "256", "4"},     {"10", "256", "4"},  {"11", "256", "1"},  {"12", "256", "1"},  {"211", "256", "1"},
    {"212", "256", "256"}, {"193", "256", "1"},
};

}  // namespace

TEST(SizeLimits, EveryCharacterOfTheSeventeenRowsIsWritten) {
  char table[18][9][10];
  std::memset(table, 0x5A, sizeof table);
  int rows = -1;
  KORVALE_DRV_GetCommandSizeLimitInfo(table, &rows);
  EXPECT_EQ(rows, 17);
  for (int row = 0; row < 17; ++row) {
    for (int cell = 0; cell < 9; ++cell) {
      char expected[10] = {};
      if (cell < 3) std::memcpy(expected, kRows[row][cell], std::strlen(kRows[row][cell]));
      EXPECT_EQ(std::string(table[row][cell], 10), std::string(expected, 10))
          << "row " << row << " cell " << cell;
    }
  }
  EXPECT_EQ(std::string(&table[17][0][0], 90), std::string(90, 0x5A)) << "nothing behind the rows";
}
