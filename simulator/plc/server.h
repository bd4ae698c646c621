// SPDX-License-Identifier: MIT
// The simulated PLC as a TCP server with a thread of its own; what `ostravel-plc` runs, and what tests run
// within their own process.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "simulator/plc/limits.h"
#include "simulator/plc/plc.h"
#include "simulator/plc/servererror.h"
#include "simulator/program/program.h"
#include "simulator/program/source.h"

namespace ostravel::plc {

struct ServerOptions {
  std::string listen = "127.0.0.1";
  std::uint16_t port = 102;                  // 0: any free port
  std::chrono::microseconds cycle{100'000};  // 0: only the console's `step` runs the program
  PlcOptions plc;
  LoadOptions load;  // for programs that are downloaded
  ClientLimits limits;
};

class Server {
 public:
  // Listens when it returns. Throws ServerError or GeneratorError.
  explicit Server(Program program, const ServerOptions& options = {});
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  std::uint16_t port() const;
  std::uint64_t generators_left_out() const;

  // One line of the console, see console.h. The answer is one JSON object in one line. Callable from any
  // thread.
  std::string command(std::string_view line);

 private:
  struct Running;
  std::unique_ptr<Running> running_;
};

}  // namespace ostravel::plc
