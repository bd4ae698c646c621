// SPDX-License-Identifier: MIT
#include "host/demo/onlinedemo.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <thread>

#include "host/demo/sampleplant.h"
#include "host/files.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

constexpr std::uint8_t kStation = 1;
constexpr const char* kSymbolFile = "/mnt/project/1_s71500_symbolic.ap";
constexpr const char* kCycleTag = "Simulation.Cycle";
constexpr std::chrono::milliseconds kPollInterval{150};
constexpr std::size_t kRowsOfLive = 10;

bool is_live(const Selection& selection) {
  return selection.text.find(".Live.") != std::string::npos;
}

bool symbol_file_exists() {
  return std::filesystem::exists(kSymbolFile);
}

}  // namespace

OnlineDemo::OnlineDemo(const DemoOptions& options, Screen& screen, Ledger& ledger)
    : options_(options),
      screen_(screen),
      ledger_(ledger),
      sources_(sources_in(options.samples)),
      view_(sources_) {}

void OnlineDemo::run() {
  start_plc();
  make_project();
  load_driver();
  screen_.step("Poll: each value is compared with what the PLC held in the same cycle");
  poll_and_check(20, "live values", poller_->size());
  write_all();
  take_plc_away();
  bring_plc_back();
  screen_.step("Summary");
  screen_.line(
      fmt::format("{} values read and compared with the PLC's record, {} written", values_, written_));
}

void OnlineDemo::start_plc() {
  screen_.step("Simulated PLC");
  PlcOptions plc;
  plc.program = options_.programs + "/ostravel-plc";
  plc.sources = sources_;
  plc_.emplace(plc);
  screen_.line(fmt::format("ostravel-plc runs {} sources on 127.0.0.1:{}, a cycle every {}", sources_.size(),
                           plc_->port(), plc.cycle));
  // The driver asks for port 102, which needs privileges; the stand-in library goes to this one instead.
  setenv("OSTRAVEL_STANDIN_PORT", std::to_string(plc_->port()).c_str(), 1);
}

void OnlineDemo::make_project() {
  screen_.step("Project file");
  const auto more = options_.samples + "/tags.csv";
  project_ =
      sample_project(export_tags(options_.programs + "/ostravel-plc", sources_), read_file(more), more);
  Tag cycle;
  cycle.name = kCycleTag;
  cycle.type = find_tag_type("UDINT");
  project_.tags.push_back(cycle);
  std::filesystem::create_directories(options_.work);
  project_file_ = options_.work + "/demo.project";
  write_file(project_file_, encode_project(project_), true);
  screen_.line(
      fmt::format("{} tags, as ostravel-plc exports them, in {}", project_.tags.size(), project_file_));
}

void OnlineDemo::load_driver() {
  screen_.step("Driver");
  driver_.emplace(options_.programs + "/libostravel.so");
  const auto description = describe(*driver_);
  screen_.line(fmt::format("{} {}, driver {}, {} data types", description.name,
                           description.attribute.wVersion, description.attribute.wDriverID,
                           description.device_table.size()));
  DeviceSettings settings;
  settings.project_file = project_file_;
  settings.table_position = load_project(project_file_).table_position;
  settings.station = kStation;
  session_.emplace(*driver_, settings);
  std::vector<Selection> selections;
  for (std::uint32_t row = 0; row + 1 < project_.tags.size(); ++row) {
    selections.push_back(select_row(project_, row));
  }
  std::stable_partition(selections.begin(), selections.end(), is_live);  // what moves is shown first
  poller_.emplace(*session_, selections, project_.char_paired, select(project_, kCycleTag));
  screen_.line(fmt::format("device started for {}, station {}; {} tags in {} batches", settings.address,
                           kStation, selections.size(), poller_->batches()));
  const auto begin = Clock::now();
  ledger_.check(wait_online(std::chrono::seconds(20)), "the driver did not connect");
  const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
  screen_.line(
      fmt::format("{} after {} ms; symbols kept in {}", to_text(poller_->link()), took.count(), kSymbolFile));
  ledger_.check(symbol_file_exists(), "the driver kept no symbol file");
  ledger_.check(session_->connected(), "the driver does not say that it is connected");
}

bool OnlineDemo::wait_online(std::chrono::seconds limit) {
  const auto until = Clock::now() + limit;
  while (poller_->poll() != LinkState::Online) {
    if (Clock::now() >= until) {
      return false;
    }
    std::this_thread::sleep_for(poller_->pause());
  }
  return true;
}

void OnlineDemo::poll_and_check(int polls, const std::string& heading, std::size_t rows) {
  const auto cycles_before = cycles_.size();
  for (int i = 0; i < polls; ++i) {
    const auto link = poller_->poll();
    ledger_.check(link == LinkState::Online, fmt::format("a poll ended with: {}", to_text(link)));
    screen_.tags(*poller_, fmt::format("{}, poll {} of {}: {}", heading, i + 1, polls, to_text(link)),
                 i + 1 == polls, rows);
    check_snapshot();
    std::this_thread::sleep_for(kPollInterval);
  }
  // Values that stand still would compare well without showing anything.
  ledger_.check(polls < 3 || cycles_.size() >= cycles_before + 3, "the PLC's values did not move");
}

