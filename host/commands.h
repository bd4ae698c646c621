// SPDX-License-Identifier: MIT
// What ostravel-host does: describe the driver, read, write and watch tags.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace ostravel::host {

struct HostOptions {
  std::string driver;   // empty: libostravel.so beside the program
  std::string library;  // empty: the driver finds the communication library by itself
  std::string project;
  std::string address = "127.0.0.1";
  int station = 1;
  bool offline = false;
  std::string driver_output;  // where the driver's lines go: empty nowhere, "-" standard output, else a file
  std::chrono::milliseconds timeout{10'000};
  std::vector<std::string> tags;         // read, watch; empty: all
  std::vector<std::string> assignments;  // write
  std::chrono::milliseconds interval{500};
  std::uint64_t count = 0;  // watch: 0 until interrupted
};

// Each returns an exit code of usererror.h and may throw UserError and NoDriver.
int describe_command(const HostOptions& options);
int read_command(const HostOptions& options);
int write_command(const HostOptions& options);
int watch_command(const HostOptions& options);

}  // namespace ostravel::host
