// SPDX-License-Identifier: MIT
// What clients may take of the simulated PLC at most, so that none of them keeps the others from being
// served.
#pragma once

#include <chrono>
#include <cstddef>

namespace ostravel::plc {

struct ClientLimits {
  // Connections at once: more than any test or plant needs, and far from the limit of open files. When all
  // are taken, the oldest one that has not finished its handshake makes room for a new one.
  std::size_t clients = 200;
  // The handshake of the transport level has to be finished so long after the connection.
  std::chrono::milliseconds handshake{5'000};
  // As long as so many bytes of answers wait for a client, no more is read from it.
  std::size_t waiting_each = std::size_t{1} << 20;
  // Bytes of answers that wait for all clients together; beyond, the client that most waits for is dropped.
  // The largest answer alone, a symbol tree of 256 MiB, fits.
  std::size_t waiting_all = std::size_t{384} << 20;
};

}  // namespace ostravel::plc
