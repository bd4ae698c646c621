// SPDX-License-Identifier: MIT
// The device table, typed out cell by cell.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <set>
#include <string>

#include "driver/driver.h"

namespace {

constexpr const char* kRows[17][9] = {
    {"B", "BOOL", "193", "D", "W", "0", "W", "0", "0"},
    {"B", "BitArray", "211", "D", "W", "0", "W", "0", "0"},
    {"W", "SINT", "194", "D", "W", "0", "W", "0", "0"},
    {"W", "INT", "195", "D", "W", "0", "W", "0", "0"},
    {"W", "DINT", "196", "D", "D", "0", "W", "0", "0"},
    {"W", "REAL", "202", "D", "D", "0", "W", "0", "0"},
    {"W", "BYTE", "2", "D", "W", "0", "W", "0", "0"},
    {"W", "WORD", "3", "D", "W", "0", "W", "0", "0"},
    {"W", "DWORD", "4", "D", "D", "0", "W", "0", "0"},
    {"W", "UDINT", "6", "D", "D", "0", "W", "0", "0"},
    {"W", "LWORD", "7", "D", "D", "0", "W", "0", "0"},
    {"W", "LINT", "8", "D", "D", "0", "W", "0", "0"},
    {"W", "ULINT", "9", "D", "D", "0", "W", "0", "0"},
    {"W", "LREAL", "10", "D", "D", "0", "W", "0", "0"},
    {"W", "UINT", "11", "D", "W", "0", "W", "0", "0"},
    {"W", "USINT", "12", "D", "W", "0", "W", "0", "0"},
    {"W", "STRING", "212", "D", "W", "0", "W", "0", "0"},
};

class DeviceTable : public testing::Test {
 protected:
  void SetUp() override {
    std::memset(table, 0x5A, sizeof table);
    KORVALE_DRV_GetDeviceTableEx(table, &rows);
  }
  char table[18][15][30];
  int rows = -1;
};

}  // namespace

TEST_F(DeviceTable, HasSeventeenRowsOfNineCells) {
  EXPECT_EQ(rows, 17);
  for (int row = 0; row < 17; ++row) {
    for (int cell = 0; cell < 9; ++cell)
      EXPECT_STREQ(table[row][cell], kRows[row][cell]) << "row " << row << " cell " << cell;
  }
}

TEST_F(DeviceTable, EverythingBehindATextIsNul) {
  for (int row = 0; row < 17; ++row) {
    for (int cell = 0; cell < 15; ++cell) {
      const std::size_t used = cell < 9 ? std::strlen(kRows[row][cell]) : 0;
      const std::string rest(table[row][cell] + used, 30 - used);
      EXPECT_EQ(rest, std::string(30 - used, '\0')) << "row " << row << " cell " << cell;
    }
  }
}

TEST_F(DeviceTable, WritesNothingBehindItsRows) {
  EXPECT_EQ(std::string(&table[17][0][0], 450), std::string(450, 0x5A));
}

TEST_F(DeviceTable, EveryTypeCodeButLtimeAppearsOnce) {
  const std::set<int> codes = {DT_BYTE,  DT_WORD,  DT_DWORD, DT_UDINT,  DT_LWORD, DT_LINT,
                               DT_ULINT, DT_LREAL, DT_UINT,  DT_USINT,  DT_BOOL,  DT_SINT,
                               DT_INT,   DT_DINT,  DT_REAL,  DT_BITARY, DT_STRING};
  std::multiset<int> listed;
  for (int row = 0; row < rows; ++row) listed.insert(std::stoi(table[row][2]));
  EXPECT_EQ(listed, std::multiset<int>(codes.begin(), codes.end()));
  EXPECT_EQ(listed.count(DT_LTIME), 0U);
}
