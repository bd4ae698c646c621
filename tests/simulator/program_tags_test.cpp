// SPDX-License-Identifier: MIT
#include "simulator/program/tags.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using testing::block_of;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::load;

const std::string header = "name,type,count,first,elements,device,id\n";

std::string table(std::string_view members, std::vector<std::string>* warnings = nullptr) {
  const Program program = load(block_of(members));
  const TagTable made = export_tags(program);
  if (warnings != nullptr) *warnings = warnings_of(made);
  return made.csv;
}

TEST(Tags, EveryTypeHasTheDriversType) {
  const std::vector<std::pair<std::string, std::string>> types{
      {"Bool", "BOOL"},  {"Byte", "BYTE"},   {"Word", "WORD"},    {"DWord", "DWORD"},  {"LWord", "LWORD"},
      {"SInt", "SINT"},  {"Int", "INT"},     {"DInt", "DINT"},    {"LInt", "LINT"},    {"USInt", "USINT"},
      {"UInt", "UINT"},  {"UDInt", "UDINT"}, {"ULInt", "ULINT"},  {"Real", "REAL"},    {"LReal", "LREAL"},
      {"Char", "USINT"}, {"Time", "DINT"},   {"LTime", "LINT"},   {"Date", "UINT"},    {"TOD", "UDINT"},
      {"LTOD", "ULINT"}, {"LDT", "ULINT"},   {"S5Time", "UDINT"}, {"Counter", "UINT"}, {"Timer", "UDINT"}};
  for (const auto& [type, tag] : types)
    EXPECT_EQ(table("a : " + type + ";"), header + "D.a," + tag + ",1,,1,1,1\n");
}

TEST(Tags, TypesOfManyPartsAreRowsOfBytes) {
  EXPECT_EQ(
      table("a : DTL; b : DT; c : Array[0..1] of DTL;"),
      header + "D.a,BYTE,12,0,1,1,1\nD.b,BYTE,10,0,1,1,2\nD.c[0],BYTE,12,0,1,1,3\nD.c[1],BYTE,12,0,1,1,4\n");
}

TEST(Tags, TextsCountTheirCharacters) {
  EXPECT_EQ(table("a : String[20]; b : WString[30]; c : Array[0..3] of String[8];"),
            header + "D.a,STRING,20,,1,1,1\nD.b,WSTRING,30,,1,1,2\nD.c,STRING,8,0,4,1,3\n");
}

TEST(Tags, ArraysNameTheirFirstElement) {
  EXPECT_EQ(table("a : Array[2..6] of Int; b : Array[1..2, -1..1] of Real; c : Array[0..9] of Bool;"),
            header + "D.a,INT,5,2,1,1,1\nD.b,REAL,6,0,1,1,2\nD.c,BitArray,10,0,1,1,3\n");
}

TEST(Tags, LongArraysAreSplit) {
  EXPECT_EQ(
      table("a : Array[1..2100] of Byte; b : Array[0..1024] of DInt; c : Array[0..512] of LReal;"),
      header +
          "D.a,BYTE,2048,1,1,1,1\nD.a,BYTE,52,2049,1,1,2\nD.b,DINT,1024,0,1,1,3\nD.b,DINT,1,1024,1,1,4\n"
          "D.c,LREAL,512,0,1,1,5\nD.c,LREAL,1,512,1,1,6\n");
}

// The driver names an element of an array of texts by cutting the path at its last bracket, and gives it one
// index.
TEST(Tags, TextsInSeveralDimensionsOrBehindAnIndexHaveARowEach) {
  EXPECT_EQ(table("d : Array[1..2, 0..1] of String[8];"),
            header +
                "\"D.d[1,0]\",STRING,8,,1,1,1\n\"D.d[1,1]\",STRING,8,,1,1,2\n"
                "\"D.d[2,0]\",STRING,8,,1,1,3\n\"D.d[2,1]\",STRING,8,,1,1,4\n");
  EXPECT_EQ(table("t : Array[1..1] of Struct n : Array[0..1] of String[3]; END_STRUCT;"),
            header + "D.t[1].n[0],STRING,3,,1,1,1\nD.t[1].n[1],STRING,3,,1,1,2\n");
  EXPECT_EQ(table("\"a[1]\" : Array[0..0] of String[3];"),
            header + "\"D.\"\"a[1]\"\"[0]\",STRING,3,,1,1,1\n");
}

// The driver reads an element of an array from 3 on behind three elements of zeros.
TEST(Tags, BytesOfDatesInArraysFromAboveZeroBeginBehindTheMissingOnes) {
  EXPECT_EQ(table("a : Array[3..3] of DTL; b : Array[2..2] of DT; c : Array[1..1, 1..1] of DTL;"),
            header + "D.a[3],BYTE,12,36,1,1,1\nD.b[2],BYTE,10,16,1,1,2\n\"D.c[1,1]\",BYTE,12,0,1,1,3\n");
}

