// SPDX-License-Identifier: MIT
// The PLC's own record of its memory, in a file that both processes map: the whole memory at each of the last
// moments. A moment is published before any client can be answered from it, and everything that a client is
// answered lies between two moments that it can ask for.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>

namespace ostravel::plant {

inline constexpr std::size_t kMoments = 1024;
inline constexpr std::size_t kImageBytes = std::size_t{32} << 10;

// The record does not reach back as far as was asked.
struct RecordTooShort : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Image {
  std::uint64_t program = 0;  // its fingerprint
  std::span<const std::uint8_t> memory;
};

class Record {
 public:
  // Makes the file when there is none. Throws std::runtime_error.
  explicit Record(const std::string& path);
  ~Record();
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;

  // The last moment, 0 before the first.
  std::uint64_t moment() const;

  // The PLC's side: the memory as it is from now on, under the next moment. Throws std::runtime_error for a
  // memory that is too large.
  void keep(std::uint64_t program, std::span<const std::uint8_t> memory);

  // The memory at a moment; whoever has looked at it asks still_holds afterwards. Throws RecordTooShort.
  Image image(std::uint64_t moment) const;
  bool still_holds(std::uint64_t moment) const;

  // The process that keeps the record, 0 before the first.
  void sign(std::int32_t process);
  std::int32_t keeper() const;

  // When the PLC last came back by itself, on the clock that all processes share; 0: not yet.
  void mark_return();
  std::int64_t returned_at() const;

 private:
  struct Slot;
  struct Shared;
  Slot& slot(std::uint64_t moment) const;
  Shared* shared_ = nullptr;
};

// Nanoseconds of the clock that all processes share.
std::int64_t now();

}  // namespace ostravel::plant
