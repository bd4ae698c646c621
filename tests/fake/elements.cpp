// SPDX-License-Identifier: MIT
#include "tests/fake/elements.h"

#include <algorithm>
#include <cstring>

#include "tests/fake/recording.h"

namespace fake {
namespace {

template <std::size_t N>
struct Name {
  constexpr Name(const char (&name)[N]) { std::copy_n(name, N, text); }  // NOLINT: reads like a literal
  char text[N];
};

// The value of one element of a live access, or null.
const Value* value_of(World& world, HandleType access, agl_int32_t element) {
  const Item* item = world.variable(access);
  if (item == nullptr || element < 0 || static_cast<std::size_t>(element) >= item->values.size()) {
    return nullptr;
  }
  return &item->values[static_cast<std::size_t>(element)];
}

template <Name Function, class T>
agl_int32_t get(HandleType access, const void* buffer, agl_int32_t length, agl_int32_t element, T* value) {
  const auto answer = [&](World& world) -> agl_int32_t {
    const Value* found = value_of(world, access, element);
    if (found == nullptr) return FakeLibrary::kBadElement;
    if constexpr (std::floating_point<T>) {
      *value = static_cast<T>(found->real);
    } else {
      *value = static_cast<T>(found->number);
    }
    return AGL40_SUCCESS;
  };
  return call(Function.text, answer, Handle{access}, AccessMemory{access, buffer}, length, element,
              Out{value});
}

// A text with its terminator behind rubbish in the whole of the caller's buffer: what the driver takes beyond
// the terminator, or a buffer that is smaller than it says, gets noticed.
template <class Unit, class TextOf>
agl_int32_t get_text(const char* function, TextOf text_of, HandleType access, const void* buffer,
                     agl_int32_t length, agl_int32_t element, Unit* text, agl_int32_t max_count,
                     agl_int32_t* char_count) {
  const auto answer = [&](World& world) -> agl_int32_t {
    const Value* found = value_of(world, access, element);
    if (found == nullptr) return FakeLibrary::kBadElement;
    const auto& source = text_of(*found);
    agl_int32_t count = 0;
    if (sane(max_count) && max_count > 0) {
      std::memset(text, 0xEE, static_cast<std::size_t>(max_count) * sizeof(Unit));
      count = std::min(static_cast<agl_int32_t>(source.size()), max_count - 1);
      for (agl_int32_t i = 0; i < count; ++i) {
        text[i] = static_cast<Unit>(source[static_cast<std::size_t>(i)]);
      }
      text[count] = Unit{};
    }
    const Item* item = world.variable(access);
    *char_count = item->set_char_count ? item->char_count : count;
    return AGL40_SUCCESS;
  };
  return call(function, answer, Handle{access}, AccessMemory{access, buffer}, length, element, Memory{text},
              max_count, Out{char_count});
}

agl_int32_t GetString8(HandleType AccessHandle, const void* Buffer, agl_int32_t BufferLen,
                       agl_int32_t Element, agl_char8_t* Chars, agl_int32_t MaxCharCount,
                       agl_int32_t* CharCount) {
  return get_text(
      "AGL_Symbolic_GetAccessBufferString8", [](const Value& value) -> const auto& { return value.text; },
      AccessHandle, Buffer, BufferLen, Element, Chars, MaxCharCount, CharCount);
}

agl_int32_t GetString16(HandleType AccessHandle, const void* Buffer, agl_int32_t BufferLen,
                        agl_int32_t Element, agl_char16_t* Chars, agl_int32_t MaxCharCount,
                        agl_int32_t* CharCount) {
  return get_text(
      "AGL_Symbolic_GetAccessBufferString16", [](const Value& value) -> const auto& { return value.wide; },
      AccessHandle, Buffer, BufferLen, Element, Chars, MaxCharCount, CharCount);
}

template <Name Function, class Fraction>
agl_int32_t get_parts(HandleType access, const void* buffer, agl_int32_t length, agl_int32_t element,
                      agl_uint16_t* year, agl_uint8_t* month, agl_uint8_t* day, agl_uint8_t* weekday,
                      agl_uint8_t* hour, agl_uint8_t* minute, agl_uint8_t* second, Fraction* fraction) {
  const auto answer = [&](World& world) -> agl_int32_t {
    const Value* found = value_of(world, access, element);
    if (found == nullptr) return FakeLibrary::kBadElement;
    *year = found->parts.year;
    *month = found->parts.month;
    *day = found->parts.day;
    *weekday = found->parts.weekday;
    *hour = found->parts.hour;
    *minute = found->parts.minute;
    *second = found->parts.second;
    *fraction = static_cast<Fraction>(found->parts.fraction);
    return AGL40_SUCCESS;
  };
  return call(Function.text, answer, Handle{access}, AccessMemory{access, buffer}, length, element, Out{year},
              Out{month}, Out{day}, Out{weekday}, Out{hour}, Out{minute}, Out{second}, Out{fraction});
}

// Records a value that the driver puts in, with the buffer as it stood.
void record(FakeLibrary::Stored stored, HandleType access, const void* buffer, agl_int32_t length) {
  with_world([&](World& world) {
    stored.path = world.path_of(access);
    if (buffer != nullptr && sane(length)) {
      const auto* bytes = static_cast<const unsigned char*>(buffer);
      stored.bytes.assign(bytes, bytes + length);
    }
    world.stored.push_back(stored);
  });
}

// Whether the access has such an element; the answer of every function that puts a value in.
agl_int32_t accept(World& world, HandleType access, agl_int32_t element) {
  const Item* item = world.variable(access);
  if (item == nullptr) return FakeLibrary::kBadHandle;
  return element < 0 || element >= item->element_count ? FakeLibrary::kBadElement : AGL40_SUCCESS;
}

template <class T>
void put(World& world, HandleType access, void* buffer, agl_int32_t length, agl_int32_t element, T value) {
  const agl_int64_t offset = agl_int64_t{element} * world.variable(access)->element_size;
  if (buffer == nullptr || offset < 0 || offset + static_cast<agl_int64_t>(sizeof value) > length) return;
  std::memcpy(static_cast<unsigned char*>(buffer) + offset, &value, sizeof value);
}

template <Name Function, class T>
agl_int32_t set(HandleType access, void* buffer, agl_int32_t length, agl_int32_t element, T value) {
  FakeLibrary::Stored stored;
  stored.function = Function.text;
  stored.element = element;
  if constexpr (std::floating_point<T>) {
    stored.real = static_cast<double>(value);
  } else {
    stored.number = static_cast<std::uint64_t>(value);  // NOLINT(bugprone-signed-char-misuse): on purpose
  }
  record(stored, access, buffer, length);
  const auto answer = [&](World& world) -> agl_int32_t {
    const agl_int32_t result = accept(world, access, element);
    if (result == AGL40_SUCCESS) put(world, access, buffer, length, element, value);
    return result;
  };
  return call(Function.text, answer, Handle{access}, AccessMemory{access, buffer}, length, element, value);
}

agl_int32_t SetS5TimeMs(HandleType AccessHandle, void* Buffer, agl_int32_t BufferLen, agl_int32_t Element,
                        agl_uint32_t Milliseconds, agl_int32_t Round) {
  static constexpr char kFunction[] = "AGL_Symbolic_SetAccessBufferS7_S5TimeMs";
  FakeLibrary::Stored stored;
  stored.function = kFunction;
  stored.element = Element;
  stored.number = Milliseconds;
  stored.round = Round;
  record(stored, AccessHandle, Buffer, BufferLen);
  return call(
      kFunction, [&](World& world) { return accept(world, AccessHandle, Element); }, Handle{AccessHandle},
      AccessMemory{AccessHandle, Buffer}, BufferLen, Element, Milliseconds, Round);
}

agl_int32_t SetString8(HandleType AccessHandle, void* Buffer, agl_int32_t BufferLen, agl_int32_t Element,
                       const agl_char8_t* Chars, agl_int32_t CharCount) {
  static constexpr char kFunction[] = "AGL_Symbolic_SetAccessBufferString8";
  FakeLibrary::Stored stored;
  stored.function = kFunction;
  stored.element = Element;
  stored.char_count = CharCount;
  if (sane(CharCount) && CharCount > 0) stored.text.assign(Chars, static_cast<std::size_t>(CharCount));
  record(stored, AccessHandle, Buffer, BufferLen);
  return call(
      kFunction, [&](World& world) { return accept(world, AccessHandle, Element); }, Handle{AccessHandle},
      AccessMemory{AccessHandle, Buffer}, BufferLen, Element, Text{stored.text}, CharCount);
}

agl_int32_t SetString16(HandleType AccessHandle, void* Buffer, agl_int32_t BufferLen, agl_int32_t Element,
                        const agl_char16_t* Chars, agl_int32_t CharCount) {
  static constexpr char kFunction[] = "AGL_Symbolic_SetAccessBufferString16";
  FakeLibrary::Stored stored;
  stored.function = kFunction;
  stored.element = Element;
  stored.char_count = CharCount;
  if (sane(CharCount)) stored.wide.assign(Chars, Chars + CharCount);
  record(stored, AccessHandle, Buffer, BufferLen);
  return call(
      kFunction, [&](World& world) { return accept(world, AccessHandle, Element); }, Handle{AccessHandle},
      AccessMemory{AccessHandle, Buffer}, BufferLen, Element, WideText{stored.wide}, CharCount);
}

template <Name Function, class Fraction>
agl_int32_t set_parts(HandleType access, void* buffer, agl_int32_t length, agl_int32_t element,
                      agl_uint16_t year, agl_uint8_t month, agl_uint8_t day, agl_uint8_t weekday,
                      agl_uint8_t hour, agl_uint8_t minute, agl_uint8_t second, Fraction fraction) {
  FakeLibrary::Stored stored;
  stored.function = Function.text;
  stored.element = element;
  stored.parts = {year, month, day, weekday, hour, minute, second, fraction};
  record(stored, access, buffer, length);
  return call(
      Function.text, [&](World& world) { return accept(world, access, element); }, Handle{access},
      AccessMemory{access, buffer}, length, element, year, month, day, weekday, hour, minute, second,
      fraction);
}

}  // namespace

void install_element_functions() {
#define INSTALL_VALUE(Kind, T)                                                                \
  install(pAGL_Symbolic_GetAccessBuffer##Kind, get<"AGL_Symbolic_GetAccessBuffer" #Kind, T>); \
  install(pAGL_Symbolic_SetAccessBuffer##Kind, set<"AGL_Symbolic_SetAccessBuffer" #Kind, T>)
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
  install(pAGL_Symbolic_GetAccessBufferS7_S5TimeMs,
          get<"AGL_Symbolic_GetAccessBufferS7_S5TimeMs", agl_uint32_t>);
  install(pAGL_Symbolic_SetAccessBufferS7_S5TimeMs, SetS5TimeMs);
  install(pAGL_Symbolic_GetAccessBufferString8, GetString8);
  install(pAGL_Symbolic_SetAccessBufferString8, SetString8);
  install(pAGL_Symbolic_GetAccessBufferString16, GetString16);
  install(pAGL_Symbolic_SetAccessBufferString16, SetString16);
  install(pAGL_Symbolic_GetAccessBufferS7_DTLParts,
          get_parts<"AGL_Symbolic_GetAccessBufferS7_DTLParts", agl_uint32_t>);
  install(pAGL_Symbolic_SetAccessBufferS7_DTLParts,
          set_parts<"AGL_Symbolic_SetAccessBufferS7_DTLParts", agl_uint32_t>);
  install(pAGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts,
          get_parts<"AGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts", agl_uint16_t>);
  install(pAGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts,
          set_parts<"AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts", agl_uint16_t>);
}

}  // namespace fake
