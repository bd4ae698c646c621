// SPDX-License-Identifier: MIT
// Finds variables that a list of tags has twice. Parts of one array, which rows with the same name and other
// first indexes make up, are none.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/taglist.h"

namespace ostravel::tags {

class Duplicates {
 public:
  // Takes the next tag; returns what is to be said about it and an earlier one.
  std::optional<host::Finding> add(const host::TagRow& row);

 private:
  struct Seen {
    host::Tag tag;
    std::size_t line = 0;
  };

  const Seen* overlapping(std::size_t first, const host::Tag& tag);
  void keep(std::size_t first, const host::TagRow& row);

  std::vector<Seen> seen_;
  std::unordered_map<std::string, std::size_t> first_of_variable_;  // by device and path_key
  // Of variables that more than one row makes up: the rows by their first index, by the variable's first row.
  std::unordered_map<std::size_t, std::map<int, std::size_t>> parts_;
};

}  // namespace ostravel::tags
