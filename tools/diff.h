// SPDX-License-Identifier: MIT
// What two lists of tags differ in.
#pragma once

#include <cstdint>
#include <vector>

#include "host/project.h"

namespace ostravel::tags {

enum class Change : std::uint8_t { Removed, Added, Changed };

struct TagDifference {
  Change change = Change::Changed;
  const host::Tag* before = nullptr;  // null for an added tag
  const host::Tag* after = nullptr;   // null for a removed one
  std::vector<host::TagField> fields;
};

// Refers to the projects it was made of.
struct Difference {
  std::vector<TagDifference> tags;  // removed ones in their order, then the others in theirs
  bool password = false;
  bool strings = false;
  // The first tag of the second project that stands in front of one which was in front of it. The order
  // counts: a panel's project addresses tags by their rows.
  const host::Tag* moved = nullptr;

  bool none() const { return tags.empty() && !password && !strings && moved == nullptr; }
  std::size_t count(Change change) const;
};

Difference diff(const host::Project& before, const host::Project& after);

}  // namespace ostravel::tags
