// SPDX-License-Identifier: MIT
// Clients that take more than their share: those that ask and never read, and those that connect and are
// silent.
#include "simulator/plc/limits.h"

#include <gmock/gmock.h>

#include <asio.hpp>

#include "tests/simulator/plc_server_world.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

constexpr std::size_t kMiB = std::size_t{1} << 20;

// A block of 4 MiB, so that a read of it fills every buffer of the network on the way.
Program large_program() {
  return load_text(
      "DATA_BLOCK \"Large\"\nVAR\n  Bytes : Array[1..4194304] of Byte;\nEND_VAR\nBEGIN\nEND_DATA_BLOCK\n",
      "large.db");
}

class RawClient {
 public:
  explicit RawClient(std::uint16_t port) { socket_.connect({asio::ip::make_address("127.0.0.1"), port}); }

  void send(const wire::Bytes& bytes) { asio::write(socket_, asio::buffer(bytes)); }
  void send(const wire::Request& request) {
    send(wire::message_frames(wire::encode(request), wire::kPreferredUnit));
  }
  // False when the server hangs up.
  bool receive_event(wire::TransportEvent& event) {
    while (true) {
      if (auto next = reader_.next()) {
        event = std::move(*next);
        return true;
      }
      asio::error_code error;
      const auto length = socket_.read_some(asio::buffer(input_), error);
      if (error) return false;
      reader_.feed(std::span(input_).first(length));
    }
  }
  bool hung_up() {
    wire::TransportEvent event;
    return !receive_event(event);
  }

 private:
  asio::io_context io_;
  asio::ip::tcp::socket socket_{io_};
  wire::FrameReader reader_{wire::kMaxAnswer};
  std::array<std::uint8_t, 65536> input_{};
};

class Limits : public testing::Test {
 protected:
  static ServerOptions options(const ClientLimits& limits) {
    auto made = test_options();
    made.limits = limits;
    return made;
  }
  static std::size_t stat(Server& server, const char* name) {
    return json::parse(server.command("stats"))[name].get<std::size_t>();
  }
  static bool comes_true(const std::function<bool()>& condition) {
    for (const auto end = std::chrono::steady_clock::now() + kPatience;
         std::chrono::steady_clock::now() < end;) {
      if (condition()) return true;
      std::this_thread::sleep_for(1ms);
    }
    return false;
  }
  // Asks for the whole large block so many times.
  static void ask(RawClient& client, Server& server, std::uint32_t times) {
    wire::Client other("127.0.0.1", server.port(), kPatience);
    const auto symbols = std::get<wire::SymbolsAnswer>(other.ask(wire::SymbolsRequest{}, kPatience).body);
    const auto address = static_cast<std::uint32_t>(resolve(symbols.blocks, "Large.Bytes")->address);
    client.send(wire::connect_request(1));
    for (std::uint32_t i = 1; i <= times; ++i) {
      client.send(wire::Request{i, 1000, wire::ReadRequest{symbols.fingerprint, {{address, 4 * kMiB}}}});
    }
  }
};

TEST_F(Limits, ClientThatNeverReadsIsNotServedUntilItDoes) {
  Server server(large_program(), options({}));
  RawClient client(server.port());
  ask(client, server, 100);
  ASSERT_TRUE(comes_true([&] { return stat(server, "reads") > 0; }));
  std::this_thread::sleep_for(50ms);
  // One answer waits; what the network took of those before it is not the server's.
  EXPECT_LT(stat(server, "waiting"), 6 * kMiB);
  EXPECT_LT(stat(server, "reads"), 10U);
  wire::TransportEvent event;
  ASSERT_TRUE(client.receive_event(event));
  EXPECT_EQ(event.kind, wire::TransportEvent::Kind::ConnectConfirm);
  for (std::uint32_t i = 1; i <= 100; ++i) {
    ASSERT_TRUE(client.receive_event(event));
    const auto answer = wire::decode_answer(event.message);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->sequence, i);
  }
  EXPECT_TRUE(comes_true([&] { return stat(server, "waiting") == 0; }));
}

TEST_F(Limits, ClientThatMostWaitsForIsDroppedWhenAllTogetherIsTooMuch) {
  ClientLimits limits;
  limits.waiting_each = 16 * kMiB;
  limits.waiting_all = 18 * kMiB;
  Server server(large_program(), options(limits));
  RawClient small(server.port());
  RawClient greedy(server.port());
  ask(small, server, 1);
  ASSERT_TRUE(comes_true([&] { return stat(server, "reads") == 1; }));
  ask(greedy, server, 100);
  ASSERT_TRUE(comes_true([&] { return stat(server, "open") == 1; }));
  EXPECT_LE(stat(server, "waiting"), 18 * kMiB);
  wire::TransportEvent event;
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(small.receive_event(event));  // the confirm and the answer
}

TEST_F(Limits, WhatWaitsDelayedCountsAndGoesWithItsClient) {
  Server server(large_program(), options({}));
  {
    RawClient client(server.port());
    client.send(wire::connect_request(1));
    server.command("delay 600s");
    client.send(wire::Request{1, 1000, wire::HelloRequest{}});
    ASSERT_TRUE(comes_true([&] { return stat(server, "waiting") > 0; }));
  }
  EXPECT_TRUE(comes_true([&] { return stat(server, "waiting") == 0 && stat(server, "open") == 0; }));
}

TEST_F(Limits, SilentClientIsDroppedWhenItsTimeForTheHandshakeIsUp) {
  ClientLimits limits;
  limits.handshake = 30ms;
  Server server(test_program(), options(limits));
  wire::Client good("127.0.0.1", server.port(), kPatience);
  RawClient silent(server.port());
  EXPECT_TRUE(silent.hung_up());
  EXPECT_NO_THROW(good.ask(wire::HelloRequest{}, kPatience));
}

TEST_F(Limits, FrozenServerDropsNobody) {
  ClientLimits limits;
  limits.handshake = 10ms;
  Server server(test_program(), options(limits));
  server.command("freeze");
  RawClient waiting(server.port());
  waiting.send(wire::connect_request(1));
  ASSERT_TRUE(comes_true([&] { return stat(server, "open") == 1; }));
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(stat(server, "open"), 1U);
}

TEST_F(Limits, OldestSilentClientMakesRoom) {
  ClientLimits limits;
  limits.clients = 3;
  Server server(test_program(), options(limits));
  wire::Client good("127.0.0.1", server.port(), kPatience);
  RawClient oldest(server.port());
  RawClient newer(server.port());
  ASSERT_TRUE(comes_true([&] { return stat(server, "open") == 3; }));
  wire::Client late("127.0.0.1", server.port(), kPatience);
  EXPECT_TRUE(oldest.hung_up());
  EXPECT_NO_THROW(good.ask(wire::HelloRequest{}, kPatience));
  EXPECT_NO_THROW(late.ask(wire::HelloRequest{}, kPatience));
  newer.send(wire::connect_request(1));
  EXPECT_FALSE(newer.hung_up());
}

TEST_F(Limits, ClientsThatFinishedTheirHandshakeKeepTheirPlaces) {
  ClientLimits limits;
  limits.clients = 2;
  Server server(test_program(), options(limits));
  wire::Client first("127.0.0.1", server.port(), kPatience);
  wire::Client second("127.0.0.1", server.port(), kPatience);
  RawClient third(server.port());
  EXPECT_TRUE(third.hung_up());
  EXPECT_NO_THROW(first.ask(wire::HelloRequest{}, kPatience));
  EXPECT_NO_THROW(second.ask(wire::HelloRequest{}, kPatience));
}

}  // namespace
}  // namespace ostravel::plc
