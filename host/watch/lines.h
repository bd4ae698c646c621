// SPDX-License-Identifier: MIT
// watch without a screen: a line for whatever changed.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "host/config/devices.h"
#include "host/format.h"

namespace ostravel::host::watch {

// As text "TAG = VALUE (2/5 no data)" and "# connection lost"; as JSON and CSV the time and what read shows.
class ChangeLines {
 public:
  ChangeLines(std::FILE* out, Format format);

  // Prints what is not as it was at the last call, and flushes.
  void print(const Devices& devices, const TagPoller& poller, std::chrono::system_clock::time_point now);

 private:
  // NOLINTNEXTLINE(bugprone-exception-escape): moving a JSON value checks itself and could throw in theory
  struct Printed {
    nlohmann::json value;
    int error = -1;
    int status = -1;
  };
  void print_tag(const TagPoller& poller, std::size_t i, const std::string& time);

  std::FILE* out_;
  Format format_;
  std::optional<RowWriter> rows_;  // of JSON and CSV
  std::string link_;
  std::vector<Printed> printed_;
};

// "2024-03-05T13:14:15.678Z"
std::string utc_text(std::chrono::system_clock::time_point time);

}  // namespace ostravel::host::watch
