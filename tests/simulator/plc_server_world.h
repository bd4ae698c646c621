// SPDX-License-Identifier: MIT
// A PLC that serves on a port of its own, and clients of it.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>

#include "simulator/wire/client.h"
#include "tests/simulator/plc_program.h"

namespace ostravel::plc {

inline constexpr std::chrono::seconds kPatience{10};    // longer than anything here takes
inline constexpr std::chrono::milliseconds kShort{50};  // for what is not to happen

class ServerWorld : public testing::Test {
 protected:
  explicit ServerWorld(const ServerOptions& options = test_options()) : server(test_program(), options) {}

  nlohmann::json command(std::string_view line) { return nlohmann::json::parse(server.command(line)); }
  std::string error(std::string_view line) { return command(line).value("error", "no error"); }
  std::unique_ptr<wire::Client> connect() {
    return std::make_unique<wire::Client>("127.0.0.1", server.port(), kPatience);
  }
  // What the server does in its own time.
  static bool comes_true(const std::function<bool()>& condition) {
    for (const auto end = std::chrono::steady_clock::now() + kPatience;
         std::chrono::steady_clock::now() < end;) {
      if (condition()) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
  }

  Server server;
};

}  // namespace ostravel::plc
