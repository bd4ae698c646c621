// SPDX-License-Identifier: MIT
#include "simulator/program/lexer.h"

#include <gmock/gmock.h>

#include <vector>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::refusal;
using ::testing::StartsWith;

std::vector<std::string> words(std::string_view text) {
  Lexer lexer(text, "t");
  std::vector<std::string> result;
  for (Token token = lexer.next(); token.kind != TokenKind::End; token = lexer.next())
    result.push_back(token.text);
  return result;
}

TEST(Lexer, LeavesOutCommentsOfEveryForm) {
  EXPECT_THAT(words("a // x ' \" (*\nb (* x *) c (/* x */) d (** x **) e /* x */ f"),
              ElementsAre("a", "b", "c", "d", "e", "f"));
  EXPECT_THAT(words("a(**)b // " + std::string(700, 'x')), ElementsAre("a", "b"));
}

TEST(Lexer, ReportsACommentWithoutEndWhereItStarts) {
  EXPECT_THAT(refusal("DATA_BLOCK X\n  (* never closed"), StartsWith("test.db:2:3: the comment"));
}

TEST(Lexer, QuotedNamesHoldAnythingButQuotes) {
  EXPECT_THAT(words("\"Tank.1/2 Füllstand\" \"1_pump\" \"a+b-c\" \"DB#4\""),
              ElementsAre("Tank.1/2 Füllstand", "1_pump", "a+b-c", "DB#4"));
  EXPECT_THAT(refusal("DATA_BLOCK \"X\nEND_DATA_BLOCK"), HasSubstr("double quotes has no end"));
  EXPECT_THAT(refusal("DATA_BLOCK \"\"\nEND_DATA_BLOCK"), HasSubstr("must not be empty"));
}

TEST(Lexer, KeepsLiteralsWhole) {
  for (const std::string_view literal : {"'it$'s'",
                                         "WSTRING#'Ω'",
                                         "12_345",
                                         "2#0101_1111",
                                         "16#BEEF_0001",
                                         "4e2",
                                         "3.4E+38",
                                         "WORD#16#FF",
                                         "W#16#FF",
                                         "L#-5",
                                         "B#(1, 2)",
                                         "T#1d_2h_3m_4s_5ms",
                                         "T#-7M_8S",
                                         "LT#-3H_9US",
                                         "S5T#1h5m",
                                         "D#2024-2-9",
                                         "TOD#1:2:3.4",
                                         "LTOD#6:7:8.000000009",
                                         "DT#2024-02-09-01:02:03.5",
                                         "P#DB5.DBX0.0 BYTE 4",
                                         "P#0.0",
                                         "REAL#-3.4E+38",
                                         "BOOL#TRUE"}) {
    EXPECT_THAT(words(literal), ElementsAre(std::string(literal)));
  }
}

TEST(Lexer, BoundsAreNoFractions) {
  EXPECT_THAT(words("[1..4,-3..3]"), ElementsAre("[", "1", "..", "4", ",", "-", "3", "..", "3", "]"));
  EXPECT_THAT(words("[1 .. 2]"), ElementsAre("[", "1", "..", "2", "]"));
  EXPECT_THAT(words("INT#1..2"), ElementsAre("INT#1", "..", "2"));
}

TEST(Lexer, AQuoteInATextIsDoubledByItsDollar) {
  EXPECT_THAT(words("'a$'' 'b$$'"), ElementsAre("'a$''", "'b$$'"));
  EXPECT_THAT(refusal("DATA_BLOCK X STRUCT a : String := 'x$'; END_STRUCT\nEND_DATA_BLOCK"),
              HasSubstr("single quotes has no end"));
}

TEST(Lexer, ColumnsCountCharactersNotBytes) {
  Lexer lexer("äöü x\n  y", "t");
  EXPECT_EQ(lexer.next().position.column, 1U);
  EXPECT_EQ(lexer.next().position.column, 5U);
  const Token token = lexer.next();
  EXPECT_EQ(token.position.line, 2U);
  EXPECT_EQ(token.position.column, 3U);
}

TEST(Lexer, SkipsCodeMindingTextsAndComments) {
  Lexer lexer(
      "x := 'END_FUNCTION'; // END_FUNCTION\n(* END_FUNCTION *) \"END_FUNCTION\" \n  TITLE = Bob's "
      "END_FUNCTION\n"
      "  REGION it's END_FUNCTION\n y := 'open\n END_function z",
      "t");
  EXPECT_TRUE(lexer.skip_code("END_FUNCTION"));
  EXPECT_EQ(lexer.next().text, "z");
}

TEST(Lexer, SaysWhenCodeHasNoEnd) {
  Lexer lexer("x := 1;", "t");
  EXPECT_FALSE(lexer.skip_code("END_FUNCTION"));
}

}  // namespace
}  // namespace ostravel::plc
