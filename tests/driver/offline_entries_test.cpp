// SPDX-License-Identifier: MIT
// Which entry of the simulated values an element finds: its own, whatever lies beside it.
#include <gtest/gtest.h>

#include "tests/driver/offline.h"

namespace {

class OfflineEntries : public Offline {
 protected:
  stTag key(INT row, WORD index, int bit = -1) const {
    const auto* info = device.data().GTagTable.Get(static_cast<DWORD>(row));
    return {info->Reserved, row, index, DT_INT, info->pStringA, static_cast<signed char>(bit)};
  }
};

// Rows outside the table all have the same, empty name.
TEST_F(OfflineEntries, RowsOfOneNameAreApart) {
  write(TagBlock(DT_INT).row(101).index(1), {7});
  write(TagBlock(DT_INT).row(100).index(0).count(2), {1, 2});
  EXPECT_EQ(words(TagBlock(DT_INT).row(100).index(0).count(2), 2), (std::vector<WORD>{1, 2}));
  EXPECT_EQ(words(TagBlock(DT_INT).row(101).index(1), 1), (std::vector<WORD>{7}));
  EXPECT_EQ(map().size(), 3U);
}

TEST_F(OfflineEntries, AnEntryOfABitIsNotThatOfTheElement) {
  map()[key(0, 1, 3)] = 0x55;
  write(TagBlock(DT_INT).index(0).count(2), {1, 2});
  EXPECT_EQ(map().at(key(0, 1, 3)), 0x55U);
  EXPECT_EQ(map().at(key(0, 1)), 2U);
  EXPECT_EQ(words(TagBlock(DT_INT).index(0).count(2), 2), (std::vector<WORD>{1, 2}));
}

TEST_F(OfflineEntries, AnElementBetweenOthersGetsOneOfItsOwn) {
  write(TagBlock(DT_INT).index(0), {10});
  write(TagBlock(DT_INT).index(2), {30});
  EXPECT_EQ(words(TagBlock(DT_INT).index(0).count(3), 3), (std::vector<WORD>{10, 0, 30}));
  EXPECT_EQ(map().size(), 3U);
}

TEST_F(OfflineEntries, AnotherTypeOfTheSameElementIsAnotherValue) {
  write(TagBlock(DT_INT).index(0), {10});
  write(TagBlock(DT_WORD).index(0).count(2), {20, 21});
  write(TagBlock(DT_INT).index(1), {11});
  EXPECT_EQ(words(TagBlock(DT_INT).index(0).count(2), 2), (std::vector<WORD>{10, 11}));
  EXPECT_EQ(words(TagBlock(DT_WORD).index(0).count(2), 2), (std::vector<WORD>{20, 21}));
}

TEST_F(OfflineEntries, WhatASimulatedReadLeftDoesNotShowBehindAShorterText) {
  library.add("Text", Item::String8("ab", 2));
  Device online(ProjectFile(kVersionCharPairedStrings).tag("Text"));
  online.connected();
  auto batch = online.batch(
      {RequestBuilder::WordWrite(TagBlock(DT_INT).index(0).count(8), std::vector<WORD>(8, 0x7777))});
  KORVALE_DRV_OutputFilterExOffLine(batch.data(), 1);
  batch = online.batch({RequestBuilder::Read(TagBlock(DT_INT).index(0).count(8))});
  KORVALE_DRV_OutputFilterExOffLine(batch.data(), 1);
  const auto records = online.read({RequestBuilder::Read(TagBlock(DT_STRING).count(8))});
  EXPECT_EQ(words_of(records[0], 8), (std::vector<WORD>{'a' | 'b' << 8, 0, 0, 0, 0, 0, 0, 0}));
}

}  // namespace
