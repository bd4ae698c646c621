// SPDX-License-Identifier: MIT
// The command line of ostravel-plc.
#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "simulator/plc/server.h"
#include "simulator/program/source.h"

namespace ostravel::plc {

struct Options {
  std::vector<std::filesystem::path> files;
  std::string script;  // empty: none; "-": standard input
  ServerOptions server;
  bool export_tags = false;
  bool exit_with_stdin = false;
  int ready_fd = -1;

  // As they stand on the command line; finish() puts them into the fields above.
  double cycle_ms = 100;
  std::vector<std::string> constants;
};

void add_options(CLI::App& app, Options& options);

// To be called after parsing. Throws CLI::ValidationError for what only shows when all is known.
void finish(Options& options);

}  // namespace ostravel::plc
