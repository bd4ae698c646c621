// SPDX-License-Identifier: MIT
// Damaged sources: whatever comes in, the loader gives a program or a line, and never anything else.
#include <gmock/gmock.h>

#include <random>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using testing::block_of;
using ::testing::HasSubstr;
using testing::refusal;

const std::string sample = R"(TYPE "T" VERSION : 0.1
STRUCT a { S7_SetPoint := 'True' } : Array[1..4, -3..3] of Real := [28(0.5)]; b : String[20] := 'it$'s'; END_STRUCT; END_TYPE
FUNCTION_BLOCK "F" { S7_Optimized_Access := 'TRUE' }
VAR_INPUT i : Bool; END_VAR VAR raw : Array[0..7] of Byte; v AT raw : Array[0..3] of Word; t : TON_TIME; END_VAR
VAR CONSTANT N : Int := 3; END_VAR
BEGIN #i := FALSE; (* code *) END_FUNCTION_BLOCK
DATA_BLOCK "D" TITLE = x
NON_RETAIN
STRUCT u : Array[0..2] of "T"; s : Struct x : DTL; y : LTime := LT#5ns; END_STRUCT; f : "F"; w : WString[4] := WSTRING#'Ω'; END_STRUCT;
BEGIN u[1].a[2, -1] := 4e2; s.x := DTL#2024-2-9-1:2:3.5; s.x.YEAR := 2025; u[0].b := 'q'; END_DATA_BLOCK
)";

// A program or a SourceError; everything else fails the test by itself.
void survive(const std::string& text) {
  const std::string line = refusal(text);
  EXPECT_EQ(line.find('\n'), std::string::npos);
}

TEST(Damage, TheSampleItselfIsSound) {
  EXPECT_EQ(refusal(sample), "");
}

TEST(Damage, TextsThatEndEarly) {
  for (std::size_t length = 0; length <= sample.size(); ++length) survive(sample.substr(0, length));
}

TEST(Damage, TextsWithWrongBytes) {
  std::mt19937 random(20240305);  // a fixed start: the same texts in every run
  for (int round = 0; round < 2000; ++round) {
    std::string text = sample;
    for (int change = 0; change < 4; ++change) {
      const std::size_t place = random() % text.size();
      const std::size_t other = random() % text.size();
      switch (random() % 4) {
        case 0:
          text[place] = static_cast<char>(random() % 256);
          break;
        case 1:
          text.erase(place, random() % 8);
          break;
        case 2:
          text.insert(place, text.substr(other, random() % 24));
          break;
        default:
          text[place] = "[](){};:=.,'\"$#*-0"[random() % 18];
          break;
      }
    }
    survive(text);
  }
}

TEST(Damage, DeepNestingIsRefused) {
  std::string open;
  for (int i = 0; i < 100'000; ++i) open += "s : Struct ";
  EXPECT_THAT(refusal("DATA_BLOCK D STRUCT " + open), HasSubstr("nested deeper than 64 levels"));
  EXPECT_THAT(refusal(block_of("a : Int := " + std::string(100'000, '(') + ";")),
              HasSubstr("nested deeper than 64 levels"));
  EXPECT_THAT(refusal(block_of("a : Int := " + std::string(100'000, '[') + ";")),
              HasSubstr("nested deeper than 64 levels"));
}

TEST(Damage, LongChainsOfTypesAreRefused) {
  std::string text;
  for (int i = 0; i < 1000; ++i) {
    text +=
        "TYPE T" + std::to_string(i) + " STRUCT a : T" + std::to_string(i + 1) + "; END_STRUCT END_TYPE\n";
  }
  text += "TYPE T1000 STRUCT a : Int; END_STRUCT END_TYPE\n";
  EXPECT_THAT(refusal(text + "DATA_BLOCK D T0 END_DATA_BLOCK"), HasSubstr("more than 64 levels"));
}

TEST(Damage, DepthCountsOverTypesAndStructuresTogether) {
  std::string text;
  for (int i = 0; i < 30; ++i) {
    text += "TYPE T" + std::to_string(i) + " STRUCT ";
    for (int level = 0; level < 50; ++level) text += "s : STRUCT ";
    text += "a : T" + std::to_string(i + 1) + "; ";
    for (int level = 0; level < 51; ++level) text += "END_STRUCT; ";
    text += "END_TYPE\n";
  }
  text += "TYPE T30 STRUCT a : Int; END_STRUCT END_TYPE\n";
  EXPECT_THAT(refusal(text + "DATA_BLOCK D T0 END_DATA_BLOCK"), HasSubstr("more than 64 levels"));
}

TEST(Damage, DepthCountsTypesThatOtherBlocksUsedBefore) {
  std::string text = "TYPE T0 STRUCT a : Int; END_STRUCT END_TYPE\n";
  for (int i = 1; i < 200; ++i) {
    const std::string number = std::to_string(i);
    text += "TYPE T" + number + " STRUCT a : T" + std::to_string(i - 1) + "; END_STRUCT END_TYPE\n";
    text += "DATA_BLOCK D" + number + " T" + number + " END_DATA_BLOCK\n";
  }
  EXPECT_THAT(refusal(text), HasSubstr("more than 64 levels"));
}

TEST(Damage, ListsOfBytesInListsOfBytesAreRefused) {
  std::string literal;
  for (int i = 0; i < 1'000'000; ++i) literal += "B#(";
  literal += std::string(1'000'000, ')');
  std::vector<std::uint8_t> element(1);
  Symbol symbol;
  symbol.type = DataType::Byte;
  symbol.element_size = 1;
  EXPECT_TRUE(element_from_literal(symbol, literal, element).has_value());
}

TEST(Damage, MillionsOfRepetitionsTakeNoTime) {
  EXPECT_EQ(refusal(block_of("a : Array[1..60000000] of Byte := [60000000(7)];")), "");
}

}  // namespace
}  // namespace ostravel::plc
