// SPDX-License-Identifier: MIT
#include "tests/plant/batches.h"

#include <algorithm>
#include <stdexcept>

#include "host/session.h"
#include "tests/plant/programtext.h"

namespace ostravel::plant {
namespace {

constexpr unsigned kWideOneIn = 64;  // batches

bool is_text(const Shown& shown) {
  return shown.selection.tag.type->is_text();
}

void add(std::vector<Shown>& shown, host::Selection selection) {
  const auto accesses = host::read_accesses(selection, false);
  if (accesses.size() == 1) shown.push_back({std::move(selection), accesses.front()});
}

}  // namespace

std::vector<Shown> shown_of(const host::Project& project) {
  std::vector<Shown> shown;
  for (std::uint32_t row = 0; row < project.tags.size(); ++row) add(shown, host::select_row(project, row));
  for (const auto& part : picked_parts()) add(shown, host::select(project, part));
  if (shown.size() < kTags) throw std::runtime_error("the plant's program has too few variables");
  shown.resize(kTags);
  return shown;
}

Batches::Batches(const std::vector<Shown>& shown, std::uint64_t seed) : chance_(seed) {
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const auto& tag = shown[i].selection.tag;
    const bool wide = is_text(shown[i]) && tag.count == host::kWideDeclaredLength;
    (wide ? wide_ : is_text(shown[i]) ? texts_ : others_).push_back(i);
  }
  order_ = others_;
  order_.insert(order_.end(), texts_.begin(), texts_.end());
}

std::size_t Batches::one_of(const std::vector<std::size_t>& positions) {
  return positions[chance_() % positions.size()];
}

std::vector<std::size_t> Batches::next() {
  if (!wide_.empty() && chance_() % kWideOneIn == 0) return {one_of(wide_)};
  for (std::size_t i = 0; i < host::kBatchLimit; ++i) {
    std::swap(order_[i], order_[i + chance_() % (order_.size() - i)]);
  }
  std::vector<std::size_t> batch(order_.begin(), order_.begin() + host::kBatchLimit);
  batch.front() = one_of(others_);  // twice in the batch now and then, as a tag may be
  return batch;
}

}  // namespace ostravel::plant
