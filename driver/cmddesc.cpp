// SPDX-License-Identifier: MIT
#include "driver/cmddesc.h"

#include <cstring>
#include <string>

#include "driver/datatypes.h"
#include "driver/indexregister.h"

namespace {

constexpr USHORT kResponseHeader = 6;  // bytes in front of the elements
constexpr USHORT kWriteResponse = 4;

// Apart from the usual way, which it would slow down.
[[gnu::noinline, gnu::cold]] void substitute(const stTag& tag, std::string_view name, TagName& tag_name) {
  tag_name.SubstituteIndex(name, tag.ArrayIndex);
}

// What a read and a write have in common. Returns whether the name was built by index substitution.
inline bool setup_command(BYTE* pDriverData, stCmdDesc* pDesc, UINT nCmdIndex, const CTagTable* pTagTable) {
  pDesc->nCmdIndex = nCmdIndex;
  pDesc->bPack = FALSE;
  stTag tag;
  pDesc->ElementCounts = static_cast<USHORT>(FillTagStruct(pTagTable, &tag, pDriverData));
  const NameTraits& traits = pTagTable->name_traits(static_cast<DWORD>(tag.TagIndex));
  const std::string_view name(tag.pTagName, traits.length);
  if (traits.has_placeholder) {
    substitute(tag, name, pDesc->tag_name);
  } else {
    pDesc->tag_name.Borrow(name, traits.hash);
  }
  pDesc->ServiceDataLength = 0;
  pDesc->DataType = tag.DataType;
  pDesc->BitIndex = tag.BitIndex;
  pDesc->ArrayIndex = tag.ArrayIndex;
  return traits.has_placeholder;
}

}  // namespace

void SetupReadCmdDesc(BYTE* pDriverData, stCmdDesc* pDesc, UINT nCmdIndex, const CTagTable* pTagTable) {
  pDesc->use_index_register = setup_command(pDriverData, pDesc, nCmdIndex, pTagTable);
  const unsigned element_bytes = data_type_info(pDesc->DataType).element_bytes;
  if (element_bytes == 0) {
    // An unknown type adds to whatever the descriptor held, deliberately.
    pDesc->ResponseLength = static_cast<USHORT>(pDesc->ResponseLength + kResponseHeader);
    return;
  }
  const unsigned words = element_bytes <= sizeof(WORD) ? 1 : element_bytes / sizeof(WORD);
  pDesc->WordCount = pDesc->ElementCounts * words;
  const unsigned elements = pDesc->BitIndex != -1 ? 1U : pDesc->ElementCounts;
  pDesc->ResponseLength = static_cast<USHORT>(kResponseHeader + elements * element_bytes);
}

void SetupWriteCmdDesc(BYTE* pDriverData, stCmdDesc* pDesc, UINT nCmdIndex, const CTagTable* pTagTable, void*,
                       DWORD) {
  setup_command(pDriverData, pDesc, nCmdIndex, pTagTable);
  // False even when the name was substituted, deliberately: only a read keeps the mark.
  pDesc->use_index_register = false;
  pDesc->ResponseLength = kWriteResponse;
}

bool use_index_register(const CHAR* pSource_name, CHAR* pRename, const stTag* pTag) {
  std::string name;
  if (!substitute_index(pSource_name, pTag->ArrayIndex, name)) return false;
  std::memcpy(pRename, name.c_str(), name.size() + 1);
  return true;
}

void ChangeBinaryAccessDataTypeForCmtType(BYTE* pData) {
  const BYTE alternate = pData[kTagAlternateTypeOffset];
  if (alternate != 0) pData[kTagDataTypeOffset] = alternate;
}

bool is_wstring_type(unsigned char data_type, unsigned short string_size) {
  return data_type == DT_STRING && string_size == 510;
}
