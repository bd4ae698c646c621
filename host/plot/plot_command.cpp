// SPDX-License-Identifier: MIT
#include "host/plot/plot_command.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "host/commandline.h"
#include "host/commands/shared.h"
#include "host/files.h"
#include "host/interrupt.h"
#include "host/plot/liveplot.h"
#include "host/plot/plotoutput.h"
#include "host/plot/recording.h"
#include "host/record/duration.h"
#include "host/record/recorder.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace plot {
namespace {

constexpr std::size_t kMostUnnamed = 8;

// Better known before an hour of polling than after it.
void require_place_for(const PlotOptions& options) {
  if (!options.svg.empty() && !options.force && std::filesystem::exists(options.svg)) {
    throw UserError(fmt::format("{}: exists already; give --force to replace it", options.svg));
  }
}

void hold_steps(std::vector<Series>& series, const PlotOptions& options) {
  for (auto& one : series) {
    one.stepped = one.stepped || options.steps;
  }
}

int plot_recording(const CommonOptions& common, const PlotOptions& options) {
  if (options.words.empty()) {
    throw UserError("name a recording, or tags with --live; see ostravel-host plot --help");
  }
  require_place_for(options);
  const auto& file = options.words.front();
  const std::vector<std::string> names(options.words.begin() + 1, options.words.end());
  auto series = read_recording(read_file(file), file, names);
  if (series.empty()) {
    throw UserError(fmt::format("{}: has no tag with numbers to plot", file));
  }
  if (names.empty() && series.size() > kMostUnnamed) {
    throw UserError(fmt::format("{}: has {} tags with numbers; name those to plot", file, series.size()));
  }
  hold_steps(series, options);
  put_out(stdout, series, options, common.format());
  finish_output(stdout);
  return kExitOk;
}

std::vector<Series> empty_series(const std::vector<DeviceTag>& tags) {
  std::vector<Series> series;
  for (const auto& tag : tags) {
    require_number(tag.selection, tag.label);
    const auto kind = tag.selection.tag.type->kind;
    const bool truth = tag.selection.bit || kind == ValueKind::Bool || kind == ValueKind::Bit;
    series.push_back({tag.label, {}, truth});
  }
  return series;
}

int plot_live(const CommonOptions& common, const PlotOptions& options) {
  if (options.words.empty()) {
    throw UserError("name the tags to plot");
  }
  require_place_for(options);
  Devices devices(common);
  auto tags = devices.projects().tags(options.words);
  auto empty = empty_series(tags);
  hold_steps(empty, options);
  chart_options(options, empty);  // whatever is wrong with them
  LiveSeries live(empty, options.window);
  TagPoller poller(devices, std::move(tags));
  heed_interrupts();
  auto* out = devices.output().stream();
  const bool redraw =
      devices.output().is_terminal() && options.svg.empty() && common.format() == Format::Text;
  LiveLines lines(out);
  if (redraw) {
    // The line below the chart says how the device stands.
    poller.on_recovery([](const std::string&) {});
  }
  const auto begin = record::now();
  for (std::uint64_t i = 0; !interrupted() && (options.count == 0 || i < options.count); ++i) {
    if (i > 0) {
      sleep_unless_interrupted(options.interval);
    }
    const auto time = record::now();
    if (options.length.count() > 0 && time - begin >= options.length) {
      break;
    }
    poller.poll();
    const auto round = record::round_of(devices, poller, time);
    live.add(round);
    if (redraw && live.has_values()) {
      const Chart chart(live.series(), chart_options(options, live.series()));
      auto text = draw(chart, terminal_options(out, options, live.series().size() + 1));
      text.push_back(fmt::format("{} (Ctrl+C ends)", round.link));
      lines.draw(text);
    }
  }
  const auto served = [&poller](std::size_t device) { return poller.served(device); };
  if (std::none_of(poller.devices().begin(), poller.devices().end(), served)) {
    return no_plc(devices, poller, std::chrono::milliseconds(0));
  }
  if (!redraw) {
    put_out(out, live.series(), options, common.format());
  }
  devices.output().finish();
  return kExitOk;
}

void add_options(CLI::App& command, PlotOptions& options) {
  command.add_option("FILE_OR_TAG", options.words,
                     "a recording and, unless all, those of its tags to plot; with --live tags only");
  auto* live = command.add_flag("--live", options.live, "poll the tags and plot them as they come");
  command.add_option("--svg", options.svg, "write an SVG file instead of drawing in the terminal")
      ->type_name("FILE");
  command.add_flag("--force", options.force, "replace the SVG file when it is there");
  command.add_option("--title", options.title, "of the chart");
  command.add_option("--unit", options.unit, "of the values, as in bar");
  command.add_option("--from", options.from, "first moment to show, as in 2024-03-05T13:14:15Z")
      ->type_name("MOMENT");
  command.add_option("--to", options.to, "last moment to show")->type_name("MOMENT");
  command.add_flag("--stack", options.stacked, "a panel with an axis of its own for each tag");
  command.add_flag("--steps", options.steps, "hold each value until the next, as is done for true and false");
  command.add_flag("--ascii", options.ascii, "draw with ASCII characters only");
  command.add_option("--width", options.width, "columns; without it the terminal's")
      ->check(CLI::Range(30, 1000));
  command.add_option("--height", options.height, "lines of the panels; without it what fits")
      ->check(CLI::Range(3, 500));
  record::add_duration(command, "--interval", options.interval, "live: time between polls")->needs(live);
  record::add_duration(command, "--window", options.window, "live: how much of the past to show")
      ->needs(live);
  record::add_duration(command, "--for", options.length, "live: how long to poll; without it until Ctrl+C")
      ->needs(live);
  command.add_option("--count", options.count, "live: polls to make; 0 goes on until Ctrl+C")
      ->check(not_negative)
      ->needs(live)
      ->capture_default_str();
}

}  // namespace
}  // namespace plot

void add_plot_command(CLI::App& app, const CommonOptions& common, CommandRunner& run) {
  auto* command = app.add_subcommand("plot", "draw recorded or live values over time");
  command->footer(
      "Times are those of this machine's zone. Where values are missing, the line is broken. With --json or\n"
      "--csv the points are printed instead.\n\n"
      "Examples:\n"
      "  ostravel-host plot line.csv Plant.Speed Plant.Level\n"
      "  ostravel-host plot line.csv Plant.Pressure --unit bar --svg pressure.svg\n"
      "  ostravel-host --project line.project plot --live Plant.Speed --window 5m");
  auto options = std::make_shared<plot::PlotOptions>();
  plot::add_options(*command, *options);
  command->callback([&common, &run, options] {
    run = [&common, options] {
      return options->live ? plot::plot_live(common, *options) : plot::plot_recording(common, *options);
    };
  });
}

}  // namespace ostravel::host
