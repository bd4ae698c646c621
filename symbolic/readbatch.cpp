// SPDX-License-Identifier: MIT
#include "symbolic/readbatch.h"

void ReadBatch::Clear() {
  size_ = 0;
}

void ReadBatch::MakeRoom() {
  paths_.emplace_back();
  accesses_.emplace_back();
}
