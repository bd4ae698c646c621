// SPDX-License-Identifier: MIT
// Goes through a list of tags and tells all that is wrong with it: what keeps it from being packed, names
// that no PLC has, variables listed twice, and, as warnings, what runtime and library are known to do
// differently from what one expects.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/project.h"
#include "host/taglist.h"

namespace ostravel::tags {

struct TagFinding {
  host::Finding finding;
  std::string tag;  // its name; empty for what belongs to no tag
};

struct ListCheck {
  std::size_t tags = 0;
  std::vector<TagFinding> findings;  // in the order of their places

  std::size_t count(host::Severity severity) const;
};

// on_tag, unless it is empty, is called for every tag.
ListCheck check_list(const host::ListText& list, const std::function<void()>& on_tag = {});

}  // namespace ostravel::tags
