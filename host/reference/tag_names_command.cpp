// SPDX-License-Identifier: MIT
#include "host/reference/tag_names_command.h"

#include <fmt/format.h>

#include <cstdio>
#include <memory>
#include <string>

#include "host/config/projects.h"
#include "host/files.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

int print_names(const CommonOptions& common, const std::string& beginning) {
  const Projects projects(load_devices(common));
  for (const auto& tag : projects.tags({})) {
    if (tag.label.starts_with(beginning)) {
      fmt::print("{}\n", tag.label);
    }
  }
  finish_output(stdout);
  return kExitOk;
}

}  // namespace

void add_tag_names_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("tag-names", "names of tags, for shell completion")->group("");
  const auto beginning = std::make_shared<std::string>();
  command->add_option("BEGINNING", *beginning, "only names that begin so");
  command->callback(
      [&, beginning] { run = [&common, beginning] { return print_names(common, *beginning); }; });
}

}  // namespace ostravel::host
