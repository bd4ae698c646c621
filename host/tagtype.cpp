// SPDX-License-Identifier: MIT
#include "host/tagtype.h"

#include <strings.h>

#include <algorithm>
#include <array>

namespace ostravel::host {
namespace {

constexpr std::array kTypes{
    TagType{"BOOL", DT_BOOL, 1, 8, ValueKind::Bool},
    TagType{"BitArray", DT_BITARY, 1, 8, ValueKind::Bit},
    TagType{"SINT", DT_SINT, 1, 8, ValueKind::Signed},
    TagType{"INT", DT_INT, 1, 16, ValueKind::Signed},
    TagType{"DINT", DT_DINT, 2, 32, ValueKind::Signed},
    TagType{"REAL", DT_REAL, 2, 32, ValueKind::Real},
    TagType{"BYTE", DT_BYTE, 1, 8, ValueKind::Unsigned},
    TagType{"WORD", DT_WORD, 1, 16, ValueKind::Unsigned},
    TagType{"DWORD", DT_DWORD, 2, 32, ValueKind::Unsigned},
    TagType{"UDINT", DT_UDINT, 2, 32, ValueKind::Unsigned},
    TagType{"LWORD", DT_LWORD, 4, 64, ValueKind::Unsigned},
    TagType{"LINT", DT_LINT, 4, 64, ValueKind::Signed},
    TagType{"ULINT", DT_ULINT, 4, 64, ValueKind::Unsigned},
    TagType{"LREAL", DT_LREAL, 4, 64, ValueKind::Real},
    TagType{"UINT", DT_UINT, 1, 16, ValueKind::Unsigned},
    TagType{"USINT", DT_USINT, 1, 8, ValueKind::Unsigned},
    TagType{"STRING", DT_STRING, 1, 8, ValueKind::Text},
    TagType{"WSTRING", DT_STRING, 1, 16, ValueKind::WideText},
};

}  // namespace

std::span<const TagType> tag_types() {
  return kTypes;
}

const TagType* find_tag_type(std::string_view name) {
  const auto same = [name](const TagType& type) {
    return type.name.size() == name.size() && strncasecmp(type.name.data(), name.data(), name.size()) == 0;
  };
  const auto* found = std::find_if(kTypes.begin(), kTypes.end(), same);
  return found == kTypes.end() ? nullptr : found;
}

const TagType* find_tag_type(BYTE code, bool wide) {
  const auto same = [code, wide](const TagType& type) {
    return type.code == code && wide == (type.kind == ValueKind::WideText);
  };
  const auto* found = std::find_if(kTypes.begin(), kTypes.end(), same);
  return found == kTypes.end() ? nullptr : found;
}

std::string tag_type_names() {
  std::string names;
  for (const auto& type : kTypes) {
    if (!names.empty()) {
      names += ", ";
    }
    names += type.name;
  }
  return names;
}

}  // namespace ostravel::host
