// SPDX-License-Identifier: MIT
#include "host/commands/tagtree.h"

#include <algorithm>

namespace ostravel::host {
namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool same(char a, char b) {
  return lower(a) == lower(b);
}

// * stands for any text, ? for one byte.
bool fits(std::string_view text, std::string_view pattern) {
  std::size_t t = 0;
  std::size_t p = 0;
  std::size_t star = std::string_view::npos;
  std::size_t resume = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = t;
    } else if (p < pattern.size() && (pattern[p] == '?' || same(pattern[p], text[t]))) {
      ++p;
      ++t;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      t = ++resume;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

}  // namespace

std::vector<std::string> path_parts(std::string_view path) {
  std::vector<std::string> parts;
  std::string part;
  const auto end_part = [&] {
    if (!part.empty()) {
      parts.push_back(std::move(part));
    }
    part.clear();
  };
  bool quoted = false;
  bool bracketed = false;
  for (const char c : path) {
    if (c == '"') {
      quoted = !quoted;
    }
    if (!quoted && !bracketed && c == '.') {
      end_part();
      continue;
    }
    if (!quoted && c == '[') {
      end_part();
    }
    part += c;
    bracketed = !quoted && c != ']' && (bracketed || c == '[');
    if (!quoted && c == ']') {
      end_part();
    }
  }
  end_part();
  return parts;
}

bool matches_filter(std::string_view path, std::string_view filter) {
  if (filter.find_first_of("*?") != std::string_view::npos) {
    return fits(path, filter);
  }
  return std::search(path.begin(), path.end(), filter.begin(), filter.end(), same) != path.end() ||
         filter.empty();
}

std::size_t TagTree::child(std::size_t parent, const std::string& name) {
  const auto found = nodes_[parent].by_name.find(name);
  if (found != nodes_[parent].by_name.end()) {
    return found->second;
  }
  const auto number = nodes_.size();
  nodes_[parent].by_name.emplace(name, number);
  nodes_[parent].children.push_back(number);
  nodes_.push_back({name, kNone, 0, {}, {}});
  return number;
}

void TagTree::add(const std::vector<std::string>& parts, std::size_t tag) {
  std::size_t at = 0;
  std::size_t parent = 0;
  for (const auto& part : parts) {
    ++nodes_[at].tags_below;
    parent = at;
    at = child(at, part);
  }
  if (nodes_[at].tag == kNone && at != 0) {
    nodes_[at].tag = tag;
    return;
  }
  nodes_[parent].children.push_back(nodes_.size());
  nodes_.push_back({parts.empty() ? std::string() : parts.back(), tag, 0, {}, {}});
}

std::vector<TagTree::Line> TagTree::lines(std::size_t depth, bool utf8) const {
  struct Step {
    std::size_t node;
    std::string indent;  // of what is below it
    bool last;
    std::size_t level;
  };
  // A stack of its own: paths come from files and may be as deep as they like.
  std::vector<Step> steps;
  const auto push_children = [&](std::size_t node, const std::string& indent, std::size_t level) {
    const auto& children = nodes_[node].children;
    for (std::size_t i = children.size(); i-- > 0;) {
      steps.push_back({children[i], indent, i + 1 == children.size(), level});
    }
  };
  std::vector<Line> result;
  push_children(0, "", 1);
  while (!steps.empty()) {
    const auto step = std::move(steps.back());
    steps.pop_back();
    const auto& node = nodes_[step.node];
    const bool top = step.level == 1;
    std::string branch;
    if (!top) {
      branch = utf8 ? (step.last ? "\u2514\u2500 " : "\u251c\u2500 ") : (step.last ? "`- " : "|- ");
    }
    const bool cut = depth != 0 && step.level >= depth;
    result.push_back({step.indent + branch + node.name, node.tag, cut ? node.tags_below : 0});
    if (!cut) {
      const std::string below = top ? "" : step.last ? "   " : utf8 ? "\u2502  " : "|  ";
      push_children(step.node, step.indent + below, step.level + 1);
    }
  }
  return result;
}

}  // namespace ostravel::host
