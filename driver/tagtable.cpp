// SPDX-License-Identifier: MIT
#include "driver/tagtable.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "driver/cmddesc.h"
#include "driver/tagname.h"
#include "driver/unaligned.h"

namespace {

constexpr DWORD kSkippedBytes = 7;                     // in front of the section; the runtime's
constexpr std::size_t kRowNumbers = 1 + 4 + 4;         // device id, tag id, second word
constexpr std::size_t kSmallestRow = 2 + kRowNumbers;  // a row without a name

CHAR kEmptyName[2] = {};  // long enough for a 16-bit NUL

CTagTable::stTagInfo empty_row() {
  CTagTable::stTagInfo row{};
  row.pStringA = kEmptyName;
  return row;
}

void take_numbers(const BYTE* numbers, CTagTable::stTagInfo& row) {
  row.DeviceID = numbers[0];
  row.Reserved = load_unaligned<DWORD>(numbers + 1);
  row.Reserved2 = load_unaligned<DWORD>(numbers + 5);
}

// False, with the file at its end, for a row that is not there whole.
inline bool read_row(SectionReader& reader, CTagTable::stTagInfo& row) {
  const std::span<const BYTE> length_bytes = reader.TakeUpTo(sizeof(WORD));
  if (length_bytes.size() < sizeof(WORD)) return false;
  const std::size_t length = load_unaligned<WORD>(length_bytes.data());
  const std::span<BYTE> bytes = reader.TakeUpTo(length + kRowNumbers);
  if (bytes.size() < length + kRowNumbers) return false;
  take_numbers(bytes.data() + length, row);
  bytes[length] = 0;  // the device id's place
  row.pStringA = reinterpret_cast<char*>(bytes.data());
  return true;
}

// The same with 16-bit characters. They do not stay where they were read: there they lie at odd addresses.
bool read_wide_row(SectionReader& reader, std::vector<std::unique_ptr<char16_t[]>>& names,
                   CTagTable::stTagInfo& row) {
  const auto length = reader.Number<WORD>();
  const std::size_t name_bytes = length * sizeof(char16_t);
  const std::span<BYTE> bytes = reader.TakeUpTo(name_bytes + kRowNumbers);
  if (bytes.size() < name_bytes + kRowNumbers) return false;
  take_numbers(bytes.data() + name_bytes, row);
  row.pString = names.emplace_back(std::make_unique<char16_t[]>(length + std::size_t{1})).get();
  std::memcpy(row.pString, bytes.data(), name_bytes);
  return true;
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

const CTagTable::stTagInfo CTagTable::kNoRow = empty_row();
const NameTraits CTagTable::kNoName = {.hash = hash_of_name({}), .known = true};

void CTagTable::Read(const char* pFileName, DWORD pos) {
  const File file(std::fopen(pFileName, "rb"), std::fclose);
  if (file == nullptr) return;
  const DWORD start = pos + kSkippedBytes;
  const std::size_t bytes = bytes_from(file.get(), start);
  std::fseek(file.get(), static_cast<long>(start), SEEK_SET);

  SectionReader reader(file.get(), bytes);
  Section section;
  section.version = reader.Number<std::uint32_t>();
  section.counts = reader.Number<UINT>();
  ReadRows(reader, bytes / kSmallestRow, false, section);
  if ((section.version & kVersionDeviceDescriptor) != 0) {
    ReadDescriptor(reader, section.descriptor);
  } else {
    section.descriptor = m_device_descriptor;
  }
  m_bUseUNICODE = FALSE;
  Take(section, reader);
}

void CTagTable::ReadRows(std::span<const BYTE> bytes, UINT count) {
  SectionReader reader(bytes);
  Section section;
  section.version = version_;
  section.counts = count;
  section.descriptor = m_device_descriptor;
  ReadRows(reader, bytes.size() / kSmallestRow, m_bUseUNICODE != FALSE, section);
  Take(section, reader);
}

void CTagTable::ReadRows(SectionReader& reader, std::size_t most_rows, bool wide, Section& section) {
  section.rows.reserve(std::min<std::size_t>(section.counts, most_rows));
  stTagInfo row = empty_row();
  std::vector<stTagInfo>& rows = section.rows;
  // A loop for each form of names: most of what a large table costs is spent here.
  if (wide) {
    auto& names = section.wide_names;
    for (UINT i = 0; i < section.counts && read_wide_row(reader, names, row); ++i) rows.push_back(row);
  } else {
    for (UINT i = 0; i < section.counts && read_row(reader, row); ++i) rows.push_back(row);
  }
  section.traits.assign(rows.size(), {});
}

void CTagTable::ReadDescriptor(SectionReader& reader, device_descriptor& descriptor) {
  reader.Number<WORD>();  // not used
  descriptor.enable_password = reader.Number<BYTE>() != 0;
  const std::span<const BYTE> password = reader.TakeUpTo(reader.Number<WORD>());
  // A NUL inside the password cuts it short, deliberately.
  descriptor.device_password.assign(password.begin(), std::find(password.begin(), password.end(), BYTE{0}));
}

void CTagTable::Take(Section& section, SectionReader& reader) noexcept {
  version_ = section.version;
  m_Counts = section.counts;
  rows_ = std::move(section.rows);
  m_pTagInfo = rows_.empty() ? nullptr : rows_.data();
  chunks_ = reader.TakeChunks();
  wide_names_ = std::move(section.wide_names);
  traits_ = std::move(section.traits);
  index_.Clear();
  m_device_descriptor = std::move(section.descriptor);
}

const NameTraits& CTagTable::FindOutTraits(NameTraits& traits, const char* name) const {
  const std::string_view text = name;
  traits.hash = hash_of_name(text);
  traits.length = static_cast<std::uint16_t>(text.size());  // a row has 16 bits for it
  traits.has_placeholder = has_index_placeholder(text);
  traits.known = true;
  return traits;
}

INT CTagTable::get_index_by_name(const char* name) const {
  const auto name_of = [this](std::size_t row) { return std::string_view(rows_[row].pStringA); };
  if (index_.empty()) index_.Build(rows_.size(), name_of);
  if (const auto row = index_.Find(name, name_of)) return static_cast<INT>(*row);
  // The rows that the file announces and does not hold have an empty name.
  if (*name == '\0' && rows_.size() < m_Counts) return static_cast<INT>(rows_.size());
  return -1;
}

bool stTag::operator<(const stTag& other) const {
  if (TagIndex != other.TagIndex) return TagIndex < other.TagIndex;
  if (ArrayIndex != other.ArrayIndex) return ArrayIndex < other.ArrayIndex;
  if (DataType != other.DataType) return DataType < other.DataType;
  if (BitIndex != other.BitIndex) return BitIndex < other.BitIndex;
  if (pTagName == other.pTagName) return false;
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
