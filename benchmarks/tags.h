// SPDX-License-Identifier: MIT
// Tag names as shapes.h describes them, and tag files that hold them.
#pragma once

#include <string>
#include <vector>

#include "benchmarks/shapes.h"

namespace bench {

// A name of one of the lengths in kNameLengths; number from 0 to 999.
std::string tag_name(int length, const Shape& shape, int number);

// The row-th name of a table: 40 characters. As an element: the name with "[0]" behind it.
std::string row_name(int row);

// A tag file in a temporary folder; both go away with the object.
class TagFile {
 public:
  explicit TagFile(const std::vector<std::string>& names);
  ~TagFile();
  TagFile(const TagFile&) = delete;
  TagFile& operator=(const TagFile&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string folder_;
  std::string path_;
};

}  // namespace bench
