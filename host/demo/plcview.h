// SPDX-License-Identifier: MIT
// Brings what the driver delivered into the form in which the PLC's console shows the same variable, so that
// the two can be compared.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/access.h"
#include "simulator/program/program.h"

namespace ostravel::host {

class PlcView {
 public:
  // Loads the PLC's sources; throws plc::SourceError.
  explicit PlcView(const std::vector<std::string>& sources);

  // The driver delivers times of day, dates and characters as numbers and date-and-time types as their parts;
  // the PLC shows them as literals and text. Null when the path leads nowhere or the shape is wrong.
  nlohmann::json of(const Selection& selection, const nlohmann::json& delivered) const;

 private:
  plc::Program program_;
};

}  // namespace ostravel::host
