// SPDX-License-Identifier: MIT
// ostravel-watch-picture: runs a program on a terminal of its own and makes a picture of its screen. For
// scripts/watch-picture.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "host/files.h"
#include "host/usererror.h"
#include "host/watch/picture/ptyprogram.h"
#include "host/watch/picture/svg.h"

namespace {

using namespace ostravel::host;

struct Options {
  std::string picture;
  std::vector<std::string> command;
  std::string title;
  std::string keys;
  std::size_t lines = 24;
  std::size_t columns = 96;
  double seconds = 5;
};

int run(const Options& options) {
  picture::PtyProgram program(options.command,
                              {"TERM=xterm-256color", "LC_ALL=C.UTF-8", "NO_COLOR", "LINES", "COLUMNS"},
                              options.lines, options.columns);
  program.run_for(std::chrono::milliseconds(static_cast<long>(options.seconds * 1000)));
  program.type(options.keys);
  program.run_for(std::chrono::milliseconds(options.keys.empty() ? 0 : 500));
  if (!program.terminal().alternate()) {
    throw UserError(
        fmt::format("{} shows no screen: {}", options.command.front(), program.terminal().text()));
  }
  write_file(options.picture, picture::svg_of(program.terminal(), options.title), true);
  program.kill(SIGTERM);
  return program.wait().value_or(kExitUsage);
}

int parse_and_run(int argc, char** argv) {
  Options options;
  CLI::App app{"Makes a picture of a program's screen"};
  app.add_option("PICTURE", options.picture, "SVG file, replaced when it exists")->required();
  app.add_option("COMMAND", options.command, "program and arguments, after --")->required();
  app.add_option("--title", options.title, "text in the frame");
  app.add_option("--keys", options.keys, "typed before the picture is made");
  app.add_option("--lines", options.lines, "of the screen")->check(CLI::Range(2, 200))->capture_default_str();
  app.add_option("--columns", options.columns, "of the screen")
      ->check(CLI::Range(10, 400))
      ->capture_default_str();
  app.add_option("--seconds", options.seconds, "that the program runs before")->capture_default_str();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  }
  return run(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return parse_and_run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "ostravel-watch-picture: %s\n", error.what());
    return kExitUsage;
  }
}
