// SPDX-License-Identifier: MIT
// What the parts of the server share. Everything here is touched only on the thread that runs io.
#pragma once

#include <algorithm>
#include <asio.hpp>
#include <chrono>
#include <cstdint>
#include <memory>
#include <set>
#include <utility>

#include "simulator/plc/plc.h"

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
  bool held = false;  // the cyclic program stands still
  Faults faults;
  ConnectionCounts connections;
  asio::io_context io;
  std::set<std::shared_ptr<Session>> sessions;

  void add(const std::shared_ptr<Session>& session);
  void remove(const std::shared_ptr<Session>& session);
};

}  // namespace ostravel::plc
