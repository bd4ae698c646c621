// SPDX-License-Identifier: MIT
// The functions that get and set the elements of access buffers.
#include <cstring>
#include <type_traits>

#include "fuzzing/support/library.h"

namespace fuzz {
namespace {

Library& library() {
  return Library::installed();
}

template <class T>
agl_int32_t get(HandleType, const void* Buffer, agl_int32_t BufferLen, agl_int32_t, T* Value) {
  if (BufferLen > 0) read_memory(Buffer, 1);
  T honest{};
  const std::uint64_t pattern = library().pattern();
  std::memcpy(&honest, &pattern, sizeof honest);
  return tell(library(), honest, Value);
}

template <class T>
agl_int32_t set(HandleType, void* Buffer, agl_int32_t BufferLen, agl_int32_t, T) {
  fill_memory(Buffer, BufferLen, library().pattern());
  agl_int32_t ignored = 0;
  return tell(library(), 0, &ignored);
}

agl_int32_t set_s5time(HandleType access, void* buffer, agl_int32_t length, agl_int32_t element,
                       agl_uint32_t milliseconds, agl_int32_t) {
  return set<agl_uint32_t>(access, buffer, length, element, milliseconds);
}

// Fills the whole room and says that any number of characters are in it.
template <class T>
agl_int32_t get_text(HandleType, const void* Buffer, agl_int32_t BufferLen, agl_int32_t, T* Text,
                     agl_int32_t MaxCharCount, agl_int32_t* CharCount) {
  if (BufferLen > 0) read_memory(Buffer, 1);
  fill_memory(Text, std::int64_t{MaxCharCount} * static_cast<std::int64_t>(sizeof(T)), library().pattern());
  return tell(library(), 5, CharCount);
}

template <class T>
agl_int32_t set_text(HandleType access, void* buffer, agl_int32_t length, agl_int32_t element, const T* text,
                     agl_int32_t count) {
  read_memory(text, std::int64_t{count} * static_cast<std::int64_t>(sizeof(T)));
  return set<int>(access, buffer, length, element, 0);
}

template <class Fraction>
agl_int32_t get_parts(HandleType, const void*, agl_int32_t, agl_int32_t, agl_uint16_t* year,
                      agl_uint8_t* month, agl_uint8_t* day, agl_uint8_t* weekday, agl_uint8_t* hour,
                      agl_uint8_t* minute, agl_uint8_t* second, Fraction* fraction) {
  *year = 2021;
  for (agl_uint8_t* part : {month, day, weekday, hour, minute, second}) *part = 7;
  return tell(library(), Fraction{9}, fraction);
}

template <class Fraction>
agl_int32_t set_parts(HandleType access, void* buffer, agl_int32_t length, agl_int32_t element, agl_uint16_t,
                      agl_uint8_t, agl_uint8_t, agl_uint8_t, agl_uint8_t, agl_uint8_t, agl_uint8_t,
                      Fraction fraction) {
  return set<Fraction>(access, buffer, length, element, fraction);
}

template <class T>
void bind(T& pointer, std::type_identity_t<T> function) {
  pointer = function;
}

}  // namespace

void install_element_functions() {
#define INSTALL_VALUE(Kind, T)                       \
  bind(pAGL_Symbolic_GetAccessBuffer##Kind, get<T>); \
  bind(pAGL_Symbolic_SetAccessBuffer##Kind, set<T>)
  INSTALL_VALUE(UInt8, agl_uint8_t);
  INSTALL_VALUE(UInt16, agl_uint16_t);
  INSTALL_VALUE(UInt32, agl_uint32_t);
  INSTALL_VALUE(UInt64, agl_uint64_t);
  INSTALL_VALUE(Int8, agl_int8_t);
  INSTALL_VALUE(Int16, agl_int16_t);
  INSTALL_VALUE(Int32, agl_int32_t);
  INSTALL_VALUE(Int64, agl_int64_t);
  INSTALL_VALUE(Float32, agl_float32_t);
  INSTALL_VALUE(Float64, agl_float64_t);
  INSTALL_VALUE(Char8, agl_char8_t);
  INSTALL_VALUE(Char16, agl_char16_t);
  INSTALL_VALUE(S7_Counter, agl_uint16_t);
#undef INSTALL_VALUE
  bind(pAGL_Symbolic_GetAccessBufferS7_S5TimeMs, get<agl_uint32_t>);
  bind(pAGL_Symbolic_SetAccessBufferS7_S5TimeMs, set_s5time);
  bind(pAGL_Symbolic_GetAccessBufferString8, get_text<agl_char8_t>);
  bind(pAGL_Symbolic_SetAccessBufferString8, set_text<agl_char8_t>);
  bind(pAGL_Symbolic_GetAccessBufferString16, get_text<agl_char16_t>);
  bind(pAGL_Symbolic_SetAccessBufferString16, set_text<agl_char16_t>);
  bind(pAGL_Symbolic_GetAccessBufferS7_DTLParts, get_parts<agl_uint32_t>);
  bind(pAGL_Symbolic_SetAccessBufferS7_DTLParts, set_parts<agl_uint32_t>);
  bind(pAGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts, get_parts<agl_uint16_t>);
  bind(pAGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts, set_parts<agl_uint16_t>);
}

}  // namespace fuzz
