// SPDX-License-Identifier: MIT
#include "simulator/plc/listener.h"

#include <algorithm>
#include <utility>

#include "simulator/plc/session.h"

namespace ostravel::plc {
namespace {

constexpr std::chrono::milliseconds kRetry{100};

std::string why_not(const asio::error_code& error) {
  if (error == asio::error::address_in_use) {
    return "another program uses this port; choose a different one with --port (0 takes any free one)";
  }
  if (error == asio::error::access_denied) {
    return "not permitted below 1024; choose a higher port with --port or allow it with "
           "setcap cap_net_bind_service=+ep";
  }
  return error.message();
}

}  // namespace

Listener::Listener(Core& core, const std::string& address, std::uint16_t port)
    : core_(core), acceptor_(core.io), retry_(core.io), pause_(core.io) {
  asio::error_code error;
  const auto ip = asio::ip::make_address(address, error);
  const auto where = address + ":" + std::to_string(port);
  if (error) throw ServerError("cannot listen on " + where + ": '" + address + "' is no IP address");
  endpoint_ = {ip, port};
  error = bind();
  if (!error) acceptor_.listen(asio::socket_base::max_listen_connections, error);
  if (error) throw ServerError("cannot listen on " + where + ": " + why_not(error));
  endpoint_ = acceptor_.local_endpoint();
  accept();
}

asio::error_code Listener::bind() {
  asio::error_code error;
  acceptor_.open(endpoint_.protocol(), error);
  if (!error) acceptor_.set_option(asio::socket_base::reuse_address(true), error);
  if (!error) acceptor_.bind(endpoint_, error);
  return error;
}

void Listener::close_for(std::chrono::milliseconds pause) {
  asio::error_code ignored;
  acceptor_.close(ignored);
  retry_.cancel();
  core_.stopped = true;
  // A port that is bound and not listened on refuses connections, and nobody else can take it.
  if (bind()) acceptor_.close(ignored);
  reopen_after(pause);
}

void Listener::reopen_after(std::chrono::milliseconds pause) {
  pause_.expires_after(pause);
  pause_.async_wait([this](asio::error_code cancelled) {
    if (!cancelled) reopen();
  });
}

void Listener::reopen() {
  asio::error_code error;
  if (!acceptor_.is_open()) error = bind();
  if (!error) acceptor_.listen(asio::socket_base::max_listen_connections, error);
  if (error) {
    asio::error_code ignored;
    acceptor_.close(ignored);
    return reopen_after(kRetry);
  }
  core_.stopped = false;
  accept();
}

void Listener::accept() {
  acceptor_.async_accept([this](asio::error_code error, asio::ip::tcp::socket socket) {
    if (error == asio::error::operation_aborted) return;  // the port was closed
    if (!error) {
      take(std::move(socket));
      return accept();
    }
    // Out of descriptors, say: trying again at once would spin.
    retry_.expires_after(kRetry);
    retry_.async_wait([this](asio::error_code cancelled) {
      if (!cancelled && !core_.stopped) accept();
    });
  });
}

void Listener::take(asio::ip::tcp::socket socket) {
  if (core_.stopped || !make_room()) return;
  auto session = std::make_shared<Session>(core_, std::move(socket));
  core_.add(session);
  session->start();
}

// Clients that connect and say nothing must not lock out those that do.
bool Listener::make_room() {
  if (core_.sessions.size() < core_.limits.clients) return true;
  const auto silent = std::find_if(core_.sessions.begin(), core_.sessions.end(),
                                   [](const auto& session) { return !session->connected(); });
  if (silent == core_.sessions.end()) return false;
  const auto session = *silent;
  session->close();
  return true;
}

}  // namespace ostravel::plc
