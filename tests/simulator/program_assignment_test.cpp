// SPDX-License-Identifier: MIT
// Assignments between BEGIN and the end of a data block.
#include <gmock/gmock.h>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using testing::block_of;
using testing::bytes;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::load;
using testing::Octets;
using testing::refusal;

TEST(Assignment, ReachesElementsAndMembers) {
  const Program program =
      load(block_of("Shelf : Array[0..1, 1..2] of Struct Pos : Int; END_STRUCT; \"1_pump\" : Struct Name : "
                    "Char; END_STRUCT; "
                    "Big : Array[-3..-1] of Byte;",
                    "Shelf[1, 2].Pos := 10; \"1_pump\".Name := 'P'; Big[-2] := 5;"));
  EXPECT_EQ(program.initial, (Octets{0, 0, 0, 0, 0, 0, 0, 10, 'P', 0, 5, 0}));
}

TEST(Assignment, TheLastOneWins) {
  EXPECT_EQ(load(block_of("a : Byte := 1;", "a := 2; A := 3;")).initial, (Octets{3}));
}

TEST(Assignment, ReachesPartsOfADtl) {
  const Program program =
      load(block_of("Stamp : DTL;", "Stamp := DTL#2024-02-09-01:02:03.25; Stamp.YEAR := 2025;"));
  EXPECT_EQ(program.initial, (Octets{0x07, 0xE9, 2, 9, 6, 1, 2, 3, 0x0E, 0xE6, 0xB2, 0x80}));
}

TEST(Assignment, TakesWholeArraysAndStructures) {
  EXPECT_EQ(load(block_of("a : Array[0..2] of Byte; s : Struct x : Byte; y : Byte; END_STRUCT;",
                          "a := [1, 2(4)]; s := (5, 6);"))
                .initial,
            (Octets{1, 4, 4, 5, 6}));
}

TEST(Assignment, APathAloneIsAWarning) {
  std::vector<std::string> warnings;
  EXPECT_EQ(load(block_of("a : Byte;", "a; a := 4"), {}, &warnings).initial, (Octets{4}));
  EXPECT_THAT(warnings, ElementsAre(HasSubstr("test.db:7:1: a path without a value")));
}

TEST(Assignment, WhatDoesNotExistIsReportedWithItsPlace) {
  EXPECT_EQ(refusal(block_of("a : Byte;", "  b := 1;")),
            "test.db:7:3: D.b does not exist; check the names and the bounds");
  EXPECT_THAT(refusal(block_of("a : Array[0..1] of Byte;", "a[2] := 1;")),
              HasSubstr("D.a[2] does not exist"));
}

TEST(Assignment, BelowATypeWithoutLayoutNothingIsLost) {
  std::vector<std::string> warnings;
  const Program program =
      load(block_of("m : MC_Power; a : Byte;", "m.Enable := TRUE; m.List[3].x := 1; a := 2;"), {}, &warnings);
  EXPECT_EQ(program.initial, (Octets{2}));
  EXPECT_THAT(warnings, ElementsAre(HasSubstr("the type MC_Power is not known")));
}

}  // namespace
}  // namespace ostravel::plc
