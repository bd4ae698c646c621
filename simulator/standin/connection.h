// SPDX-License-Identifier: MIT
// One connection to a PLC. A job holds the connection until its answer is there, and no other one.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "simulator/standin/agltypes.h"
#include "simulator/standin/handles.h"
#include "simulator/wire/client.h"

namespace ostravel::standin {

using Milliseconds = std::chrono::milliseconds;

// The time-out that a caller asks for; like the real library's, never below one second however small it is.
// Without one (0 or negative) the fallback counts.
Milliseconds effective_timeout(agl_int32_t timeout, agl_int32_t fallback);

class Connection {
 public:
  // Connects and exchanges greetings. Throws Failure.
  Connection(const std::string& address, std::uint16_t port, Milliseconds limit);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Each of these is one exchange with the PLC and throws Failure when the job as a whole fails.
  std::string order_number(Milliseconds limit);
  void give_password(const std::string& password, Milliseconds limit);
  Tree upload(Milliseconds limit);
  // Sets each item's Result and SError; only items that fit their access travel.
  void read(std::span<SymbolicRW_t> items, Milliseconds limit);
  void write(std::span<SymbolicRW_t> items, Milliseconds limit);

 private:
  wire::Answer ask(wire::RequestBody body, Milliseconds limit);

  std::mutex mutex_;
  wire::Client client_;
};

// Counted over all connections, also those that are gone.
struct Traffic {
  std::atomic<std::uint64_t> open = 0;
  std::atomic<std::uint64_t> connections = 0;
  std::atomic<std::uint64_t> read_jobs = 0;
  std::atomic<std::uint64_t> write_jobs = 0;
  std::atomic<std::uint64_t> items_read = 0;
  std::atomic<std::uint64_t> items_written = 0;
  std::atomic<std::uint64_t> bytes_sent = 0;
  std::atomic<std::uint64_t> bytes_received = 0;
  std::atomic<std::uint64_t> uploads = 0;
};
Traffic& traffic();

}  // namespace ostravel::standin
