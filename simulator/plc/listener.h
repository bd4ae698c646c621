// SPDX-License-Identifier: MIT
// The PLC's port: lets clients in while there is room, and can be closed for a while.
#pragma once

#include <asio.hpp>
#include <chrono>
#include <cstdint>
#include <string>

#include "simulator/plc/core.h"
#include "simulator/plc/servererror.h"

namespace ostravel::plc {

class Listener {
 public:
  // Listens when it returns; port 0 means any free one. Throws ServerError.
  Listener(Core& core, const std::string& address, std::uint16_t port);

  std::uint16_t port() const { return endpoint_.port(); }

  // Refuses connections for so long. The port stays this server's own.
  void close_for(std::chrono::milliseconds pause);

 private:
  asio::error_code bind();
  void reopen();
  void reopen_after(std::chrono::milliseconds pause);
  void accept();
  void take(asio::ip::tcp::socket socket);
  bool make_room();

  Core& core_;
  asio::ip::tcp::endpoint endpoint_;
  asio::ip::tcp::acceptor acceptor_;
  asio::steady_timer retry_;
  asio::steady_timer pause_;
};

}  // namespace ostravel::plc
