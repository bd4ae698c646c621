// SPDX-License-Identifier: MIT
// Initial values of declarations, against bytes written by hand.
#include <gmock/gmock.h>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using testing::block_of;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::load;
using testing::Octets;
using testing::refusal;

Octets initial(std::string_view members) {
  return load(block_of(members)).initial;
}

TEST(InitialValue, DefaultsAreThoseOfThePlc) {
  EXPECT_EQ(initial("a : Int; b : Bool; c : Char; d : WChar;"), (Octets{0, 0, 0, ' ', 0, ' '}));
  EXPECT_EQ(initial("a : String[2]; b : WString[1];"), (Octets{2, 0, 0, 0, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(initial("a : DTL;"), (Octets{0x07, 0xB2, 1, 1, 5, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(initial("a : DT;"), (Octets{0x90, 1, 1, 0, 0, 0, 0, 0x02}));
}

TEST(InitialValue, EveryTypeTakesItsLiteral) {
  EXPECT_EQ(
      initial("a : Bool := TRUE; b : Int := - 2; c : Word := 16#BEEF; d : Real := 1.5; e : Char := 'x';"),
      (Octets{1, 0xFF, 0xFE, 0xBE, 0xEF, 0x3F, 0xC0, 0, 0, 'x'}));
  EXPECT_EQ(initial("a : String[4] := 'Fü'; b : WString[2] := WSTRING#'Ω';"),
            (Octets{4, 2, 'F', 0xFC, 0, 0, 0, 2, 0, 1, 0x03, 0xA9, 0, 0}));
  EXPECT_EQ(
      initial("a : Time := T#-1s; b : S5Time := S5T#1M_20S; c : Date := D#1990-1-2; d : TOD := TOD#0:0:1.5;"),
      (Octets{0xFF, 0xFF, 0xFC, 0x18, 0x18, 0x00, 0, 1, 0, 0, 0x05, 0xDC}));
}

TEST(InitialValue, ListsFillArraysInOrderAndMayBeShort) {
  EXPECT_EQ(initial("a : Array[1..4] of Byte := [1, 2];"), (Octets{1, 2, 0, 0}));
  EXPECT_EQ(initial("a : Array[0..1, -1..1] of Byte := [1, 2, 3, 4, 5, 6];"), (Octets{1, 2, 3, 4, 5, 6}));
}

TEST(InitialValue, RepetitionsFillRows) {
  EXPECT_EQ(initial("a : Array[0..1, 0..2] of Byte := [2(7), 4(9)];"), (Octets{7, 7, 9, 9, 9, 9}));
  EXPECT_EQ(initial("a : Array[1..7] of Byte := [2(2(1), 3), 4];"), (Octets{1, 1, 3, 1, 1, 3, 4}));
  EXPECT_EQ(initial("a : Array[1..2] of Byte := [0(7), 1];"), (Octets{1, 0}));
}

TEST(InitialValue, OldSourcesGiveListsWithoutBrackets) {
  EXPECT_EQ(initial("a : Array[1..5] of Byte := 1, 2, 3 (8);"), (Octets{1, 2, 8, 8, 8}));
  EXPECT_EQ(initial("a : Array[1..5] of Byte := 2 (1, 2);"), (Octets{1, 2, 1, 2, 0}));
}

TEST(InitialValue, MoreValuesThanElementsAreRefused) {
  EXPECT_THAT(refusal(block_of("a : Array[1..2] of Byte := [1, 2, 3];")),
              HasSubstr("test.db:4:35: more values"));
  EXPECT_THAT(refusal(block_of("a : Array[1..2] of Byte := [3(1)];")), HasSubstr("more values"));
  EXPECT_THAT(refusal(block_of("a : Array[1..2] of Byte := [9223372036854775807(1, 2)];")),
              HasSubstr("more values"));
  EXPECT_THAT(refusal(block_of("a : Array[1..2] of Byte := [-1(1)];")), HasSubstr("cannot repeat"));
}

TEST(InitialValue, StructuresKeepDefaultsWhereNothingIsGiven) {
  const std::string type =
      "TYPE T STRUCT a : Byte := 1; b : Byte := 2; c : Array[0..1] of Struct x : Byte := 3; END_STRUCT; "
      "d : Byte := 4; END_STRUCT END_TYPE\n";
  EXPECT_EQ(load(type + block_of("t : T;")).initial, (Octets{1, 2, 3, 3, 4}));
  EXPECT_EQ(load(type + block_of("t : T := (7, (), [(), (9)], 5);")).initial, (Octets{7, 2, 3, 9, 5}));
  EXPECT_EQ(load(type + block_of("t : T := (7, (), (), 5);")).initial, (Octets{7, 2, 3, 3, 5}));
  EXPECT_EQ(load(type + block_of("t : Array[0..1] of T := [(7), ()];")).initial,
            (Octets{7, 2, 3, 3, 4, 1, 2, 3, 3, 4}));
  EXPECT_THAT(refusal(type + block_of("t : T := (1, 2, [], 4, 5);")), HasSubstr("more values"));
  EXPECT_THAT(refusal(type + block_of("t : T := 5;")), HasSubstr("in parentheses"));
}

TEST(InitialValue, DeclarationsOutsideWinOverThoseInside) {
  const std::string types =
      "TYPE Inner STRUCT a : Byte := 1; END_STRUCT END_TYPE TYPE Outer STRUCT i : Inner := (2); j : Inner; "
      "END_STRUCT END_TYPE\n";
  EXPECT_EQ(load(types + block_of("o : Outer; p : Outer := ((), (5));")).initial, (Octets{2, 1, 2, 5}));
}

TEST(InitialValue, ConstantsOfTheBlockAndGlobalOnes) {
  LoadOptions options;
  options.constants = {{"BASE", "16#10"}, {"START", "'ab'"}};
  const Program program = load(
      "FUNCTION_BLOCK F VAR a : Int := \"BASE\"; b : Int := #LOCAL; c : String[2] := START; END_VAR VAR "
      "CONSTANT LOCAL : Int := -3; "
      "END_VAR END_FUNCTION_BLOCK DATA_BLOCK D F END_DATA_BLOCK",
      options);
  EXPECT_EQ(program.initial, (Octets{0, 0x10, 0xFF, 0xFD, 2, 2, 'a', 'b'}));
  EXPECT_THAT(refusal(block_of("a : Int := \"NO\";")), HasSubstr("--constant \"NO=...\""));
}

TEST(InitialValue, ConstantsThatNameEachOtherAreRefused) {
  EXPECT_THAT(refusal("FUNCTION_BLOCK F VAR a : Int := A; END_VAR VAR CONSTANT A : Int := B; B : Int := A; "
                      "END_VAR END_FUNCTION_BLOCK "
                      "DATA_BLOCK D F END_DATA_BLOCK"),
              HasSubstr("is not known"));
}

TEST(InitialValue, NumbersOfHardwareAreAWarning) {
  std::vector<std::string> warnings;
  const Program program = load(block_of("a : HW_IO := \"Local~PN\";"), {}, &warnings);
  EXPECT_EQ(program.initial, (Octets{0, 0}));
  EXPECT_THAT(warnings, ElementsAre(HasSubstr("the constant \"Local~PN\" is not known")));
}

TEST(InitialValue, ValuesThatDoNotFitAreRefusedWithTheirPlace) {
  EXPECT_EQ(refusal(block_of("a : Byte := 256;")),
            "test.db:4:13: '256' is out of the range of the type Byte");
  EXPECT_THAT(refusal(block_of("a : Int := 'x';")), HasSubstr("is no value of the type Int"));
  EXPECT_THAT(refusal(block_of("a : String[2] := 'abc';")), HasSubstr("more than 2 characters"));
  EXPECT_THAT(refusal(block_of("a : String[2] := '日';")),
              HasSubstr("characters that the type String does not have"));
  EXPECT_THAT(refusal(block_of("a : Int := [1];")), HasSubstr("takes one value"));
}

TEST(InitialValue, ParametersWithoutLayoutTakeAnything) {
  const Program program = load(
      block_of("a : Any := P#DB5.DBX0.0 BYTE 4; b : Variant := NULL; c : Timer := T 5; d : Counter := C 5;"));
  EXPECT_EQ(program.initial, (Octets{0x00, 0x05, 0x00, 0x05}));
}

}  // namespace
}  // namespace ostravel::plc
