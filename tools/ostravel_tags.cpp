// SPDX-License-Identifier: MIT
// ostravel-tags: makes the project file that a device is started with from a list of tags, and shows one.
#include <fmt/format.h>

#include <cstdio>
#include <limits>
#include <string>

#include "host/commandline.h"
#include "host/files.h"
#include "host/project.h"
#include "host/tagscsv.h"
#include "host/usererror.h"

namespace {

using namespace ostravel::host;

struct PackOptions {
  std::string tags;
  std::string project;
  std::string password;
  bool with_password = false;
  bool char_paired = false;
  bool force = false;
};

void pack(const PackOptions& options) {
  auto project = project_from_csv(read_file(options.tags), options.tags);
  if (options.with_password) {
    project.password = options.password;
  }
  if (project.password && project.password->size() > std::numeric_limits<std::uint16_t>::max()) {
    throw UserError("the password is longer than 65535 bytes; give a shorter one");
  }
  project.char_paired = project.char_paired || options.char_paired;
  write_file(options.project, encode_project(project), options.force);
  fmt::print("{}: {} tags{}{}\n", options.project, project.tags.size(),
             project.password ? ", with password" : "", project.char_paired ? ", strings char-paired" : "");
}

int run(int argc, char** argv) {
  CLI::App app{"Makes and shows project files for the driver"};
  app.require_subcommand(1);

  PackOptions options;
  auto* pack_command = app.add_subcommand("pack", "make a project file from a list of tags");
  pack_command->add_option("TAGS", options.tags, "the list: name,type,count,first,elements,device,id")
      ->required();
  pack_command->add_option("PROJECT", options.project, "the project file to make")->required();
  auto* password = pack_command->add_option("--password", options.password,
                                            "password of the PLC; goes before '# password:' in the list");
  pack_command->add_flag("--char-paired", options.char_paired, "texts travel two characters a host word");
  pack_command->add_flag("--force", options.force, "replace an existing project file");

  std::string shown;
  auto* dump_command = app.add_subcommand("dump", "print a project file as a list of tags");
  dump_command->add_option("PROJECT", shown, "the project file")->required();

  if (const auto code = parse_command_line(app, "ostravel-tags", argc, argv)) {
    return *code;
  }
  options.with_password = password->count() > 0;
  if (pack_command->parsed()) {
    pack(options);
  } else {
    fmt::print("{}", project_to_csv(load_project(shown).project));
  }
  finish_output(stdout);
  return kExitOk;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    fmt::print(stderr, "ostravel-tags: {}\n", error.what());
    return kExitUsage;
  }
}
