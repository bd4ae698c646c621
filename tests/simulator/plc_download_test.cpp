// SPDX-License-Identifier: MIT
// What clients meet when the PLC gets another program, restarts, or changes its protection.
#include <gmock/gmock.h>

#include <asio.hpp>
#include <filesystem>
#include <fstream>

#include "tests/simulator/plc_server_world.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using namespace std::chrono_literals;

// Moved, renamed and retyped against the test program.
constexpr std::string_view kOther = R"(
DATA_BLOCK "Plant"
{ S7_Optimized_Access := 'TRUE' }
VERSION : 0.1
  VAR
    Inserted : LInt := 1;
    aInt : Int := 42;
    aDWord : Real := 1.5;
  END_VAR
BEGIN
END_DATA_BLOCK
)";

class Download : public ServerWorld {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "ostravel-download-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    other = (folder / "other.db").string();
    std::ofstream(other) << kOther;
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  wire::SymbolsAnswer upload(wire::Client& client) {
    return std::get<wire::SymbolsAnswer>(client.ask(wire::SymbolsRequest{}, kPatience).body);
  }
  std::filesystem::path folder;
  std::string other;
};

TEST_F(Download, DropsConnectionsAndRunsTheNewProgramFromItsStartValues) {
  const auto client = connect();
  const auto before = upload(*client);
  command("write Plant.aInt 7");
  const auto answer = command("download " + other);
  EXPECT_EQ(answer["downloaded"], json::array({other}));
  EXPECT_THROW(client->ask(wire::HelloRequest{}, kPatience), wire::ConnectionLost);

  const auto again = connect();
  const auto after = upload(*again);
  EXPECT_NE(after.fingerprint, before.fingerprint);
  EXPECT_EQ(command("read Plant.aInt")["value"], 42);
  EXPECT_NE(resolve(after.blocks, "Plant.aInt")->address, resolve(before.blocks, "Plant.aInt")->address);
  EXPECT_EQ(resolve(after.blocks, "Plant.aDWord")->symbol->type, DataType::Real);
  EXPECT_FALSE(resolve(after.blocks, "Plant.Flag"));
}

TEST_F(Download, LeavesAddressesOfTheOldTreeWithoutMeaning) {
  const auto before = upload(*connect());
  const auto address = static_cast<std::uint32_t>(resolve(before.blocks, "Plant.aInt")->address);
  command("download " + other);
  const auto answer = connect()->ask(wire::ReadRequest{before.fingerprint, {{address, 2}}}, kPatience);
  EXPECT_EQ(answer.result, wire::JobResult::ProgramChanged);
}

TEST_F(Download, TheSameProgramKeepsItsFingerprint) {
  const auto same = (folder / "same.db").string();
  std::ofstream(same) << kTestSource;
  const auto before = upload(*connect()).fingerprint;
  command("download " + same);
  EXPECT_EQ(upload(*connect()).fingerprint, before);
}

TEST_F(Download, CountsCyclesOnAndForgetsThoseOfTheOldMemory) {
  command("step");
  EXPECT_EQ(command("download " + other)["cycle"], 2);
  EXPECT_EQ(command("read Simulation.Cycle")["value"], 2);
  EXPECT_THAT(error("read Plant.aInt @1"), HasSubstr("cycle 1 is not kept"));
}

TEST_F(Download, TakesFailingVariablesAndUnfitGeneratorsAway) {
  command("fail Plant.aInt");
  command("generate Plant.aInt counter");
  command("generate Plant.Flag toggle");
  EXPECT_EQ(command("download " + other)["generators_left_out"], json::array({"Plant.Flag=toggle"}));
  const auto after = upload(*connect());
  const auto address = static_cast<std::uint32_t>(resolve(after.blocks, "Plant.aInt")->address);
  const auto answer = connect()->ask(wire::ReadRequest{after.fingerprint, {{address, 2}}}, kPatience);
  EXPECT_EQ(std::get<wire::ReadAnswer>(answer.body).items.at(0).result, wire::ItemResult::Ok);
  command("step");
  EXPECT_EQ(command("read Plant.aInt")["value"], 2);  // the second cycle
}

TEST_F(Download, ARefusedOneChangesNothing) {
  const auto bad = (folder / "bad.db").string();
  std::ofstream(bad) << "DATA_BLOCK \"B\"\nVAR\n  a : Nonsense_;\nEND_VAR\n";
  const auto client = connect();
  command("write Plant.aInt 7");
  EXPECT_THAT(error("download " + bad), HasSubstr("bad.db:"));
  EXPECT_THAT(error("download " + other + " " + (folder / "none.db").string()), HasSubstr("no such file"));
  EXPECT_EQ(command("read Plant.aInt")["value"], 7);
  EXPECT_NO_THROW(client->ask(wire::HelloRequest{}, kPatience));
}

TEST_F(Download, TakesSeveralFilesAndReportsWarnings) {
  const auto types = (folder / "my types.udt").string();
  const auto block = (folder / "block.db").string();
  std::ofstream(types)
      << "TYPE \"T\"\nVERSION : 0.1\nSTRUCT\n  x : Int := 3;\n  y : TO_Axis;\nEND_STRUCT;\nEND_TYPE\n";
  std::ofstream(block) << "DATA_BLOCK \"B\"\nVAR\n  t : \"T\";\nEND_VAR\nBEGIN\nEND_DATA_BLOCK\n";
  const auto answer = command("download " + block + " \"" + types + "\"");
  EXPECT_EQ(answer["downloaded"].size(), 2U);
  ASSERT_EQ(answer["warnings"].size(), 1U);
  EXPECT_THAT(answer["warnings"][0].get<std::string>(), HasSubstr("TO_Axis"));
  EXPECT_EQ(command("read B.t.x")["value"], 3);
}

