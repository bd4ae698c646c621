// SPDX-License-Identifier: MIT
#include "driver/pathset.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(PathSet, EqualNamesShareTheFirstOnesPlace) {
  ReadBatch batch;
  PathSet paths;
  TagName motor, valve, again;
  motor = "Motor";
  valve = "Valve";
  again = "Motor";
  EXPECT_EQ(paths.PlaceOf(motor, batch), 0U);
  EXPECT_EQ(paths.PlaceOf(valve, batch), 1U);
  EXPECT_EQ(paths.PlaceOf(again, batch), 0U);
  EXPECT_EQ(batch.size(), 2U);
}

TEST(PathSet, TellsNamesOfTheSameHashApart) {
  ReadBatch batch;
  PathSet paths;
  std::vector<TagName> names(kCommandPoolSize);
  std::vector<std::string> texts;
  for (int i = 0; i < kCommandPoolSize; ++i) texts.push_back("Tag" + std::to_string(i));
  for (std::size_t i = 0; i < names.size(); ++i) {
    names[i].Borrow(texts[i], 0xFFFFFFFF);  // all in one slot, the table's last
    EXPECT_EQ(paths.PlaceOf(names[i], batch), i);
  }
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(paths.PlaceOf(names[i], batch), i);
  EXPECT_EQ(batch.size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(batch.path(i), texts[i]);
}

TEST(PathSet, LetterCaseCounts) {
  ReadBatch batch;
  PathSet paths;
  TagName upper, lower;
  upper = "Motor";
  lower = "motor";
  EXPECT_NE(paths.PlaceOf(upper, batch), paths.PlaceOf(lower, batch));
}

}  // namespace
