// SPDX-License-Identifier: MIT
#include "tests/plant/record.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstring>

namespace ostravel::plant {

// Zero, as a new file is, is the state before the first moment.
struct Record::Slot {
  std::atomic<std::uint64_t> moment;
  std::uint64_t program;
  std::uint64_t size;
  std::array<std::uint8_t, kImageBytes> memory;
};

struct Record::Shared {
  std::atomic<std::uint64_t> moment;
  std::atomic<std::int64_t> returned_at;
  std::atomic<std::int32_t> keeper;
  std::array<Slot, kMoments> slots;
};

Record::Record(const std::string& path) {
  static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) throw std::runtime_error(path + ": cannot be opened");
  void* memory = MAP_FAILED;
  if (ftruncate(file, sizeof(Shared)) == 0) {
    memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  }
  close(file);
  if (memory == MAP_FAILED) throw std::runtime_error(path + ": cannot be mapped");
  shared_ = static_cast<Shared*>(memory);
}

Record::~Record() {
  munmap(shared_, sizeof(Shared));
}

std::uint64_t Record::moment() const {
  return shared_->moment;
}

Record::Slot& Record::slot(std::uint64_t moment) const {
  return shared_->slots[moment % kMoments];
}

void Record::keep(std::uint64_t program, std::span<const std::uint8_t> memory) {
  if (memory.size() > kImageBytes) {
    throw std::runtime_error(fmt::format("{} bytes of memory do not fit the record", memory.size()));
  }
  const auto moment = shared_->moment + 1;
  Slot& to = slot(moment);
  to.moment = 0;
  to.program = program;
  to.size = memory.size();
  std::memcpy(to.memory.data(), memory.data(), memory.size());
  to.moment = moment;
  shared_->moment = moment;
}

Image Record::image(std::uint64_t moment) const {
  const Slot& from = slot(moment);
  if (moment == 0 || from.moment != moment) {
    throw RecordTooShort(fmt::format("moment {} is not kept; now is {}", moment, shared_->moment.load()));
  }
  return {from.program, std::span(from.memory).first(from.size)};
}

bool Record::still_holds(std::uint64_t moment) const {
  std::atomic_thread_fence(std::memory_order_acquire);
  return slot(moment).moment == moment;
}

void Record::sign(std::int32_t process) {
  shared_->keeper = process;
}

std::int32_t Record::keeper() const {
  return shared_->keeper;
}

void Record::mark_return() {
  shared_->returned_at = now();
}

std::int64_t Record::returned_at() const {
  return shared_->returned_at;
}

std::int64_t now() {
  return std::chrono::steady_clock::now().time_since_epoch().count();
}

}  // namespace ostravel::plant
