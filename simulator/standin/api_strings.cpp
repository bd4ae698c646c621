// SPDX-License-Identifier: MIT
// Texts in access buffers: two counts (declared and current length, each one character wide in STRING and
// WSTRING alike), then the characters.
#include <algorithm>

#include "simulator/program/encoding.h"
#include "simulator/standin/aglink.h"
#include "simulator/standin/elements.h"

using namespace ostravel;
using namespace ostravel::standin;

namespace {

template <typename Character>
constexpr ValueType_t::enum_t kTextType = sizeof(Character) == 1 ? ValueType_t::vt_STRING8
                                                                 : ValueType_t::vt_STRING16;

// The unit of this number: the two counts are units 0 and 1, the characters follow.
template <typename Character, typename Byte>
std::span<Byte> unit(std::span<Byte> bytes, std::size_t number) {
  return bytes.subspan(number * sizeof(Character), sizeof(Character));
}

template <typename Character>
agl_int32_t get_text(HandleType handle, const void* buffer, agl_int32_t length, agl_int32_t element,
                     Character* text, agl_int32_t room, agl_int32_t* count) {
  return guarded([&] {
    require(text != nullptr && count != nullptr && room > 0, Error::InvalidParameter);
    const auto from = read_element(handle, buffer, length, element, {kTextType<Character>});
    // The memory may claim more than was declared.
    const auto current = std::min<std::uint64_t>(plc::load_number(unit<Character>(from.bytes, 1)),
                                                 from.access->symbol->string_length);
    require(current < static_cast<std::uint64_t>(room), Error::BufferTooSmall);
    for (std::size_t i = 0; i < current; ++i) {
      text[i] = static_cast<Character>(plc::load_number(unit<Character>(from.bytes, i + 2)));
    }
    text[current] = 0;
    *count = static_cast<agl_int32_t>(current);
  });
}

template <typename Character>
void store_text(std::span<std::uint8_t> bytes, std::uint32_t declared, std::span<const Character> text) {
  std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});  // nothing of the caller's memory goes to the PLC
  plc::store_number(unit<Character>(bytes, 0), declared);
  plc::store_number(unit<Character>(bytes, 1), text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    plc::store_number(unit<Character>(bytes, i + 2), static_cast<std::make_unsigned_t<Character>>(text[i]));
  }
}

template <typename Character, typename Cut>
agl_int32_t set_text(HandleType handle, void* buffer, agl_int32_t length, agl_int32_t element,
                     const Character* text, agl_int32_t count, Cut&& cut) {
  return guarded([&] {
    const auto to = write_element(handle, buffer, length, element, {kTextType<Character>});
    require(count >= 0 && (text != nullptr || count == 0), Error::InvalidParameter);
    const auto declared = to.access->symbol->string_length;
    const std::span characters(text, std::min(static_cast<std::size_t>(count), std::size_t{declared}));
    store_text(to.bytes, declared, cut(characters));
  });
}

}  // namespace

extern "C" {

agl_int32_t AGL_Symbolic_GetAccessBufferString8(HandleType AccessHandle, const void* Buffer,
                                                agl_int32_t BufferLen, agl_int32_t Element, agl_char8_t* Text,
                                                agl_int32_t MaxCharCount, agl_int32_t* CharCount) {
  return get_text(AccessHandle, Buffer, BufferLen, Element, Text, MaxCharCount, CharCount);
}

agl_int32_t AGL_Symbolic_GetAccessBufferString16(HandleType AccessHandle, const void* Buffer,
                                                 agl_int32_t BufferLen, agl_int32_t Element,
                                                 agl_char16_t* Text, agl_int32_t MaxCharCount,
                                                 agl_int32_t* CharCount) {
  return get_text(AccessHandle, Buffer, BufferLen, Element, Text, MaxCharCount, CharCount);
}

agl_int32_t AGL_Symbolic_SetAccessBufferString8(HandleType AccessHandle, void* Buffer, agl_int32_t BufferLen,
                                                agl_int32_t Element, const agl_char8_t* Text,
                                                agl_int32_t CharCount) {
  return set_text(AccessHandle, Buffer, BufferLen, Element, Text, CharCount,
                  [](std::span<const agl_char8_t> text) { return text; });
}

// A caller that counts bytes instead of characters passes twice the count; the zero behind its text ends it
// then.
agl_int32_t AGL_Symbolic_SetAccessBufferString16(HandleType AccessHandle, void* Buffer, agl_int32_t BufferLen,
                                                 agl_int32_t Element, const agl_char16_t* Text,
                                                 agl_int32_t CharCount) {
  return set_text(
      AccessHandle, Buffer, BufferLen, Element, Text, CharCount, [](std::span<const agl_char16_t> text) {
        return text.first(static_cast<std::size_t>(std::find(text.begin(), text.end(), 0) - text.begin()));
      });
}
}
