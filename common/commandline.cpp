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
    if ((entry.programs & program) == program) {
      lines += "  " + std::to_string(entry.code) + "  " + std::string(entry.meaning) + "\n";
    }
  }
  lines.pop_back();
  return lines;
}

// A subcommand that was given no footer of its own has its parent's, which says nothing about it.
void finish_help(CLI::App& app, const std::string& end, const std::string& end_of_commands) {
  const auto own = app.get_footer();
  for (auto* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (command->get_footer() == own) {
      command->footer("");
    }
    finish_help(*command, end_of_commands, end_of_commands);
  }
  app.footer(own.empty() ? end : own + "\n\n" + end);
}

// Commands that take the program's own options as well say where these are shown.
void finish_help(CLI::App& app, const std::string& program) {
  const auto end = exit_code_lines(program_bit(program));
  const bool shares_options = app.get_fallthrough();
  finish_help(app, end,
              shares_options ? program + " --help shows the options that all commands take.\n\n" + end : end);
}

}  // namespace

std::string not_negative(const std::string& text) {
  return text.rfind('-', 0) == 0 ? text + " is negative; give 0 or more" : "";
}

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
  finish_help(app, program);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);
      return std::cout.flush() ? kExitOk : kExitUsage;
    }
    std::cerr << program << ": " << error.what() << "; see " << program << " --help\n";
    return kExitUsage;
  }
  return std::nullopt;
}

}  // namespace ostravel
