// SPDX-License-Identifier: MIT
#include "host/commandline.h"

#include <fmt/format.h>

#include <cstdio>

#include "host/usererror.h"

namespace ostravel::host {

std::optional<int> parse_command_line(CLI::App& app, const char* tool, int argc, const char* const* argv) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);
      return kExitOk;
    }
    fmt::print(stderr, "{}: {}; see {} --help\n", tool, error.what(), tool);
    return kExitUsage;
  }
  return std::nullopt;
}

}  // namespace ostravel::host
