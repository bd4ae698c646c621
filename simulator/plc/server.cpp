// SPDX-License-Identifier: MIT
#include "simulator/plc/server.h"

#include <asio.hpp>
#include <future>
#include <thread>
#include <utility>

#include "simulator/plc/console.h"
#include "simulator/plc/core.h"
#include "simulator/plc/session.h"

namespace ostravel::plc {
namespace {

// More than any test or plant needs, and far from the limit of open files.
constexpr std::size_t kMaxSessions = 200;

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

struct Server::Running {
  Running(Program program, const ServerOptions& options)
      : core(std::move(program), options.plc), cycle(options.cycle) {
    listen(options);
    accept();
    if (cycle.count() > 0) {
      timer.expires_after(cycle);
      wait_for_cycle();
    }
    thread = std::thread([this] { core.io.run(); });
  }

  ~Running() {
    asio::post(core.io, [this] { core.io.stop(); });
    thread.join();
    // Sessions and their handlers refer to each other.
    for (const auto& session : std::set(core.sessions)) session->close();
  }

  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

  void listen(const ServerOptions& options) {
    asio::error_code error;
    const auto address = asio::ip::make_address(options.listen, error);
    const auto where = options.listen + ":" + std::to_string(options.port);
    if (error) throw ServerError("cannot listen on " + where + ": '" + options.listen + "' is no IP address");
    const asio::ip::tcp::endpoint endpoint(address, options.port);
    acceptor.open(endpoint.protocol(), error);
    if (!error) acceptor.set_option(asio::socket_base::reuse_address(true), error);
    if (!error) acceptor.bind(endpoint, error);
    if (!error) acceptor.listen(asio::socket_base::max_listen_connections, error);
    if (error) throw ServerError("cannot listen on " + where + ": " + why_not(error));
    port = acceptor.local_endpoint().port();
  }

  void accept() {
    acceptor.async_accept([this](asio::error_code error, asio::ip::tcp::socket socket) {
      if (!error && core.sessions.size() < kMaxSessions) {
        auto session = std::make_shared<Session>(core, std::move(socket));
        core.add(session);
        session->start();
      }
      if (!error) return accept();
      // Out of descriptors, say: trying again at once would spin.
      retry.expires_after(std::chrono::milliseconds(100));
      retry.async_wait([this](asio::error_code stopped) {
        if (!stopped) accept();
      });
    });
  }

  void wait_for_cycle() {
    timer.async_wait([this](asio::error_code stopped) {
      if (stopped) return;
      if (!core.held) core.plc.step();
      // A machine too slow for the cycle gets a longer cycle, not a burst of them.
      const auto now = std::chrono::steady_clock::now();
      timer.expires_at(std::max(timer.expiry() + cycle, now));
      wait_for_cycle();
    });
  }

  Core core;
  std::chrono::microseconds cycle;
  asio::ip::tcp::acceptor acceptor{core.io};
  asio::steady_timer timer{core.io};
  asio::steady_timer retry{core.io};
  std::uint16_t port = 0;
  std::thread thread;
};

Server::Server(Program program, const ServerOptions& options)
    : running_(std::make_unique<Running>(std::move(program), options)) {}

Server::~Server() = default;

std::uint16_t Server::port() const {
  return running_->port;
}

std::uint64_t Server::generators_left_out() const {
  return running_->core.plc.generators_left_out();
}

std::string Server::command(std::string_view line) {
  std::promise<std::string> answer;
  asio::post(running_->core.io, [&] {
    try {
      answer.set_value(run_command(running_->core, line));
    } catch (...) {
      answer.set_exception(std::current_exception());
    }
  });
  return answer.get_future().get();
}

}  // namespace ostravel::plc
