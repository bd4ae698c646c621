// SPDX-License-Identifier: MIT
// What the commands of ostravel-host have in common. Each is a file of its own with one function
// add_NAME_command, which adds a subcommand and stores in its callback what is to be run.
#pragma once

#include <CLI/CLI.hpp>
#include <chrono>
#include <functional>
#include <string>

#include "host/format.h"

namespace ostravel::host {

// Options that every command takes, before or after its name.
struct CommonOptions {
  std::string driver;   // empty: libostravel.so beside the program
  std::string library;  // communication library to load first; empty: the driver finds it by itself
  std::string project;  // project file of the one device
  std::string config;   // description of several devices, instead of project, address and station
  std::string address = "127.0.0.1";
  int station = 1;
  bool offline = false;
  std::string driver_output;  // where the driver's lines go: empty nowhere, "-" standard output, else a file
  long timeout_ms = 10'000;   // to wait for an answer from the PLC
  bool json = false;
  bool csv = false;

  Format format() const { return json ? Format::Json : csv ? Format::Csv : Format::Text; }
  std::chrono::milliseconds timeout() const { return std::chrono::milliseconds(timeout_ms); }
};

// Runs the command that was given and returns an exit code of usererror.h. May throw UserError and NoDriver.
using CommandRunner = std::function<int()>;

void add_common_options(CLI::App& app, CommonOptions& options);

}  // namespace ostravel::host
