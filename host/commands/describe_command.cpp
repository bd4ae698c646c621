// SPDX-License-Identifier: MIT
#include "host/commands/describe_command.h"

#include <fmt/format.h>

#include <filesystem>
#include <map>

#include "host/commands/loadedlibrary.h"
#include "host/config/devices.h"
#include "host/driverlibrary.h"
#include "host/output.h"
#include "host/tagtype.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

// Driver and library, which a description of devices may name too.
DeviceConfig files_of(const CommonOptions& common) {
  if (!common.config.empty()) {
    return load_devices(common).front();
  }
  DeviceConfig config;
  config.driver = common.driver;
  config.library = common.library;
  return config;
}

json number_or_null(const std::vector<std::string>& cells, std::size_t i) {
  const bool number = i < cells.size() && !cells[i].empty() && cells[i].size() < 10 &&
                      cells[i].find_first_not_of("0123456789") == std::string::npos;
  return number ? json(std::stol(cells[i])) : json();
}

class Describer {
 public:
  Describer(const DriverLibrary& driver, std::filesystem::path file, Format format, std::FILE* out)
      : driver_(driver), file_(std::move(file)), format_(format), out_(out), description_(describe(driver)) {}

  void print_driver() const {
    const auto& attribute = description_.attribute;
    const auto version = fmt::format("{}.{:02}", attribute.wVersion / 100, attribute.wVersion % 100);
    if (format_ == Format::Json) {
      fmt::print(out_, "{}\n",
                 json_line({"kind", "name", "version", "id", "file", "min_timeout_ms", "init_commands",
                            "close_commands"},
                           {"driver", description_.name, version, attribute.wDriverID, file_.string(),
                            attribute.wMinTimeout, attribute.wInitCmdCount, attribute.wCloseCmdCount}));
    } else if (format_ == Format::Text) {
      fmt::print(out_, "{} {}, driver {}\n", description_.name, version, attribute.wDriverID);
      fmt::print(out_, "file {}\n", file_.string());
      fmt::print(out_, "time-out at least {} ms, {} initialisation and {} close commands\n",
                 attribute.wMinTimeout, attribute.wInitCmdCount, attribute.wCloseCmdCount);
    }
  }

  void print_library() const {
    const auto library = find_loaded_library([this](const char* name) { return driver_.find(name); });
    if (format_ == Format::Json) {
      fmt::print(out_, "{}\n",
                 json_line({"kind", "file", "version"},
                           {"library", library.file.empty() ? json() : json(library.file),
                            library.version.empty() ? json() : json(library.version)}));
    } else if (format_ == Format::Text && library.file.empty()) {
      fmt::print(out_,
                 "communication library: none found; give --library FILE or put it on the library path\n\n");
    } else if (format_ == Format::Text) {
      fmt::print(out_, "communication library {}, {}\n\n", library.file,
                 library.version.empty() ? "version not told" : "version " + library.version);
    }
  }

  void print_types() const {
    std::map<std::string, std::vector<std::string>> limits;
    for (const auto& cells : description_.size_limits) {
      if (!cells.empty()) {
        limits[cells[0]] = cells;
      }
    }
    std::vector<std::string> columns{"type", "code", "device", "runtime_type", "elements", "words_each"};
    if (format_ == Format::Json) {
      columns.insert(columns.begin(), "kind");
    }
    RowWriter rows(out_, format_, columns);
    for (const auto& cells : description_.device_table) {
      if (cells.size() < 3) {
        continue;
      }
      const auto& limit = limits[cells[2]];
      const auto* type = find_tag_type(cells[1]);
      std::vector<json> row{cells[1],
                            number_or_null(cells, 2),
                            cells[0] == "B" ? "bit" : "word",
                            type == nullptr ? json() : json(runtime_type_number(driver_, type->code)),
                            number_or_null(limit, 1),
                            number_or_null(limit, 2)};
      if (format_ == Format::Json) {
        row.insert(row.begin(), "type");
      }
      rows.write(row);
    }
    rows.finish();
  }

 private:
  const DriverLibrary& driver_;
  std::filesystem::path file_;
  Format format_;
  std::FILE* out_;
  DriverDescription description_;
};

int describe_command(const CommonOptions& common) {
  const auto files = files_of(common);
  const OwnOutput output(common.driver_output);
  if (!files.library.empty()) {
    preload_library(files.library);
  }
  const auto path = driver_path(files.driver);
  const DriverLibrary driver(path);
  const Describer describer(driver, std::filesystem::absolute(path), common.format(), output.stream());
  describer.print_driver();
  describer.print_library();
  describer.print_types();
  output.finish();
  return kExitOk;
}

}  // namespace

void add_describe_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand(
      "describe", "what the driver says of itself: versions, library, types, sizes, limits");
  command->footer(
      "With --csv only the table of types is shown.\n\n"
      "Examples:\n"
      "  ostravel-host describe\n"
      "  ostravel-host --driver ./libostravel.so --library ./libAGLink40_x64.so describe");
  command->callback([&] { run = [&common] { return describe_command(common); }; });
}

}  // namespace ostravel::host