class Restart : public ServerWorld {};

TEST_F(Restart, DropsConnectionsAndBringsTheStartValuesBack) {
  const auto client = connect();
  client->ask(wire::HelloRequest{}, kPatience);
  command("write Plant.\"Odd.Name 1\" 5");
  EXPECT_EQ(command("restart"), (json{{"restarted", true}, {"pause", 0}, {"cut", 1}, {"cycle", 1}}));
  EXPECT_THROW(client->ask(wire::HelloRequest{}, kPatience), wire::ConnectionLost);
  EXPECT_EQ(command("read Plant.\"Odd.Name 1\"")["value"], 77);
  EXPECT_NO_THROW(connect()->ask(wire::HelloRequest{}, kPatience));
}

TEST_F(Restart, CountsCyclesOnSoThatAStaleValueCanBeTold) {
  command("step");
  command("write Plant.aInt 5");
  command("restart");
  EXPECT_EQ(command("read Simulation.Cycle")["value"], 2);
  EXPECT_EQ(command("read Plant.aInt @1")["value"], 5);
  EXPECT_EQ(command("read Plant.aInt @2")["value"], 0);
}

TEST_F(Restart, KeepsGeneratorsFaultsAndTheFingerprint) {
  const auto fingerprint =
      std::get<wire::HelloAnswer>(connect()->ask(wire::HelloRequest{}, kPatience).body).fingerprint;
  command("generate Plant.aInt counter");
  command("fail Plant.aDInt");
  command("restart");
  EXPECT_EQ(command("read Plant.aInt")["value"], 1);
  const auto client = connect();
  const auto symbols = std::get<wire::SymbolsAnswer>(client->ask(wire::SymbolsRequest{}, kPatience).body);
  EXPECT_EQ(symbols.fingerprint, fingerprint);
  const auto address = static_cast<std::uint32_t>(resolve(symbols.blocks, "Plant.aDInt")->address);
  const auto answer = client->ask(wire::ReadRequest{fingerprint, {{address, 4}}}, kPatience);
  EXPECT_EQ(std::get<wire::ReadAnswer>(answer.body).items.at(0).result, wire::ItemResult::Faulty);
}

TEST_F(Restart, RefusesConnectionsForThePauseAndServesAgainOnTheSamePort) {
  const auto port = server.port();
  command("restart 300ms");
  asio::io_context io;
  asio::ip::tcp::socket socket(io);
  asio::error_code refused;
  socket.connect({asio::ip::make_address("127.0.0.1"), port}, refused);
  EXPECT_EQ(refused, asio::error::connection_refused);
  EXPECT_TRUE(comes_true([&] {
    try {
      connect()->ask(wire::HelloRequest{}, kPatience);
      return true;
    } catch (const std::exception&) {
      return false;
    }
  }));
}

TEST_F(Restart, AgainDuringThePauseStartsThePauseAnew) {
  command("restart 10s");
  command("restart 20ms");
  EXPECT_TRUE(comes_true([&] {
    try {
      connect()->ask(wire::HelloRequest{}, kPatience);
      return true;
    } catch (const std::exception&) {
      return false;
    }
  }));
}

TEST_F(Restart, StopsTheProgramForThePause) {
  auto options = test_options();
  options.cycle = 1ms;
  Server running(test_program(), options);
  const auto cycle = [&] { return json::parse(running.command("cycle"))["cycle"].get<int>(); };
  ASSERT_TRUE(comes_true([&] { return cycle() > 2; }));
  const auto stopped = json::parse(running.command("restart 400ms"))["cycle"].get<int>();
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(cycle(), stopped);
  EXPECT_TRUE(comes_true([&] { return cycle() > stopped; }));
}

class Password : public ServerWorld {
 protected:
  wire::JobResult read(wire::Client& client) { return client.ask(wire::SymbolsRequest{}, kPatience).result; }
};

TEST_F(Password, IsAskedOfNewConnectionsOnly) {
  const auto early = connect();
  early->ask(wire::HelloRequest{}, kPatience);
  EXPECT_EQ(command("password ge heim"), (json{{"protected", true}}));
  EXPECT_EQ(read(*early), wire::JobResult::Ok);

  const auto client = connect();
  EXPECT_TRUE(std::get<wire::HelloAnswer>(client->ask(wire::HelloRequest{}, kPatience).body).password_needed);
  EXPECT_EQ(read(*client), wire::JobResult::PasswordMissing);
  EXPECT_EQ(client->ask(wire::PasswordRequest{"geheim"}, kPatience).result, wire::JobResult::PasswordWrong);
  EXPECT_EQ(client->ask(wire::PasswordRequest{"ge heim"}, kPatience).result, wire::JobResult::Ok);
  EXPECT_EQ(read(*client), wire::JobResult::Ok);
}

TEST_F(Password, WithoutATextIsTakenAwayForNewConnections) {
  command("password geheim");
  const auto early = connect();
  EXPECT_EQ(read(*early), wire::JobResult::PasswordMissing);
  EXPECT_EQ(command("password"), (json{{"protected", false}}));
  EXPECT_EQ(read(*early), wire::JobResult::PasswordMissing);
  EXPECT_EQ(read(*connect()), wire::JobResult::Ok);
}

}  // namespace
}  // namespace ostravel::plc
