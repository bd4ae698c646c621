// SPDX-License-Identifier: MIT
// What the memory held in past cycles: the last image whole, older ones as the bytes that changed since.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <vector>

namespace ostravel::plc {

class History {
 public:
  static constexpr std::size_t kCycles = 1000;
  static constexpr std::size_t kBytes = std::size_t{64} << 20;

  explicit History(std::size_t max_cycles = kCycles, std::size_t max_bytes = kBytes)
      : max_cycles_(max_cycles), max_bytes_(max_bytes) {}

  // Keeps the memory as the image of this cycle. Cycles come in order, one more each time, and the memory
  // keeps its size. The oldest images go when there are too many or they need too much room.
  void keep(std::uint64_t cycle, std::span<const std::uint8_t> memory);

  // Bytes from an image; nothing when that cycle is not kept (any more) or the range lies outside.
  std::optional<std::vector<std::uint8_t>> image(std::uint64_t cycle, std::uint64_t address,
                                                 std::uint64_t length) const;

  std::size_t size() const { return latest_.empty() ? 0 : older_.size() + 1; }

 private:
  struct Run {
    std::uint32_t address;
    std::uint32_t length;
  };
  // What an image held where the image after it holds something else.
  struct Difference {
    std::vector<Run> runs;
    std::vector<std::uint8_t> bytes;  // of all runs, one after the other
    std::size_t cost() const { return sizeof *this + runs.size() * sizeof(Run) + bytes.size(); }
  };
  static Difference difference(std::span<const std::uint8_t> before, std::span<const std::uint8_t> after);

  std::size_t max_cycles_;
  std::size_t max_bytes_;
  std::uint64_t latest_cycle_ = 0;
  std::vector<std::uint8_t> latest_;
  std::deque<Difference> older_;  // the oldest in front
  std::size_t cost_ = 0;          // of older_
};

}  // namespace ostravel::plc
