// SPDX-License-Identifier: MIT
// Random batches of the plant's tags, made as a runtime must: a place at which the driver once found a wide
// text shows later texts as wide ones, so those that travel a word a character come in batches of their own,
// and no other text is ever at that place.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "host/access.h"
#include "host/project.h"

namespace ostravel::plant {

// One thing that the runtime shows: a tag, an element or a bit.
struct Shown {
  host::Selection selection;
  host::Access access;  // a single one: arrays of texts are shown element by element
};

// Everything that is shown, 500 in all. The project is that of the plant's first program.
std::vector<Shown> shown_of(const host::Project& project);

class Batches {
 public:
  Batches(const std::vector<Shown>& shown, std::uint64_t seed);

  // Positions in what is shown: 31, or a single wide text.
  std::vector<std::size_t> next();

 private:
  std::size_t one_of(const std::vector<std::size_t>& positions);

  std::vector<std::size_t> wide_;
  std::vector<std::size_t> texts_;
  std::vector<std::size_t> others_;
  std::vector<std::size_t> order_;  // texts and others, shuffled as far as they are needed
  std::mt19937_64 chance_;
};

}  // namespace ostravel::plant
