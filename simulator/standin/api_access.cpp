// SPDX-License-Identifier: MIT
// What an access is like.
#include "simulator/standin/aglink.h"
#include "simulator/standin/errors.h"
#include "simulator/standin/handles.h"

using namespace ostravel::standin;

namespace {

template <typename T, typename Property>
agl_int32_t tell(HandleType handle, T* value, Property&& property) {
  return guarded([&] {
    require(value != nullptr, Error::InvalidParameter);
    *value = property(*handles().get<Access>(handle));
  });
}

}  // namespace

extern "C" {

agl_int32_t AGL_Symbolic_GetAccessBufferSize(HandleType AccessHandle, agl_int32_t* Value) {
  return tell(AccessHandle, Value, [](const Access& access) { return access.size(); });
}

agl_int32_t AGL_Symbolic_GetAccessBufferElementSize(HandleType AccessHandle, agl_int32_t* Value) {
  return tell(AccessHandle, Value, [](const Access& access) { return access.element_size; });
}

agl_int32_t AGL_Symbolic_GetAccessBufferElementCount(HandleType AccessHandle, agl_int32_t* Value) {
  return tell(AccessHandle, Value, [](const Access& access) { return access.elements; });
}

agl_int32_t AGL_Symbolic_GetAccessStringSize(HandleType AccessHandle, agl_int32_t* Value) {
  return tell(AccessHandle, Value, [](const Access& access) {
    const auto type = access.type.value;
    require(type == ValueType_t::vt_STRING8 || type == ValueType_t::vt_STRING16, Error::WrongType);
    return static_cast<agl_int32_t>(access.symbol->string_length);
  });
}

agl_int32_t AGL_Symbolic_GetAccessElementSystemType(HandleType AccessHandle, SystemType_t::enum_t* Type) {
  return tell(AccessHandle, Type, [](const Access& access) { return access.type.system; });
}

agl_int32_t AGL_Symbolic_GetAccessElementValueType(HandleType AccessHandle, ValueType_t::enum_t* Type) {
  return tell(AccessHandle, Type, [](const Access& access) { return access.type.value; });
}
}
