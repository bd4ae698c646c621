// SPDX-License-Identifier: MIT
// Tags as a tree: their paths parted at dots outside quotes and before brackets. Plant.Motors[2].Speed is
// Speed in [2] in Motors in Plant.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ostravel::host {

// The parts of a path; a bracket is a part of its own, with its brackets. Joined again they are the path, but
// for the dots.
std::vector<std::string> path_parts(std::string_view path);

// Whether the path has the text in it, or, when that has a * or ?, fits it as a pattern. Any letter case of
// the letters A to Z.
bool matches_filter(std::string_view path, std::string_view filter);

class TagTree {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  // Nodes stay in the order in which they came. A path that is there already becomes a second leaf beside it.
  void add(const std::vector<std::string>& parts, std::size_t tag);

  struct Line {
    std::string text;        // with the lines of the tree before it
    std::size_t tag;         // as it was added, kNone for a node that is no tag
    std::size_t hidden = 0;  // tags below it that the depth leaves out
  };
  // Depth 0 shows all; 1 shows the first part of each path.
  std::vector<Line> lines(std::size_t depth, bool utf8) const;

 private:
  struct Node {
    std::string name;
    std::size_t tag = kNone;
    std::size_t tags_below = 0;
    std::vector<std::size_t> children;
    std::map<std::string, std::size_t, std::less<>> by_name;
  };
  std::size_t child(std::size_t parent, const std::string& name);

  std::vector<Node> nodes_{Node{}};  // the first is the root
};

}  // namespace ostravel::host
