// SPDX-License-Identifier: MIT
#include "simulator/program/layout.h"

#include <gmock/gmock.h>

#include "program_support.h"
#include "simulator/program/data_type.h"

namespace ostravel::plc {
namespace {

using testing::block_of;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::load;
using testing::refusal;

TEST(Layout, MembersFollowEachOtherWithoutGaps) {
  const Program program = load(
      block_of("a : Bool; b : Int; c : Bool; d : LReal; e : String[3]; f : WString[2]; g : DTL; h : Byte;"));
  std::vector<std::uint32_t> offsets;
  for (const Symbol& member : program.blocks.at(0).members) offsets.push_back(member.offset);
  EXPECT_THAT(offsets, ElementsAre(0, 1, 3, 4, 12, 17, 25, 37));
  EXPECT_EQ(program.blocks.at(0).element_size, 38U);
  EXPECT_EQ(program.initial.size(), 38U);
}

TEST(Layout, EveryElementaryTypeHasItsSize) {
  const std::vector<std::pair<const char*, std::uint32_t>> sizes{
      {"Bool", 1},  {"Byte", 1},         {"Word", 2},     {"DWord", 4},         {"LWord", 8},
      {"SInt", 1},  {"Int", 2},          {"DInt", 4},     {"LInt", 8},          {"USInt", 1},
      {"UInt", 2},  {"UDInt", 4},        {"ULInt", 8},    {"Real", 4},          {"LReal", 8},
      {"Char", 1},  {"WChar", 2},        {"String", 256}, {"WString", 512},     {"Time", 4},
      {"LTime", 8}, {"S5Time", 2},       {"Date", 2},     {"TOD", 4},           {"Time_Of_Day", 4},
      {"LTOD", 8},  {"LTime_Of_Day", 8}, {"DT", 8},       {"Date_And_Time", 8}, {"LDT", 8},
      {"DTL", 12},  {"Counter", 2},      {"Timer", 2}};
  for (const auto& [name, size] : sizes) {
    const Program program = load(block_of(std::string("a : ") + name + ";"));
    EXPECT_EQ(program.blocks.at(0).members.at(0).element_size, size) << name;
    EXPECT_EQ(program.initial.size(), size) << name;
    EXPECT_EQ(program.blocks.at(0).members.at(0).type_name, "") << name;
  }
}

TEST(Layout, BlocksLieBehindEachOther) {
  const Program program = load(
      "DATA_BLOCK A STRUCT x : Int; END_STRUCT END_DATA_BLOCK DATA_BLOCK B STRUCT y : Int; END_STRUCT "
      "END_DATA_BLOCK");
  EXPECT_EQ(program.blocks.at(1).offset, 2U);
  EXPECT_EQ(testing::target(program, "B.y").address, 2U);
}

TEST(Layout, StructuresOfArraysRepeatTheirElement) {
  const Program program =
      load(block_of("s : Array[1..3] of Struct a : Byte; b : Int; END_STRUCT; t : Byte;"));
  const Symbol& s = program.blocks.at(0).members.at(0);
  EXPECT_EQ(s.element_size, 3U);
  EXPECT_EQ(element_count(s), 3U);
  EXPECT_EQ(program.blocks.at(0).members.at(1).offset, 9U);
}

TEST(Layout, DtlHasItsParts) {
  const Program program = load(block_of("t : DTL;"));
  const std::vector<Symbol>& parts = program.blocks.at(0).members.at(0).members;
  ASSERT_EQ(parts.size(), 8U);
  EXPECT_EQ(parts[0].name, "YEAR");
  EXPECT_EQ(parts[3].name, "WEEKDAY");
  EXPECT_EQ(parts[3].offset, 4U);
  EXPECT_EQ(parts[7].name, "NANOSECOND");
  EXPECT_EQ(parts[7].offset, 8U);
}

TEST(Layout, AViewLiesOverItsMember) {
  const Program program = load(
      "FUNCTION_BLOCK F VAR raw : Array[0..7] of Byte; view AT raw : Array[0..3] of Word; last : Byte; "
      "END_VAR "
      "END_FUNCTION_BLOCK DATA_BLOCK D F END_DATA_BLOCK");
  const std::vector<Symbol>& members = program.blocks.at(0).members;
  EXPECT_EQ(members.at(1).offset, members.at(0).offset);
  EXPECT_EQ(members.at(2).offset, 8U);
  EXPECT_TRUE(members.at(1).readable);
}

TEST(Layout, AViewOfBitsHasANameOnly) {
  std::vector<std::string> warnings;
  const Program program = load(
      "FUNCTION_BLOCK F VAR raw : Byte; bits AT raw : Array[0..7] of Bool; END_VAR END_FUNCTION_BLOCK "
      "DATA_BLOCK D F END_DATA_BLOCK",
      {}, &warnings);
  EXPECT_EQ(program.blocks.at(0).members.at(1).type, DataType::Opaque);
  EXPECT_EQ(program.initial.size(), 1U);
  EXPECT_THAT(warnings, ElementsAre(HasSubstr("the view \"bits\"")));
}

TEST(Layout, AViewMustFit) {
  EXPECT_THAT(refusal("FUNCTION_BLOCK F VAR r : Byte; v AT r : Word; END_VAR END_FUNCTION_BLOCK DATA_BLOCK D "
                      "F END_DATA_BLOCK"),
              HasSubstr("larger than \"r\""));
  EXPECT_THAT(
      refusal("FUNCTION_BLOCK F VAR v AT r : Word; END_VAR END_FUNCTION_BLOCK DATA_BLOCK D F END_DATA_BLOCK"),
      HasSubstr("not declared before it"));
}

TEST(Layout, NamesDeclaredTwiceAreReportedWithTheirPlace) {
  EXPECT_EQ(refusal(block_of("a : Int;\nA : Int;")),
            "test.db:5:1: the member \"A\" is declared twice; rename one of them");
  EXPECT_THAT(refusal("DATA_BLOCK A END_DATA_BLOCK\nDATA_BLOCK a END_DATA_BLOCK"),
              HasSubstr("already declared at test.db:1:12"));
}

TEST(Layout, TypesThatContainThemselvesAreRefused) {
  EXPECT_THAT(refusal("TYPE A STRUCT b : \"B\"; END_STRUCT END_TYPE TYPE B STRUCT a : Array[0..1] of A; "
                      "END_STRUCT END_TYPE "
                      "DATA_BLOCK D A END_DATA_BLOCK"),
              HasSubstr("the type \"A\" contains itself"));
}

TEST(Layout, HugeProgramsAreRefused) {
  EXPECT_THAT(refusal(block_of("a : Array[0..2147483647] of LReal;")), HasSubstr("more than 67108864 bytes"));
  EXPECT_THAT(refusal(block_of("a : Array[0..999999, 0..999999, 0..999999, 0..999999] of Bool;")),
              HasSubstr("bytes"));
  EXPECT_THAT(refusal(block_of("a : Array[0..40000000] of Byte; b : Array[0..40000000] of Byte;")),
              HasSubstr("bytes"));
  EXPECT_THAT(refusal(block_of("a : Array[-2147483648..2147483647] of Struct END_STRUCT;")),
              HasSubstr("bytes"));
  EXPECT_EQ(refusal(block_of("a : Array[1..67108864] of Byte;")), "");
}

// Its 3,600 million empty structures take no memory, and took hours to go through.
TEST(Layout, ArraysOfArraysOfEmptyStructuresAreRefused) {
  EXPECT_THAT(refusal(block_of("a : Array[0..60000] of Struct b : Array[0..60000] of Struct c : Struct "
                               "END_STRUCT; END_STRUCT; END_STRUCT; d : Bool;")),
              HasSubstr("bytes of memory"));
  EXPECT_EQ(
      refusal(block_of("a : Array[0..600] of Struct b : Array[0..600] of Struct END_STRUCT; END_STRUCT;")),
      "");
}

TEST(Layout, ArraysOfArraysOfTypesWithoutAKnownLayoutAreRefused) {
  EXPECT_THAT(
      refusal(block_of("a : Array[0..60000] of Struct b : Array[0..60000] of Struct c : TCON_Unknown; "
                       "END_STRUCT; END_STRUCT; d : Bool;")),
      HasSubstr("bytes of memory"));
}

TEST(Layout, TreesThatGrowByDoublingAreRefused) {
  std::string text = "TYPE T0 STRUCT a : Bool; b : Bool; END_STRUCT END_TYPE\n";
  for (int i = 1; i < 40; ++i) {
    const std::string inner = "T" + std::to_string(i - 1);
    text +=
        "TYPE T" + std::to_string(i) + " STRUCT a : " + inner + "; b : " + inner + "; END_STRUCT END_TYPE\n";
  }
  EXPECT_THAT(refusal(text + "DATA_BLOCK D T39 END_DATA_BLOCK"), HasSubstr("more than 500000 symbols"));
}

TEST(Layout, BoundsTheWrongWayRoundOrTooLargeAreRefused) {
  EXPECT_THAT(refusal(block_of("a : Array[2..1] of Int;")), HasSubstr("2..1 are the wrong way round"));
  EXPECT_THAT(refusal(block_of("a : Array[0..4294967296] of Int;")),
              HasSubstr("outside -2147483648 to 2147483647"));
  EXPECT_THAT(refusal(block_of("a : String[255];")), HasSubstr("length 255 is outside 1 to 254"));
  EXPECT_THAT(refusal(block_of("a : WString[16383];")), HasSubstr("outside 1 to 16382"));
}

TEST(Layout, FingerprintTellsTypesApartAndNotValues) {
  const auto fingerprint = [](std::string_view members) { return load(block_of(members)).fingerprint; };
  EXPECT_EQ(fingerprint("a : Int := 1;"), fingerprint("a : Int := 2;"));
  EXPECT_NE(fingerprint("a : Int;"), fingerprint("a : UInt;"));
  EXPECT_NE(fingerprint("a : Array[0..1] of Int;"), fingerprint("a : Array[1..2] of Int;"));
  EXPECT_NE(fingerprint("a : Int;"), fingerprint("b : Int;"));
  EXPECT_NE(fingerprint("a : Int;"), fingerprint("a { ExternalWritable := 'False' } : Int;"));
}

TEST(DataTypeTable, FindsTypesInAnyCase) {
  EXPECT_EQ(elementary_type("DATE_AND_TIME"), DataType::DateAndTime);
  EXPECT_EQ(elementary_type("ltod"), DataType::LTimeOfDay);
  EXPECT_FALSE(elementary_type("Struct").has_value());
  EXPECT_FALSE(elementary_type("Motor").has_value());
}

}  // namespace
}  // namespace ostravel::plc
