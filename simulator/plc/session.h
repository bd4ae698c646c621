// SPDX-License-Identifier: MIT
// One client's connection: frames in, jobs to the PLC, answers out. Closes itself on anything malformed, and
// when the client does not ask for its transport connection in time. A client that does not take its answers
// is not read from until it does.
#pragma once

#include <array>
#include <asio.hpp>
#include <cstdint>
#include <deque>
#include <memory>
#include <set>

#include "simulator/plc/core.h"
#include "simulator/wire/frames.h"

namespace ostravel::plc {

class Session : public std::enable_shared_from_this<Session> {
 public:
  Session(Core& core, asio::ip::tcp::socket socket);
  void start();
  void close();

  // Whether the transport connection stands.
  bool connected() const { return connected_; }
  // Bytes of answers that wait to be sent.
  std::size_t waiting() const { return waiting_; }

 private:
  using Timer = asio::steady_timer;

  void expect_handshake();
  void serve();
  void receive();
  void take(const wire::TransportEvent& event);
  void answer(const wire::Bytes& message);
  void send_after(std::chrono::milliseconds delay, wire::Bytes frames);
  void send(wire::Bytes frames);
  void send_first();

  Core& core_;
  asio::ip::tcp::socket socket_;
  Timer handshake_;
  wire::FrameReader reader_;
  std::array<std::uint8_t, 65536> input_{};
  bool receiving_ = false;
  std::deque<wire::Bytes> output_;
  std::set<std::shared_ptr<Timer>> delayed_;  // each holds an answer that is not yet in output_
  std::size_t waiting_ = 0;                   // bytes of output_ and of what is delayed
  bool connected_ = false;
  std::uint8_t unit_ = wire::kPreferredUnit;
  ClientRights rights_;
};

}  // namespace ostravel::plc
