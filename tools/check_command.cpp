// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "host/csv.h"
#include "host/files.h"
#include "host/text.h"
#include "host/usererror.h"
#include "tools/commands.h"
#include "tools/listcheck.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/taglistfile.h"

namespace ostravel::tags {
namespace {

using namespace host;

struct CheckOptions {
  std::vector<std::string> files;
  std::optional<char> separator;
  Formats formats;
  bool strict = false;
  bool errors_only = false;
};

const char* word(Severity severity) {
  return severity == Severity::Error ? "error" : "warning";
}

void print_finding(const Formats& formats, const std::string& file, const TagFinding& found) {
  const auto& [severity, place, text] = found.finding;
  if (formats.json) {
    print_json({{"file", file},
                {"line", place.line},
                {"column", place.column},
                {"severity", word(severity)},
                {"tag", found.tag.empty() ? Json() : Json(found.tag)},
                {"finding", text}});
  } else if (formats.csv) {
    fmt::print("{},{},{},{},{},{}\n", csv_field(file), place.line, place.column, word(severity),
               csv_field(found.tag), csv_field(text));
  } else {
    fmt::print("{}: {}: {}\n", visible(place_text(file, place)), word(severity), visible(text));
  }
}

void print_summary(const Formats& formats, const std::string& file, const ListCheck& check) {
  const auto errors = check.count(Severity::Error);
  const auto warnings = check.count(Severity::Warning);
  if (formats.json) {
    print_json({{"file", file}, {"tags", check.tags}, {"errors", errors}, {"warnings", warnings}});
    return;
  }
  // CSV on standard output has findings in all its rows.
  fmt::print(formats.csv ? stderr : stdout, "{}: {}, {}, {}\n", file, counted(check.tags, "tag"),
             counted(errors, "error"), counted(warnings, "warning"));
}

ListCheck check_with_progress(const TagListFile& file) {
  RowProgress progress(file.name);
  return check_list(file.list, [&progress] { progress.step(); });
}

int check_files(const CheckOptions& options) {
  bool clean = true;
  if (options.formats.csv) {
    fmt::print("file,line,column,severity,tag,finding\n");
  }
  for (const auto& name : options.files) {
    const auto file = open_tag_list(name, options.separator);
    auto check = check_with_progress(file);
    if (file.outdated) {
      const Finding outdated{Severity::Warning, {}, "the list kept in the file is not that of its tags"};
      check.findings.insert(check.findings.begin(), TagFinding{outdated, {}});
    }
    for (const auto& found : check.findings) {
      if (!options.errors_only || found.finding.severity == Severity::Error) {
        print_finding(options.formats, name, found);
      }
    }
    print_summary(options.formats, name, check);
    clean = clean && (options.strict ? check.findings.empty() : check.count(Severity::Error) == 0);
  }
  finish_output(stdout);
  return clean ? kExitOk : kExitValueFailed;
}

}  // namespace

void add_check_command(CLI::App& app, CommandRunner& run) {
  const auto options = std::make_shared<CheckOptions>();
  auto* command = app.add_subcommand("check", "tell all that is wrong with lists and project files");
  command->add_option("FILE", options->files, "lists and project files")->required();
  add_format_options(*command, options->formats);
  command->add_flag("--strict", options->strict, "warnings count as errors");
  command->add_flag("--errors-only", options->errors_only, "warnings are counted and not shown");
  add_separator_option(*command, options->separator);
  command->footer(
      "Errors are tags that cannot be packed, listed twice, or with names that no PLC has. Warnings are "
      "tags\n"
      "with which panel and library do something else than one expects. Each has its file:line:column; in a\n"
      "project file that is the place in the list that dump prints.\n\n"
      "Examples:\n"
      "  ostravel-tags check line.csv\n"
      "  ostravel-tags check --errors-only *.csv *.project\n"
      "  ostravel-tags check --json line.project");
  command->callback([options, &run] { run = [options] { return check_files(*options); }; });
}

}  // namespace ostravel::tags
