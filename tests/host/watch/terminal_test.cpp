// SPDX-License-Identifier: MIT
#include "host/watch/picture/terminal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ostravel::host::picture {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string after(std::string_view bytes, std::size_t lines = 4, std::size_t columns = 10) {
  Terminal terminal(lines, columns);
  terminal.write(bytes);
  EXPECT_THAT(terminal.unknown(), IsEmpty());
  return terminal.text();
}

TEST(Terminal, TextLinesAndWrapping) {
  EXPECT_EQ(after("ab\r\ncd"), "ab\ncd\n");
  EXPECT_EQ(after("0123456789ab"), "0123456789\nab\n");
  EXPECT_EQ(after("0123456789\r\nab"), "0123456789\nab\n") << "the last column alone wraps nothing";
}

TEST(Terminal, ScrollsAtTheLastLine) {
  EXPECT_EQ(after("1\r\n2\r\n3\r\n4\r\n5"), "2\n3\n4\n5\n");
  EXPECT_EQ(after("1\r\n2\r\n3\r\n4\033[2;3r\033[3;1H\n"), "1\n3\n\n4\n") << "only its region";
}

TEST(Terminal, MovesAndErases) {
  EXPECT_EQ(after("abcdef\033[1;3HX"), "abXdef\n");
  EXPECT_EQ(after("abcdef\033[3G\033[K"), "ab\n");
  EXPECT_EQ(after("abcdef\033[2G\033[3X"), "a   ef\n");
  EXPECT_EQ(after("abcdef\033[2G\033[2P"), "adef\n");
  EXPECT_EQ(after("abcdef\033[2G\033[2@"), "a  bcdef\n");
  EXPECT_EQ(after("a\r\nb\r\nc\033[2;1H\033[L"), "a\n\nb\nc\n");
  EXPECT_EQ(after("a\r\nb\r\nc\033[2;1H\033[M"), "a\nc\n");
  EXPECT_EQ(after("abc\033[2J"), "");
  EXPECT_EQ(after("a\033[4b"), "aaaaa\n");
}

TEST(Terminal, SequencesMayComeInPieces) {
  Terminal terminal(2, 10);
  for (const char c : std::string("\033[1;4H\xC3\xBC\033[31m!")) {
    terminal.write(std::string(1, c));
  }
  EXPECT_EQ(terminal.line(0), "   ü!");
  EXPECT_EQ(terminal.cell(0, 4).look.foreground, 1);
}

TEST(Terminal, WideCharactersTakeTwoCells) {
  Terminal terminal(2, 10);
  terminal.write("日x");
  EXPECT_EQ(terminal.line(0), "日x");
  EXPECT_EQ(terminal.cell(0, 1).text, "");
  EXPECT_EQ(terminal.cell(0, 2).text, "x");
}

TEST(Terminal, LooksAddUpUntilTheyAreReset) {
  Terminal terminal(1, 10);
  terminal.write("\033[1;7;32ma\033[0mb\033[38;5;9mc");
  EXPECT_TRUE(terminal.cell(0, 0).look.bold);
  EXPECT_TRUE(terminal.cell(0, 0).look.reverse);
  EXPECT_EQ(terminal.cell(0, 0).look.foreground, 2);
  EXPECT_EQ(terminal.cell(0, 1).look, Look{});
  EXPECT_EQ(terminal.cell(0, 2).look.foreground, 9);
}

TEST(Terminal, AlternateScreenLeavesTheMainOneAlone) {
  Terminal terminal(2, 10);
  terminal.write("shell\033[?1049h\033[?25l\033[Htable");
  EXPECT_TRUE(terminal.alternate());
  EXPECT_FALSE(terminal.cursor_shown());
  EXPECT_EQ(terminal.line(0), "table");
  terminal.write("\033[?1049l\033[?25h");
  EXPECT_EQ(terminal.line(0), "shell");
  EXPECT_TRUE(terminal.cursor_shown());
}

TEST(Terminal, ResizeKeepsWhatFits) {
  Terminal terminal(2, 10);
  terminal.write("0123456789\r\nab");
  terminal.resize(3, 5);
  EXPECT_EQ(terminal.text(), "01234\nab\n");
}

TEST(Terminal, TellsOfWhatItDoesNotKnow) {
  Terminal terminal(2, 10);
  terminal.write("\033[5y");
  EXPECT_THAT(terminal.unknown(), ElementsAre("\033[5y"));
}

}  // namespace
}  // namespace ostravel::host::picture
