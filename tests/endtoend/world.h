// SPDX-License-Identifier: MIT
// The whole system for one test: a simulated PLC of its own, a project file, the shipped driver, the stand-in
// for the communication library, and a runtime. Tests run in a mount namespace of their own, so that
// /mnt/project is empty at first.
#pragma once

#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/demo/plcprocess.h"
#include "host/driverlibrary.h"
#include "host/poller.h"
#include "host/project.h"
#include "host/session.h"
#include "simulator/standin/statistics.h"
#include "tests/host/scratch.h"

namespace ostravel::host {

inline constexpr const char* kSymbolFile = "/mnt/project/1_s71500_symbolic.ap";

struct WorldOptions {
  std::string tags{};          // rows of the tag list; empty: those of the sample program
  std::string source{};        // text of a .db file; empty: the sample program
  std::string plc_password{};  // that the PLC asks for
  std::string password{};      // that the project gives
  bool char_paired = false;
};

class World {
 public:
  explicit World(const WorldOptions& options = {});

  PlcProcess& plc() { return *plc_; }
  const Project& project() const { return project_; }
  const DriverLibrary& driver() const { return driver_; }
  const Scratch& scratch() const { return scratch_; }
  Session& session() { return *session_; }
  DeviceSettings settings() const { return settings_; }

  // A device of the driver that starts from nothing.
  void new_session();

  // Polls until the device serves; false after 20 seconds.
  static bool online(Poller& poller);

  // All selections of these names; all tags when there are none.
  std::vector<Selection> selections(const std::vector<std::string>& names = {}) const;
  Poller poller(const std::vector<std::string>& names = {});

  // The value that the driver delivers, or {"error": code}.
  nlohmann::json read(const std::string& tag);
  // As the host writes it: array by array or element by element.
  void write(const std::string& tag, const nlohmann::json& value);
  // One request as it is, without the host's care.
  void write_words(const Access& access, const Words& words);

  // Value in the PLC now.
  nlohmann::json held(const std::string& path) { return plc_->value(path); }

  std::uint32_t row(const std::string& tag) const { return select(project_, tag).row; }

  static agl_standin_statistics_t statistics();

 private:
  Scratch scratch_;
  std::unique_ptr<PlcProcess> plc_;
  Project project_;
  DriverLibrary driver_{DRIVER_PATH};
  DeviceSettings settings_;
  std::unique_ptr<Session> session_;
};

// The sample program's sources, and those of a test in their place.
std::vector<std::string> sample_sources();

}  // namespace ostravel::host
