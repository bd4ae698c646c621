// SPDX-License-Identifier: MIT
#include "tests/endtoend/world.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "host/demo/sampleplant.h"
#include "host/files.h"
#include "host/tagscsv.h"

namespace ostravel::host {
namespace {

constexpr const char* kHeader = "name,type,count,first,elements,device,id\n";

Project project_of(const WorldOptions& options, const std::vector<std::string>& sources) {
  if (options.tags.empty()) {
    const std::string more = SAMPLES_PATH "/tags.csv";
    return sample_project(export_tags(PLC_PATH, sources), read_file(more), more);
  }
  return project_from_csv(kHeader + options.tags, "tags");
}

}  // namespace

std::vector<std::string> sample_sources() {
  return sources_in(SAMPLES_PATH);
}

World::World(const WorldOptions& options) {
  PlcOptions plc;
  plc.program = PLC_PATH;
  plc.sources =
      options.source.empty() ? sample_sources() : std::vector{scratch_.write("program.db", options.source)};
  plc.cycle = "20ms";
  plc.password = options.plc_password;
  plc_ = std::make_unique<PlcProcess>(plc);
  setenv("OSTRAVEL_STANDIN_PORT", std::to_string(plc_->port()).c_str(), 1);

  project_ = project_of(options, plc.sources);
  project_.char_paired = options.char_paired;
  if (!options.password.empty()) {
    project_.password = options.password;
  }
  settings_.project_file = scratch_.path("test.project");
  write_file(settings_.project_file, encode_project(project_), false);
  settings_.table_position = load_project(settings_.project_file).table_position;
  new_session();
}

void World::new_session() {
  session_.reset();
  session_ = std::make_unique<Session>(driver_, settings_);
}

bool World::online(Poller& poller) {
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (poller.poll() != LinkState::Online) {
    if (std::chrono::steady_clock::now() > until) {
      return false;
    }
    std::this_thread::sleep_for(poller.pause());
  }
  return true;
}

std::vector<Selection> World::selections(const std::vector<std::string>& names) const {
  std::vector<Selection> selections;
  for (const auto& name : names) {
    selections.push_back(select(project_, name));
  }
  for (std::uint32_t i = 0; names.empty() && i < project_.tags.size(); ++i) {
    selections.push_back(select_row(project_, i));
  }
  return selections;
}

Poller World::poller(const std::vector<std::string>& names) {
  return {*session_, selections(names), project_.char_paired};
}

nlohmann::json World::read(const std::string& tag) {
  auto one = poller({tag});
  EXPECT_TRUE(online(one)) << tag;
  const auto& state = one.state(0);
  return state.error == 0 ? state.value : nlohmann::json{{"error", state.error}};
}

void World::write(const std::string& tag, const nlohmann::json& value) {
  for (const auto& write : write_accesses(select(project_, tag), project_.char_paired, false, value)) {
    EXPECT_EQ(session_->write(write).outcome, Outcome::Served) << tag;
  }
}

void World::write_words(const Access& access, const Words& words) {
  EXPECT_EQ(session_->write({access, words, false}).outcome, Outcome::Served);
}

agl_standin_statistics_t World::statistics() {
  agl_standin_statistics_t statistics{};
  void* library = dlopen("libAGLink40_x64.so", RTLD_NOW | RTLD_NOLOAD);
  EXPECT_NE(library, nullptr) << "the driver has not loaded the stand-in";
  if (library != nullptr) {
    auto* ask =
        reinterpret_cast<void (*)(agl_standin_statistics_t*)>(dlsym(library, "agl_standin_statistics"));
    ask(&statistics);
  }
  return statistics;
}

}  // namespace ostravel::host
