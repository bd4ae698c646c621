// SPDX-License-Identifier: MIT
#include "simulator/program/generators.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;
using testing::block_of;
using ::testing::HasSubstr;
using testing::load;

class World {
 public:
  explicit World(std::string_view members) : program_(load(block_of(members))) {}

  void rule(std::string_view text) { generators_.attach(program_.blocks, text); }
  std::uint64_t live(std::uint64_t limit = 100'000) {
    return generators_.attach_live(program_.blocks, limit);
  }
  json at(std::uint64_t cycle, std::string_view path) {
    generators_.step(program_.initial, cycle);
    return to_json(testing::target(program_, path), Bytes(program_.initial));
  }
  std::string refusal(std::string_view text) {
    try {
      rule(text);
    } catch (const GeneratorError& error) {
      return error.what();
    }
    return {};
  }
  const Generators& generators() const { return generators_; }

 private:
  Program program_;
  Generators generators_;
};

TEST(Generators, RampRunsFromLowToHighInAPeriod) {
  World world("a : Int;");
  world.rule("D.a=ramp(10,20,11)");
  EXPECT_EQ(world.at(0, "D.a"), json(10));
  EXPECT_EQ(world.at(3, "D.a"), json(13));
  EXPECT_EQ(world.at(10, "D.a"), json(20));
  EXPECT_EQ(world.at(11, "D.a"), json(10));
}

TEST(Generators, SineSwingsBetweenLowAndHigh) {
  World world("a : LReal;");
  world.rule("D.a = sine ( -1 , 3 , 4 )");
  EXPECT_DOUBLE_EQ(world.at(0, "D.a").get<double>(), 1.0);
  EXPECT_DOUBLE_EQ(world.at(1, "D.a").get<double>(), 3.0);
  EXPECT_DOUBLE_EQ(world.at(3, "D.a").get<double>(), -1.0);
}

TEST(Generators, CounterWrapsAtHighOrAtTheTypesEnd) {
  World world("a : USInt; b : USInt; c : ULInt; d : Counter; e : Int;");
  world.rule("D.a=counter");
  world.rule("D.b=counter(5,7)");
  world.rule("D.c=counter");
  world.rule("D.d=counter");
  world.rule("D.e=counter(-3,0)");
  EXPECT_EQ(world.at(256, "D.a"), json(0));
  EXPECT_EQ(world.at(4, "D.b"), json(6));
  EXPECT_EQ(world.at(18446744073709551615U, "D.c"), json(18446744073709551615U));
  EXPECT_EQ(world.at(1001, "D.d"), json(1));
  EXPECT_EQ(world.at(1, "D.e"), json(-2));
}

TEST(Generators, ToggleChangesEveryPeriod) {
  World world("a : Bool; b : Int;");
  world.rule("D.a=toggle");
  world.rule("D.b=toggle(-1,1,2)");
  EXPECT_EQ(world.at(0, "D.a"), json(false));
  EXPECT_EQ(world.at(1, "D.a"), json(true));
  EXPECT_EQ(world.at(1, "D.b"), json(-1));
  EXPECT_EQ(world.at(2, "D.b"), json(1));
}

TEST(Generators, TextTellsTheCycle) {
  World world("a : String[20]; b : WString[5]; c : Char;");
  world.rule("D.a=text");
  world.rule("D.b=text");
  world.rule("D.c=text");
  EXPECT_EQ(world.at(27, "D.a"), json("cycle 27"));
  EXPECT_EQ(world.at(27, "D.b"), json("cycle"));
  EXPECT_EQ(world.at(27, "D.c"), json("B"));
}

TEST(Generators, ValuesStayInTheTypesRange) {
  World world("a : SInt; b : USInt;");
  world.rule("D.a=toggle(-1000,1000)");
  world.rule("D.b=toggle(-1000,1000)");
  EXPECT_EQ(world.at(0, "D.a"), json(-128));
  EXPECT_EQ(world.at(1, "D.a"), json(127));
  EXPECT_EQ(world.at(0, "D.b"), json(0));
  EXPECT_EQ(world.at(1, "D.b"), json(255));
}

