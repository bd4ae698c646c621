// SPDX-License-Identifier: MIT
#include "tests/plant/growth.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>

namespace ostravel::plant {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint64_t kMiB = std::uint64_t{1} << 20;

TEST(Growth, OfTheFirstTwoTenthsIsNone) {
  Growth growth;
  growth.add({10 * kMiB, 0, 5, 1});
  growth.add({90 * kMiB, 0, 9, 3});
  for (int i = 0; i < 8; ++i) growth.add({92 * kMiB, 0, 9, 3});
  EXPECT_THAT(growth.findings(), IsEmpty());
  EXPECT_EQ(growth.beyond_kept(), static_cast<std::int64_t>(2 * kMiB));
}

TEST(Growth, ByMoreThanTheRoomIsFound) {
  Growth growth;
  for (int i = 0; i < 2; ++i) growth.add({10 * kMiB, 0, 5, 1});
  growth.add({12 * kMiB + 1, 0, 5, 1});
  EXPECT_THAT(growth.findings(), ElementsAre(HasSubstr("tenth 3: 2097153 bytes")));
}

TEST(Growth, ThatIsKeptOnPurposeDoesNotCount) {
  Growth growth;
  growth.add({10 * kMiB, 0, 5, 1});
  growth.add({20 * kMiB, 10 * kMiB, 5, 1});
  growth.add({60 * kMiB, 50 * kMiB, 5, 1});
  EXPECT_THAT(growth.findings(), IsEmpty());
  growth.add({60 * kMiB, 40 * kMiB, 5, 1});
  EXPECT_THAT(growth.findings(), ElementsAre(HasSubstr("tenth 4")));
}

TEST(Growth, OfHandlesOrThreadsByOneIsFound) {
  Growth growth;
  for (int i = 0; i < 3; ++i) growth.add({10 * kMiB, 0, 5, 1});
  growth.add({10 * kMiB, 0, 6, 2});
  EXPECT_THAT(growth.findings(),
              ElementsAre(HasSubstr("6 open handles after 5"), HasSubstr("2 threads after 1")));
}

TEST(Growth, CannotBeToldFromTwoTenths) {
  Growth growth;
  growth.add({});
  growth.add({});
  EXPECT_THAT(growth.findings(), ElementsAre(HasSubstr("too few")));
}

TEST(SizeOfProcess, CountsHandlesAndMemory) {
  const auto before = size_of_process();
  EXPECT_GE(before.threads, 1U);
  EXPECT_GT(before.memory, 0U);
  const int file = dup(0);
  const auto after = size_of_process();
  close(file);
  EXPECT_EQ(after.handles, before.handles + 1);
}

}  // namespace
}  // namespace ostravel::plant
