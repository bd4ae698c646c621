// SPDX-License-Identifier: MIT
// The project file: any bytes, from any position on, are a tag table, and a driver works on with it.
//   input = position:u32 file
#include <cstring>
#include <string>
#include <string_view>

#include "driver/tagtable.h"
#include "driver/unaligned.h"
#include "fuzzing/support/demand.h"
#include "fuzzing/support/entry.h"
#include "fuzzing/support/input.h"
#include "fuzzing/support/memoryfile.h"

namespace {

// What the format says, told once more in the plainest way.
class Section {
 public:
  explicit Section(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  std::uint32_t number(std::size_t size) {
    if (bytes_.size() < size) bytes_ = {};
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size && !bytes_.empty(); ++i) value |= std::uint32_t{bytes_[i]} << (8 * i);
    bytes_ = bytes_.subspan(bytes_.empty() ? 0 : size);
    return value;
  }
  bool has(std::size_t size) const { return bytes_.size() >= size; }
  std::span<const std::uint8_t> take(std::size_t size) {
    const auto taken = bytes_.first(std::min(size, bytes_.size()));
    bytes_ = bytes_.subspan(taken.size());
    return taken;
  }
  void end() { bytes_ = {}; }

 private:
  std::span<const std::uint8_t> bytes_;
};

std::string_view up_to_zero(std::span<const std::uint8_t> bytes) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  return text.substr(0, text.find('\0'));
}

void compare_row(const CTagTable& table, DWORD index, std::span<const std::uint8_t> row, std::size_t length) {
  const CTagTable::stTagInfo& info = *table.Get(index);
  const std::string_view name = up_to_zero(row.first(length));
  FUZZ_DEMAND(std::string_view(info.pStringA) == name);
  FUZZ_DEMAND(info.DeviceID == row[length]);
  FUZZ_DEMAND(info.Reserved == load_unaligned<DWORD>(&row[length + 1]));
  FUZZ_DEMAND(info.Reserved2 == load_unaligned<DWORD>(&row[length + 5]));
  FUZZ_DEMAND(table.name_traits(index).length == name.size());
  const INT found = table.get_index_by_name(info.pStringA);
  FUZZ_DEMAND(found >= 0 && static_cast<DWORD>(found) <= index);
  FUZZ_DEMAND(std::string_view(table.Get(static_cast<DWORD>(found))->pStringA) == name);
}

void compare_empty_row(const CTagTable& table, DWORD index) {
  const CTagTable::stTagInfo& info = *table.Get(index);
  FUZZ_DEMAND(*info.pStringA == '\0' && info.DeviceID == 0 && info.Reserved == 0 && info.Reserved2 == 0);
}

void compare(const CTagTable& table, Section section) {
  const std::uint32_t version = section.number(4);
  const std::uint32_t count = section.number(4);
  FUZZ_DEMAND(table.version_ == version && table.m_Counts == count && table.m_bUseUNICODE == FALSE);
  constexpr std::size_t kNumbers = 9;
  DWORD row = 0;
  for (; row < count; ++row) {
    if (!section.has(2)) break;
    const std::size_t length = section.number(2);
    if (!section.has(length + kNumbers)) break;
    compare_row(table, row, section.take(length + kNumbers), length);
  }
  if (row < count) section.end();
  compare_empty_row(table, row);
  compare_empty_row(table, 0xFFFFFFFF);
  const device_descriptor descriptor = table.get_device_descriptor();
  if ((version & kVersionDeviceDescriptor) == 0) {
    FUZZ_DEMAND(!descriptor.enable_password && descriptor.device_password.empty());
    return;
  }
  section.number(2);
  FUZZ_DEMAND(descriptor.enable_password == (section.number(1) != 0));
  const auto password = section.take(section.number(2));
  FUZZ_DEMAND(descriptor.device_password == up_to_zero(password));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzz::MemoryFile file;
  fuzz::Input input(data, size);
  const auto position = input.number<std::uint32_t>();
  const auto bytes = input.rest();
  file.hold(bytes);
  CTagTable table;
  table.Read(file.name(), position);
  const std::uint32_t start = position + 7;  // an unsigned sum
  compare(table, Section(start < bytes.size() ? bytes.subspan(start) : bytes.first(0)));
  // A table that is read once more holds the other file's rows and nothing of this one's.
  file.hold({});
  table.Read(file.name(), 0);
  FUZZ_DEMAND(table.m_Counts == 0 && table.m_pTagInfo == nullptr);
  compare_empty_row(table, 0);
  return 0;
}
