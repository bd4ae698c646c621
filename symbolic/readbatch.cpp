// SPDX-License-Identifier: MIT
#include "symbolic/readbatch.h"

void ReadBatch::Clear() {
  size_ = 0;
}

void ReadBatch::MakeRoom() {
  // An earlier call may have come no further than the first.
  if (paths_.size() == size_) paths_.emplace_back();
  accesses_.emplace_back();
}
