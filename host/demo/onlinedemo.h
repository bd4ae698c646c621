// SPDX-License-Identifier: MIT
// The demo with a simulated PLC: reads checked against the PLC's own record, writes, a PLC that goes away and
// comes back.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/demo/plcprocess.h"
#include "host/demo/plcview.h"
#include "host/demo/screen.h"
#include "host/driverlibrary.h"
#include "host/poller.h"
#include "host/project.h"
#include "host/session.h"

namespace ostravel::host {

struct DemoOptions {
  std::string samples;   // folder of the PLC's sources
  std::string work;      // folder for files of the demo's own
  std::string programs;  // folder of ostravel-plc and the driver
  bool offline = false;
};

class OnlineDemo {
 public:
  OnlineDemo(const DemoOptions& options, Screen& screen, Ledger& ledger);

  void run();

 private:
  using Clock = std::chrono::steady_clock;

  void start_plc();
  void make_project();
  void load_driver();
  void poll_and_check(int polls, const std::string& heading, std::size_t rows);
  void check_snapshot();
  void check_limit(const Selection& selection, const nlohmann::json& value);
  bool wait_online(std::chrono::seconds limit);
  void write_all();
  nlohmann::json check_written(const Selection& selection, const nlohmann::json& value);
  void take_plc_away();
  void bring_plc_back();

  const DemoOptions& options_;
  Screen& screen_;
  Ledger& ledger_;
  std::vector<std::string> sources_;
  PlcView view_;
  std::optional<PlcProcess> plc_;
  Project project_;
  std::string project_file_;
  std::optional<DriverLibrary> driver_;
  std::optional<Session> session_;
  std::optional<Poller> poller_;
  std::uint64_t values_ = 0;
  std::size_t written_ = 0;
  std::set<std::uint64_t> cycles_;  // whose values were compared
};

}  // namespace ostravel::host
