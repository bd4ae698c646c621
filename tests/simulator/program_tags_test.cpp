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
  return export_tags_csv(load(block_of(members)), warnings);
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
      table("a : DTL; b : DT; c : Array[3..4] of DTL;"),
      header + "D.a,BYTE,12,0,1,1,1\nD.b,BYTE,10,0,1,1,2\nD.c[3],BYTE,12,0,1,1,3\nD.c[4],BYTE,12,0,1,1,4\n");
}

TEST(Tags, TextsCountTheirCharacters) {
  EXPECT_EQ(
      table("a : String[20]; b : WString[30]; c : Array[2..5] of String[8]; d : Array[1..2, 1..3] of "
            "String[8];"),
      header + "D.a,STRING,20,,1,1,1\nD.b,STRING,30,,1,1,2\nD.c,STRING,8,2,4,1,3\nD.d,STRING,8,0,6,1,4\n");
}

TEST(Tags, ArraysNameTheirFirstElement) {
  EXPECT_EQ(table("a : Array[-2..2] of Int; b : Array[1..2, 1..3] of Real; c : Array[0..9] of Bool;"),
            header + "D.a,INT,5,-2,1,1,1\nD.b,REAL,6,0,1,1,2\nD.c,BitArray,10,0,1,1,3\n");
}

TEST(Tags, LongArraysAreSplit) {
  EXPECT_EQ(
      table("a : Array[1..2100] of Byte; b : Array[0..1024] of DInt; c : Array[0..512] of LReal;"),
      header +
          "D.a,BYTE,2048,1,1,1,1\nD.a,BYTE,52,2049,1,1,2\nD.b,DINT,1024,0,1,1,3\nD.b,DINT,1,1024,1,1,4\n"
          "D.c,LREAL,512,0,1,1,5\nD.c,LREAL,1,512,1,1,6\n");
}

TEST(Tags, WhatCannotBeAddressedIsAWarning) {
  std::vector<std::string> warnings;
  EXPECT_EQ(table("a : WChar; b : Array[0..99, 0..99] of Int; c : WString[3000]; d : Variant; e { "
                  "ExternalAccessible := 'False' } : Int;",
                  &warnings),
            header);
  EXPECT_THAT(warnings, ElementsAre(HasSubstr("D.a is left out"), HasSubstr("D.b is left out"),
                                    HasSubstr("D.c is left out")));
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
  EXPECT_THAT(warnings, ElementsAre(HasSubstr("stops after 100000 rows, at D.t[100001].a")));
}

}  // namespace
}  // namespace ostravel::plc
