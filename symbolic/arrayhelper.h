// SPDX-License-Identifier: MIT
// Array suffixes of tag paths, array bounds, and the step from the PLC's index base to the host's, which is
// 0. Bounds are one entry a dimension, dimension 0 first, as unsigned 32-bit numbers: a lower bound of -1 is
// 0xFFFFFFFF.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "aglink/AGLink40.h"

// True when the name ends with "]" and, looking back from there, a "," comes before any "[": A[1,2], not A[1]
// or A[1,2].B.
bool IsMultiDimensionArray(std::string_view name);

// Cuts the last bracket group off a path that ends with "]". Raises std::out_of_range for a path that ends so
// without any "[", and for an empty one.
std::string RemoveLastArraySymbol(std::string strTag);

// Appends the bounds of the array that tag_path, or the element that it names, belongs to. True with nothing
// appended when the node is no array; false when the library knows no dimension count or not a bound, with
// those before it appended. Raises as RemoveLastArraySymbol does.
bool get_array_description(HandleType root_schema_node, const std::string& tag_path,
                           std::vector<unsigned>& lower_lim, std::vector<unsigned>& upper_lim);

// The same into bounds, whose earlier content goes. tag_path is NUL-terminated. What is allocated is kept.
struct ArrayBounds {
  agl_int32_t dimensions = 0;  // 0 or less: no array, and lower and upper hold nothing of interest
  std::vector<unsigned> lower;
  std::vector<unsigned> upper;
  std::string array_path;  // scratch

  // A one-dimensional array that does not start at 0. Those of several dimensions are never re-based,
  // deliberately.
  bool needs_rebasing() const { return dimensions == 1 && lower[0] != 0; }
};
bool get_array_description(HandleType root_schema_node, std::string_view tag_path, ArrayBounds& bounds);

bool array_index_non_zero_start(const std::vector<unsigned>& lower);

// Elements in front of the first one when the array is seen from index 0. Only the last two dimensions count.
unsigned get_non_zero_base_array_fill_size(const std::vector<unsigned>& lower,
                                           const std::vector<unsigned>& upper);

// Bytes that those elements take, element_size bytes each (a 32-bit product). A fill that is longer than the
// runtime can ever address is cut there.
std::size_t array_fill_bytes(unsigned element_size, const std::vector<unsigned>& lower,
                             const std::vector<unsigned>& upper);

// source_data behind array_fill_bytes zero bytes.
std::vector<unsigned char> resize_data_include_an_array_index_to_zero_start(
    unsigned element_size, const std::vector<unsigned char>& source_data, const std::vector<unsigned>& lower,
    const std::vector<unsigned>& upper);

class ArrayHelper {
 public:
  // "[2,5]", "[]" for a node without index.
  static std::string ParseIndex(const HandleType& p_node);
  // "{{0..3},{1..5}}", "{}" for a node that is no array.
  static std::string ParseArrayDimensions(const HandleType& p_node);
};
