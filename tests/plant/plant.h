// SPDX-License-Identifier: MIT
// A plant as the runtime on its panel sees it: a PLC in a process of its own, the shipped driver with the
// stand-in for the communication library, and a runtime that polls random batches of 500 tags and has every
// delivered value judged. Needs a /mnt/project of its own, and one plant a process at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/demo/plcprocess.h"
#include "host/driverlibrary.h"
#include "host/session.h"
#include "tests/host/scratch.h"
#include "tests/plant/batches.h"
#include "tests/plant/comparer.h"
#include "tests/plant/record.h"
#include "tests/plant/withheld.h"

namespace ostravel::plant {

inline constexpr const char* kSymbolFile = "/mnt/project/1_s71500_symbolic.ap";
inline constexpr unsigned kVariants = 6;  // programs, the first one included

// The OSTRAVEL_SLOW of a machine, an emulator or a sanitizer: limits are that many times as long.
unsigned slowness();

struct PlantOptions {
  std::string driver;  // libostravel.so
  std::string plc;     // plant-plc
  std::uint64_t seed = 1;
};

struct PlantCounts {
  std::uint64_t batches = 0;  // served
  std::uint64_t right = 0;
  std::uint64_t right_bits = 0;  // of variables that have another type than the runtime was told
  std::uint64_t wrong = 0;
  std::uint64_t no_data = 0;  // single tags of served batches
  std::uint64_t reinitialisations = 0;
  std::uint64_t device_starts = 0;
};

class Plant {
 public:
  // The device has been started when it returns, and nobody has polled it. Throws std::runtime_error.
  explicit Plant(const PlantOptions& options);

  host::PlcProcess& plc() { return *plc_; }
  host::Session& session() { return *session_; }
  const std::vector<Shown>& shown() const { return comparer_->shown(); }
  const PlantCounts& counts() const { return counts_; }
  // What was wrong, in words; the first few.
  const std::vector<std::string>& findings() const { return findings_; }
  // How often each tag was delivered as good.
  const std::vector<std::uint64_t>& deliveries() const { return deliveries_; }

  // One exchange with the driver. What a runtime does afterwards is done too: a batch that was not served is
  // asked for again, and after a failure or a time-out of its own the device is initialised once more.
  host::Outcome poll();

  // The same with a batch of these, in the midst of which no other is under way. The records' error codes.
  std::vector<BYTE> poll_these(const std::vector<std::size_t>& positions);

  // Polls until so many batches more have been served. Throws std::runtime_error when that takes too long.
  void serve(std::uint64_t batches);

  // Two parts of a disturbance: what is to come is noted as lost from here on; then, once the PLC was told
  // what to do, polls until values are back. The result is the time that passed from the PLC's return on, or
  // from the moment at which the driver came back from a call of the library that was under way then. Without
  // a moment of return the PLC notes its own. What the machine withheld from runtime and PLC does not count.
  void expect_loss();
  std::chrono::nanoseconds recover(std::optional<std::int64_t> returned_at);

  // Another program, by its number.
  void download(unsigned variant);
  unsigned variant() const { return variant_; }
  // Symbol files as the driver writes them, of every program; downloads them all once.
  void collect_symbol_files();
  const std::string& symbol_file_of(unsigned variant) const { return symbol_files_[variant]; }

  void reinitialise();
  // What a restart of the panel's runtime does: the device is closed and started anew.
  void restart_runtime();

  // Changes answers before they are judged, to see that the judge notices.
  void tamper(std::function<void(host::BatchAnswer&)> change) { tamper_ = std::move(change); }

  // Adds to the findings, for what is no value.
  void find(const std::string& finding);

 private:
  std::vector<host::Access> accesses() const;
  void judge(const host::BatchAnswer& answer, std::uint64_t first, std::uint64_t last);
  std::chrono::nanoseconds withheld();
  void after_poll(host::Outcome outcome, std::int64_t start, std::int64_t end);

  Scratch scratch_;
  std::vector<std::string> sources_;
  std::unique_ptr<Record> record_;
  std::unique_ptr<host::PlcProcess> plc_;
  host::Project project_;
  host::DriverLibrary driver_;
  host::DeviceSettings settings_;
  std::unique_ptr<host::Session> session_;
  std::unique_ptr<Comparer> comparer_;
  std::unique_ptr<Batches> batches_;

  std::function<void(host::BatchAnswer&)> tamper_;
  std::vector<std::size_t> batch_;  // under way; empty: the next one is to be made
  bool mostly_good_ = false;        // of the batch served last
  std::int64_t waiting_since_ = 0;  // 0: served
  bool lost_ = false;               // since expect_loss
  std::int64_t free_since_ = 0;  // end of the call in which the loss was seen, or that the return fell into
  std::int64_t returned_at_ = 0;
  Withheld withheld_;
  std::chrono::nanoseconds withheld_before_{0};  // the recovery's clock began
  std::int64_t disturbed_at_ = 0;
  unsigned variant_ = 0;
  std::vector<std::string> symbol_files_;
  PlantCounts counts_;
  std::vector<std::string> findings_;
  std::vector<std::uint64_t> deliveries_;
};

}  // namespace ostravel::plant
