// SPDX-License-Identifier: MIT
// Which of a step's paths are already in its batch: a table of places by hash, twice as large as a step.
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
    std::size_t slot = name.hash() % places_.size();
    for (; places_[slot] != 0; slot = (slot + 1) % places_.size()) {
      const std::size_t place = places_[slot] - 1U;
      if (batch.path(place) == name.view()) return place;
    }
    const std::size_t place = batch.Add(name.view());
    places_[slot] = static_cast<std::uint8_t>(place + 1);
    return place;
  }

 private:
  std::array<std::uint8_t, 64> places_{};  // place + 1; 0: free
  static_assert(kCommandPoolSize < 64);
};
