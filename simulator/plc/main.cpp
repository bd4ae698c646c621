// SPDX-License-Identifier: MIT
// ostravel-plc: a simulated PLC. Loads a program from text sources, runs it and serves clients over TCP, with
// a console on standard input. The first line on standard output says where it listens.
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "simulator/plc/server.h"
#include "simulator/program/source.h"
#include "simulator/program/tags.h"

namespace {

using namespace ostravel::plc;

struct Options {
  std::vector<std::filesystem::path> files;
  LoadOptions load;
  ServerOptions server;
  bool export_tags = false;
  bool exit_with_stdin = false;
  int ready_fd = -1;
};

void print_warnings(const std::vector<std::string>& warnings) {
  for (const auto& warning : warnings) std::cerr << "ostravel-plc: warning: " << warning << '\n';
}

// Signals are waited for together with the console, so they must reach no handler and no other thread.
int signal_descriptor() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return signalfd(-1, &signals, SFD_CLOEXEC);
}

void answer_line(Server& server, const std::string& line) {
  if (line.find_first_not_of(" \t\r") == std::string::npos) return;
  std::cout << server.command(line) << std::endl;
}

bool is_quit(const std::string& line) {
  const auto first = line.find_first_not_of(" \t");
  return first != std::string::npos &&
         line.substr(first, line.find_last_not_of(" \t\r") - first + 1) == "quit";
}

// Takes what there is on standard input and runs its complete lines. False when it is time to end.
enum class Console { Open, Closed, Quit };
Console read_console(Server& server, std::string& pending) {
  constexpr std::size_t kLongestLine = std::size_t{64} << 20;
  std::array<char, 65536> chunk{};
  const auto count = read(STDIN_FILENO, chunk.data(), chunk.size());
  if (count <= 0) {
    if (is_quit(pending)) return Console::Quit;
    answer_line(server, pending);
    return Console::Closed;
  }
  pending.append(chunk.data(), static_cast<std::size_t>(count));
  std::size_t start = 0;
  for (auto end = pending.find('\n'); end != std::string::npos; end = pending.find('\n', start)) {
    const auto line = pending.substr(start, end - start);
    if (is_quit(line)) return Console::Quit;
    answer_line(server, line);
    start = end + 1;
  }
  pending.erase(0, start);
  if (pending.size() > kLongestLine) return Console::Closed;
  return Console::Open;
}

void serve_console(Server& server, int signals, bool exit_with_stdin) {
  std::array<pollfd, 2> watched{{{signals, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
  std::string pending;
  while (true) {
    if (poll(watched.data(), watched.size(), -1) < 0 && errno != EINTR) return;
    if (watched[0].revents != 0) return;
    if (watched[1].revents == 0) continue;
    const auto state = read_console(server, pending);
    if (state == Console::Quit || (state == Console::Closed && exit_with_stdin)) return;
    if (state == Console::Closed) watched[1].fd = -1;
  }
}

int run(const Options& options) {
  std::signal(SIGPIPE, SIG_IGN);  // nobody reading the console's answers is no reason to stop the PLC
  std::vector<std::string> warnings;
  Program program = load_program(options.files, options.load, &warnings);
  if (options.export_tags) {
    std::cout << export_tags_csv(program, &warnings) << std::flush;
    print_warnings(warnings);
    if (!std::cout) throw std::runtime_error("standard output cannot be written; is the disk full?");
    return 0;
  }
  print_warnings(warnings);
  const int signals = signal_descriptor();
  Server server(std::move(program), options.server);
  if (const auto left_out = server.generators_left_out(); left_out != 0) {
    std::cerr << "ostravel-plc: warning: " << left_out
              << " variables named Live stand still, there are too many\n";
  }
  const auto where = "listening on " + options.server.listen + ":" + std::to_string(server.port()) + "\n";
  std::cout << where << std::flush;
  if (options.ready_fd >= 0) {
    if (write(options.ready_fd, where.data(), where.size()) < 0) {
      std::cerr << "ostravel-plc: warning: cannot write to descriptor " << options.ready_fd
                << " of --ready-fd\n";
    }
    close(options.ready_fd);
  }
  serve_console(server, signals, options.exit_with_stdin);
  return 0;
}

int parse_and_run(int argc, char** argv) {
  Options options;
  std::vector<std::string> constants;
  double cycle_ms = 100;
  CLI::App app(
      "Simulated PLC: runs the data blocks of text sources (.db, .udt, .scl) and serves them over TCP");
  app.add_option("FILE", options.files, "Sources of the program")->required();
  app.add_option("--listen", options.server.listen, "IP address to listen on")->capture_default_str();
  app.add_option("--port", options.server.port, "TCP port, 0 for any free one")->capture_default_str();
  app.add_option("--cycle", cycle_ms,
                 "Time of one cycle, e.g. 100ms or 1s; 0 runs it by console only (default 100ms)")
      ->transform(CLI::AsNumberWithUnit(std::map<std::string, double>{{"ms", 1}, {"s", 1000}, {"us", 0.001}},
                                        CLI::AsNumberWithUnit::CASE_INSENSITIVE))
      ->check(CLI::Range(0.0, 3'600'000.0));
  app.add_option("--password", options.server.plc.password, "Password that clients have to give");
  app.add_option("--constant", constants, "NAME=VALUE of a global constant that the sources use; repeatable")
      ->allow_extra_args(false);
  app.add_option(
         "--generate", options.server.plc.generator_rules,
         "PATH=KIND or PATH=KIND(low,high,period): moves a variable; KIND is ramp, sine, counter, toggle, "
         "text or none; repeatable")
      ->allow_extra_args(false);
  app.add_flag("--export-tags", options.export_tags, "Prints the variables as a tag table (CSV) and ends");
  app.add_flag("--exit-with-stdin", options.exit_with_stdin, "Ends when standard input does");
  app.add_option("--ready-fd", options.ready_fd,
                 "Descriptor that also gets the line which says where it listens");
  app.footer(
      "Commands on standard input: read, write, list, cycle, hold, run, step, cut, freeze, thaw, delay, "
      "late, "
      "fail, heal, stats, quit.");
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    std::cerr << "ostravel-plc: " << error.what() << "; see ostravel-plc --help\n";
    return 2;
  }
  options.server.cycle = std::chrono::microseconds(static_cast<std::int64_t>(cycle_ms * 1000));
  for (const auto& constant : constants) {
    const auto equals = constant.find('=');
    if (equals == 0 || equals == std::string::npos) {
      std::cerr << "ostravel-plc: --constant " << constant << ": write it as NAME=VALUE\n";
      return 2;
    }
    options.load.constants[constant.substr(0, equals)] = constant.substr(equals + 1);
  }
  return run(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return parse_and_run(argc, argv);
  } catch (const SourceError& error) {
    std::cerr << error.what() << '\n';  // starts with the place in the file
  } catch (const std::exception& error) {
    std::cerr << "ostravel-plc: " << error.what() << '\n';
  }
  return 1;
}
