// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/plc/plc.h"
#include "simulator/program/encoding.h"
#include "simulator/program/generators.h"
#include "tests/simulator/plc_program.h"

namespace ostravel::plc {
namespace {

using wire::ItemResult;
using wire::JobResult;
using Data = std::vector<std::uint8_t>;

class PlcJobs : public testing::Test {
 protected:
  wire::Answer serve(wire::RequestBody body) { return plc.serve({1, 1000, std::move(body)}, rights); }
  std::uint32_t address(std::string_view path) {
    return static_cast<std::uint32_t>(resolve(plc.program().blocks, path).value().address);
  }
  wire::ReadAnswerItem read(std::string_view path, std::uint32_t length) {
    const auto answer = serve(wire::ReadRequest{plc.program().fingerprint, {{address(path), length}}});
    return std::get<wire::ReadAnswer>(answer.body).items.at(0);
  }
  ItemResult write(std::string_view path, Data data) {
    const auto answer =
        serve(wire::WriteRequest{plc.program().fingerprint, {{address(path), std::move(data)}}});
    return std::get<wire::WriteAnswer>(answer.body).items.at(0);
  }

  Plc plc{test_program()};
  ClientRights rights = plc.admit();
};

TEST_F(PlcJobs, WrittenBytesAreReadBack) {
  EXPECT_EQ(write("Plant.aInt", {0x12, 0x34}), ItemResult::Ok);
  EXPECT_EQ(read("Plant.aInt", 2).data, (Data{0x12, 0x34}));
}

TEST_F(PlcJobs, AllItemsOfAJobComeFromOneCycle) {
  for (int i = 0; i < 3; ++i) plc.step();
  const auto answer = serve(wire::ReadRequest{
      plc.program().fingerprint, {{address("Simulation.Cycle"), 4}, {address("Plant.\"Odd.Name 1\""), 2}}});
  const auto& read = std::get<wire::ReadAnswer>(answer.body);
  EXPECT_EQ(read.cycle, 3U);
  EXPECT_EQ(read.items.at(0).data, (Data{0, 0, 0, 3}));
  EXPECT_EQ(read.items.at(1).data, (Data{0, 77}));
}

TEST_F(PlcJobs, BadItemDoesNotSpoilTheOthers) {
  const auto answer =
      serve(wire::ReadRequest{plc.program().fingerprint,
                              {{0xFFFFFFFF, 4}, {address("Plant.Hidden"), 2}, {address("Plant.Locked"), 2}}});
  const auto& items = std::get<wire::ReadAnswer>(answer.body).items;
  EXPECT_EQ(answer.result, JobResult::Ok);
  EXPECT_EQ(items.at(0).result, ItemResult::AddressInvalid);
  EXPECT_EQ(items.at(1).result, ItemResult::NotPermitted);
  EXPECT_EQ(items.at(2).data, (Data{0, 5}));
}

TEST_F(PlcJobs, LockedVariableKeepsItsValue) {
  EXPECT_EQ(write("Plant.Locked", {1, 1}), ItemResult::NotPermitted);
  EXPECT_EQ(read("Plant.Locked", 2).data, (Data{0, 5}));
}

TEST_F(PlcJobs, CycleNumberCannotBeWritten) {
  EXPECT_EQ(write("Simulation.Cycle", {1, 1, 1, 1}), ItemResult::NotPermitted);
}

TEST_F(PlcJobs, AddressesOfAnotherProgramAreRefused) {
  const auto answer = serve(wire::ReadRequest{plc.program().fingerprint + 1, {{address("Plant.aInt"), 2}}});
  EXPECT_EQ(answer.result, JobResult::ProgramChanged);
  EXPECT_TRUE(std::get<wire::ReadAnswer>(answer.body).items.empty());
  EXPECT_EQ(serve(wire::WriteRequest{1, {{address("Plant.aInt"), {1, 1}}}}).result,
            JobResult::ProgramChanged);
  EXPECT_EQ(read("Plant.aInt", 2).data, (Data{0, 0}));
}

TEST_F(PlcJobs, EmptyJobNeedsNoFingerprint) {
  EXPECT_EQ(serve(wire::ReadRequest{}).result, JobResult::Ok);
  EXPECT_EQ(serve(wire::WriteRequest{}).result, JobResult::Ok);
}

TEST_F(PlcJobs, HugeJobIsRefusedBeforeItTakesMemory) {
  const auto all = static_cast<std::uint32_t>(0xFFFFFFFF);
  EXPECT_EQ(serve(wire::ReadRequest{plc.program().fingerprint, {{0, all}, {0, all}}}).result,
            JobResult::TooLarge);
}

TEST_F(PlcJobs, FailingVariableFailsUntilItIsHealed) {
  const auto element = resolve(plc.program().blocks, "Plant.Numbers[4]").value();
  plc.fail(element);
  EXPECT_EQ(read("Plant.Numbers[4]", 2).result, ItemResult::Faulty);
  EXPECT_EQ(write("Plant.Numbers[4]", {1, 1}), ItemResult::Faulty);
  EXPECT_EQ(read("Plant.Numbers", 16).result, ItemResult::Faulty);  // touches it
  EXPECT_EQ(read("Plant.Numbers[5]", 2).result, ItemResult::Ok);
  plc.heal(element);
  EXPECT_EQ(read("Plant.Numbers[4]", 2).result, ItemResult::Ok);
}

TEST_F(PlcJobs, UploadBringsTheTreeWithTheBuiltInBlock) {
  const auto answer = serve(wire::SymbolsRequest{});
  const auto& symbols = std::get<wire::SymbolsAnswer>(answer.body);
  EXPECT_EQ(symbols.fingerprint, plc.program().fingerprint);
  EXPECT_EQ(symbols.blocks, plc.program().blocks);
  EXPECT_EQ(symbols.blocks.back().name, "Simulation");
}

TEST_F(PlcJobs, PastCycleShowsWhatWasWrittenInIt) {
  const auto target = resolve(plc.program().blocks, "Plant.aInt").value();
  plc.step();  // now 1
  write("Plant.aInt", {0, 1});
  plc.step();  // now 2
  write("Plant.aInt", {0, 2});
  EXPECT_EQ(plc.image(target, 0), (Data{0, 0}));
  EXPECT_EQ(plc.image(target, 1), (Data{0, 1}));
  EXPECT_EQ(plc.image(target, 2), (Data{0, 2}));
  EXPECT_FALSE(plc.image(target, 3));
}

TEST_F(PlcJobs, BlockNamedLiveMoves) {
  const auto before = read("Live.Count", 2).data;
  plc.step();
  EXPECT_NE(read("Live.Count", 2).data, before);
}

TEST_F(PlcJobs, JobsAreCounted) {
  read("Plant.aInt", 2);
  read("Plant.aInt", 2);
  write("Plant.aInt", {0, 0});
  serve(wire::HelloRequest{});
  EXPECT_EQ(plc.jobs().reads, 2U);
  EXPECT_EQ(plc.jobs().writes, 1U);
  EXPECT_EQ(plc.jobs().others, 1U);
}

TEST(PlcWithRule, VariableFollowsItsGenerator) {
  PlcOptions options;
  options.generator_rules = {"Plant.aUInt=counter(10,0)"};
  Plc plc(test_program(), options);
  const auto target = resolve(plc.program().blocks, "Plant.aUInt").value();
  plc.step();
  plc.step();
  EXPECT_EQ(plc.image(target, 2), (Data{0, 12}));
}

TEST(PlcWithRule, BadRuleIsRefused) {
  PlcOptions options;
  options.generator_rules = {"Plant.Nowhere=counter"};
  EXPECT_THROW(Plc(test_program(), options), GeneratorError);
}

TEST(PlcWithBlockSimulation, KeepsTheProgramsOwn) {
  Plc plc(load_text("DATA_BLOCK \"Simulation\"\nVAR\nMine : Int := 3;\nEND_VAR\nBEGIN\nEND_DATA_BLOCK\n",
                    "own.db"));
  EXPECT_EQ(plc.program().blocks.size(), 1U);
  EXPECT_FALSE(resolve(plc.program().blocks, "Simulation.Cycle"));
}

class PlcWithPassword : public testing::Test {
 protected:
  static PlcOptions options() {
    PlcOptions made;
    made.password = "geheim";
    return made;
  }
  JobResult serve(wire::RequestBody body) { return plc.serve({1, 1000, std::move(body)}, rights).result; }
  Plc plc{test_program(), options()};
  ClientRights rights = plc.admit();
};

TEST_F(PlcWithPassword, RefusesEverythingButGreetings) {
  EXPECT_EQ(serve(wire::HelloRequest{}), JobResult::Ok);
  EXPECT_EQ(serve(wire::SymbolsRequest{}), JobResult::PasswordMissing);
  EXPECT_EQ(serve(wire::ReadRequest{}), JobResult::PasswordMissing);
  EXPECT_EQ(serve(wire::WriteRequest{}), JobResult::PasswordMissing);
}

TEST_F(PlcWithPassword, RightPasswordOpensUntilAWrongOne) {
  EXPECT_EQ(serve(wire::PasswordRequest{"geheim"}), JobResult::Ok);
  EXPECT_EQ(serve(wire::SymbolsRequest{}), JobResult::Ok);
  EXPECT_EQ(serve(wire::PasswordRequest{"Geheim"}), JobResult::PasswordWrong);
  EXPECT_EQ(serve(wire::SymbolsRequest{}), JobResult::PasswordMissing);
}

}  // namespace
}  // namespace ostravel::plc
