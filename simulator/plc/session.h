// SPDX-License-Identifier: MIT
// One client's connection: frames in, jobs to the PLC, answers out. Closes itself on anything malformed.
#pragma once

#include <array>
#include <asio.hpp>
#include <cstdint>
#include <deque>
#include <memory>

#include "simulator/plc/core.h"
#include "simulator/wire/frames.h"

namespace ostravel::plc {

class Session : public std::enable_shared_from_this<Session> {
 public:
  Session(Core& core, asio::ip::tcp::socket socket);
  void start();
  void close();

 private:
  void receive();
  void take(const wire::TransportEvent& event);
  void answer(const wire::Bytes& message);
  void send_after(std::chrono::milliseconds delay, wire::Bytes frames);
  void send(wire::Bytes frames);
  void send_first();

  Core& core_;
  asio::ip::tcp::socket socket_;
  wire::FrameReader reader_;
  std::array<std::uint8_t, 65536> input_{};
  std::deque<wire::Bytes> output_;
  std::size_t output_bytes_ = 0;
  bool connected_ = false;  // on the transport level
  std::uint8_t unit_ = wire::kPreferredUnit;
  ClientRights rights_;
};

}  // namespace ostravel::plc
