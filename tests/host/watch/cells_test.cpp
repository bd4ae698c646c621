// SPDX-License-Identifier: MIT
#include "host/watch/cells.h"

#include <gtest/gtest.h>

namespace ostravel::host::watch {
namespace {

TEST(Cells, LettersTakeOneChineseTwoAndCombiningAccentsNone) {
  EXPECT_EQ(cells_of("Füllstand"), 9U);
  EXPECT_EQ(cells_of("日本"), 4U);
  EXPECT_EQ(cells_of("e\u0301"), 1U);
  EXPECT_EQ(cells_of("▁▂▃"), 3U);
  EXPECT_EQ(cells_of(""), 0U);
}

TEST(Cells, WhatCouldSteerTheTerminalBecomesQuestionMarks) {
  EXPECT_EQ(printable("a\033[2Jb\tc\x7F", Charset::Utf8), "a?[2Jb?c?");
  EXPECT_EQ(printable("\u009B2J", Charset::Utf8), "?2J") << "a control character of two bytes";
  EXPECT_EQ(printable("\u202Eabc", Charset::Utf8), "?abc") << "turns the direction of writing";
}

TEST(Cells, BytesThatAreNoUtf8BecomeQuestionMarks) {
  EXPECT_EQ(printable("a\xFF\xC3", Charset::Utf8), "a??");
  EXPECT_EQ(printable("\xC0\x80", Charset::Utf8), "??") << "overlong";
  EXPECT_EQ(printable("\xED\xA0\x80", Charset::Utf8), "???") << "surrogate";
  EXPECT_EQ(printable("\xF5\x80\x80\x80", Charset::Utf8), "????") << "beyond Unicode";
  EXPECT_EQ(printable("\xE3\x81", Charset::Utf8), "??") << "cut off";
}

TEST(Cells, TerminalWithoutUtf8GetsAsciiOnly) {
  EXPECT_EQ(printable("Tür日", Charset::Ascii), "T?r?");
  EXPECT_EQ(cut("abcdef", 4, Charset::Ascii), "abc~");
}

TEST(Cells, CutLeavesAMarkInTheLastCell) {
  EXPECT_EQ(cut("abcdef", 6, Charset::Utf8), "abcdef");
  EXPECT_EQ(cut("abcdef", 5, Charset::Utf8), "abcd…");
  EXPECT_EQ(cut("abcdef", 1, Charset::Utf8), "…");
  EXPECT_EQ(cut("abcdef", 0, Charset::Utf8), "");
}

TEST(Cells, CutFrontKeepsTheEnd) {
  EXPECT_EQ(cut_front("Plant.Motors[2].Speed", 10, Charset::Utf8), "…[2].Speed");
  EXPECT_EQ(cut_front("Speed", 10, Charset::Utf8), "Speed");
  EXPECT_EQ(cut_front("日本語", 4, Charset::Utf8), "…語") << "half of a wide character cannot be shown";
}

TEST(Cells, FitFillsWithBlanksOnOneSide) {
  EXPECT_EQ(fit_left("ab", 4, Charset::Utf8), "ab  ");
  EXPECT_EQ(fit_right("ab", 4, Charset::Utf8), "  ab");
  EXPECT_EQ(fit_left("日本語", 4, Charset::Utf8), "日… ") << "a wide character that is cut leaves a blank";
  EXPECT_EQ(cells_of(fit_left("日本語", 5, Charset::Utf8)), 5U);
}

}  // namespace
}  // namespace ostravel::host::watch
