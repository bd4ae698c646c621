// SPDX-License-Identifier: MIT
#include "host/commands/browse_command.h"

#include <fmt/format.h>
#include <langinfo.h>

#include <clocale>
#include <memory>
#include <optional>
#include <string_view>

#include "host/commandline.h"
#include "host/commands/polling.h"
#include "host/commands/shared.h"
#include "host/commands/tagtree.h"
#include "host/config/devices.h"
#include "host/files.h"
#include "host/table.h"
#include "host/text.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

struct BrowseOptions {
  std::string filter;
  std::size_t depth = 0;
  bool no_values = false;
};

bool terminal_has_utf8() {
  std::setlocale(LC_CTYPE, "");
  return std::string_view(nl_langinfo(CODESET)) == "UTF-8";
}

std::vector<std::string> parts_of(const Projects& projects, const DeviceTag& tag) {
  auto parts = path_parts(tag.selection.text);
  if (projects.size() > 1) {
    parts.insert(parts.begin(), projects.device(tag.device).name);
  }
  return parts;
}

std::vector<DeviceTag> chosen(const Projects& projects, const BrowseOptions& options) {
  std::vector<DeviceTag> tags;
  for (auto& tag : projects.tags({})) {
    if (matches_filter(tag.label, options.filter)) {
      tags.push_back(std::move(tag));
    }
  }
  if (tags.empty()) {
    throw UserError(options.filter.empty()
                        ? "the project has no tags"
                        : fmt::format("no tag fits '{}'; give a part of a name, or a pattern with * and ?",
                                      options.filter));
  }
  return tags;
}

// "INT", "INT[0..4]", "STRING(20)", "STRING(20)[1..3]"
std::string type_of(const Tag& tag) {
  std::string type(tag.type->name);
  if (tag.type->is_text()) {
    type += fmt::format("({})", tag.count);
  }
  const int elements = tag.type->is_text() ? tag.elements : tag.count;
  if (tag.first) {
    type += fmt::format("[{}..{}]", *tag.first, *tag.first + elements - 1);
  } else if (elements > 1) {
    type += fmt::format(" x {}", elements);
  }
  return type;
}

std::string shown_value(const TagState& state) {
  return state.error == 0 ? value_text(state.value) : status_text(state);
}

class Browser {
 public:
  Browser(const Projects& projects, const BrowseOptions& options)
      : tags_(chosen(projects, options)), places_(tags_.size()) {
    TagTree tree;
    for (std::size_t i = 0; i < tags_.size(); ++i) {
      tree.add(parts_of(projects, tags_[i]), i);
    }
    lines_ = tree.lines(options.depth, terminal_has_utf8());
    for (const auto& line : lines_) {
      if (line.tag != TagTree::kNone) {
        places_[line.tag] = shown_.size();
        shown_.push_back(tags_[line.tag]);
      }
    }
  }

  // Of what is shown only. An exit code.
  int read_values(Devices& devices, const CommonOptions& common) {
    poller_.emplace(devices, shown_);
    if (!poll_all(*poller_, common.timeout())) {
      return no_plc(devices, *poller_, common.timeout());
    }
    for (std::size_t i = 0; i < poller_->size(); ++i) {
      if (poller_->state(i).error != 0) {
        return kExitValueFailed;
      }
    }
    return kExitOk;
  }

  void print(std::FILE* out, Format format) const {
    if (format == Format::Text) {
      print_tree(out);
    } else {
      print_rows(out, format);
    }
  }

 private:
  void print_rows(std::FILE* out, Format format) const {
    auto columns = poller_ ? tag_columns() : std::vector<std::string>{"tag", "type"};
    columns.insert(columns.begin() + 2, {"first", "elements", "characters"});
    RowWriter rows(out, format, columns);
    for (std::size_t i = 0; i < shown_.size(); ++i) {
      const auto& tag = shown_[i].selection.tag;
      const bool text = tag.type->is_text();
      auto cells = poller_ ? tag_cells(*poller_, i) : std::vector<json>{shown_[i].label, tag.type->name};
      cells.insert(cells.begin() + 2, {tag.first ? json(*tag.first) : json(), text ? tag.elements : tag.count,
                                       text ? json(tag.count) : json()});
      rows.write(cells);
    }
  }

  void print_tree(std::FILE* out) const {
    constexpr std::size_t kCellLimit = 72;
    std::vector<TableRow> rows;
    for (const auto& line : lines_) {
      TableRow row{visible(line.text), "", ""};
      if (line.tag != TagTree::kNone) {
        row[1] = type_of(tags_[line.tag].selection.tag);
        row[2] = poller_ ? shown_value(poller_->state(places_[line.tag])) : "";
      }
      if (line.hidden > 0) {
        row[2] += fmt::format("{}({} tag{} below)", row[2].empty() ? "" : " ", line.hidden,
                              line.hidden == 1 ? "" : "s");
      }
      rows.push_back(std::move(row));
    }
    for (const auto& line : layout_table(rows, kCellLimit)) {
      fmt::print(out, "{}\n", line);
    }
  }

  std::vector<DeviceTag> tags_;
  std::vector<std::size_t> places_;  // of each tag in shown_
  std::vector<TagTree::Line> lines_;
  std::vector<DeviceTag> shown_;  // what the depth leaves
  std::optional<TagPoller> poller_;
};

int browse_command(const CommonOptions& common, const BrowseOptions& options) {
  if (options.no_values) {
    const Projects projects(load_devices(common));
    Browser(projects, options).print(stdout, common.format());
    finish_output(stdout);
    return kExitOk;
  }
  Devices devices(common);
  Browser browser(devices.projects(), options);
  const int result = browser.read_values(devices, common);
  if (result != kExitNoPlc) {
    browser.print(devices.output().stream(), common.format());
    devices.output().finish();
  }
  return result;
}

}  // namespace

void add_browse_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("browse", "show the project's tags as a tree, with types and values");
  auto options = std::make_shared<BrowseOptions>();
  command->add_option("FILTER", options->filter, "only tags with this in their names, or fitting * and ?");
  command->add_option("--depth", options->depth, "levels to show; 0 shows all")
      ->check(not_negative)
      ->type_name("NUMBER")
      ->capture_default_str();
  command->add_flag("--no-values", options->no_values, "show names and types only; needs no PLC");
  command->footer(
      "Examples:\n"
      "  ostravel-host --project line.project browse --no-values\n"
      "  ostravel-host --project line.project --address 192.168.0.11 browse 'Plant.*.Speed'");
  command->callback(
      [&common, &run, options] { run = [&common, options] { return browse_command(common, *options); }; });
}

}  // namespace ostravel::host
