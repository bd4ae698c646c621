// SPDX-License-Identifier: MIT
#include "simulator/program/system_types.h"

#include <gmock/gmock.h>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using testing::block_of;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::load;
using testing::refusal;

TEST(SystemTypes, TimersAndCountersHaveMembers) {
  std::vector<std::string> warnings;
  const Program program =
      load(block_of("t : TON_TIME; l : iec_ltimer; c : CTU_UDINT; u : IEC_COUNTER; r : TONR_TIME;"), {},
           &warnings);
  EXPECT_THAT(warnings, IsEmpty());
  EXPECT_EQ(byte_count(testing::target(program, "D.t.PT")), 4U);
  EXPECT_EQ(byte_count(testing::target(program, "D.l.ET")), 8U);
  EXPECT_EQ(testing::target(program, "D.c.CV").symbol->type, DataType::UDInt);
  EXPECT_EQ(testing::target(program, "D.u.CV").symbol->type, DataType::Int);
  EXPECT_EQ(testing::target(program, "D.r.R").symbol->type, DataType::Bool);
  EXPECT_EQ(program.blocks.at(0).members.at(0).type_name, "TON_TIME");
}

TEST(SystemTypes, ConnectionsHaveMembersAndValues) {
  const Program program = load(block_of("c : TCON_IP_v4;", "c.RemoteAddress.ADDR[1] := 192;"));
  EXPECT_EQ(testing::bytes(program, "D.c.ConnectionType"), (testing::Octets{0x0B}));
  EXPECT_EQ(testing::bytes(program, "D.c.RemoteAddress.ADDR"), (testing::Octets{192, 0, 0, 0}));
}

TEST(SystemTypes, NumbersOfHardwareKeepTheirTypesName) {
  const Program program = load(block_of("a : HW_IO; b : Conn_OUC; c : DB_ANY;"));
  EXPECT_EQ(program.blocks.at(0).members.at(0).type, DataType::UInt);
  EXPECT_EQ(program.blocks.at(0).members.at(0).type_name, "HW_IO");
  EXPECT_EQ(program.blocks.at(0).members.at(1).type, DataType::Word);
  EXPECT_FALSE(system_type_alias("HW_").has_value());
  EXPECT_FALSE(system_type_alias("HW_IO HW_IOSYSTEM").has_value());
  EXPECT_FALSE(system_type_alias("").has_value());
}

TEST(SystemTypes, AnUnknownOneIsOneMemberWithoutLayoutAndAWarning) {
  std::vector<std::string> warnings;
  const Program program = load("DATA_BLOCK P PID_Compact BEGIN END_DATA_BLOCK", {}, &warnings);
  EXPECT_EQ(program.blocks.at(0).type, DataType::Opaque);
  EXPECT_EQ(program.blocks.at(0).type_name, "PID_Compact");
  EXPECT_FALSE(program.blocks.at(0).readable);
  EXPECT_THAT(warnings, ElementsAre(HasSubstr("test.db:1:14: the type PID_Compact is not known")));
}

TEST(SystemTypes, OnesOwnTypeOfTheSameNameWins) {
  const Program program = load("TYPE TON STRUCT mine : Int; END_STRUCT END_TYPE " + block_of("t : TON;"));
  EXPECT_EQ(program.blocks.at(0).members.at(0).members.at(0).name, "mine");
}

TEST(SystemTypes, AMissingTypeInQuotesIsRefused) {
  EXPECT_THAT(refusal(block_of("m : \"Motor\";")),
              HasSubstr("\"Motor\" is not declared; add the source file"));
}

}  // namespace
}  // namespace ostravel::plc
