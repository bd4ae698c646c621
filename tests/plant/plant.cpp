// SPDX-License-Identifier: MIT
#include "tests/plant/plant.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

#include "host/files.h"
#include "host/tagscsv.h"
#include "simulator/program/source.h"
#include "simulator/program/tags.h"
#include "tests/plant/entrypoints.h"
#include "tests/plant/programtext.h"

namespace ostravel::plant {
namespace {

using host::Outcome;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds kPause{5};  // of the runtime, between questions that are not answered
constexpr nanoseconds kRuntimeTimeout = std::chrono::seconds(3);
constexpr nanoseconds kPatience =
    std::chrono::seconds(100);  // of the test: more than the library's longest call
constexpr std::size_t kMostFindings = 20;

host::Project project_of(const std::string& source) {
  const std::vector<std::filesystem::path> files{source};
  return host::project_from_csv(plc::export_tags(plc::load_program(files)).csv, "plant");
}

}  // namespace

unsigned slowness() {
  const char* text = std::getenv("OSTRAVEL_SLOW");
  const int factor = text == nullptr ? 1 : std::atoi(text);
  return factor < 1 ? 1U : static_cast<unsigned>(factor);
}

Plant::Plant(const PlantOptions& options) : driver_(options.driver), symbol_files_(kVariants) {
  for (unsigned i = 0; i < kVariants; ++i) {
    sources_.push_back(scratch_.write(fmt::format("program{}.db", i), program_text(i)));
  }
  const auto record = scratch_.path("record");
  record_ = std::make_unique<Record>(record);
  setenv("OSTRAVEL_PLANT_RECORD", record.c_str(), 1);
  host::PlcOptions plc;
  plc.program = options.plc;
  plc.sources = {sources_.front()};
  plc.cycle = "20ms";
  plc_ = std::make_unique<host::PlcProcess>(plc);
  setenv("OSTRAVEL_STANDIN_PORT", std::to_string(plc_->port()).c_str(), 1);

  project_ = project_of(sources_.front());
  settings_.project_file = scratch_.path("plant.project");
  host::write_file(settings_.project_file, host::encode_project(project_), false);
  settings_.table_position = host::load_project(settings_.project_file).table_position;
  comparer_ = std::make_unique<Comparer>(*record_, shown_of(project_), sources_);
  batches_ = std::make_unique<Batches>(shown(), options.seed);
  deliveries_.resize(shown().size());
  time_entry_points(driver_);
  restart_runtime();
}

void Plant::restart_runtime() {
  session_.reset();
  session_ = std::make_unique<host::Session>(driver_, settings_);
  session_->set_patience(milliseconds(0));  // the runtime asks again by itself
  ++counts_.device_starts;
  waiting_since_ = 0;
}

void Plant::reinitialise() {
  session_->reinitialise();
  ++counts_.reinitialisations;
}

void Plant::find(const std::string& finding) {
  if (findings_.size() < kMostFindings) findings_.push_back(finding);
}

std::vector<host::Access> Plant::accesses() const {
  std::vector<host::Access> accesses;
  accesses.reserve(batch_.size());
  for (const auto position : batch_) accesses.push_back(shown()[position].access);
  return accesses;
}

Outcome Plant::poll() {
  if (batch_.empty()) batch_ = batches_->next();
  const auto asked = accesses();
  const auto first = std::max<std::uint64_t>(record_->moment(), 1);
  const auto start = now();
  auto answer = session_->read(asked);
  const auto end = now();
  const auto last = record_->moment();
  if (tamper_) tamper_(answer);
  judge(answer, first, last);
  after_poll(answer.outcome, start, end);
  return answer.outcome;
}

void Plant::judge(const host::BatchAnswer& answer, std::uint64_t first, std::uint64_t last) {
  std::size_t good = 0;
  for (std::size_t i = 0; i < answer.records.size(); ++i) {
    const auto& record = answer.records[i];
    if (record.error != 0) continue;
    ++good;
    ++deliveries_[batch_[i]];
    switch (comparer_->judge(batch_[i], record.words, first, last)) {
      case Verdict::Right:
        ++counts_.right;
        break;
      case Verdict::RightBits:
        ++counts_.right_bits;
        break;
      case Verdict::Wrong:
        ++counts_.wrong;
        find(comparer_->explain(batch_[i], record.words, first, last));
    }
  }
  mostly_good_ = 2 * good > answer.records.size();
  if (answer.outcome == Outcome::Served) {
    ++counts_.batches;
    counts_.no_data += answer.records.size() - good;
    batch_.clear();
  }
}

void Plant::after_poll(Outcome outcome, std::int64_t start, std::int64_t end) {
  if (outcome == Outcome::Served) {
    waiting_since_ = 0;
    return;
  }
  const bool return_fell_into_it = start < returned_at_ && returned_at_ <= end;
  const auto so_far = withheld();
  if (!lost_ || return_fell_into_it) {
    free_since_ = end;
    withheld_before_ = so_far;
  }
  lost_ = true;
  if (waiting_since_ == 0) waiting_since_ = end;
  if (outcome == Outcome::Failed || nanoseconds(now() - waiting_since_) > kRuntimeTimeout * slowness()) {
    reinitialise();
    waiting_since_ = now();
  }
  std::this_thread::sleep_for(kPause);
}

std::vector<BYTE> Plant::poll_these(const std::vector<std::size_t>& positions) {
  batch_ = positions;
  std::vector<BYTE> errors;
  const auto asked = accesses();
  const auto first = record_->moment();
  auto answer = session_->read(asked);
  if (tamper_) tamper_(answer);
  for (const auto& record : answer.records) errors.push_back(record.error);
  judge(answer, first, record_->moment());
  batch_.clear();
  return errors;
}

void Plant::serve(std::uint64_t batches) {
  const auto goal = counts_.batches + batches;
  auto until = now() + kPatience.count();
  while (counts_.batches < goal) {
    if (poll() == Outcome::Served) until = now() + kPatience.count();
    if (now() > until) throw std::runtime_error("the plant's values do not come");
  }
}

nanoseconds Plant::withheld() {
  withheld_.look_at(getpid());
  withheld_.look_at(record_->keeper());
  return withheld_.total();
}

void Plant::expect_loss() {
  withheld_ = {};  // threads of long ago say nothing
  lost_ = false;
  free_since_ = 0;
  returned_at_ = 0;
  disturbed_at_ = now();
}

nanoseconds Plant::recover(std::optional<std::int64_t> returned_at) {
  returned_at_ = returned_at.value_or(0);
  withheld_before_ = withheld();
  const auto until = now() + kPatience.count();
  for (;;) {
    const auto start = now();
    const auto outcome = poll();
    const auto end = now();
    if (!returned_at && record_->returned_at() > disturbed_at_ && returned_at_ == 0) {
      returned_at_ = record_->returned_at();
      if (outcome != Outcome::Served && start < returned_at_) free_since_ = end;
      withheld_before_ = withheld();
    }
    if (outcome == Outcome::Served && mostly_good_ && returned_at_ != 0) {
      const nanoseconds passed(end - std::max(returned_at_, free_since_));
      return std::max(passed - (withheld() - withheld_before_), nanoseconds(0));
    }
    if (end > until) throw std::runtime_error("values do not come back");
  }
}

void Plant::download(unsigned variant) {
  plc_->command("download " + sources_.at(variant));
  variant_ = variant;
}

void Plant::collect_symbol_files() {
  for (unsigned i = 0; i < kVariants; ++i) {
    const auto variant = (i + 1) % kVariants;  // back to the first one in the end
    expect_loss();
    download(variant);
    recover(now());
    symbol_files_[variant] = scratch_.path(fmt::format("symbols{}", variant));
    std::filesystem::copy_file(kSymbolFile, symbol_files_[variant]);
  }
}

}  // namespace ostravel::plant
