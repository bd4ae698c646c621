// SPDX-License-Identifier: MIT
// The bench measures no driver that answers wrongly.
#include <gtest/gtest.h>

#include "benchmarks/requests.h"

namespace bench {
namespace {

class Difference : public testing::Test {
 protected:
  Difference() {
    records[0].byCurSysStatus = 5;
    records[1].byCurSysStatus = 5;
  }
  std::string found() const { return difference(accesses, {"Whole", "Double"}, records, expected); }

  std::vector<Access> accesses{{type("INT"), 1, 0}, {type("LREAL"), 1, 0}};
  std::vector<INPUT_DATA> records = std::vector<INPUT_DATA>(2);
  std::vector<INPUT_DATA> expected = std::vector<INPUT_DATA>(2);
};

TEST_F(Difference, EqualWordsAreNone) {
  EXPECT_EQ(found(), "");
}

TEST_F(Difference, IsTheFirstWrongWordOfAnAccess) {
  records[1].wData[3] = 9;
  EXPECT_EQ(found(), "Double: word 3 is 9 instead of 0");
}

TEST_F(Difference, WordsBehindTheValueDoNotCount) {
  records[0].wData[1] = 9;
  EXPECT_EQ(found(), "");
}

TEST_F(Difference, AnErrorIsNoAnswer) {
  records[0].byErrCode = 2;
  EXPECT_EQ(found(), "Whole: no good answer");
}

TEST_F(Difference, NeitherIsARecordThatWasNotTouched) {
  records[1].byCurSysStatus = 0;
  EXPECT_EQ(found(), "Double: no good answer");
}

}  // namespace
}  // namespace bench
