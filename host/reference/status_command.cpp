// SPDX-License-Identifier: MIT
#include "host/reference/status_command.h"

#include <fmt/format.h>

#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/config/devices.h"
#include "host/driverlibrary.h"
#include "host/format.h"
#include "host/output.h"
#include "host/reference/statuscatalogue.h"
#include "host/table.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

using GetErrorMsg = std::int32_t (*)(std::int32_t code, char* text, std::int32_t size);

// The communication library's own words for one of its results; nothing when it cannot be asked.
std::optional<std::string> ask_library(const CommonOptions& common, std::uint32_t result) {
  try {
    if (!common.library.empty()) {
      preload_library(common.library);
    }
    const DriverLibrary driver(driver_path(common.driver));
    const auto get_text = reinterpret_cast<GetErrorMsg>(driver.find("AGL_GetErrorMsg"));
    std::array<char, 256> text{};
    if (get_text == nullptr || get_text(static_cast<std::int32_t>(result), text.data(),
                                        static_cast<std::int32_t>(text.size())) != 0) {
      return std::nullopt;
    }
    return std::string(text.data(), strnlen(text.data(), text.size()));
  } catch (const NoDriver&) {
    return std::nullopt;
  }
}

// What there is to say of one code; cause and remedy are empty for a result that only the library knows.
struct Row {
  std::string source, written, name, cause, remedy;
};

Row row_of(const StatusEntry& entry) {
  return {std::string(to_text(entry.source)), std::string(entry.written), std::string(entry.name),
          std::string(entry.cause), std::string(entry.remedy)};
}

std::vector<Row> rows_for(const CommonOptions& common, const std::string& code) {
  std::vector<Row> rows;
  for (const auto& entry : look_up_status(code)) {
    rows.push_back(row_of(entry));
  }
  if (!rows.empty()) {
    return rows;
  }
  const auto result = library_result(code);
  if (!result) {
    throw UserError(
        fmt::format("'{}' is no status; ostravel-host status lists all, write one like 13/5, "
                    "\"no data\", \"loader 3\" or 0xFFF00016",
                    code));
  }
  const auto text = ask_library(common, *result);
  if (!text) {
    throw UserError(
        fmt::format("0x{:08X} is a result of the communication library, which cannot be asked for "
                    "its text; name it with --library FILE",
                    *result));
  }
  return {{std::string(to_text(StatusSource::Library)), fmt::format("0x{:08X}", *result), *text, "", ""}};
}

// Every code once, with its name.
void print_overview(std::FILE* out) {
  constexpr std::size_t kLongestName = 80;
  std::vector<TableRow> table{{"CODE", "NAME", "SOURCE"}};
  for (const auto& entry : status_catalogue()) {
    const auto row = row_of(entry);
    if (row.written != table.back().front()) {
      table.push_back({row.written, row.name, row.source});
    }
  }
  for (const auto& line : layout_table(table, kLongestName)) {
    fmt::print(out, "{}\n", line);
  }
  fmt::print(out, "\nostravel-host status CODE says what causes it and what helps.\n");
}

void print_row(std::FILE* out, const Row& row, bool heading) {
  if (heading) {
    fmt::print(out, "{}  {} ({})\n", row.written, row.name, row.source);
  }
  if (!row.cause.empty()) {
    fmt::print(out, "  cause:  {}\n  remedy: {}\n", row.cause, row.remedy);
  }
}

void print_rows(std::FILE* out, Format format, const std::vector<Row>& rows) {
  if (format != Format::Text) {
    RowWriter writer(out, format, {"source", "code", "name", "cause", "remedy"});
    for (const auto& row : rows) {
      writer.write({row.source, row.written, row.name, row.cause, row.remedy});
    }
    writer.finish();
    return;
  }
  const Row* before = nullptr;
  for (const auto& row : rows) {
    print_row(out, row, before == nullptr || before->written != row.written);
    before = &row;
  }
}

int show_status(const CommonOptions& common, const std::vector<std::string>& codes) {
  const OwnOutput output(common.driver_output);
  std::vector<Row> rows;
  for (const auto& code : codes) {
    const auto found = rows_for(common, code);
    rows.insert(rows.end(), found.begin(), found.end());
  }
  if (codes.empty() && common.format() == Format::Text) {
    print_overview(output.stream());
    output.finish();
    return kExitOk;
  }
  if (codes.empty()) {
    for (const auto& entry : status_catalogue()) {
      rows.push_back(row_of(entry));
    }
  }
  print_rows(output.stream(), common.format(), rows);
  output.finish();
  return kExitOk;
}

}  // namespace

void add_status_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("status", "what a status code means, what causes it and what helps");
  const auto codes = std::make_shared<std::vector<std::string>>();
  command->add_option("CODE", *codes,
                      "such as 2, 13/5, \"loader 3\", 0xFFF00016 or a name; without any all of them");
  command->footer(
      "Examples:\n"
      "  ostravel-host status                  all codes and their names\n"
      "  ostravel-host status 13/5             what a tag with 13/5 is waiting for\n"
      "  ostravel-host status 0xFFF00016       a result of the communication library\n"
      "  ostravel-host --json status           everything, for other programs");
  command->callback([&, codes] { run = [&common, codes] { return show_status(common, *codes); }; });
}

}  // namespace ostravel::host
