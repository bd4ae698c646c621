// SPDX-License-Identifier: MIT
// The sample program as demo and tests use it: its tags, and a value to write to a variable of every type.
#pragma once

#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>

#include "host/project.h"

namespace ostravel::host {

// The tags that the PLC exports; those of the file tags.csv in the samples' folder are added, or take the
// place of exported ones of the same name. Ids count from 1.
Project sample_project(const std::string& exported, const std::string& more, const std::string& more_source);

// Tags of this block are what the driver cannot deliver as the PLC holds it: it delivers zeros and empty
// texts, with good status. Writing their elements works.
bool is_known_limit(std::string_view tag);

// Zero, false or an empty text, or an array of nothing else.
bool is_nothing(const nlohmann::json& value);

struct SampleWrite {
  const char* tag;
  const char* value;  // JSON
};

// To variables that the cyclic program leaves alone.
std::span<const SampleWrite> sample_writes();

}  // namespace ostravel::host
