// SPDX-License-Identifier: MIT
#include "host/check/plctype.h"

#include <fmt/format.h>

#include <string_view>

namespace ostravel::host::check {
namespace {

PlcShape system_specific(SystemType_t::enum_t system) {
  switch (system) {
    case SystemType_t::st_S7_Counter:
      return {Shape::Unsigned, 2};
    case SystemType_t::st_S7_S5Time:
      return {Shape::Unsigned, 4};  // milliseconds
    case SystemType_t::st_S7_Date_And_Time:
      return {Shape::Parts, 10};
    case SystemType_t::st_S7_DTL:
      return {Shape::Parts, 12};
    default:
      return {};
  }
}

std::string without_prefix(std::string_view name) {
  for (const std::string_view prefix : {"st_S7_", "st_"}) {
    if (name.starts_with(prefix)) {
      return std::string(name.substr(prefix.size()));
    }
  }
  return std::string(name);
}

}  // namespace

PlcShape shape_of(ValueType_t::enum_t value, SystemType_t::enum_t system) {
  using V = ValueType_t;
  switch (value) {
    case V::vt_SYSTEM_SPECIFIC:
      return system_specific(system);
    case V::vt_UINT8:
      return {system == SystemType_t::st_S7_Bool ? Shape::Bool : Shape::Unsigned, 1};
    case V::vt_UINT16:
      return {Shape::Unsigned, 2};
    case V::vt_UINT32:
      return {Shape::Unsigned, 4};
    case V::vt_UINT64:
      return {Shape::Unsigned, 8};
    case V::vt_INT8:
      return {Shape::Signed, 1};
    case V::vt_INT16:
      return {Shape::Signed, 2};
    case V::vt_INT32:
      return {Shape::Signed, 4};
    case V::vt_INT64:
      return {Shape::Signed, 8};
    case V::vt_FLOAT32:
      return {Shape::Real, 4};
    case V::vt_FLOAT64:
      return {Shape::Real, 8};
    case V::vt_CHAR8:
      return {Shape::Unsigned, 1};
    case V::vt_CHAR16:
      return {Shape::Zeros, 4};
    case V::vt_STRING8:
      return {Shape::Text, 1};
    case V::vt_STRING16:
      return {Shape::WideText, 1};
    default:
      return {};
  }
}

std::string name_of(SystemType_t::enum_t system) {
  switch (system) {
#define AGL_SYSTEM_TYPE(Name, Value) \
  case SystemType_t::Name:           \
    return without_prefix(#Name);
#include "aglink/systemtype.def"
    default:
      return fmt::format("type {}", static_cast<int>(system));
  }
}

}  // namespace ostravel::host::check
