// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <cstdio>
#include <memory>
#include <string>

#include "host/csv.h"
#include "host/files.h"
#include "host/text.h"
#include "host/usererror.h"
#include "tools/commands.h"
#include "tools/diff.h"
#include "tools/output.h"
#include "tools/taglistfile.h"

namespace ostravel::tags {
namespace {

using namespace host;

struct DiffOptions {
  std::string before;
  std::string after;
  std::optional<char> separator;
  Formats formats;
};

const char* word(Change change) {
  switch (change) {
    case Change::Removed:
      return "removed";
    case Change::Added:
      return "added";
    case Change::Changed:
      break;
  }
  return "changed";
}

// What the password is, is nobody's business here.
Json password_state(const Project& project) {
  return project.password ? Json("set") : Json("none");
}

Json strings_state(const Project& project) {
  return project.char_paired ? "char-paired" : "word-aligned";
}

std::string plain(const Json& value) {
  if (value.is_null()) {
    return "none";
  }
  return value.is_string() ? value.get<std::string>() : value.dump();
}

std::string tag_text(const Tag& tag) {
  std::string text;
  for (const auto field : {TagField::Type, TagField::Count, TagField::First, TagField::Elements,
                           TagField::Device, TagField::Id}) {
    if (field != TagField::First || tag.first) {
      text += fmt::format("{}{} {}", text.empty() ? "" : ", ", field_name(field), field_text(tag, field));
    }
  }
  return text;
}

void print_text(const TagDifference& tag) {
  switch (tag.change) {
    case Change::Removed:
      fmt::print("- {}: {}\n", visible(tag.before->name), tag_text(*tag.before));
      return;
    case Change::Added:
      fmt::print("+ {}: {}\n", visible(tag.after->name), tag_text(*tag.after));
      return;
    case Change::Changed:
      break;
  }
  std::string text;
  for (const auto field : tag.fields) {
    text += fmt::format("{}{} {} -> {}", text.empty() ? "" : ", ", field_name(field),
                        plain(json_of(*tag.before, field)), plain(json_of(*tag.after, field)));
  }
  fmt::print("~ {}: {}\n", visible(tag.after->name), text);
}

void print_json_line(const TagDifference& tag) {
  Json line{{"change", word(tag.change)}};
  if (tag.change != Change::Changed) {
    line["tag"] = json_of(tag.change == Change::Removed ? *tag.before : *tag.after);
  } else {
    line["name"] = tag.after->name;
    for (const auto field : tag.fields) {
      line["fields"][std::string(field_name(field))] = {{"before", json_of(*tag.before, field)},
                                                        {"after", json_of(*tag.after, field)}};
    }
  }
  print_json(line);
}

void print_csv(const TagDifference& tag) {
  const auto& shown = tag.before != nullptr ? *tag.before : *tag.after;
  if (tag.change != Change::Changed) {
    fmt::print("{},{},,,\n", word(tag.change), csv_field(shown.name));
    return;
  }
  for (const auto field : tag.fields) {
    fmt::print("changed,{},{},{},{}\n", csv_field(shown.name), field_name(field),
               csv_field(field_text(*tag.before, field)), csv_field(field_text(*tag.after, field)));
  }
}

void print_setting(const Formats& formats, const char* setting, const Json& before, const Json& after) {
  if (formats.json) {
    print_json({{"change", "setting"}, {"setting", setting}, {"before", before}, {"after", after}});
  } else if (formats.csv) {
    fmt::print("setting,,{},{},{}\n", setting, plain(before), plain(after));
  } else if (before == after) {
    fmt::print("~ {}: another\n", setting);
  } else {
    fmt::print("~ {}: {} -> {}\n", setting, visible(plain(before)), visible(plain(after)));
  }
}

void print_moved(const Formats& formats, const Tag& tag) {
  if (formats.json) {
    print_json({{"change", "order"}, {"name", tag.name}});
  } else if (formats.csv) {
    fmt::print("order,{},,,\n", csv_field(tag.name));
  } else {
    fmt::print("~ order: {} is the first that stands further up\n", visible(tag.name));
  }
}

int diff_files(const DiffOptions& options) {
  const auto before = load_tags(options.before, options.separator);
  const auto after = load_tags(options.after, options.separator);
  const auto difference = diff(before.project, after.project);
  const auto& formats = options.formats;
  if (formats.csv) {
    fmt::print("change,name,field,before,after\n");
  }
  if (difference.password) {
    print_setting(formats, "password", password_state(before.project), password_state(after.project));
  }
  if (difference.strings) {
    print_setting(formats, "strings", strings_state(before.project), strings_state(after.project));
  }
  for (const auto& tag : difference.tags) {
    formats.json ? print_json_line(tag) : formats.csv ? print_csv(tag) : print_text(tag);
  }
  if (difference.moved != nullptr) {
    print_moved(formats, *difference.moved);
  }
  if (!formats.json && !formats.csv) {
    fmt::print("{} added, {} removed, {} changed{}\n", difference.count(Change::Added),
               difference.count(Change::Removed), difference.count(Change::Changed),
               difference.none() ? ": the same" : "");
  }
  finish_output(stdout);
  return difference.none() ? kExitOk : kExitValueFailed;
}

}  // namespace

void add_diff_command(CLI::App& app, CommandRunner& run) {
  const auto options = std::make_shared<DiffOptions>();
  auto* command = app.add_subcommand("diff", "tell what two lists or project files differ in");
  command->add_option("A", options->before, "list or project file, as it was")->required();
  command->add_option("B", options->after, "list or project file, as it is")->required();
  add_format_options(*command, options->formats);
  add_separator_option(*command, options->separator);
  command->footer(
      "Tags are compared by name. A list and the project file made of it are the same, whatever the list's\n"
      "comments, columns and separators. Ends with 0 when there is no difference, with 1 when there is "
      "one.\n\n"
      "Examples:\n"
      "  ostravel-tags diff old.project new.project\n"
      "  ostravel-tags diff line.csv line.project && echo up to date\n"
      "  ostravel-tags diff --json old.csv new.csv");
  command->callback([options, &run] { run = [options] { return diff_files(*options); }; });
}

}  // namespace ostravel::tags
