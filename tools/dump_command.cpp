// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <cstdio>
#include <memory>
#include <string>

#include "host/files.h"
#include "host/tagscsv.h"
#include "host/usererror.h"
#include "tools/commands.h"
#include "tools/output.h"

namespace ostravel::tags {
namespace {

using namespace host;

struct DumpOptions {
  std::string project;
  std::string output;
  bool canonical = false;
  bool json = false;
  bool force = false;
};

void dump_json(const Project& project) {
  if (project.password || project.char_paired) {
    Json settings;
    if (project.password) {
      settings["password"] = *project.password;
    }
    settings["strings"] = project.char_paired ? "char-paired" : "word-aligned";
    print_json({{"settings", settings}});
  }
  for (const auto& tag : project.tags) {
    print_json(json_of(tag));
  }
}

std::string list_text(const ProjectFile& file, const DumpOptions& options) {
  if (options.canonical) {
    return project_to_csv(file.project);
  }
  auto own = list_of(file);
  if (own.outdated) {
    fmt::print(stderr,
               "ostravel-tags: {}: warning: the list kept in it is not that of its tags; this is the normal "
               "form of the tags\n",
               options.project);
  }
  return std::move(own.list.text);
}

int dump(const DumpOptions& options) {
  const auto file = load_project(options.project);
  if (options.json) {
    dump_json(file.project);
  } else if (const auto text = list_text(file, options); options.output.empty()) {
    std::fwrite(text.data(), 1, text.size(), stdout);
  } else {
    write_file(options.output, text, options.force);
  }
  finish_output(stdout);
  return kExitOk;
}

}  // namespace

void add_dump_command(CLI::App& app, CommandRunner& run) {
  const auto options = std::make_shared<DumpOptions>();
  auto* command = app.add_subcommand("dump", "print a project file as the list of tags it was made of");
  command->add_option("PROJECT", options->project, "the project file")->required();
  auto* canonical =
      command->add_flag("--canonical,--csv", options->canonical,
                        "the normal form: commas, all columns in their order, no comments but settings");
  auto* json = command->add_flag("--json", options->json, "one JSON object a line")->excludes(canonical);
  command->add_option("-o,--output", options->output, "write to a file")->type_name("FILE")->excludes(json);
  command->add_flag("--force", options->force, "replace an existing file");
  command->footer(
      "Without an option the list is byte for byte the one that was packed.\n\n"
      "Examples:\n"
      "  ostravel-tags dump line.project > line.csv\n"
      "  ostravel-tags dump line.project -o line.csv --force\n"
      "  ostravel-tags dump --json line.project | jq -r .name");
  command->callback([options, &run] { run = [options] { return dump(*options); }; });
}

}  // namespace ostravel::tags
