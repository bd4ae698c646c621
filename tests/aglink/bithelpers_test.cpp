// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "aglink/AGLink40.h"

TEST(BitHelpers, GetBitOfEveryBit) {
  for (int bit = 0; bit < 8; ++bit) {
    EXPECT_EQ(AGL_GetBit(static_cast<agl_uint8_t>(1 << bit), bit), 1);
    EXPECT_EQ(AGL_GetBit(static_cast<agl_uint8_t>(~(1 << bit)), bit), 0);
  }
}

// A bit number outside 0 to 7 wraps round, deliberately without an error.
TEST(BitHelpers, BitNumberIsTakenModuloEight) {
  EXPECT_EQ(AGL_GetBit(0x80, 15), 1);
  EXPECT_EQ(AGL_GetBit(0x01, 8), 1);
  EXPECT_EQ(AGL_GetBit(0x80, -1), 1);
  agl_uint8_t byte = 0;
  EXPECT_EQ(AGL_SetBit(&byte, 8), 0x01);
  EXPECT_EQ(AGL_ResetBit(&byte, 16), 0x00);
}

TEST(BitHelpers, SetAndResetLeaveTheOtherBits) {
  agl_uint8_t byte = 0x50;
  EXPECT_EQ(AGL_SetBit(&byte, 0), 0x51);
  EXPECT_EQ(byte, 0x51);
  EXPECT_EQ(AGL_SetBit(&byte, 0), 0x51);
  EXPECT_EQ(AGL_ResetBit(&byte, 4), 0x41);
  EXPECT_EQ(byte, 0x41);
  EXPECT_EQ(AGL_ResetBit(&byte, 4), 0x41);
}

TEST(BitHelpers, SetBitValSetsForAnyNonZeroValue) {
  agl_uint8_t byte = 0;
  EXPECT_EQ(AGL_SetBitVal(&byte, 3, 2), 0x08);
  EXPECT_EQ(AGL_SetBitVal(&byte, 7, -1), 0x88);
  EXPECT_EQ(AGL_SetBitVal(&byte, 3, 0), 0x80);
  EXPECT_EQ(byte, 0x80);
}
