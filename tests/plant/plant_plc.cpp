// SPDX-License-Identifier: MIT
// The PLC of the plant: the simulated PLC with a program of its own, which gives every variable a new value
// each cycle, and with a record of all that its memory ever held. Console, command line and first line are
// those of ostravel-plc, as far as they are needed; the record is the file that OSTRAVEL_PLANT_RECORD names.
// Besides:
//
//   after TIME COMMAND    carries a command out so much later and notes the moment as that of the PLC's
//   return
//
// Between a command or a cycle and the record of what it did no client is served.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <asio.hpp>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "simulator/plc/console.h"
#include "simulator/plc/listener.h"
#include "simulator/program/source.h"
#include "tests/plant/record.h"
#include "tests/plant/values.h"

namespace {

using namespace ostravel;
using std::chrono::milliseconds;

class PlantPlc {
 public:
  PlantPlc(plc::Program program, const std::string& listen, std::uint16_t port, milliseconds cycle,
           const std::string& record)
      : core_(std::move(program), {}), listener_(core_, listen, port), record_(record), cycle_(cycle) {
    core_.close_port = [this](milliseconds pause) { listener_.close_for(pause); };
    record_.sign(getpid());
    take_program();
    timer_.expires_after(cycle_);
    wait_for_cycle();
  }

  std::uint16_t port() const { return listener_.port(); }
  void run() { core_.io.run(); }
  void stop() {
    asio::post(core_.io, [this] {
      core_.close_all();
      core_.io.stop();
    });
  }

  // From any thread.
  std::string command(const std::string& line) {
    std::promise<std::string> answer;
    asio::post(core_.io, [&] { answer.set_value(carry_out(line)); });
    return answer.get_future().get();
  }

 private:
  void wait_for_cycle() {
    timer_.async_wait([this](asio::error_code) {
      if (!core_.stopped) {
        core_.plc.step();
        next_moment();
      }
      timer_.expires_at(std::max(timer_.expiry() + cycle_, std::chrono::steady_clock::now()));
      wait_for_cycle();
    });
  }

  // A program that is loaded has its start values, which the plant's own replace.
  void take_program() {
    values_ = std::make_unique<plant::Values>(core_.plc.program());
    next_moment();
  }

  void next_moment() {
    auto& memory = core_.plc.memory();
    values_->put(record_.moment() + 1, memory);
    record_.keep(core_.plc.program().fingerprint, memory);
  }

  std::string carry_out(const std::string& line) {
    if (line.starts_with("after ")) {
      std::size_t end = 0;
      const int span = std::stoi(line.substr(6), &end);
      carry_out_after(milliseconds(span), line.substr(6 + end + 1));
      return R"({"after":)" + std::to_string(span) + "}";
    }
    auto answer = plc::run_command(core_, line);
    take_program();
    return answer;
  }

  void carry_out_after(milliseconds span, const std::string& line) {
    auto timer = std::make_shared<asio::steady_timer>(core_.io, span);
    timer->async_wait([this, timer, line](asio::error_code) {
      carry_out(line);
      record_.mark_return();
    });
  }

  plc::Core core_;
  plc::Listener listener_;
  plant::Record record_;
  milliseconds cycle_;
  std::unique_ptr<plant::Values> values_;
  asio::steady_timer timer_{core_.io};
};

struct Options {
  std::string listen = "127.0.0.1";
  std::uint16_t port = 0;
  std::string cycle = "20ms";
  bool exit_with_stdin = false;
  std::vector<std::filesystem::path> files;
};

int run(const Options& options) {
  const char* record = std::getenv("OSTRAVEL_PLANT_RECORD");
  if (record == nullptr) throw std::runtime_error("OSTRAVEL_PLANT_RECORD names no file for the record");
  PlantPlc plc(plc::load_program(options.files), options.listen, options.port,
               milliseconds(std::stoi(options.cycle)), record);
  std::thread server([&plc] { plc.run(); });
  std::cout << "listening on " << options.listen << ':' << plc.port() << std::endl;
  for (std::string line; std::getline(std::cin, line);) std::cout << plc.command(line) << std::endl;
  plc.stop();
  server.join();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("The plant's PLC, for tests");
  app.add_option("--listen", options.listen);
  app.add_option("--port", options.port);
  app.add_option("--cycle", options.cycle);
  app.add_flag("--exit-with-stdin", options.exit_with_stdin);
  app.add_option("files", options.files)->required();
  CLI11_PARSE(app, argc, argv);
  try {
    return run(options);
  } catch (const std::exception& error) {
    std::cerr << "plant-plc: " << error.what() << '\n';
    return 2;
  }
}
