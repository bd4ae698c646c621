// SPDX-License-Identifier: MIT
// How watch puts values, times and states into words.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/watch/model.h"

namespace ostravel::host::watch {

// As read prints it, but a REAL with no more digits than it has.
std::string shown_value(const Row& row);

// "2 no data": error code and its name.
std::string quality_text(const Row& row);

// Name, cause and remedy of a tag's status, in view of how its device stands. Views into the catalogue.
struct Explanation {
  std::string_view cause;
  std::string_view remedy;
};
Explanation explain(const Row& row, LinkState link);

// At most four cells: "59s", "12m", "3h", "400d"; "-" for none.
std::string age_text(std::optional<std::chrono::milliseconds> age);
// At most four cells: "0.0", "9.5", "12", "1k+"; "-" for none.
std::string rate_text(std::optional<double> rate);
// "0.4 ms", "12 ms", "1.5 s".
std::string time_text(std::chrono::microseconds time);
// "10,000"
std::string count_text(std::size_t count);
// "127.0.0.1 online", "north failed, initialising again (attempt 3)"
std::string device_text(const DeviceState& device);

}  // namespace ostravel::host::watch
