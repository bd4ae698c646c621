// SPDX-License-Identifier: MIT
// Models for tests of watch, with a clock that a test moves.
#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "host/watch/model.h"

namespace ostravel::host::watch {

inline constexpr TimePoint kStart{std::chrono::hours(1000)};

inline TimePoint at(double seconds) {
  return kStart + std::chrono::milliseconds(static_cast<long>(seconds * 1000));
}

inline DeviceState online(std::string name = {}, std::string address = "127.0.0.1") {
  DeviceState state;
  state.name = std::move(name);
  state.address = std::move(address);
  state.link = LinkState::Online;
  state.served = true;
  return state;
}

// Tags of these names and types on one device that is online.
inline Model model_of(const std::vector<std::pair<std::string, std::string>>& tags) {
  std::vector<RowName> rows;
  for (const auto& [label, type] : tags) {
    rows.push_back({label, type, 0});
  }
  return {std::move(rows), {online()}, kStart};
}

inline Model model_of_many(std::size_t count) {
  std::vector<std::pair<std::string, std::string>> tags;
  for (std::size_t i = 0; i < count; ++i) {
    tags.emplace_back("T" + std::to_string(i), "INT");
  }
  return model_of(tags);
}

inline void deliver(Model& model, std::size_t row, nlohmann::json value, double second = 0) {
  model.take({row, 0, 5, std::move(value)}, at(second));
}

}  // namespace ostravel::host::watch
