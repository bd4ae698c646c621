// SPDX-License-Identifier: MIT
// The paths of one batched read and, after it, their values. One that is kept from poll to poll allocates
// nothing for numbers once it has seen the largest batch of usual size; a text takes one allocation.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "aglink/AGLink40.h"
#include "symbolic/accessbuffer.h"
#include "symbolic/arrayhelper.h"
#include "symbolic/valuebytes.h"

class ReadBatch {
 public:
  // Forgets paths and values.
  void Clear();

  // Adds a path at the end, equal to an earlier one or not, and returns its place, counted from 0. The path
  // is NUL-terminated and must live until the next Clear.
  std::size_t Add(std::string_view path) {
    if (size_ == accesses_.size()) MakeRoom();
    Path& added = paths_[size_];
    added.path = path;
    added.value.Clear();
    accesses_[size_] = {};
    return size_++;
  }

  std::size_t size() const { return size_; }
  std::string_view path(std::size_t place) const { return paths_[place].path; }

  // Value bytes after a good job; empty when the path's own access failed. Valid until the next Clear.
  std::span<const unsigned char> value(std::size_t place) const { return paths_[place].value; }

 private:
  friend class SymbolsLoader;

  struct Path {
    std::string_view path;
    ValueBytes value;
  };
  void MakeRoom();
  std::span<Path> paths() { return std::span(paths_).first(size_); }
  std::span<SymbolicRW_t> accesses() { return std::span(accesses_).first(size_); }

  std::size_t size_ = 0;
  // Both hold size_ paths, and behind them those of a larger batch before, for their memory's sake.
  std::vector<Path> paths_;
  std::vector<SymbolicRW_t> accesses_;
  AccessMemory memory_;
  ArrayBounds bounds_;
};
