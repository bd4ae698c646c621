// SPDX-License-Identifier: MIT
// Which sources of a folder belong together: a file, and those that declare the types it uses.
#pragma once

#include <filesystem>
#include <vector>

namespace ostravel::trial {

struct SourceSet {
  std::filesystem::path file;                 // the one that is tried
  std::vector<std::filesystem::path> others;  // that it needs, its own folder searched first

  std::vector<std::filesystem::path> files() const;
};

// A set for each .db, .udt and .scl file below the folder (any letter case), in the order of their names. A
// file that cannot be parsed stands alone. Throws std::runtime_error when there is none.
std::vector<SourceSet> source_sets(const std::filesystem::path& folder);

}  // namespace ostravel::trial
