// SPDX-License-Identifier: MIT
// Tries a set of sources all the way: a PLC runs it, its variables are exported and packed into a project,
// the driver reads all of them, and each value is compared with the PLC's own; once with the start values,
// and once after every variable was given a value of its own.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/simulator/trial/sourcesets.h"

namespace ostravel::trial {

struct TrialOptions {
  std::string programs;                // folder of ostravel-plc, ostravel-tags and ostravel-host
  std::string work;                    // folder for the files between them
  std::vector<std::string> constants;  // NAME=VALUE
  bool accessible = false;             // whatever the sources say
};

struct Outcome {
  std::string refused;                // the line that says why, when it does not load
  std::vector<std::string> warnings;  // of loading
  std::uint64_t variables = 0;        // that it declares, data blocks and instances together
  std::uint64_t read = 0;             // that the driver delivered in full, and as the PLC holds them
  std::map<std::string, std::uint64_t> left_out;  // reason to number of variables
  std::vector<std::string> differences;           // a line each

  bool good() const { return differences.empty(); }
};

// Throws std::runtime_error when one of the programs does not do its part.
Outcome try_sources(const SourceSet& set, const TrialOptions& options);

}  // namespace ostravel::trial
