// SPDX-License-Identifier: MIT
#include "simulator/wire/client.h"

#include <array>
#include <asio.hpp>
#include <utility>

namespace ostravel::wire {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint16_t kOwnReference = 1;

}  // namespace

struct Client::Link {
  asio::io_context io;
  asio::ip::tcp::socket socket{io};
  FrameReader reader{kMaxAnswer};
  std::uint8_t unit = kPreferredUnit;
  std::uint32_t sequence = 0;
  std::uint64_t sent = 0;
  std::uint64_t received = 0;
  std::array<std::uint8_t, 65536> input{};

  // Runs what was started until it is done. A late operation is cancelled, so that nothing of it is left
  // over.
  void complete(Clock::time_point deadline, const std::optional<asio::error_code>& result) {
    io.restart();
    while (!result && io.run_one_until(deadline) != 0) {
    }
    if (!result) {
      asio::error_code ignored;
      socket.cancel(ignored);
      io.restart();
      io.run();
      throw TimedOut("no answer in time");
    }
    if (*result) lose(result->message());
  }

  [[noreturn]] void lose(const std::string& why) {
    asio::error_code ignored;
    socket.close(ignored);
    throw ConnectionLost(why);
  }

  void connect(const asio::ip::tcp::endpoint& peer, Clock::time_point deadline) {
    std::optional<asio::error_code> result;
    socket.async_connect(peer, [&result](asio::error_code error) { result = error; });
    complete(deadline, result);
    socket.set_option(asio::ip::tcp::no_delay(true));
  }

  void send(const Bytes& bytes, Clock::time_point deadline) {
    std::optional<asio::error_code> result;
    asio::async_write(socket, asio::buffer(bytes),
                      [&result](asio::error_code error, std::size_t) { result = error; });
    try {
      complete(deadline, result);
    } catch (const TimedOut&) {
      lose("the other side takes no more bytes");  // part of a message may be on its way
    }
    sent += bytes.size();
  }

  // Waits for the next complete event.
  TransportEvent receive(Clock::time_point deadline) {
    try {
      while (true) {
        if (auto event = reader.next()) return std::move(*event);
        std::size_t length = 0;
        std::optional<asio::error_code> result;
        socket.async_read_some(asio::buffer(input), [&](asio::error_code error, std::size_t count) {
          length = count;
          result = error;
        });
        complete(deadline, result);
        received += length;
        reader.feed(std::span(input).first(length));
      }
    } catch (const BadFrame& error) {
      lose(error.what());
    }
  }
};

Client::Client(const std::string& address, std::uint16_t port, Milliseconds limit)
    : link_(std::make_unique<Link>()) {
  asio::error_code error;
  const auto host = asio::ip::make_address(address, error);
  if (error) throw std::invalid_argument("'" + address + "' is no IP address");
  const auto deadline = Clock::now() + limit;
  link_->connect({host, port}, deadline);
  link_->send(connect_request(kOwnReference), deadline);
  const auto event = link_->receive(deadline);
  if (event.kind != TransportEvent::Kind::ConnectConfirm) link_->lose("no transport connection");
  link_->unit = event.unit;
}

Client::~Client() = default;

Answer Client::ask(RequestBody body, Milliseconds limit) {
  if (!alive()) throw ConnectionLost("not connected");
  const auto deadline = Clock::now() + limit;
  Request request{++link_->sequence, static_cast<std::uint32_t>(limit.count()), std::move(body)};
  link_->send(message_frames(encode(request), link_->unit), deadline);
  while (true) {
    const auto event = link_->receive(deadline);
    if (event.kind != TransportEvent::Kind::Message) link_->lose("transport connection ended");
    auto answer = decode_answer(event.message);
    if (!answer) link_->lose("not an answer");
    if (answer->sequence != request.sequence) continue;  // comes after its own request's time was up
    if (answer->body.index() != request.body.index()) link_->lose("answer to another question");
    return std::move(*answer);
  }
}

bool Client::alive() const {
  return link_->socket.is_open();
}
std::uint64_t Client::bytes_sent() const {
  return link_->sent;
}
std::uint64_t Client::bytes_received() const {
  return link_->received;
}

}  // namespace ostravel::wire
