// SPDX-License-Identifier: MIT
#include "simulator/plc/server.h"

#include <asio.hpp>
#include <future>
#include <thread>
#include <utility>

#include "simulator/plc/console.h"
#include "simulator/plc/core.h"
#include "simulator/plc/listener.h"

namespace ostravel::plc {

struct Server::Running {
  Running(Program program, const ServerOptions& options)
      : core(std::move(program), options.plc),
        cycle(options.cycle),
        listener(core, options.listen, options.port) {
    core.load = options.load;
    core.limits = options.limits;
    core.close_port = [this](std::chrono::milliseconds pause) { listener.close_for(pause); };
    if (cycle.count() > 0) {
      timer.expires_after(cycle);
      wait_for_cycle();
    }
    thread = std::thread([this] { core.io.run(); });
  }

  ~Running() {
    asio::post(core.io, [this] { core.io.stop(); });
    thread.join();
    core.close_all();  // sessions and their handlers refer to each other
  }

  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

  void wait_for_cycle() {
    timer.async_wait([this](asio::error_code stopped) {
      if (stopped) return;
      if (!core.held && !core.stopped) core.plc.step();
      // A machine too slow for the cycle gets a longer cycle, not a burst of them.
      const auto now = std::chrono::steady_clock::now();
      timer.expires_at(std::max(timer.expiry() + cycle, now));
      wait_for_cycle();
    });
  }

  Core core;
  std::chrono::microseconds cycle;
  Listener listener;
  asio::steady_timer timer{core.io};
  std::thread thread;
};

Server::Server(Program program, const ServerOptions& options)
    : running_(std::make_unique<Running>(std::move(program), options)) {}

Server::~Server() = default;

std::uint16_t Server::port() const {
  return running_->listener.port();
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
