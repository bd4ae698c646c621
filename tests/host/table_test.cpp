// SPDX-License-Identifier: MIT
#include "host/table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace ostravel::host {
namespace {

using testing::ElementsAre;

TEST(Table, ColumnsAreAsWideAsTheirCells) {
  EXPECT_THAT(layout_table({{"TAG", "VALUE"}, {"long.name", "1"}, {"ü", ""}}),
              ElementsAre("TAG        VALUE", "long.name  1", "ü"));
}

TEST(Table, LongCellsAreCutBetweenCharacters) {
  EXPECT_THAT(layout_table({{"ääääääää", "x"}}, 6), ElementsAre("äää...  x"));
}

TEST(Table, ValueThatIsNotThereIsADash) {
  EXPECT_EQ(value_text(nullptr), "-");
  EXPECT_EQ(value_text({1, 2}), "[1,2]");
  EXPECT_EQ(value_text("a"), "\"a\"");
}

}  // namespace
}  // namespace ostravel::host
