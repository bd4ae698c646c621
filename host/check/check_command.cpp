// SPDX-License-Identifier: MIT
#include "host/check/check_command.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <set>

#include "host/check/checker.h"
#include "host/check/progress.h"
#include "host/config/devices.h"
#include "host/interrupt.h"
#include "host/text.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace check {
namespace {

using nlohmann::json;

struct CheckOptions {
  std::vector<std::string> names;
  bool all = false;
};

struct Counts {
  std::size_t tags = 0;
  std::size_t good = 0;
  std::size_t bad = 0;
  std::size_t doubtful = 0;

  void add(Verdict verdict) {
    ++tags;
    ++(verdict == Verdict::Good ? good : verdict == Verdict::Bad ? bad : doubtful);
  }
};

class Printer {
 public:
  Printer(std::FILE* out, Format format, bool all)
      : out_(out), format_(format), all_(all), rows_(out, format, kColumns()) {}

  void print(const DeviceTag& tag, const TagReport& report) {
    counts_.add(report.verdict());
    if (report.findings.empty() && all_) {
      print_line(tag, report, {});
    }
    for (const auto& finding : report.findings) {
      print_line(tag, report, finding);
    }
  }

  // With CSV it would be a line of another shape, so it goes where messages go.
  int summary(std::size_t asked) {
    const auto left = asked - counts_.tags;
    if (format_ == Format::Json) {
      fmt::print(out_, "{}\n",
                 json_line({"tags", "good", "bad", "doubtful", "not_checked"},
                           {counts_.tags, counts_.good, counts_.bad, counts_.doubtful, left}));
    } else {
      std::fflush(out_);
      fmt::print(format_ == Format::Csv ? stderr : out_, "{} tags: {} good, {} bad, {} doubtful{}\n",
                 counts_.tags, counts_.good, counts_.bad, counts_.doubtful,
                 left > 0 ? fmt::format("; {} not checked", left) : "");
    }
    return counts_.bad > 0 || left > 0 ? kExitValueFailed : kExitOk;
  }

 private:
  static std::vector<std::string> kColumns() {
    return {"tag", "type", "plc_type", "verdict", "reason", "text"};
  }

  void print_line(const DeviceTag& tag, const TagReport& report, const Finding& finding) {
    const auto type = tag.selection.tag.type->name;
    const bool good = finding.verdict == Verdict::Good;
    if (format_ != Format::Text) {
      rows_.write({tag.label, type, report.plc_type.empty() ? json() : json(report.plc_type),
                   to_text(finding.verdict), good ? json() : json(to_text(finding.reason)),
                   good ? json() : json(finding.text)});
      return;
    }
    fmt::print(out_, "{:<8}  {}: {}\n", to_text(finding.verdict), visible(tag.label),
               good ? fmt::format("{} reads {}", type, report.plc_type) : visible(finding.text));
  }

  std::FILE* out_;
  Format format_;
  bool all_;
  RowWriter rows_;
  Counts counts_;
};

// The tags of one device, in their order.
std::vector<DeviceTag> of_device(const std::vector<DeviceTag>& tags, std::size_t device) {
  std::vector<DeviceTag> found;
  for (const auto& tag : tags) {
    if (tag.device == device) {
      found.push_back(tag);
    }
  }
  return found;
}

void check_device(const Devices& devices, const Library& library, std::size_t number,
                  const std::vector<DeviceTag>& tags, const CommonOptions& common, Printer& printer) {
  const auto& projects = devices.projects();
  std::set<int> stations;
  for (std::size_t i = 0; i < projects.size(); ++i) {
    stations.insert(projects.device(i).station);
  }
  const auto& config = projects.device(number);
  const auto& project = projects.project(number);
  const PlcLink link(library, {config.address, free_device(stations), project.password, common.timeout()});
  std::vector<Tag> wanted;
  wanted.reserve(tags.size());
  for (const auto& tag : tags) {
    wanted.push_back(project.tags[tag.selection.row]);
  }
  Progress progress(stderr, isatty(STDERR_FILENO) == 1);
  const auto name = config.name.empty() ? std::string() : config.name + ": ";
  Checker checker(link);
  checker.check(
      wanted, project.char_paired,
      [&](const TagReport& report) {
        progress.clear();
        printer.print(tags[report.row], report);
        progress.show(fmt::format("{}checked {} of {}", name, report.row + 1, wanted.size()));
      },
      interrupted);
}

int check_tags(const CommonOptions& common, const CheckOptions& options) {
  const Devices devices(common);
  const auto& projects = devices.projects();
  const auto tags = projects.tags(options.names);
  for (const auto& tag : tags) {
    if (projects.device(tag.device).offline) {
      throw UserError("check compares with a PLC; leave out --offline");
    }
  }
  const Library library([&](const char* name) { return devices.driver().find(name); },
                        driver_path(projects.device(0).driver));
  heed_interrupts();
  Printer printer(devices.output().stream(), common.format(), options.all);
  for (std::size_t i = 0; i < projects.size(); ++i) {
    const auto mine = of_device(tags, i);
    if (mine.empty() || interrupted()) {
      continue;
    }
    try {
      check_device(devices, library, i, mine, common, printer);
    } catch (const LibraryFailure& failure) {
      printer.summary(tags.size());
      std::fflush(devices.output().stream());
      fmt::print(stderr, "ostravel-host: {}: {}\n", projects.device(i).address, failure.what());
      return failure.code == AGL40_LIB_NOT_LOADED ? kExitNoDriver : kExitNoPlc;
    }
  }
  const auto result = printer.summary(tags.size());
  devices.output().finish();
  return result;
}

}  // namespace
}  // namespace check

void add_check_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("check", "say for each tag that does not fit the PLC why");
  command->footer(
      "Reads each tag once on a connection of its own and compares it with the PLC's symbols. 'bad' reads\n"
      "nothing, zeros or garbage, or would end the runtime; 'doubtful' reads something else than it "
      "seems.\n\n"
      "Examples:\n"
      "  ostravel-host --project line.project --address 192.168.0.10 check\n"
      "  ostravel-host --project line.project check --all --csv > report.csv");
  auto options = std::make_shared<check::CheckOptions>();
  command->add_option("TAG", options->names, "as for read; without any all tags");
  command->add_flag("--all", options->all, "list the good ones as well");
  command->callback(
      [&common, &run, options] { run = [&common, options] { return check::check_tags(common, *options); }; });
}

}  // namespace ostravel::host