void OnlineDemo::check_snapshot() {
  for (std::size_t i = 0; i < poller_->size(); ++i) {
    const auto& selection = poller_->selection(i);
    const auto& state = poller_->state(i);
    ledger_.check(state.error == 0, fmt::format("{}: error {}", selection.text, state.error));
    if (state.error != 0) {
      continue;
    }
    if (is_known_limit(selection.text)) {
      check_limit(selection, state.value);
      continue;
    }
    if (!state.stamp.is_number_unsigned()) {
      ledger_.check(false, fmt::format("{}: came without the number of its cycle", selection.text));
      continue;
    }
    const auto cycle = state.stamp.get<std::uint64_t>();
    const auto held = plc_->value(selection.text, cycle);
    const auto delivered = view_.of(selection, state.value);
    cycles_.insert(cycle);
    ++values_;
    ledger_.check(!held.is_null() && held == delivered,
                  fmt::format("{} in cycle {}: the PLC held {}, the driver delivered {}", selection.text,
                              cycle, value_text(held), value_text(delivered)));
  }
}

// Zeros and empty texts are what the driver is to deliver here.
void OnlineDemo::check_limit(const Selection& selection, const nlohmann::json& value) {
  ledger_.check(is_nothing(value),
                fmt::format("{}: delivered {} instead of zeros", selection.text, value_text(value)));
}

void OnlineDemo::write_all() {
  screen_.step("Write: a value of every type, read back through the driver and from the PLC");
  std::set<std::string_view> types;
  std::vector<TableRow> rows{{"TAG", "TYPE", "WRITTEN", "HELD BY THE PLC"}};
  for (const auto& sample : sample_writes()) {
    const auto selection = select(project_, sample.tag);
    const auto value = nlohmann::json::parse(sample.value);
    for (const auto& write : write_accesses(selection, project_.char_paired, false, value)) {
      ledger_.check(session_->write(write).outcome == Outcome::Served,
                    fmt::format("{}: the write was not taken", sample.tag));
    }
    ledger_.check(poller_->poll() == LinkState::Online, "a poll after a write was not served");
    const auto held = check_written(selection, value);
    rows.push_back({sample.tag, std::string(selection.tag.type->name), value_text(value), value_text(held)});
    types.insert(selection.tag.type->name);
    ++written_;
  }
  screen_.table(rows);
  screen_.line(fmt::format("{} variables written, {} tag types", written_, types.size()));
}

// Returns what the PLC holds.
nlohmann::json OnlineDemo::check_written(const Selection& selection, const nlohmann::json& value) {
  const auto expected = view_.of(selection, value);
  auto held = plc_->value(selection.text);
  ledger_.check(!expected.is_null() && held == expected,
                fmt::format("{}: {} was written, the PLC holds {}", selection.text, value_text(expected),
                            value_text(held)));
  for (std::size_t i = 0; i < poller_->size(); ++i) {
    if (poller_->selection(i).text == selection.text && !is_known_limit(selection.text)) {
      ledger_.check(poller_->state(i).value == value,
                    fmt::format("{}: {} was written, {} read back", selection.text, value_text(value),
                                value_text(poller_->state(i).value)));
    }
  }
  return held;
}

void OnlineDemo::take_plc_away() {
  screen_.step("The PLC goes away");
  plc_->take_away();
  bool lost = false;
  const auto until = Clock::now() + std::chrono::seconds(10);
  while (Clock::now() < until && poller_->reinitialisations() < 3) {
    const auto link = poller_->poll();
    if (link == LinkState::Lost && !lost) {
      lost = true;
      screen_.line(fmt::format("status {}/{} for every tag: {}", poller_->state(0).error,
                               poller_->state(0).status, to_text(link)));
      ledger_.check(!symbol_file_exists(), "the symbol file is still there after the connection was lost");
    } else if (link == LinkState::Failed) {
      screen_.line(fmt::format("wait 1, response length 8: {}", to_text(link)));
    }
    std::this_thread::sleep_for(std::max(poller_->pause(), std::chrono::milliseconds(100)));
  }
  ledger_.check(lost, "the driver never reported the lost connection");
  ledger_.check(poller_->reinitialisations() >= 3, "the driver never gave the failed-loader answer");
  ledger_.check(!session_->connected(), "the driver says that it is connected to a PLC that is not there");
}

void OnlineDemo::bring_plc_back() {
  screen_.step("The PLC comes back");
  plc_->start();
  const auto begin = Clock::now();
  ledger_.check(wait_online(std::chrono::seconds(20)), "the driver did not connect again");
  const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
  screen_.line(fmt::format("{} again after {} ms and {} initialisations in all", to_text(poller_->link()),
                           took.count(), poller_->reinitialisations()));
  ledger_.check(symbol_file_exists(), "the driver kept no symbol file after it connected again");
  cycles_.clear();  // this PLC counts from 0 again
  poll_and_check(5, "values of the PLC that came back", kRowsOfLive);
}

}  // namespace ostravel::host
