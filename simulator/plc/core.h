// SPDX-License-Identifier: MIT
// What the parts of the server share. Everything here is touched only on the thread that runs io.
#pragma once

#include <asio.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "simulator/plc/limits.h"
#include "simulator/plc/plc.h"
#include "simulator/program/source.h"

namespace ostravel::plc {

class Session;

// How the server misbehaves on request.
struct Faults {
  bool frozen = false;  // requests are thrown away unanswered, also those for a transport connection
  bool late = false;    // the next answer leaves after its client's time is up
  std::chrono::milliseconds delay{0};
};

struct ConnectionCounts {
  std::uint64_t accepted = 0;
  std::uint64_t open = 0;
  std::uint64_t most_at_once = 0;
};

struct Core {
  Core(Program program, const PlcOptions& options) : plc(std::move(program), options) {}

  Plc plc;
  LoadOptions load;      // for programs that are downloaded
  bool held = false;     // the cyclic program stands still
  bool stopped = false;  // so it does, and no client gets in: the PLC restarts
  Faults faults;
  ClientLimits limits;
  ConnectionCounts connections;
  std::size_t waiting = 0;  // bytes of answers that wait to be sent, of all sessions
  asio::io_context io;
  std::vector<std::shared_ptr<Session>> sessions;  // the oldest first
  // Closes the port for so long; set by whoever listens.
  std::function<void(std::chrono::milliseconds)> close_port;

  void add(const std::shared_ptr<Session>& session);
  void remove(const std::shared_ptr<Session>& session);
  // Returns how many there were.
  std::size_t close_all();
  // Counts bytes that now wait, and drops the session for which most waits when it is too much in all.
  void add_waiting(std::size_t bytes);
};

}  // namespace ostravel::plc
