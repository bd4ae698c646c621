// SPDX-License-Identifier: MIT
// A communication library of functions that a test makes fail one by one. There is one for the whole process;
// each test begins with a fresh one. Every path leads to an Int.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/check/library.h"

namespace ostravel::host::check {

struct FakePlcLibrary {
  std::vector<std::string> calls;              // names without AGL_, of what opens and closes
  std::map<std::string, agl_int32_t> results;  // by name without AGL_; others succeed
  std::set<std::string> missing;
  std::map<agl_int32_t, std::string> words;  // of GetErrorMsg; other codes it does not know
  std::vector<std::string> opened_paths;     // the handle of an access is its place here + 1000
  std::vector<HandleType> freed;
  agl_int32_t buffer_size = 2;
  std::function<agl_int32_t(std::vector<std::string> paths, SymbolicRW_t*)> read;  // empty: all succeed

  // Makes it the process's one.
  FakePlcLibrary();
  FakePlcLibrary(const FakePlcLibrary&) = delete;
  FakePlcLibrary& operator=(const FakePlcLibrary&) = delete;
  ~FakePlcLibrary();

  Library library() const;
};

}  // namespace ostravel::host::check
