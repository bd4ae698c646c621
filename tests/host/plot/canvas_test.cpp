// SPDX-License-Identifier: MIT
#include "host/plot/canvas.h"

#include <gtest/gtest.h>

namespace ostravel::host::plot {
namespace {

TEST(Canvas, BrailleHasEightDotsACharacter) {
  Canvas canvas(2, 1, true);
  EXPECT_EQ(canvas.dots_across(), 4);
  EXPECT_EQ(canvas.dots_down(), 4);
  EXPECT_EQ(canvas.text(0, 0), " ");
  canvas.line(0, 0, 0, 0, 0);
  EXPECT_EQ(canvas.text(0, 0), "⠁");
  canvas.line(1, 3, 1, 3, 0);
  EXPECT_EQ(canvas.text(0, 0), "⢁");
  canvas.line(2, 0, 2, 3, 0);
  EXPECT_EQ(canvas.text(1, 0), "⡇");
}

TEST(Canvas, LinesReachBothEndsWhicheverWayTheyGo) {
  for (const bool back : {false, true}) {
    Canvas canvas(4, 4, false);
    back ? canvas.line(3, 0, 0, 3, 0) : canvas.line(0, 3, 3, 0, 0);
    for (int row = 0; row < 4; ++row) {
      for (int column = 0; column < 4; ++column) {
        EXPECT_EQ(canvas.text(column, row), column == 3 - row ? "*" : " ") << column << "," << row;
      }
    }
  }
}

TEST(Canvas, AsciiHasAMarkForEachSeries) {
  Canvas canvas(3, 1, false);
  canvas.line(0, 0, 2, 0, 0);
  canvas.line(1, 0, 1, 0, 1);
  EXPECT_EQ(canvas.text(0, 0) + canvas.text(1, 0) + canvas.text(2, 0), "*+*");
  EXPECT_EQ(canvas.series(1, 0), 1);
}

TEST(Canvas, WhatLiesOutsideIsLeftOut) {
  Canvas canvas(2, 2, false);
  canvas.line(-5, 1, 5, 1, 0);
  canvas.line(0, -3, 0, -1, 1);
  EXPECT_EQ(canvas.text(0, 1) + canvas.text(1, 1), "**");
  EXPECT_EQ(canvas.series(0, 0), -1);
}

}  // namespace
}  // namespace ostravel::host::plot
