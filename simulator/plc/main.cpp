// SPDX-License-Identifier: MIT
// ostravel-plc: a simulated PLC. Loads a program from text sources, runs it and serves clients over TCP, with
// a console on standard input. The first line on standard output says where it listens.
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "common/commandline.h"
#include "simulator/plc/options.h"
#include "simulator/plc/script.h"
#include "simulator/plc/server.h"
#include "simulator/plc/terminal.h"
#include "simulator/program/source.h"
#include "simulator/program/tags.h"
#include "simulator/program/text_file.h"

namespace {

using namespace ostravel::plc;

void print_warnings(const std::vector<std::string>& warnings) {
  for (const auto& warning : warnings) std::cerr << "ostravel-plc: " << warning << '\n';
}

Script load_script(const std::string& name) {
  if (name.empty()) return {};
  if (name != "-") return parse_script(read_source(name), name);
  const std::string text(std::istreambuf_iterator<char>(std::cin), {});
  return parse_script(text, "standard input");
}

int print_tags(const Program& program, const std::vector<std::string>& warnings) {
  const auto table = export_tags(program);
  std::cout << table.csv << std::flush;
  print_warnings(warnings);
  print_warnings(warnings_of(table));
  if (!std::cout) throw ServerError("standard output cannot be written; is the disk full?");
  return ostravel::kExitOk;
}

void say_where(const std::string& where, int ready_fd) {
  std::cout << where << std::flush;
  if (ready_fd < 0) return;
  if (write(ready_fd, where.data(), where.size()) < 0) {
    std::cerr << "ostravel-plc: warning: cannot write to descriptor " << ready_fd << " of --ready-fd\n";
  }
  close(ready_fd);
}

int run(const Options& options) {
  std::signal(SIGPIPE, SIG_IGN);  // nobody reading the console's answers is no reason to stop the PLC
  std::vector<std::string> warnings;
  Program program = load_program(options.files, options.server.load, &warnings);
  if (options.export_tags) return print_tags(program, warnings);
  print_warnings(warnings);
  const auto script = load_script(options.script);
  if (!script.lines.empty()) rehearse(script, program, options.server.plc, options.server.load);
  const int signals = signal_descriptor();
  Server server(std::move(program), options.server);
  if (const auto left_out = server.generators_left_out(); left_out != 0) {
    std::cerr << "ostravel-plc: warning: " << left_out
              << " variables named Live stand still, there are too many\n";
  }
  say_where("listening on " + options.server.listen + ":" + std::to_string(server.port()) + "\n",
            options.ready_fd);
  serve_terminal(server, script, signals, {options.script != "-", options.exit_with_stdin});
  return ostravel::kExitOk;
}

int parse_and_run(int argc, char** argv) {
  Options options;
  CLI::App app(
      "Simulated PLC: runs the data blocks of text sources (.db, .udt, .scl) and serves them over TCP",
      "ostravel-plc");
  add_options(app, options);
  if (const auto code = ostravel::parse_command_line(app, "ostravel-plc", argc, argv)) return *code;
  finish(options);
  return run(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return parse_and_run(argc, argv);
  } catch (const SourceError& error) {
    std::cerr << error.what() << '\n';  // starts with the place in the file
  } catch (const ScriptError& error) {
    std::cerr << error.what() << '\n';
  } catch (const std::exception& error) {
    std::cerr << "ostravel-plc: " << error.what() << '\n';
  }
  return ostravel::kExitUsage;
}
