// SPDX-License-Identifier: MIT
// Numbers and single characters in access buffers.
#include <bit>
#include <type_traits>

#include "simulator/program/encoding.h"
#include "simulator/standin/aglink.h"
#include "simulator/standin/elements.h"

using namespace ostravel;
using namespace ostravel::standin;

namespace {

template <typename T>
T load(std::span<const std::uint8_t> bytes) {
  if constexpr (std::is_same_v<T, float>) {
    return plc::load_real(bytes);
  } else if constexpr (std::is_same_v<T, double>) {
    return plc::load_lreal(bytes);
  } else {
    return static_cast<T>(plc::load_number(bytes));
  }
}

template <typename T>
void store(std::span<std::uint8_t> bytes, T value) {
  if constexpr (std::is_same_v<T, float>) {
    plc::store_real(bytes, value);
  } else if constexpr (std::is_same_v<T, double>) {
    plc::store_lreal(bytes, value);
  } else {
    plc::store_number(bytes, static_cast<std::uint64_t>(value));
  }
}

template <typename T>
agl_int32_t get(HandleType handle, const void* buffer, agl_int32_t length, agl_int32_t element,
                ValueType_t::enum_t type, T* value) {
  return guarded([&] {
    require(value != nullptr, Error::InvalidParameter);
    *value = load<T>(read_element(handle, buffer, length, element, {type}).bytes.first(sizeof(T)));
  });
}

template <typename T>
agl_int32_t set(HandleType handle, void* buffer, agl_int32_t length, agl_int32_t element,
                ValueType_t::enum_t type, T value) {
  return guarded([&] {
    const auto target = write_element(handle, buffer, length, element, {type});
    // A bit is kept as 0 or 1.
    if (target.access->type.system == SystemType_t::st_S7_Bool) value = static_cast<T>(value != T{} ? 1 : 0);
    store(target.bytes.first(sizeof(T)), value);
  });
}

}  // namespace

extern "C" {

// NOLINTBEGIN(bugprone-macro-parentheses): a type in a declaration takes none
#define STANDIN_DEFINE(name, type, value_type)                                                              \
  agl_int32_t AGL_Symbolic_GetAccessBuffer##name(HandleType AccessHandle, const void* Buffer,               \
                                                 agl_int32_t BufferLen, agl_int32_t Element, type* Value) { \
    return get(AccessHandle, Buffer, BufferLen, Element, ValueType_t::value_type, Value);                   \
  }                                                                                                         \
  agl_int32_t AGL_Symbolic_SetAccessBuffer##name(HandleType AccessHandle, void* Buffer,                     \
                                                 agl_int32_t BufferLen, agl_int32_t Element, type Value) {  \
    return set(AccessHandle, Buffer, BufferLen, Element, ValueType_t::value_type, Value);                   \
  }
STANDIN_VALUES(STANDIN_DEFINE)
#undef STANDIN_DEFINE
// NOLINTEND(bugprone-macro-parentheses)
}
