// SPDX-License-Identifier: MIT
// The library's handles of a job's accesses, freed at the end of the job also when an exception ends it.
#pragma once

#include <span>

#include "aglink/AGLink40.h"

class AccessHandles {
 public:
  // The accesses stay the caller's, and must stay where they are.
  explicit AccessHandles(std::span<const SymbolicRW_t> accesses) : accesses_(accesses) {}
  ~AccessHandles() {
    for (const SymbolicRW_t& rw : accesses_) AGL_Symbolic_FreeHandle(rw.AccessHandle);
  }
  AccessHandles(const AccessHandles&) = delete;
  AccessHandles& operator=(const AccessHandles&) = delete;

  // They are not to be freed after all.
  void Keep() { accesses_ = {}; }

 private:
  std::span<const SymbolicRW_t> accesses_;
};
