// SPDX-License-Identifier: MIT
// The client against servers that misbehave; against a good one see plc_server_test.
#include "simulator/wire/client.h"

#include <gtest/gtest.h>

#include <asio.hpp>
#include <functional>
#include <thread>

namespace ostravel::wire {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 10s;  // longer than anything here takes
constexpr auto kShort = 50ms;    // for what is not to happen

// Listens and lets a function speak to the first client.
class OddServer {
 public:
  using Talk = std::function<void(asio::ip::tcp::socket&)>;
  explicit OddServer(Talk talk)
      : thread_([this, talk = std::move(talk)] {
          asio::ip::tcp::socket socket(io_);
          asio::error_code error;
          acceptor_.accept(socket, error);
          if (!error) talk(socket);
        }) {}
  ~OddServer() { thread_.join(); }
  OddServer(const OddServer&) = delete;
  OddServer& operator=(const OddServer&) = delete;
  std::uint16_t port() const { return acceptor_.local_endpoint().port(); }

 private:
  asio::io_context io_;
  asio::ip::tcp::acceptor acceptor_{io_, {asio::ip::make_address("127.0.0.1"), 0}};
  std::thread thread_;
};

void receive(asio::ip::tcp::socket& socket) {
  std::array<std::uint8_t, 1000> input{};
  asio::error_code ignored;
  socket.read_some(asio::buffer(input), ignored);
}

void send(asio::ip::tcp::socket& socket, const Bytes& bytes) {
  asio::error_code ignored;
  asio::write(socket, asio::buffer(bytes), ignored);
}

void confirm(asio::ip::tcp::socket& socket) {
  receive(socket);
  send(socket, connect_confirm(1, 1, 13));
}

TEST(Client, TextThatIsNoAddressIsRefused) {
  EXPECT_THROW(Client("plc.local", 102, kPatience), std::invalid_argument);
  EXPECT_THROW(Client("", 102, kPatience), std::invalid_argument);
}

TEST(Client, NobodyListeningIsALostConnection) {
  std::uint16_t port = 0;
  {
    asio::io_context io;
    port = asio::ip::tcp::acceptor(io, {asio::ip::make_address("127.0.0.1"), 0}).local_endpoint().port();
  }
  EXPECT_THROW(Client("127.0.0.1", port, kPatience), ConnectionLost);
}

TEST(Client, ServerThatNeverConfirmsTimesOut) {
  OddServer server([](auto& socket) {
    receive(socket);
    receive(socket);  // until the client gives up
  });
  EXPECT_THROW(Client("127.0.0.1", server.port(), kShort), TimedOut);
}

TEST(Client, ServerThatSpeaksSomethingElseIsALostConnection) {
  OddServer server([](auto& socket) { send(socket, {'S', 'S', 'H', '-', '2', '.', '0', '\n'}); });
  EXPECT_THROW(Client("127.0.0.1", server.port(), kPatience), ConnectionLost);
}

TEST(Client, AnswerToAnotherQuestionLosesTheConnection) {
  OddServer server([](auto& socket) {
    confirm(socket);
    receive(socket);
    send(socket, message_frames(encode(Answer{1, JobResult::Ok, PasswordAnswer{}}), 13));
  });
  Client client("127.0.0.1", server.port(), kPatience);
  EXPECT_THROW(client.ask(HelloRequest{}, kPatience), ConnectionLost);
  EXPECT_FALSE(client.alive());
  EXPECT_THROW(client.ask(HelloRequest{}, kPatience), ConnectionLost);
}

TEST(Client, AnswerThatIsNoneLosesTheConnection) {
  OddServer server([](auto& socket) {
    confirm(socket);
    receive(socket);
    send(socket, message_frames(Bytes{0xC1}, 13));
  });
  Client client("127.0.0.1", server.port(), kPatience);
  EXPECT_THROW(client.ask(HelloRequest{}, kPatience), ConnectionLost);
}

TEST(Client, AnswerInPiecesIsPutTogether) {
  OddServer server([](auto& socket) {
    confirm(socket);
    receive(socket);
    const auto frames = message_frames(encode(Answer{1, JobResult::Ok, HelloAnswer{1, "X", 2, false}}), 13);
    for (const auto byte : frames) send(socket, {byte});
  });
  Client client("127.0.0.1", server.port(), kPatience);
  EXPECT_EQ(std::get<HelloAnswer>(client.ask(HelloRequest{}, kPatience).body).order_number, "X");
  EXPECT_GT(client.bytes_received(), 0U);
  EXPECT_GT(client.bytes_sent(), 0U);
}

TEST(Client, AnswerToAnEarlierRequestIsThrownAway) {
  OddServer server([](auto& socket) {
    confirm(socket);
    receive(socket);  // sequence 1: no answer yet
    receive(socket);  // sequence 2: now both
    send(socket, message_frames(encode(Answer{1, JobResult::Ok, HelloAnswer{1, "early", 2, false}}), 13));
    send(socket, message_frames(encode(Answer{2, JobResult::Ok, HelloAnswer{1, "right", 2, false}}), 13));
  });
  Client client("127.0.0.1", server.port(), kPatience);
  EXPECT_THROW(client.ask(HelloRequest{}, kShort), TimedOut);
  EXPECT_TRUE(client.alive());
  EXPECT_EQ(std::get<HelloAnswer>(client.ask(HelloRequest{}, kPatience).body).order_number, "right");
}

TEST(Client, ServerThatLeftIsNoticedAtOnce) {
  OddServer server([](auto& socket) { confirm(socket); });
  Client client("127.0.0.1", server.port(), kPatience);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THROW(client.ask(HelloRequest{}, kPatience), ConnectionLost);
  EXPECT_LT(std::chrono::steady_clock::now() - start, kPatience);
}

}  // namespace
}  // namespace ostravel::wire
