// SPDX-License-Identifier: MIT
// Whether a process that runs for long grows: memory, handles and threads at each tenth of the way, and what
// of the memory is kept on purpose.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ostravel::plant {

struct Size {
  std::uint64_t memory = 0;  // bytes of the process that belong to nobody else
  std::uint64_t kept = 0;    // of them, what is kept on purpose
  std::uint64_t handles = 0;
  std::uint64_t threads = 0;
};

// Of this process, now; kept is for the caller to say.
Size size_of_process();

// Bytes that this process has allocated and not freed.
std::uint64_t allocated();

// Flat means: beside what is kept, no tenth from the third on is larger than the second by more than this,
// and handles and threads are no more than at the end of the second. The first two are for caches to fill.
inline constexpr std::uint64_t kRoom = std::uint64_t{2} << 20;

class Growth {
 public:
  void add(const Size& size) { tenths_.push_back(size); }

  // What has grown, one line each; too few tenths are a finding too.
  std::vector<std::string> findings() const;

  // Memory at the end, without what is kept, beyond that at the end of the second tenth.
  std::int64_t beyond_kept() const;

 private:
  std::vector<Size> tenths_;
};

}  // namespace ostravel::plant
