// SPDX-License-Identifier: MIT
// Several lists of tags as one.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/taglistfile.h"

namespace ostravel::tags {

// Which of two tags with the same name and other settings is taken.
enum class Prefer : std::uint8_t { Neither, First, Last };

struct MergeRules {
  Prefer prefer = Prefer::Neither;
  bool renumber = false;  // ids are those of the rows, from 1; what they were is no difference
};

// Tags in the order in which they first appear; those with the same settings once. Rows that are parts of one
// array, with other first indexes, all stay. Throws UserError with both places for what differs and is not to
// be preferred.
host::Project merge(const std::vector<PlacedProject>& lists, const MergeRules& rules);

// "type INT and REAL, count 1 and 4": in which fields the tags differ; ids only when they count.
std::string difference_text(const host::Tag& a, const host::Tag& b, bool with_ids);

}  // namespace ostravel::tags
