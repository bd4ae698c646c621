// SPDX-License-Identifier: MIT
// try-sources: goes through a folder of PLC sources and prints a line for each: that it is read through the
// driver as the PLC holds it, or why it is refused. Exit code 1 when a value differs or a variable is
// missing.
#include <fmt/format.h>

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <stdexcept>

#include "common/commandline.h"
#include "tests/simulator/trial/trial.h"

namespace {

using namespace ostravel::trial;

constexpr std::size_t kDifferencesShown = 5;

struct Totals {
  std::uint64_t files = 0;
  std::uint64_t refused = 0;
  std::uint64_t bad = 0;
  std::uint64_t variables = 0;
  std::uint64_t read = 0;
};

void print(const SourceSet& set, const std::filesystem::path& folder, const Outcome& outcome, bool verbose) {
  const auto name = std::filesystem::relative(set.file, folder).string();
  std::string with;
  for (const auto& other : set.others) {
    with += (with.empty() ? " with " : ", ") + std::filesystem::relative(other, folder).string();
  }
  if (!outcome.refused.empty()) {
    fmt::print("refused    {}{}\n           {}\n", name, with, outcome.refused);
    return;
  }
  fmt::print("{} {}{}: {} variables, {} read as the PLC holds them\n",
             outcome.good() ? "ok        " : "DIFFERENT ", name, with, outcome.variables, outcome.read);
  for (const auto& [reason, count] : outcome.left_out)
    fmt::print("           {} left out: {}\n", count, reason);
  for (std::size_t i = 0; i < outcome.differences.size() && (verbose || i < kDifferencesShown); ++i) {
    fmt::print("           {}\n", outcome.differences[i]);
  }
  if (!verbose && outcome.differences.size() > kDifferencesShown) {
    fmt::print("           ... and {} more; --verbose shows all\n",
               outcome.differences.size() - kDifferencesShown);
  }
  for (const auto& warning : outcome.warnings) {
    if (verbose) fmt::print("           {}\n", warning);
  }
}

// What the programs print on standard error goes to a file: their warnings are in the outcome anyhow.
void redirect_errors(const std::string& file) {
  const int log = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (log < 0) throw std::runtime_error(file + ": cannot be written; name another folder with --work");
  dup2(log, STDERR_FILENO);
  close(log);
}

int run(const std::filesystem::path& folder, const TrialOptions& options, bool verbose) {
  Totals totals;
  for (const auto& set : source_sets(folder)) {
    const auto outcome = try_sources(set, options);
    print(set, folder, outcome, verbose);
    std::fflush(stdout);
    ++totals.files;
    totals.refused += outcome.refused.empty() ? 0 : 1;
    totals.bad += outcome.good() ? 0 : 1;
    totals.variables += outcome.variables;
    totals.read += outcome.read;
  }
  fmt::print(
      "{} files: {} loaded, {} refused; {} variables, {} read as the PLC holds them; {} files with "
      "differences\n",
      totals.files, totals.files - totals.refused, totals.refused, totals.variables, totals.read, totals.bad);
  return totals.bad == 0 ? ostravel::kExitOk : ostravel::kExitValueFailed;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Reads the variables of PLC sources through the driver and compares them with the PLC's");
  std::filesystem::path folder;
  TrialOptions options;
  bool verbose = false;
  const int own_errors = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
  app.add_option("FOLDER", folder, "Folder with .db, .udt and .scl files, searched with its subfolders")
      ->required()
      ->check(CLI::ExistingDirectory);
  app.add_option("--programs", options.programs, "Folder of ostravel-plc, ostravel-tags and ostravel-host")
      ->required();
  app.add_option("--work", options.work, "Folder for the files between them")->required();
  app.add_option("--constant", options.constants, "NAME=VALUE of a global constant; repeatable")
      ->allow_extra_args(false);
  app.add_flag("--accessible", options.accessible,
               "Reads also what the sources say is not accessible from outside");
  app.add_flag("--verbose", verbose, "Shows warnings and all differences");
  try {
    if (const auto code = ostravel::parse_command_line(app, "try-sources", argc, argv)) return *code;
    std::filesystem::create_directories(options.work);
    redirect_errors(options.work + "/programs.log");
    return run(folder, options, verbose);
  } catch (const std::exception& error) {
    dup2(own_errors, STDERR_FILENO);
    fmt::print(stderr, "try-sources: {}; see {}/programs.log\n", error.what(), options.work);
    return ostravel::kExitUsage;
  }
}
