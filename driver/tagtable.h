// SPDX-License-Identifier: MIT
// The tag table section of the project file, and the key of one addressed tag element.
//
//   section    = version:u32 count:u32 row{count} [descriptor]     begins 7 bytes after the table's position
//   row        = length:u16 name:byte{length} device:u8 tag_id:u32 reserved2:u32
//   descriptor = unused:u16 enable:u8 length:u16 password:byte{length}    only when bit 1 of version is set
//
// All numbers are little-endian.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "driver/hostrecords.h"
#include "driver/nameindex.h"
#include "driver/sectionreader.h"

// Bits of the table's version word.
inline constexpr std::uint32_t kVersionCharPairedStrings = 1;  // strings travel two characters a host word
inline constexpr std::uint32_t kVersionDeviceDescriptor = 2;   // a device descriptor follows the rows

struct device_descriptor {
  bool enable_password = false;  // the PLC access password is to be used
  std::string device_password;
};

// What the filters ask of a row's name at every poll.
struct NameTraits {
  std::uint32_t hash = 0;
  std::uint16_t length = 0;
  bool has_placeholder = false;  // an index is to be put into it
  bool known = false;
};

class CTagTable {
 public:
  struct stTagInfo {
    union {
      char16_t* pString;
      char* pStringA;
    };  // the tag's path name, NUL-terminated, owned by the table
    BYTE DeviceID;
    DWORD Reserved;   // the tag id
    DWORD Reserved2;  // read, not used
    DWORD Reserved3;
    BYTE SoftwareVersion;
  };

  CTagTable() = default;
  CTagTable(const CTagTable&) = delete;
  CTagTable& operator=(const CTagTable&) = delete;

  // Reads the section that begins pos + 7 bytes (unsigned 32-bit sum) into the file. A file that cannot be
  // opened leaves the table as it is, and so does std::bad_alloc. What a file that ends early lacks is zero
  // or empty; a row that cannot be read whole has an empty name and zero numbers.
  void Read(const char* pFileName, DWORD pos);

  // The row at an index that the runtime chose; one outside the table is a row with an empty name and id 0.
  // Never null; valid until the next Read.
  const stTagInfo* Get(DWORD index) const { return index < rows_.size() ? &rows_[index] : &kNoRow; }

  // Of Get's row. Valid until the next call of Read.
  const NameTraits& name_traits(DWORD index) const {
    if (index >= traits_.size()) return kNoName;
    NameTraits& traits = traits_[index];
    return traits.known ? traits : FindOutTraits(traits, rows_[index].pStringA);
  }

  // First row whose name equals this one byte for byte; -1 when none does.
  INT get_index_by_name(const char* name) const;

  device_descriptor get_device_descriptor() const { return m_device_descriptor; }

  // Names are stored as 16-bit characters. Read always sets it to false, deliberately: the files hold 8-bit
  // names.
  BOOL m_bUseUNICODE = FALSE;
  std::uint32_t version_ = 0;
  stTagInfo* m_pTagInfo = nullptr;  // null when there are no rows
  device_descriptor m_device_descriptor;
  // Rows that the file announces. Of a file that ends early m_pTagInfo may hold fewer: go through Get.
  UINT m_Counts = 0;

  // Takes count rows from bytes, as Read does from a file. Public for the sake of the 16-bit form, which no
  // file reaches.
  void ReadRows(std::span<const BYTE> bytes, UINT count);

 private:
  // What is read of a section, before any of it is the table's.
  struct Section {
    std::uint32_t version = 0;
    UINT counts = 0;
    std::vector<stTagInfo> rows;
    std::vector<std::unique_ptr<char16_t[]>> wide_names;
    std::vector<NameTraits> traits;
    device_descriptor descriptor;
  };
  static void ReadRows(SectionReader& reader, std::size_t most_rows, bool wide, Section& section);
  static void ReadDescriptor(SectionReader& reader, device_descriptor& descriptor);
  void Take(Section& section, SectionReader& reader) noexcept;
  [[gnu::cold]] const NameTraits& FindOutTraits(NameTraits& traits, const char* name) const;

  // What stands for a row outside the table.
  static const stTagInfo kNoRow;
  static const NameTraits kNoName;

  std::vector<stTagInfo> rows_;
  // 8-bit names lie where they were read, each ended by a NUL in place of the device id behind it.
  SectionReader::Chunks chunks_;
  std::vector<std::unique_ptr<char16_t[]>> wide_names_;
  // Both found out when they are first asked for: most tables are larger than what a panel shows.
  mutable std::vector<NameTraits> traits_;
  mutable NameIndex index_;
};

// The key of one addressed tag element.
struct stTag {
  DWORD TagId;           // the row's tag id; takes no part in the order
  INT TagIndex;          // row index
  WORD ArrayIndex;       // element index, kNoArrayIndex for none
  BYTE DataType;         // DATA_TYPE
  const CHAR* pTagName;  // borrowed
  signed char BitIndex;  // bit number within the value, -1 for the whole value

  // By TagIndex, ArrayIndex, DataType, BitIndex, then the names as strcmp orders them.
  bool operator<(const stTag& other) const;
};

// Fills *pTag from a tag data block, replacing the block's data type by its alternate one when there is one.
// pTagName points into the table. Returns the element count.
INT FillTagStruct(const CTagTable* pTable, stTag* pTag, BYTE* pData);
