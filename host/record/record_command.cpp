// SPDX-License-Identifier: MIT
#include "host/record/record_command.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "host/check/progress.h"
#include "host/commandline.h"
#include "host/commands/shared.h"
#include "host/interrupt.h"
#include "host/record/duration.h"
#include "host/record/recorder.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace record {
namespace {

struct RecordOptions {
  std::string file;
  std::vector<std::string> names;
  std::chrono::milliseconds interval{1000};
  std::chrono::milliseconds length{0};  // 0: without limit
  std::uint64_t count = 0;
  bool on_change = false;
  bool long_form = false;
  bool append = false;
  bool force = false;
};

constexpr const char* kStandardOutput = "-";

std::unique_ptr<RecordFile> open_file(const RecordOptions& options, const Devices& devices,
                                      const RecordRows& rows) {
  if (options.file == kStandardOutput) {
    return std::make_unique<RecordFile>(fileno(devices.output().stream()), rows.header());
  }
  const auto existing = options.append  ? Existing::Append
                        : options.force ? Existing::Replace
                                        : Existing::Refuse;
  auto file = std::make_unique<RecordFile>(options.file, existing, rows.header());
  if (file->cut_off() > 0) {
    fmt::print(stderr, "ostravel-host: {}: half a row at its end, {} bytes, is cut off\n", options.file,
               file->cut_off());
  }
  return file;
}

void print_summary(const RecordOptions& options, const CommonOptions& common, const Devices& devices,
                   const RecordRows& rows) {
  auto* out = options.file == kStandardOutput ? stderr : devices.output().stream();
  if (common.json) {
    fmt::print(out, "{}\n", json_line({"file", "rows", "gaps"}, {options.file, rows.written(), rows.gaps()}));
  } else if (options.file != kStandardOutput) {
    fmt::print(out, "{}: {} rows, {} gaps\n", options.file, rows.written(), rows.gaps());
  }
}

int record_tags(const CommonOptions& common, const RecordOptions& options) {
  Devices devices(common);
  auto tags = devices.projects().tags(options.names);
  std::vector<std::string> labels;
  labels.reserve(tags.size());
  for (const auto& tag : tags) {
    labels.push_back(tag.label);
  }
  RecordRows rows(options.long_form ? Form::Long : Form::Wide, std::move(labels), options.on_change);
  const auto file = open_file(options, devices, rows);
  heed_interrupts();
  TagPoller poller(devices, std::move(tags));
  // A recording goes on for hours: in a log its state every few seconds would be a nuisance.
  const bool terminal = isatty(STDERR_FILENO) == 1;
  check::Progress progress(stderr, terminal);
  poller.on_recovery([&progress](const std::string& line) {
    progress.clear();
    fmt::print(stderr, "ostravel-host: {}\n", line);
  });
  // Rows of a device that is only just being connected would say nothing; one that stays away is a gap.
  poller.poll_all(common.timeout());
  RecordPlan plan{options.interval, options.count, std::nullopt};
  if (options.length.count() > 0) {
    plan.length = options.length;
  }
  Recorder(devices, poller, real_timing()).run(plan, rows, *file, [&](const Round& round) {
    if (terminal) {
      progress.show(fmt::format("{} rows, {}", rows.written(), round.link));
    }
  });
  progress.clear();
  print_summary(options, common, devices, rows);
  devices.output().finish();
  const bool any = std::any_of(poller.devices().begin(), poller.devices().end(),
                               [&poller](std::size_t device) { return poller.served(device); });
  return any ? kExitOk : no_plc(devices, poller, std::chrono::milliseconds(0));
}

}  // namespace
}  // namespace record

void add_record_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("record", "write tags to a CSV file at an interval");
  command->footer(
      "A row is a moment: time (ISO 8601, UTC), status, and a cell for each tag; with --long it is one tag "
      "at\n"
      "one moment: time, tag, value, status. While a PLC does not answer, cells are empty and status says "
      "why.\n"
      "Ctrl+C ends the recording after a whole row.\n\n"
      "Examples:\n"
      "  ostravel-host --project line.project record line.csv Plant.Speed Plant.Level --interval 500ms\n"
      "  ostravel-host --project line.project record line.csv --append --on-change --for 8h");
  auto options = std::make_shared<record::RecordOptions>();
  command->add_option("FILE", options->file, "file to write, or - for standard output")->required();
  command->add_option("TAG", options->names, "as for read; without any all tags");
  record::add_duration(*command, "--interval", options->interval, "time from row to row");
  record::add_duration(*command, "--for", options->length, "how long to record; without it until Ctrl+C");
  command->add_option("--count", options->count, "rows to record; 0 goes on until Ctrl+C")
      ->check(not_negative)
      ->capture_default_str();
  command->add_flag("--on-change", options->on_change, "leave out rows in which nothing has changed");
  command->add_flag("--long", options->long_form, "a row for each tag instead of a column");
  auto* append = command->add_flag("--append", options->append, "go on with FILE when it is there");
  command->add_flag("--force", options->force, "replace FILE when it is there")->excludes(append);
  command->callback([&common, &run, options] {
    run = [&common, options] { return record::record_tags(common, *options); };
  });
}

}  // namespace ostravel::host
