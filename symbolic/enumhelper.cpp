// SPDX-License-Identifier: MIT
#include "symbolic/enumhelper.h"

#include <array>
#include <cstddef>

#include "symbolic/assertion.h"

namespace {

// The text of a value in a table that begins with the value first; fails the assertion for any other.
template <std::size_t N>
const char* text_of(int value, int first, const std::array<const char*, N>& texts,
                    const AssertionPlace& place) {
  const long long position = static_cast<long long>(value) - first;
  if (position < 0 || position >= static_cast<long long>(N)) fail_assertion("false", place);
  return texts[static_cast<std::size_t>(position)];
}

constexpr std::array kTypeState = {"UNDEFINED", "NOT_SUPPORTED", "VALID", "INVALID"};
constexpr std::array kSegmentType = {"UNDEFINED", "ROOT", "FIELD", "INDEX"};
constexpr std::array kHierarchyType = {"UNDEFINED", "ITEM", "STRUCTURE", "ARRAY"};
constexpr std::array kValueType = {
    "UNDEFINED", "SYSTEM_SPECIFIC", "UINT8",    "UINT16",   "UINT32",  "UINT64",
    "INT8",      "INT16",           "INT32",    "INT64",    "CHAR8",   "CHAR16",
    "CHAR32",    "STRING8",         "STRING16", "STRING32", "FLOAT32", "FLOAT64"};
constexpr std::array kAccessType = {"UNDEFINED", "NONE", "DISABLED", "READ", "WRITE", "READ_WRITE"};
constexpr std::array kNodeType = {"UNDEFINED", "SCHEMA", "INSTANCE"};
constexpr std::array kSystemTypeState = {
    "UNDEFINED", "VALID", "INVALID", "S7_DATABLOCK_NOT_COMPILED", "S7_INVALID_TYPE", "S7_NOT_SUPPORTED_TYPE"};

// The PLC-side types in value order from 1000 on, without their common "st_".
constexpr std::array kSystemType = {
#define AGL_SYSTEM_TYPE(Name, Value) static_cast<const char*>(&#Name[3]),
#include "aglink/systemtype.def"
};

// The file and function texts are those of the place where a diagnosis expects the failure.
constexpr AssertionPlace place_of(unsigned line, const char* function) {
  return {"enumhelper.cpp", line, function};
}

constexpr AssertionPlace kNoSystemTypeText =
    place_of(191, "const char* const EnumHelper::get_system_type_str(const SystemType_t::enum_t&)");

}  // namespace

const char* EnumHelper::get_type_state_str(const TypeState_t::enum_t& value) {
  return text_of(
      value, TypeState_t::ts_UNDEFINED, kTypeState,
      place_of(32, "const char* const EnumHelper::get_type_state_str(const TypeState_t::enum_t&)"));
}

const char* EnumHelper::get_segment_type_str(const SegmentType_t::enum_t& value) {
  return text_of(
      value, SegmentType_t::se_UNDEFINED, kSegmentType,
      place_of(45, "const char* const EnumHelper::get_segment_type_str(const SegmentType_t::enum_t&)"));
}

const char* EnumHelper::get_hierarchy_type_str(const HierarchyType_t::enum_t& value) {
  return text_of(
      value, HierarchyType_t::ht_UNDEFINED, kHierarchyType,
      place_of(58, "const char* const EnumHelper::get_hierarchy_type_str(const HierarchyType_t::enum_t&)"));
}

const char* EnumHelper::get_system_type_str(const SystemType_t::enum_t& value) {
  switch (value) {
    case SystemType_t::st_UNDEFINED:
      return "UNDEFINED";
    case SystemType_t::st_UNKNOWN:
      return "UNKNOWN";
    case SystemType_t::st_NCK840D_UNKNOWN:
      return "NCK840D_UNKNOWN";
    case SystemType_t::st_S7_UDT_Instance:
      return "S7_UDT_INSTANCE";  // deliberately in capitals, unlike its enumerator
    default:
      break;
  }
  // Deliberately without a text: st_S7_FB, and everything after st_S7_FB_Instance.
  if (value == SystemType_t::st_S7_FB || value > SystemType_t::st_S7_FB_Instance) {
    fail_assertion("false", kNoSystemTypeText);
  }
  return text_of(value, SystemType_t::st_S7_UNKNOWN, kSystemType, kNoSystemTypeText);
}

const char* EnumHelper::get_value_type_str(const ValueType_t::enum_t& value) {
  return text_of(
      value, ValueType_t::vt_UNDEFINED, kValueType,
      place_of(226, "const char* const EnumHelper::get_value_type_str(const ValueType_t::enum_t&)"));
}

const char* EnumHelper::get_access_type_str(const PermissionType_t::enum_t& value) {
  return text_of(
      value, PermissionType_t::pt_UNDEFINED, kAccessType,
      place_of(243, "const char* const EnumHelper::get_access_type_str(const PermissionType_t::enum_t&)"));
}

const char* EnumHelper::get_node_type_str(const NodeType_t::enum_t& value) {
  return text_of(value, NodeType_t::nt_UNDEFINED, kNodeType,
                 place_of(257, "const char* const EnumHelper::get_node_type_str(const NodeType_t::enum_t&)"));
}

const char* EnumHelper::get_system_type_state_str(const SystemTypeState_t::enum_t& value) {
  return text_of(
      value, SystemTypeState_t::sts_UNDEFINED, kSystemTypeState,
      place_of(274,
               "const char* const EnumHelper::get_system_type_state_str(const SystemTypeState_t::enum_t&)"));
}
