// SPDX-License-Identifier: MIT
#include "tests/plant/growth.h"

#include <fmt/format.h>
#include <malloc.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace ostravel::plant {
namespace {

constexpr std::size_t kBaseline = 1;  // the second tenth

std::uint64_t entries(const char* folder) {
  std::uint64_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) ++count;
  return count;
}

std::int64_t without_kept(const Size& size) {
  return static_cast<std::int64_t>(size.memory) - static_cast<std::int64_t>(size.kept);
}

}  // namespace

Size size_of_process() {
  Size size;
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    std::istringstream words(line);
    std::string name;
    std::uint64_t number = 0;
    words >> name >> number;
    if (name == "RssAnon:") size.memory = number << 10U;
    if (name == "Threads:") size.threads = number;
  }
  size.handles = entries("/proc/self/fd");
  return size;
}

std::uint64_t allocated() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

std::vector<std::string> Growth::findings() const {
  if (tenths_.size() <= kBaseline + 1) return {"too few tenths to say whether anything grows"};
  std::vector<std::string> findings;
  const auto& base = tenths_[kBaseline];
  for (std::size_t i = kBaseline + 1; i < tenths_.size(); ++i) {
    const auto& size = tenths_[i];
    const auto more = without_kept(size) - without_kept(base);
    if (more > static_cast<std::int64_t>(kRoom)) {
      findings.push_back(
          fmt::format("tenth {}: {} bytes of memory more than what is kept explains", i + 1, more));
    }
    if (size.handles > base.handles) {
      findings.push_back(
          fmt::format("tenth {}: {} open handles after {}", i + 1, size.handles, base.handles));
    }
    if (size.threads > base.threads) {
      findings.push_back(fmt::format("tenth {}: {} threads after {}", i + 1, size.threads, base.threads));
    }
  }
  return findings;
}

std::int64_t Growth::beyond_kept() const {
  if (tenths_.size() <= kBaseline) return 0;
  return without_kept(tenths_.back()) - without_kept(tenths_[kBaseline]);
}

}  // namespace ostravel::plant
