// SPDX-License-Identifier: MIT
#include "simulator/plc/history.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace ostravel::plc {

History::Difference History::difference(std::span<const std::uint8_t> before,
                                        std::span<const std::uint8_t> after) {
  constexpr std::size_t kBlock = 64;  // most of the memory does not change: compare it in large pieces first
  constexpr std::size_t kGap = 8;     // a run costs as much as so many bytes
  Difference result;
  for (std::size_t start = 0; start < before.size(); start += kBlock) {
    const std::size_t end = std::min(start + kBlock, before.size());
    if (std::memcmp(before.data() + start, after.data() + start, end - start) == 0) continue;
    for (std::size_t i = start; i < end; ++i) {
      if (before[i] == after[i]) continue;
      const std::size_t last =
          result.runs.empty() ? 0 : result.runs.back().address + result.runs.back().length;
      if (!result.runs.empty() && i - last < kGap) {
        const std::size_t length = i + 1 - last;
        result.bytes.insert(result.bytes.end(), before.begin() + static_cast<std::ptrdiff_t>(last),
                            before.begin() + static_cast<std::ptrdiff_t>(i + 1));
        result.runs.back().length += static_cast<std::uint32_t>(length);
      } else {
        result.runs.push_back({static_cast<std::uint32_t>(i), 1});
        result.bytes.push_back(before[i]);
      }
    }
  }
  result.runs.shrink_to_fit();
  result.bytes.shrink_to_fit();
  return result;
}

void History::keep(std::uint64_t cycle, std::span<const std::uint8_t> memory) {
  if (!latest_.empty()) {
    older_.push_back(difference(latest_, memory));
    cost_ += older_.back().cost();
  }
  latest_.assign(memory.begin(), memory.end());
  latest_cycle_ = cycle;
  while (!older_.empty() && (older_.size() >= max_cycles_ || latest_.size() + cost_ > max_bytes_)) {
    cost_ -= older_.front().cost();
    older_.pop_front();
  }
}

std::optional<std::vector<std::uint8_t>> History::image(std::uint64_t cycle, std::uint64_t address,
                                                        std::uint64_t length) const {
  if (latest_.empty() || cycle > latest_cycle_ || latest_cycle_ - cycle > older_.size()) return std::nullopt;
  if (address > latest_.size() || length > latest_.size() - address) return std::nullopt;
  const auto first = latest_.begin() + static_cast<std::ptrdiff_t>(address);
  std::vector<std::uint8_t> result(first, first + static_cast<std::ptrdiff_t>(length));
  const auto steps = static_cast<std::ptrdiff_t>(latest_cycle_ - cycle);
  for (auto older = older_.rbegin(); older != older_.rbegin() + steps; ++older) {
    std::size_t position = 0;
    for (const Run& run : older->runs) {
      const std::uint64_t from = std::max<std::uint64_t>(run.address, address);
      const std::uint64_t to =
          std::min<std::uint64_t>(std::uint64_t{run.address} + run.length, address + length);
      if (from < to) {
        std::copy_n(older->bytes.begin() + static_cast<std::ptrdiff_t>(position + (from - run.address)),
                    to - from, result.begin() + static_cast<std::ptrdiff_t>(from - address));
      }
      position += run.length;
    }
  }
  return result;
}

}  // namespace ostravel::plc
