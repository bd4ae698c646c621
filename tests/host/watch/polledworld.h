// SPDX-License-Identifier: MIT
// A device on the fake driver with as many INT tags as a test wants; tag i has the value i.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/tagscsv.h"
#include "host/watch/devicepolling.h"
#include "tests/host/fakeworld.h"
#include "tests/host/watch/samples.h"

namespace ostravel::host::watch {

struct PolledWorld : FakeWorld {
  Project project;
  std::unique_ptr<Session> session;

  explicit PolledWorld(std::size_t tags) {
    std::string rows = "name,type,count,first,elements,device,id\n";
    for (std::size_t i = 0; i < tags; ++i) {
      rows += "T" + std::to_string(i) + ",INT,1,,1,1,1\n";
      fake().words[static_cast<std::uint32_t>(i)] = {static_cast<WORD>(i)};
    }
    project = project_from_csv(rows, "t");
    session = std::make_unique<Session>(driver, settings);
    session->set_patience(std::chrono::milliseconds(0));
    fake().calls.clear();
  }

  PolledDevice device() const {
    PolledDevice device;
    device.session = session.get();
    device.state.address = settings.address;
    for (std::uint32_t row = 0; row < project.tags.size(); ++row) {
      device.selections.push_back(select_row(project, row));
      device.rows.push_back(row);
    }
    return device;
  }

  // Batches that the driver was asked for.
  std::size_t batches() const {
    std::size_t count = 0;
    for (const auto& call : fake().calls) {
      count += call.starts_with("Output") ? 1 : 0;
    }
    return count;
  }
};

}  // namespace ostravel::host::watch