TEST(Tags, ElementsBehindTheLastIndexHaveNamesOfTheirOwn) {
  const std::string csv = table("a : Array[0..65536] of Byte;");
  EXPECT_THAT(
      csv, HasSubstr("D.a,BYTE,2047,63488,1,1,32\nD.a[65535],BYTE,1,,1,1,33\nD.a[65536],BYTE,1,,1,1,34\n"));
}

TEST(Tags, LongArraysOfSeveralDimensionsAreSplitByElements) {
  EXPECT_EQ(table("b : Array[1..3, 0..999] of Int;"),
            header + "D.b,INT,2048,0,1,1,1\nD.b,INT,952,2048,1,1,2\n");
}

std::vector<std::string> reasons(std::string_view members) {
  std::vector<std::string> warnings;
  EXPECT_EQ(table(members, &warnings), header) << members;
  return warnings;
}

TEST(Tags, WhatTheDriverCannotReadIsLeftOutWithTheReason) {
  for (const auto& [members, reason] : std::vector<std::pair<std::string, std::string>>{
           {"a : WChar;", "D.a is left out: the driver has no type for WChar"},
           {"a : WString[1025];", "1025 characters do not fit into the driver's 2048 words; 1024 do"},
           {"a : Variant;", "the layout of the type Variant is not known"},
           {"a { ExternalAccessible := 'False' } : Int;", "not accessible from outside"},
           {"a : Array[-1..1] of Int;", "begin below 0 as zeros"},
           {"a : Array[-1..1] of Bool;", "begin below 0 as zeros"},
           {"a : Array[-1..1] of DTL;", "begin below 0 as zeros"},
           {"a : Array[1..2] of String[4];", "texts of an array that does not begin at 0"},
           {"a : Array[1..2] of S5Time;", "arrays of S5Time that do not begin at 0 shifted"},
           {"a : Array[2..3] of Timer;", "arrays of Timer that do not begin at 0 shifted"},
           {"a : Array[70000..70001] of Int;", "indexes end at 65534; begin the array below"},
           {"a : Array[6000..6001] of DTL;", "indexes end at 65534; begin the array at 0"},
           {"\"INDEX]\" : Int;", "takes INDEX] in a name for a placeholder"}}) {
    EXPECT_THAT(reasons(members), ElementsAre(HasSubstr(reason))) << members;
  }
}

TEST(Tags, ArraysThatReachBeyondTheLastIndexAreLeftOutThere) {
  std::vector<std::string> warnings;
  EXPECT_EQ(table("a : Array[65533..65540] of Byte;", &warnings), header + "D.a,BYTE,2,65533,1,1,1\n");
  EXPECT_THAT(warnings, ElementsAre(HasSubstr("D.a is left out: the driver's indexes end at 65534")));
}

TEST(Tags, MemberOfAnArraysElementsIsOneWarning) {
  EXPECT_THAT(reasons("t : Array[1..3] of Struct a : WChar; b : WChar; END_STRUCT;"),
              ElementsAre(HasSubstr("D.t[1].a (and 2 more of its kind) is left out"),
                          HasSubstr("D.t[1].b (and 2 more of its kind) is left out")));
}

TEST(Tags, ViewOfBitsIsLeftOut) {
  std::vector<std::string> warnings;
  EXPECT_EQ(table("a : Byte; b AT a : Array[0..7] of Bool;", &warnings), header + "D.a,BYTE,1,,1,1,1\n");
  EXPECT_THAT(warnings, ElementsAre(HasSubstr("D.b is left out: it has no memory of its own")));
}

TEST(Tags, MembersOfArraysOfStructuresHaveARowEach) {
  EXPECT_EQ(
      table("t : Array[1..2] of Struct \"Level, now\" : Real; END_STRUCT;"),
      header + "\"D.t[1].\"\"Level, now\"\"\",REAL,1,,1,1,1\n\"D.t[2].\"\"Level, now\"\"\",REAL,1,,1,1,2\n");
}

TEST(Tags, TheTableStopsAtItsLimit) {
  std::vector<std::string> warnings;
  const std::string csv = table("t : Array[1..100001] of Struct a : Bool; END_STRUCT;", &warnings);
  EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 100'001);
  EXPECT_THAT(warnings,
              ElementsAre(HasSubstr("D.t[100001].a is left out: the table ends after 100000 rows")));
}

}  // namespace
}  // namespace ostravel::plc
