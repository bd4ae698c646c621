// SPDX-License-Identifier: MIT
// The server as a client meets it on the wire.
#include "simulator/plc/server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <asio.hpp>

#include "tests/simulator/plc_server_world.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using namespace std::chrono_literals;

class ServerTest : public ServerWorld {};

TEST_F(ServerTest, AnswersAGreeting) {
  const auto answer = connect()->ask(wire::HelloRequest{}, kPatience);
  EXPECT_EQ(std::get<wire::HelloAnswer>(answer.body).version, wire::kProtocolVersion);
}

TEST_F(ServerTest, UploadsATreeOfManyFrames) {
  const auto client = connect();
  const auto answer = client->ask(wire::SymbolsRequest{}, kPatience);
  const auto& symbols = std::get<wire::SymbolsAnswer>(answer.body);
  EXPECT_TRUE(resolve(symbols.blocks, "Plant.Tanks[1].Level"));
}

TEST_F(ServerTest, CountsConnections) {
  {
    const auto first = connect();
    const auto second = connect();
    first->ask(wire::ReadRequest{}, kPatience);
    second->ask(wire::ReadRequest{}, kPatience);
    const auto stats = command("stats");
    EXPECT_EQ(stats["open"], 2);
    EXPECT_EQ(stats["most_open"], 2);
    EXPECT_EQ(stats["accepted"], 2);
    EXPECT_EQ(stats["reads"], 2);
  }
  EXPECT_TRUE(comes_true([&] { return command("stats")["open"] == 0; }));
  EXPECT_EQ(command("stats")["most_open"], 2);
}

TEST_F(ServerTest, CutDropsAllConnections) {
  const auto client = connect();
  client->ask(wire::HelloRequest{}, kPatience);
  EXPECT_EQ(command("cut")["cut"], 1);
  EXPECT_THROW(client->ask(wire::HelloRequest{}, kPatience), wire::ConnectionLost);
  EXPECT_FALSE(client->alive());
  EXPECT_NO_THROW(connect()->ask(wire::HelloRequest{}, kPatience));
}

TEST_F(ServerTest, FrozenServerKeepsConnectionsAndAnswersNothing) {
  const auto client = connect();
  command("freeze");
  EXPECT_THROW(client->ask(wire::HelloRequest{}, kShort), wire::TimedOut);
  EXPECT_TRUE(client->alive());
  EXPECT_THROW(wire::Client("127.0.0.1", server.port(), kShort), wire::TimedOut);
  command("thaw");
  EXPECT_NO_THROW(client->ask(wire::HelloRequest{}, kPatience));
}

TEST_F(ServerTest, WriteThatMeetsAFrozenServerIsNeverDone) {
  const auto client = connect();
  const auto hello = std::get<wire::HelloAnswer>(client->ask(wire::HelloRequest{}, kPatience).body);
  const auto symbols = std::get<wire::SymbolsAnswer>(client->ask(wire::SymbolsRequest{}, kPatience).body);
  const auto address = static_cast<std::uint32_t>(resolve(symbols.blocks, "Plant.aInt").value().address);
  command("freeze");
  EXPECT_THROW(client->ask(wire::WriteRequest{hello.fingerprint, {{address, {1, 1}}}}, kShort),
               wire::TimedOut);
  command("thaw");
  client->ask(wire::HelloRequest{}, kPatience);
  EXPECT_EQ(command("read Plant.aInt")["value"], 0);
}

TEST_F(ServerTest, LateAnswerComesAfterTheClientsTimeAndIsThrownAway) {
  const auto client = connect();
  command("late");
  EXPECT_THROW(client->ask(wire::HelloRequest{}, kShort), wire::TimedOut);
  // The late answer comes in while this one is waited for, and is not taken for it.
  command("delay 400");
  const auto answer = client->ask(wire::ReadRequest{}, kPatience);
  EXPECT_TRUE(std::holds_alternative<wire::ReadAnswer>(answer.body));
}

TEST_F(ServerTest, DelayedAnswerComesNoSooner) {
  const auto client = connect();
  command("delay 120");
  const auto start = std::chrono::steady_clock::now();
  client->ask(wire::HelloRequest{}, kPatience);
  EXPECT_GE(std::chrono::steady_clock::now() - start, 120ms);
}

TEST_F(ServerTest, RunsItsCyclesByItselfUntilHeld) {
  auto options = test_options();
  options.cycle = 1ms;
  Server running(test_program(), options);
  auto cycle = [&] { return json::parse(running.command("cycle"))["cycle"].get<int>(); };
  EXPECT_TRUE(comes_true([&] { return cycle() > 3; }));
  running.command("hold");
  const auto held = cycle();
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(cycle(), held);
  running.command("run");
  EXPECT_TRUE(comes_true([&] { return cycle() > held; }));
}

TEST_F(ServerTest, SecondServerOnAPortSaysThatItIsTaken) {
  auto options = test_options();
  options.port = server.port();
  try {
    const Server second(test_program(), options);
    FAIL();
  } catch (const ServerError& error) {
    EXPECT_THAT(error.what(), HasSubstr("127.0.0.1:" + std::to_string(server.port())));
    EXPECT_THAT(error.what(), HasSubstr("another program uses this port"));
  }
}

TEST_F(ServerTest, NameInsteadOfAnAddressIsRefused) {
  auto options = test_options();
  options.listen = "somewhere";
  EXPECT_THROW(Server(test_program(), options), ServerError);
}

// What a client sends that is none: the server closes the connection and goes on serving others.
class ServerMeetsNonsense : public ServerTest, public testing::WithParamInterface<wire::Bytes> {};

TEST_P(ServerMeetsNonsense, AndHangsUp) {
  asio::io_context io;
  asio::ip::tcp::socket socket(io);
  socket.connect({asio::ip::make_address("127.0.0.1"), server.port()});
  asio::write(socket, asio::buffer(GetParam()));
  asio::error_code error;
  std::array<std::uint8_t, 100> input{};
  while (!error) socket.read_some(asio::buffer(input), error);
  EXPECT_TRUE(error == asio::error::eof || error == asio::error::connection_reset) << error.message();
  EXPECT_NO_THROW(connect()->ask(wire::HelloRequest{}, kPatience));
}

wire::Bytes after_connecting(const wire::Bytes& message) {
  auto bytes = wire::connect_request(1);
  const auto frames = wire::message_frames(message, 13);
  bytes.insert(bytes.end(), frames.begin(), frames.end());
  return bytes;
}

INSTANTIATE_TEST_SUITE_P(Nonsense, ServerMeetsNonsense,
                         testing::Values(wire::Bytes{'G', 'E', 'T', ' ', '/', '\r', '\n'},
                                         wire::message_frames(wire::Bytes{1},
                                                              13),  // before the connect request
                                         after_connecting({}), after_connecting({0xC1}),
                                         after_connecting(wire::connect_request(1)),
                                         after_connecting({0xDD, 0xFF, 0xFF, 0xFF, 0xFF})));

}  // namespace
}  // namespace ostravel::plc
