// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/files.h"
#include "host/tagscsv.h"
#include "host/usererror.h"
#include "tools/commands.h"
#include "tools/merge.h"

namespace ostravel::tags {
namespace {

using namespace host;

struct MergeOptions {
  std::vector<std::string> files;
  std::string output;
  MergeRules rules;
  std::optional<char> separator;
  bool force = false;
};

int merge_files(const MergeOptions& options) {
  std::vector<PlacedProject> lists;
  for (const auto& file : options.files) {
    lists.push_back(load_tags(file, options.separator));
  }
  const auto merged = merge(lists, options.rules);
  const bool list = options.output.ends_with(".csv");
  write_file(options.output, list ? project_to_csv(merged) : encode_project(merged), options.force);
  fmt::print("{}: {} from {}\n", options.output, counted(merged.tags.size(), "tag"),
             counted(lists.size(), "file"));
  finish_output(stdout);
  return kExitOk;
}

}  // namespace

void add_merge_command(CLI::App& app, CommandRunner& run) {
  const auto options = std::make_shared<MergeOptions>();
  auto* command = app.add_subcommand("merge", "make one list or project file of several");
  command->add_option("FILE", options->files, "lists and project files, at least one")->required();
  command->add_option("-o,--output", options->output, "what to make: a list if it ends in .csv")
      ->type_name("FILE")
      ->required();
  const std::map<std::string, Prefer> preferences{{"first", Prefer::First}, {"last", Prefer::Last}};
  command
      ->add_option_function<std::string>(
          "--prefer",
          [options, preferences](const std::string& word) { options->rules.prefer = preferences.at(word); },
          "of a tag or setting that differs, take the first or the last; without it that is an error")
      ->check(CLI::IsMember({"first", "last"}));
  command->add_flag("--renumber", options->rules.renumber, "give ids from 1, whatever they were");
  add_separator_option(*command, options->separator);
  command->add_flag("--force", options->force, "replace an existing file");
  command->footer(
      "A tag that is the same in several files is taken once. The result is in the normal form: comments "
      "and\n"
      "columns other than those of tags are left out.\n\n"
      "Examples:\n"
      "  ostravel-tags merge line1.csv line2.csv -o plant.project\n"
      "  ostravel-tags merge plant.project changes.csv --prefer last -o plant.csv --force");
  command->callback([options, &run] { run = [options] { return merge_files(*options); }; });
}

}  // namespace ostravel::tags
