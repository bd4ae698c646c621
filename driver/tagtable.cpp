// SPDX-License-Identifier: MIT
#include "driver/tagtable.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "driver/cmddesc.h"
#include "driver/unaligned.h"

namespace {

constexpr DWORD kSkippedBytes = 7;                     // in front of the section; the runtime's
constexpr std::size_t kRowNumbers = 1 + 4 + 4;         // device id, tag id, second word
constexpr std::size_t kSmallestRow = 2 + kRowNumbers;  // a row without a name
constexpr std::size_t kNameBlockUnits = 32768;

CHAR kEmptyName[2] = {};  // long enough for a 16-bit NUL

CTagTable::stTagInfo empty_row() {
  CTagTable::stTagInfo row{};
  row.pStringA = kEmptyName;
  return row;
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

std::size_t bytes_from(std::FILE* file, DWORD position) {
  if (std::fseek(file, 0, SEEK_END) != 0) return 0;
  const long size = std::ftell(file);
  return size > static_cast<long>(position) ? static_cast<std::size_t>(size) - position : 0;
}

const char* name_of(const stTag& tag) {
  return tag.pTagName != nullptr ? tag.pTagName : kEmptyName;
}

}  // namespace

void CTagTable::Read(const char* pFileName, DWORD pos) {
  const File file(std::fopen(pFileName, "rb"), std::fclose);
  if (file == nullptr) return;
  const DWORD start = pos + kSkippedBytes;
  const std::size_t most_rows = bytes_from(file.get(), start) / kSmallestRow;
  std::fseek(file.get(), static_cast<long>(start), SEEK_SET);

  SectionReader reader(file.get());
  version_ = reader.Number<std::uint32_t>();
  m_bUseUNICODE = FALSE;
  m_Counts = reader.Number<UINT>();
  ReadRows(reader, most_rows);
  if ((version_ & kVersionDeviceDescriptor) != 0) ReadDescriptor(reader);
}

void CTagTable::ReadRows(std::span<const BYTE> bytes, UINT count) {
  m_Counts = count;
  SectionReader reader(bytes);
  ReadRows(reader, bytes.size() / kSmallestRow);
}

void CTagTable::ReadRows(SectionReader& reader, std::size_t most_rows) {
  rows_.clear();
  name_blocks_.clear();
  units_left_ = 0;
  rows_.reserve(std::min<std::size_t>(m_Counts, most_rows));
  stTagInfo row = empty_row();
  while (rows_.size() < m_Counts && ReadRow(reader, row)) rows_.push_back(row);
  m_pTagInfo = rows_.empty() ? nullptr : rows_.data();
}

// False, with the file at its end, for a row that is not there whole.
bool CTagTable::ReadRow(SectionReader& reader, stTagInfo& row) {
  const std::span<const BYTE> length_bytes = reader.TakeUpTo(sizeof(WORD));
  if (length_bytes.size() < sizeof(WORD)) return false;
  const std::size_t length = load_unaligned<WORD>(length_bytes.data());
  const std::size_t name_bytes = m_bUseUNICODE ? length * sizeof(char16_t) : length;
  const std::span<const BYTE> bytes = reader.TakeUpTo(name_bytes + kRowNumbers);
  if (bytes.size() < name_bytes + kRowNumbers) return false;

  // Also ends an 8-bit name: its NUL lies in the last unit or is all of it.
  const std::size_t units = m_bUseUNICODE ? length + 1 : length / 2 + 1;
  char16_t* name = NewName(units);
  name[units - 1] = 0;
  std::memcpy(name, bytes.data(), name_bytes);
  row.pString = name;
  const BYTE* numbers = bytes.data() + name_bytes;
  row.DeviceID = numbers[0];
  row.Reserved = load_unaligned<DWORD>(numbers + 1);
  row.Reserved2 = load_unaligned<DWORD>(numbers + 5);
  return true;
}

char16_t* CTagTable::NewName(std::size_t units) {
  if (units_left_ < units) {
    units_left_ = std::max(units, kNameBlockUnits);
    name_blocks_.push_back(std::make_unique_for_overwrite<char16_t[]>(units_left_));
    next_name_ = name_blocks_.back().get();
  }
  char16_t* name = next_name_;
  next_name_ += units;
  units_left_ -= units;
  return name;
}

void CTagTable::ReadDescriptor(SectionReader& reader) {
  reader.Number<WORD>();  // not used
  m_device_descriptor.enable_password = reader.Number<BYTE>() != 0;
  const std::span<const BYTE> password = reader.TakeUpTo(reader.Number<WORD>());
  // A NUL inside the password cuts it short, deliberately.
  m_device_descriptor.device_password.assign(password.begin(),
                                             std::find(password.begin(), password.end(), BYTE{0}));
}

const CTagTable::stTagInfo* CTagTable::Get(DWORD index) const {
  static const stTagInfo kNoRow = empty_row();
  return index < rows_.size() ? &rows_[index] : &kNoRow;
}

INT CTagTable::get_index_by_name(const char* name) const {
  const auto found = std::find_if(rows_.begin(), rows_.end(), [name](const stTagInfo& row) {
    return std::strcmp(row.pStringA, name) == 0;
  });
  if (found != rows_.end()) return static_cast<INT>(found - rows_.begin());
  // The rows that the file announces and does not hold have an empty name.
  if (*name == '\0' && rows_.size() < m_Counts) return static_cast<INT>(rows_.size());
  return -1;
}

bool stTag::operator<(const stTag& other) const {
  if (TagIndex != other.TagIndex) return TagIndex < other.TagIndex;
  if (ArrayIndex != other.ArrayIndex) return ArrayIndex < other.ArrayIndex;
  if (DataType != other.DataType) return DataType < other.DataType;
  if (BitIndex != other.BitIndex) return BitIndex < other.BitIndex;
  return std::strcmp(name_of(*this), name_of(other)) < 0;
}

INT FillTagStruct(const CTagTable* pTable, stTag* pTag, BYTE* pData) {
  const auto row_index = load_unaligned<DWORD>(pData + kTagRowOffset);
  const CTagTable::stTagInfo* row = pTable->Get(row_index);
  pTag->TagIndex = static_cast<INT>(row_index);
  pTag->pTagName = row->pStringA;
  pTag->TagId = row->Reserved;
  ChangeBinaryAccessDataTypeForCmtType(pData);
  pTag->DataType = pData[kTagDataTypeOffset];

  const auto array_index = load_unaligned<WORD>(pData + kTagArrayIndexOffset);
  const BYTE selector = pData[kTagBitSelectorOffset];
  // 0 selects no bit, which is bit -1.
  const int bit = selector == kBitSelectorFromArrayIndex ? array_index & 0xFF : selector - 1;
  pTag->BitIndex = static_cast<signed char>(bit);
  pTag->ArrayIndex = pData[kTagIndexOffOffset] != 0 ? WORD{0} : array_index;
  return load_unaligned<WORD>(pData + kTagElementCountOffset);
}
