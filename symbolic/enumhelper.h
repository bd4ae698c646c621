// SPDX-License-Identifier: MIT
// The library's symbol enumerations as text, for diagnostics. The texts live for ever; a value
// without one aborts the process.
#pragma once

#include "aglink/AGLink40.h"

class EnumHelper {
 public:
  static const char* get_type_state_str(const TypeState_t::enum_t& value);
  static const char* get_segment_type_str(const SegmentType_t::enum_t& value);
  static const char* get_hierarchy_type_str(const HierarchyType_t::enum_t& value);
  static const char* get_system_type_str(const SystemType_t::enum_t& value);
  static const char* get_value_type_str(const ValueType_t::enum_t& value);
  static const char* get_access_type_str(const PermissionType_t::enum_t& value);
  static const char* get_node_type_str(const NodeType_t::enum_t& value);
  static const char* get_system_type_state_str(const SystemTypeState_t::enum_t& value);
};
