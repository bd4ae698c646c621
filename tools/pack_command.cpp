// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <memory>
#include <string>

#include "host/files.h"
#include "host/tagscsv.h"
#include "host/usererror.h"
#include "tools/commands.h"
#include "tools/progress.h"
#include "tools/taglistfile.h"

namespace ostravel::tags {
namespace {

using namespace host;

struct PackOptions {
  std::string list;
  std::string project;
  std::optional<std::string> password;
  std::optional<char> separator;
  bool char_paired = false;
  bool force = false;
};

Project read_list(const ListText& list, const std::string& name) {
  RowProgress progress(name);
  return project_from_list(list, name, warn_on_stderr(name), [&progress](const TagRow&) { progress.step(); });
}

int pack(const PackOptions& options) {
  ListText list{read_file(options.list), options.separator};
  if (is_project(list.text)) {
    throw UserError(fmt::format("{}: is a project file already; pack takes a list of tags", options.list));
  }
  auto project = read_list(list, options.list);
  if (options.password) {
    if (options.password->size() > kLongestPassword) {
      throw UserError(
          fmt::format("the password is longer than {} bytes; give a shorter one", kLongestPassword));
    }
    project.password = options.password;
  }
  project.char_paired = project.char_paired || options.char_paired;
  list = with_settings(std::move(list), project);
  write_file(options.project, encode_with_list(project, list), options.force);
  fmt::print("{}: {}{}{}\n", options.project, counted(project.tags.size(), "tag"),
             project.password ? ", with password" : "", project.char_paired ? ", strings char-paired" : "");
  finish_output(stdout);
  return kExitOk;
}

}  // namespace

void add_pack_command(CLI::App& app, CommandRunner& run) {
  const auto options = std::make_shared<PackOptions>();
  auto* command = app.add_subcommand("pack", "make a project file from a list of tags");
  command->add_option("TAGS", options->list, "the list: name,type,count,first,elements,device,id")
      ->required();
  command->add_option("PROJECT", options->project, "the project file to make")->required();
  command->add_option("--password", options->password,
                      "password of the PLC; goes before '# password:' in the list");
  command->add_flag("--char-paired", options->char_paired, "texts travel two characters a host word");
  add_separator_option(*command, options->separator);
  command->add_flag("--force", options->force, "replace an existing project file");
  command->footer(
      "A list is comma-separated values whose header line names the columns, in any order: name, type, "
      "count,\n"
      "device, id and, if wanted, first and elements. Other columns, comments (# ...), separators and line\n"
      "ends are kept for dump. Lines '# password: TEXT' and '# strings: char-paired' before the header set\n"
      "what the options of these names do.\n\n"
      "Examples:\n"
      "  ostravel-plc --export-tags line.db > line.csv\n"
      "  ostravel-tags pack line.csv line.project\n"
      "  ostravel-tags pack --separator semicolon --force from-spreadsheet.csv line.project");
  command->callback([options, &run] { run = [options] { return pack(*options); }; });
}

}  // namespace ostravel::tags
