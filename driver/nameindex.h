// SPDX-License-Identifier: MIT
// Finds a tag table's row by its name without going through the rows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

class NameIndex {
 public:
  // name_of(row) is the name of each row from 0 to rows - 1; names must stay as they are while the index is
  // used. Of equal names the first row counts.
  template <class NameOf>
  void Build(std::size_t rows, NameOf name_of);
  void Clear() { slots_.clear(); }
  bool empty() const { return slots_.empty(); }

  template <class NameOf>
  std::optional<std::size_t> Find(std::string_view name, NameOf name_of) const;

 private:
  // The slot of the name, or the free one where it belongs. More than half of the slots are free.
  template <class NameOf>
  std::size_t SlotOf(std::string_view name, NameOf name_of) const;

  std::vector<std::uint32_t> slots_;  // row + 1; 0: free
};

template <class NameOf>
void NameIndex::Build(std::size_t rows, NameOf name_of) {
  std::size_t size = 4;
  while (size < 2 * rows + 2) size *= 2;
  slots_.assign(size, 0);
  for (std::size_t row = 0; row < rows; ++row) {
    std::uint32_t& slot = slots_[SlotOf(name_of(row), name_of)];
    if (slot == 0) slot = static_cast<std::uint32_t>(row + 1);
  }
}

template <class NameOf>
std::optional<std::size_t> NameIndex::Find(std::string_view name, NameOf name_of) const {
  if (slots_.empty()) return std::nullopt;
  const std::uint32_t slot = slots_[SlotOf(name, name_of)];
  if (slot == 0) return std::nullopt;
  return slot - 1;
}

template <class NameOf>
std::size_t NameIndex::SlotOf(std::string_view name, NameOf name_of) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = std::hash<std::string_view>{}(name)&mask;
  while (slots_[at] != 0 && name_of(slots_[at] - 1) != name) at = (at + 1) & mask;
  return at;
}
