// SPDX-License-Identifier: MIT
// Warns of tags with which runtime and library are known to do something else than one expects; the README
// lists what they do. What depends on requests alone is not found here.
#pragma once

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/taglist.h"

namespace ostravel::tags {

class LimitChecker {
 public:
  explicit LimitChecker(bool char_paired) : char_paired_(char_paired) {}

  // What can be said of a tag by itself.
  std::vector<host::Finding> add(const host::TagRow& row);
  // What only the whole list shows, each with the name of its tag.
  std::vector<std::pair<host::Finding, std::string>> finish() const;

 private:
  struct Noted {
    host::Tag tag;
    host::Place place;
  };

  void add_text(const host::TagRow& row, std::vector<host::Finding>& findings);
  void note_array(const host::TagRow& row);

  bool char_paired_;
  bool narrow_texts_ = false;
  std::vector<Noted> first_paired_text_;  // at most one: the first WSTRING[254]
  std::vector<Noted> first_wide_text_;    // at most one
  std::vector<Noted> raised_arrays_;      // with a first index above 0; may be the rest of one from 0 on
  std::vector<Noted> elements_;           // tags that name an element of an array
  std::unordered_map<std::string, int> array_starts_;  // lowest first index, by device and path_key
};

}  // namespace ostravel::tags
