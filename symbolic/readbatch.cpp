// SPDX-License-Identifier: MIT
#include "symbolic/readbatch.h"

void ReadBatch::Clear() {
  for (std::size_t i = 0; i < accesses_.size(); ++i) paths_[i].value.Clear();
  accesses_.clear();
  memory_.Clear();
}

std::size_t ReadBatch::Add(std::string_view path) {
  const std::size_t place = accesses_.size();
  if (place == paths_.size()) paths_.emplace_back();
  paths_[place].path = path;
  accesses_.emplace_back();
  return place;
}
