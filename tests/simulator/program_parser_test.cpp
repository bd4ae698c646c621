// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using testing::block_of;
using testing::bytes;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::load;
using testing::Octets;
using testing::refusal;
using ::testing::SizeIs;
using ::testing::StartsWith;

std::vector<std::string> member_names(const Symbol& symbol) {
  std::vector<std::string> names;
  for (const Symbol& member : symbol.members) names.push_back(member.name);
  return names;
}

TEST(Parser, TakesHeadLinesInAnyOrder) {
  const Program program = load(R"(
// in front
DATA_BLOCK "Line 1"
TITLE = free 'text with { odd ; things
{ S7_Optimized_Access := 'TRUE' ;
  DB_Accessible_From_OPC_UA := 'FALSE' }   // spans lines
AUTHOR : any          FAMILY : 'any one'          NAME : any          VERSION : 0.1
(* between *)
NON_RETAIN
AUTHOR:John Smith
VERSION : '1.0'
KNOW_HOW_PROTECT
   STRUCT  // behind
      a : Int;
   END_STRUCT
BEGIN
END_DATA_BLOCK
)");
  ASSERT_THAT(program.blocks, SizeIs(1));
  EXPECT_EQ(program.blocks[0].name, "Line 1");
  EXPECT_THAT(member_names(program.blocks[0]), ElementsAre("a"));
}

TEST(Parser, KeywordsAndTypesTakeAnyCase) {
  const Program program =
      load("data_block X Struct a : INT; b : bool; end_Struct begin a := 3; b := true; End_Data_Block");
  EXPECT_EQ(program.initial, (Octets{0, 3, 1}));
}

TEST(Parser, SectionsOfABlockRepeatInOrder) {
  const Program program = load(
      "DATA_BLOCK X VAR a : Int; END_VAR VAR RETAIN b : Int; END_VAR VAR DB_SPECIFIC c : Int; END_VAR "
      "END_DATA_BLOCK");
  EXPECT_THAT(member_names(program.blocks.at(0)), ElementsAre("a", "b", "c"));
}

TEST(Parser, InstanceHoldsInputsOutputsInOutsAndStaticsInThisOrder) {
  const Program program = load(R"(
FUNCTION_BLOCK "Pump"
VAR k : Int; END_VAR
VAR_TEMP t : Int; END_VAR
VAR_IN_OUT io : Int; END_VAR
VAR_OUTPUT o : Int; END_VAR
VAR_INPUT i : Int; END_VAR
VAR CONSTANT c : Int := 5; END_VAR
BEGIN
  #k := 'END_FUNCTION_BLOCK';
END_FUNCTION_BLOCK
DATA_BLOCK "P" "Pump" BEGIN i := 1; o := 2; io := 3; k := 4; END_DATA_BLOCK
)");
  EXPECT_THAT(member_names(program.blocks.at(0)), ElementsAre("i", "o", "io", "k"));
  EXPECT_EQ(program.blocks.at(0).type_name, "Pump");
  EXPECT_EQ(program.initial, (Octets{0, 1, 0, 2, 0, 3, 0, 4}));
}

TEST(Parser, OldNumbersAreNames) {
  const Program program = load(R"(
TYPE UDT 7
STRUCT a : Int := 9; END_STRUCT
END_TYPE
FUNCTION FC 1: VOID
VAR_TEMP x : Int; END_VAR
BEGIN x := 1; END_FUNCTION
FUNCTION_BLOCK FB 3 VAR b : Int := 8; END_VAR END_FUNCTION_BLOCK
DATA_BLOCK DB 12 STRUCT u : UDT 7; END_STRUCT BEGIN END_DATA_BLOCK
DATA_BLOCK DB13 FB 3 BEGIN END_DATA_BLOCK
DATA_BLOCK "i" FB 3
VERSION : 0.1
BEGIN END_DATA_BLOCK
)");
  EXPECT_EQ(bytes(program, "DB12.u.a"), (Octets{0, 9}));
  EXPECT_EQ(bytes(program, "DB13.b"), (Octets{0, 8}));
  EXPECT_EQ(bytes(program, "i.b"), (Octets{0, 8}));
}

TEST(Parser, MembersMayShareADeclaration) {
  EXPECT_THAT(member_names(load(block_of("a, b : Int; c {S7_m_c := 'true'}: INT ;")).blocks.at(0)),
              ElementsAre("a", "b", "c"));
}

TEST(Parser, SemicolonAfterAStructureMayBeMissing) {
  EXPECT_THAT(
      member_names(
          load(block_of("s : Struct x : Int; END_STRUCT t : Array[0..1] of Struct y : Int; END_STRUCT"))
              .blocks.at(0)),
      ElementsAre("s", "t"));
  EXPECT_THAT(refusal(block_of("a : Int b : Int;")), HasSubstr("';' at the end of the member 'a'"));
}

TEST(Parser, ExternalAccessibleAndWritableTakeRightsAway) {
  const Program program =
      load(block_of("a : Int; b { ExternalAccessible := 'False'; S7_SetPoint := 'True'} : Int; c { "
                    "externalwritable := 'FALSE' } : Int;\n"
                    "s { ExternalAccessible := 'False' } : Struct x : Int; END_STRUCT;"));
  const std::vector<Symbol>& members = program.blocks.at(0).members;
  EXPECT_TRUE(members[0].readable && members[0].writable);
  EXPECT_FALSE(members[1].readable || members[1].writable);
  EXPECT_TRUE(members[2].readable);
  EXPECT_FALSE(members[2].writable);
  EXPECT_FALSE(members[3].members.at(0).readable);
}