TEST(Generators, AValueDependsOnTheCycleAlone) {
  const char* const members =
      "Live : Struct a : Real; b : Int; c : String[20]; d : DTL; e : LDT; END_STRUCT;";
  World stepped(members);
  World jumped(members);
  stepped.live();
  jumped.live();
  for (std::uint64_t cycle = 0; cycle < 77; ++cycle) stepped.at(cycle, "D");
  EXPECT_EQ(stepped.at(77, "D"), jumped.at(77, "D"));
}

TEST(Generators, ElementsOfAnArrayAreACycleApart) {
  World world("a : Array[0..2] of Int;");
  world.rule("D.a=counter");
  EXPECT_EQ(world.at(5, "D.a"), (json{5, 6, 7}));
  world.rule("D.a[1]=counter(100,200)");
  EXPECT_EQ(world.at(5, "D.a"), (json{5, 105, 7}));
}

TEST(Generators, LiveDrivesEveryTypeAndNothingElse) {
  World world(
      "other : Int; live : Array[0..1] of Struct a : Bool; b : Struct c : Word; END_STRUCT; t : TOD; "
      "END_STRUCT;");
  EXPECT_EQ(world.live(), 0U);
  EXPECT_EQ(world.generators().size(), 6U);
  EXPECT_EQ(world.at(3, "D.other"), json(0));
  EXPECT_EQ(world.at(3, "D.live[1].b.c"), json(3));
  EXPECT_EQ(world.at(3, "D.live[0].t"), json("TOD#00:00:03.000"));
}

TEST(Generators, LiveStopsAtItsLimitAndSaysHowManyAreLeft) {
  World world("Live : Array[0..9] of Struct a : Bool; END_STRUCT;");
  EXPECT_EQ(world.live(4), 6U);
  EXPECT_EQ(world.generators().size(), 4U);
}

TEST(Generators, RulesWinOverLiveInAnyOrder) {
  World before("Live : Struct a : Int; END_STRUCT;");
  before.rule("D.Live.a=toggle(7,7)");
  before.live();
  EXPECT_EQ(before.at(3, "D.Live.a"), json(7));
  World after("Live : Struct a : Int; END_STRUCT;");
  after.live();
  after.rule("D.Live.a=toggle(8,8)");
  EXPECT_EQ(after.at(3, "D.Live.a"), json(8));
  after.rule("D.Live.a=none");
  EXPECT_EQ(after.generators().size(), 0U);
}

TEST(Generators, RulesThatDoNotFitAreRefusedInOneLine) {
  World world("a : Int; b : Bool; s : Struct x : Int; END_STRUCT; \"c=d\" : Int;");
  EXPECT_THAT(world.refusal("D.a"), HasSubstr("write PATH=KIND"));
  EXPECT_THAT(world.refusal("D.x=ramp"), HasSubstr("there is no 'D.x'; it stops to fit at character 3"));
  EXPECT_THAT(world.refusal("D.a=spin"), HasSubstr("'spin' is none of"));
  EXPECT_THAT(world.refusal("D.b=ramp"), HasSubstr("ramp cannot drive the type Bool"));
  EXPECT_THAT(world.refusal("D.s=ramp"), HasSubstr("not a structure"));
  EXPECT_THAT(world.refusal("D.a=ramp(1"), HasSubstr("close it"));
  EXPECT_THAT(world.refusal("D.a=ramp(1)"), HasSubstr("give low and high"));
  EXPECT_THAT(world.refusal("D.a=ramp(1,x)"), HasSubstr("'x' is no number"));
  EXPECT_THAT(world.refusal("D.a=ramp(1,2,0)"), HasSubstr("period"));
  EXPECT_THAT(world.refusal("D.a=ramp(1,nan)"), HasSubstr("no number"));
  EXPECT_THAT(world.refusal("D.a=none"), HasSubstr("no generator drives"));
  EXPECT_EQ(world.refusal("D.\"c=d\"=ramp"), "");
}

TEST(Generators, StepStaysInsideMemory) {
  const Program program = load(block_of("a : Array[0..9] of Int;"));
  Generators generators;
  generators.attach(program.blocks, "D.a=counter");
  std::vector<std::uint8_t> memory(19, 0xEE);
  generators.step(memory, 5);
  EXPECT_EQ(memory, std::vector<std::uint8_t>(19, 0xEE));
}

}  // namespace
}  // namespace ostravel::plc
