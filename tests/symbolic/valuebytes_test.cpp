// SPDX-License-Identifier: MIT
#include "symbolic/valuebytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

std::vector<unsigned char> content(const ValueBytes& bytes) {
  return {bytes.view().begin(), bytes.view().end()};
}

TEST(ValueBytes, AppendsLittleEndianValues) {
  ValueBytes bytes;
  bytes.Append(std::uint16_t{0x0102});
  bytes.Append(std::uint8_t{3});
  EXPECT_THAT(content(bytes), ElementsAre(2, 1, 3));
}

TEST(ValueBytes, GrowsWithWhatIsAppended) {
  ValueBytes bytes;
  for (std::uint32_t i = 0; i < 10000; ++i) bytes.Append(i);
  ASSERT_EQ(bytes.size(), 40000U);
  for (std::uint32_t i = 0; i < 10000; ++i) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data() + 4 * std::size_t{i}, 4);
    ASSERT_EQ(value, i);
  }
}

TEST(ValueBytes, NothingOfWhatWasClearedShowsAgain) {
  ValueBytes bytes;
  for (int i = 0; i < 40; ++i) bytes.Append(std::uint8_t{0xFF});
  bytes.Clear();
  EXPECT_TRUE(bytes.empty());
  bytes.Resize(8);
  EXPECT_THAT(content(bytes), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0));
  bytes.Clear();
  const std::uint16_t* room = bytes.MakeRoomFor<std::uint16_t>(3);
  EXPECT_EQ(room[0] | room[1] | room[2], 0);
  EXPECT_TRUE(bytes.empty()) << "room is no content";
}

TEST(ValueBytes, RoomCountsUpToWhereItWasFilled) {
  ValueBytes bytes;
  bytes.Append(std::uint16_t{7});
  std::uint16_t* room = bytes.MakeRoomFor<std::uint16_t>(100);
  room[0] = 0x0405;
  bytes.EndAt(room + 1);
  EXPECT_THAT(content(bytes), ElementsAre(7, 0, 5, 4));
}

TEST(ValueBytes, ZerosAreMovedInFront) {
  ValueBytes bytes;
  bytes.Append(std::uint16_t{0x0201});
  bytes.PrependZeros(3);
  EXPECT_THAT(content(bytes), ElementsAre(0, 0, 0, 1, 2));
  bytes.PrependZeros(0);
  EXPECT_EQ(bytes.size(), 5U);
}

TEST(ValueBytes, GoesOnBehindAVectorsContentAndGivesItBack) {
  ValueBytes bytes(std::vector<unsigned char>{1, 2});
  bytes.Append(std::uint8_t{3});
  EXPECT_THAT(bytes.TakeVector(), ElementsAre(1, 2, 3));
  EXPECT_TRUE(bytes.empty());
}

}  // namespace