TEST(Parser, ReadOnlyBlockCannotBeWritten) {
  const Program program = load("DATA_BLOCK X READ_ONLY STRUCT a : Int; END_STRUCT BEGIN END_DATA_BLOCK");
  EXPECT_TRUE(program.blocks.at(0).members.at(0).readable);
  EXPECT_FALSE(program.blocks.at(0).members.at(0).writable);
}

TEST(Parser, BoundsComeFromConstants) {
  LoadOptions options;
  options.constants = {{"Max_Tanks", "16#3"}, {"\"LEN\"", " 4 "}};
  const Program program = load(R"(
FUNCTION_BLOCK F
VAR a : Array[#N..3] of Byte; b : Array["MAX_TANKS" .. 4] of Byte; c : String["len"]; d : Array[0..M] of Byte; END_VAR
VAR CONSTANT N : Int := M; END_VAR
CONST M := 2; END_CONST
BEGIN END_FUNCTION_BLOCK
DATA_BLOCK D F END_DATA_BLOCK)",
                               options);
  const std::vector<Symbol>& members = program.blocks.at(0).members;
  EXPECT_EQ(members.at(0).dimensions, (std::vector<Dimension>{{2, 3}}));
  EXPECT_EQ(members.at(1).dimensions, (std::vector<Dimension>{{3, 4}}));
  EXPECT_EQ(members.at(2).string_length, 4U);
  EXPECT_EQ(members.at(3).dimensions, (std::vector<Dimension>{{0, 2}}));
}

TEST(Parser, AnUnknownConstantIsNamed) {
  EXPECT_THAT(
      refusal(block_of("a : Array[0..\"MAX\"] of Int;")),
      StartsWith(
          "test.db:4:14: the constant \"MAX\" is not known; give its value as --constant \"MAX=...\""));
}

TEST(Parser, CommentsStandAnywhere) {
  EXPECT_THAT(member_names(load("TYPE (* a *) \"T\" // b\n : STRUCT (* c *) x (* d *) : Array[0..1] of // "
                                "e\n Int; END_STRUCT END_TYPE "
                                "DATA_BLOCK D \"T\" END_DATA_BLOCK")
                               .blocks.at(0)),
              ElementsAre("x"));
}

TEST(Parser, FunctionsAndOrganizationBlocksAreLeftOut) {
  const Program program = load(R"(
ORGANIZATION_BLOCK "Main"
BEGIN
NETWORK
TITLE = Bob's
  "D".a := 1; M001: // label
END_ORGANIZATION_BLOCK
FUNCTION "f" : Int
VAR_INPUT a : Array[*] of WString; END_VAR
BEGIN END_FUNCTION
DATA_BLOCK D STRUCT a : Int; END_STRUCT END_DATA_BLOCK)");
  EXPECT_THAT(program.blocks, SizeIs(1));
}

TEST(Parser, ABlockWithoutEndIsReported) {
  EXPECT_THAT(refusal("FUNCTION f : Void BEGIN"), HasSubstr("add END_FUNCTION"));
  EXPECT_THAT(refusal("FUNCTION_BLOCK f BEGIN"), HasSubstr("add END_FUNCTION_BLOCK"));
  EXPECT_THAT(refusal("DATA_BLOCK f STRUCT a : Int;"), HasSubstr("the end of the text"));
  EXPECT_THAT(refusal("DATA_BLOCK f STRUCT a : Int; END_STRUCT"), HasSubstr("END_DATA_BLOCK"));
}

TEST(Parser, ARegionBehindTheBlocksIsLeftOutWithAWarning) {
  std::vector<std::string> warnings;
  load("DATA_BLOCK D END_DATA_BLOCK REGION a b\n x := 1; END_REGION", {}, &warnings);
  EXPECT_THAT(warnings, ElementsAre(HasSubstr("outside of any block")));
  EXPECT_THAT(refusal("DATA_BLOCK D END_DATA_BLOCK nonsense"), HasSubstr("found 'nonsense'"));
}

TEST(Parser, AnEmptyTextIsNoErrorButAWarning) {
  std::vector<std::string> warnings;
  EXPECT_THAT(load("// nothing\n", {}, &warnings).blocks, IsEmpty());
  EXPECT_THAT(warnings, ElementsAre("warning: test.db:2:1: the text declares nothing"));
}

TEST(Parser, ErrorsAreOneLineWithTheirPlace) {
  const std::string line = refusal(block_of("a : Array[0..1] Int;"));
  EXPECT_EQ(line, "test.db:4:17: found 'Int' where OF after the bounds of the array is expected");
  EXPECT_EQ(refusal("DATA_BLOCK \x01\x02").find_first_of("\x01\x02"), std::string::npos);
}

TEST(Parser, ArraysOfArraysAndSevenDimensionsAreRefused) {
  EXPECT_THAT(refusal(block_of("a : Array[0..1] of Array[0..1] of Int;")),
              HasSubstr("an array of arrays does not exist"));
  EXPECT_THAT(refusal(block_of("a : Array[0..1,0..1,0..1,0..1,0..1,0..1,0..1] of Int;")),
              HasSubstr("at most 6 dimensions"));
}

}  // namespace
}  // namespace ostravel::plc
