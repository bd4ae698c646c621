// SPDX-License-Identifier: MIT
// Which of a step's paths are already in its batch: their places by hash, in a table twice as large as a
// step.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "driver/cmddesc.h"
#include "symbolic/readbatch.h"

class PathSet {
 public:
  // The place of the name in the batch, where it is added unless an equal one is there.
  std::size_t PlaceOf(const TagName& name, ReadBatch& batch) {
    // The hash's low bits choose the slot, the next ones stand in it and spare most comparisons.
    const std::uint32_t mark = name.hash() / kSlots * kSlots & 0xFFFF;
    std::size_t slot = name.hash() % kSlots;
    for (; slots_[slot] != 0; slot = (slot + 1) % kSlots) {
      const std::uint32_t place = slots_[slot] % kSlots - 1;
      if ((slots_[slot] - place - 1) == mark && batch.path(place) == name.view()) return place;
    }
    const std::size_t place = batch.Add(name.view());
    slots_[slot] = static_cast<std::uint16_t>(mark + place + 1);
    return place;
  }

 private:
  static constexpr std::uint32_t kSlots = 64;
  static_assert(kCommandPoolSize < kSlots);
  std::array<std::uint16_t, kSlots> slots_{};  // mark + place + 1; 0: free
};
