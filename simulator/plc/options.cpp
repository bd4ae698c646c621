// SPDX-License-Identifier: MIT
#include "simulator/plc/options.h"

#include <chrono>
#include <map>

namespace ostravel::plc {
namespace {

constexpr const char* kFooter = R"(Examples:
  ostravel-plc --port 1102 line.db types.udt        serves the program on 127.0.0.1:1102
  ostravel-plc --port 0 --script outage.txt line.db
      where outage.txt holds, one command a line:
        at 10s freeze             so long after the start
        +2s thaw                  so long after the line before
        every 5s write Line.Count 0
        +1min quit                # and this is a comment
  echo 'read Line.Count' | ostravel-plc --port 0 --exit-with-stdin line.db
  ostravel-plc --export-tags line.db types.udt >line.csv

Commands on standard input and in scripts, one a line ('help' explains them); the answer to each is a line
with a JSON object:
  list, read, write, generate, constant, cycle, hold, run, step, cut, freeze, thaw, delay, late, fail, heal,
  download, password, restart, stats, help, quit)";

}  // namespace

void add_options(CLI::App& app, Options& options) {
  auto& server = options.server;
  app.add_option("FILE", options.files, "Sources of the program")->required();
  app.add_option("--listen", server.listen, "IP address to listen on")
      ->type_name("ADDRESS")
      ->capture_default_str();
  app.add_option("--port", server.port, "TCP port, 0 for any free one")
      ->type_name("NUMBER")
      ->capture_default_str();
  app.add_option("--cycle", options.cycle_ms,
                 "Time of one cycle, e.g. 100ms or 1s; 0 runs it by console only (default 100ms)")
      ->transform(CLI::AsNumberWithUnit(std::map<std::string, double>{{"ms", 1}, {"s", 1000}, {"us", 0.001}},
                                        CLI::AsNumberWithUnit::CASE_INSENSITIVE))
      ->check(CLI::Range(0.0, 3'600'000.0))
      ->type_name("TIME");
  app.add_option("--script", options.script,
                 "File with console commands and their times; - takes it from standard input")
      ->type_name("FILE");
  app.add_option("--password", server.plc.password, "Password that clients have to give");
  app.add_option("--constant", options.constants,
                 "NAME=VALUE of a global constant that the sources use; repeatable")
      ->type_name("CONSTANT")
      ->allow_extra_args(false);
  app.add_option(
         "--generate", server.plc.generator_rules,
         "PATH=KIND or PATH=KIND(low,high,period): moves a variable; KIND is ramp, sine, counter, toggle, "
         "text or none; repeatable")
      ->type_name("RULE")
      ->allow_extra_args(false);
  app.add_flag(
      "--instances", server.load.instances,
      "Adds a data block NAME_DB for each function block and data type NAME that no data block uses");
  app.add_flag("--accessible", server.load.accessible,
               "Lets clients read and write all variables, whatever ExternalAccessible and READ_ONLY say");
  app.add_flag("--export-tags", options.export_tags, "Prints the variables as a tag table (CSV) and ends");
  app.add_flag("--exit-with-stdin", options.exit_with_stdin, "Ends when standard input does");
  app.add_option("--ready-fd", options.ready_fd,
                 "Descriptor that also gets the line which says where it listens");
  app.footer(kFooter);
}

void finish(Options& options) {
  if (options.script == "-" && options.exit_with_stdin) {
    throw CLI::ValidationError("--exit-with-stdin", "standard input holds the script; end that with 'quit'");
  }
  options.server.cycle = std::chrono::microseconds(static_cast<std::int64_t>(options.cycle_ms * 1000));
  for (const auto& constant : options.constants) {
    const auto equals = constant.find('=');
    if (equals == 0 || equals == std::string::npos) {
      throw CLI::ValidationError("--constant " + constant, "write it as NAME=VALUE");
    }
    options.server.load.constants[constant.substr(0, equals)] = constant.substr(equals + 1);
  }
}

}  // namespace ostravel::plc
