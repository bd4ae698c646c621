// SPDX-License-Identifier: MIT
#include "common/commandline.h"

#include <algorithm>
#include <iostream>
#include <string_view>

#include "common/optiontable.h"

namespace ostravel {
namespace {

std::string exit_code_lines(Programs program) {
  std::string lines = "Exit codes:\n";
  for (const auto& entry : exit_codes()) {
    if ((entry.programs & program) != 0) {
      lines += "  " + std::to_string(entry.code) + "  " + std::string(entry.meaning) + "\n";
    }
  }
  lines.pop_back();
  return lines;
}

// A subcommand that was given no footer of its own has its parent's, which says nothing about it.
void finish_help(CLI::App& app, const std::string& exit_codes, const std::string& inherited) {
  const auto own = app.get_footer();
  for (auto* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    finish_help(*command, exit_codes, own);
  }
  const bool has_own = !own.empty() && own != inherited;
  app.footer(has_own ? own + "\n\n" + exit_codes : exit_codes);
}

}  // namespace

Programs program_bit(std::string_view program) {
  if (program == "ostravel-host") return kHost;
  if (program == "ostravel-tags") return kTags;
  return program == "ostravel-plc" ? kPlc : kEveryProgram;
}

std::string version_line(std::string_view program) {
  return std::string(program) + " " OSTRAVEL_VERSION;
}

std::optional<int> parse_command_line(CLI::App& app, const char* program, int argc, const char* const* argv) {
  app.set_version_flag("--version", version_line(program), "Print the version and end");
  constexpr int kOnlyArgument = 2;
  if (argc == kOnlyArgument && std::string_view(argv[1]) == "--option-table") {
    std::cout << option_table(app, program) << std::flush;
    return std::cout ? kExitOk : kExitUsage;
  }
  finish_help(app, exit_code_lines(program_bit(program)), {});
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);
      return kExitOk;
    }
    std::cerr << program << ": " << error.what() << "; see " << program << " --help\n";
    return kExitUsage;
  }
  return std::nullopt;
}

}  // namespace ostravel
