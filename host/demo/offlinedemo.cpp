// SPDX-License-Identifier: MIT
#include "host/demo/offlinedemo.h"

#include <fmt/format.h>

#include <filesystem>

#include "host/demo/sampleplant.h"
#include "host/files.h"

namespace ostravel::host {

void run_offline_demo(const DemoOptions& options, Screen& screen, Ledger& ledger) {
  screen.step("Project file");
  const auto more = options.samples + "/tags.csv";
  const auto project = sample_project(
      export_tags(options.programs + "/ostravel-plc", sources_in(options.samples)), read_file(more), more);
  std::filesystem::create_directories(options.work);
  const auto file = options.work + "/offline.project";
  write_file(file, encode_project(project), true);
  screen.line(fmt::format("{} tags in {}", project.tags.size(), file));

  screen.step("Driver, simulating the device by itself");
  const DriverLibrary driver(options.programs + "/libostravel.so");
  DeviceSettings settings;
  settings.project_file = file;
  settings.table_position = load_project(file).table_position;
  settings.offline = true;
  Session session(driver, settings);
  std::vector<Selection> selections;
  for (std::uint32_t row = 0; row < project.tags.size(); ++row) {
    selections.push_back(select_row(project, row));
  }
  Poller poller(session, selections, project.char_paired);
  ledger.check(poller.poll() == LinkState::Online, "the first poll was not served");
  std::size_t zeros = 0;
  for (std::size_t i = 0; i < poller.size(); ++i) {
    const auto& value = poller.state(i).value;
    const bool zero = is_nothing(value);
    zeros += zero ? 1 : 0;
    ledger.check(zero, fmt::format("{} begins with {}", poller.selection(i).text, value_text(value)));
  }
  screen.line(fmt::format("{} of {} tags begin with zeros", zeros, poller.size()));

  screen.step("Write a value of every type and read it back");
  for (const auto& sample : sample_writes()) {
    const auto selection = select(project, sample.tag);
    const auto value = nlohmann::json::parse(sample.value);
    for (const auto& write : write_accesses(selection, project.char_paired, true, value)) {
      ledger.check(session.write(write).outcome == Outcome::Served,
                   fmt::format("{}: the write was not taken", sample.tag));
    }
    ledger.check(poller.poll() == LinkState::Online, "a poll after a write was not served");
    for (std::size_t i = 0; i < poller.size(); ++i) {
      if (poller.selection(i).text == selection.text) {
        ledger.check(poller.state(i).value == value,
                     fmt::format("{}: {} was written, {} read back", sample.tag, value_text(value),
                                 value_text(poller.state(i).value)));
      }
    }
  }
  screen.tags(poller, "values in the driver's own store", true, poller.size());
  screen.step("Summary");
  screen.line(fmt::format("{} tags read, {} written and read back", poller.size(), sample_writes().size()));
}

}  // namespace ostravel::host
