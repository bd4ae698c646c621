// SPDX-License-Identifier: MIT
// The client's side of a connection to a PLC: blocking calls with a time limit each. Not thread safe.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "simulator/wire/messages.h"

namespace ostravel::wire {

// The TCP connection is gone or the other side talks nonsense; the client is of no use any more.
struct ConnectionLost : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// No answer in time. The connection stays; an answer that comes later is thrown away.
struct TimedOut : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Client {
 public:
  using Milliseconds = std::chrono::milliseconds;

  // Connects TCP and transport within the limit. The address is an IPv4 or IPv6 address as text. Throws
  // std::invalid_argument for what is no address, else ConnectionLost or TimedOut.
  Client(const std::string& address, std::uint16_t port, Milliseconds limit);
  ~Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  // Sends one request and waits for its answer, which has the request's kind of body unless its job result is
  // not Ok. Throws ConnectionLost (also at once when the connection broke since the last call) or TimedOut.
  Answer ask(RequestBody body, Milliseconds limit);

  // False once the connection is known to be lost.
  bool alive() const;

  std::uint64_t bytes_sent() const;
  std::uint64_t bytes_received() const;

 private:
  struct Link;
  std::unique_ptr<Link> link_;
};

}  // namespace ostravel::wire
