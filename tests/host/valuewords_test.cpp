// SPDX-License-Identifier: MIT
#include "host/valuewords.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

json read(const char* type, const Words& words) {
  return element_from_words(*find_tag_type(type), words);
}
Words write(const char* type, const json& value) {
  return element_to_words(*find_tag_type(type), value);
}

TEST(ValueWords, EveryTypeIsReadFromItsWords) {
  EXPECT_EQ(read("BOOL", {1}), true);
  EXPECT_EQ(read("BOOL", {0}), false);
  EXPECT_EQ(read("BitArray", {0xFFFF}), true);
  EXPECT_EQ(read("SINT", {0xFFFB}), -5);
  EXPECT_EQ(read("USINT", {0x00FB}), 251);
  EXPECT_EQ(read("BYTE", {0xFFA5}), 0xA5);
  EXPECT_EQ(read("INT", {0x8000}), -32768);
  EXPECT_EQ(read("UINT", {0x8000}), 32768);
  EXPECT_EQ(read("WORD", {0xBEEF}), 0xBEEF);
  EXPECT_EQ(read("DINT", {0xFFFE, 0xFFFF}), -2);
  EXPECT_EQ(read("DWORD", {0x5678, 0x1234}), 0x12345678);
  EXPECT_EQ(read("UDINT", {0xFFFF, 0xFFFF}), 4294967295U);
  EXPECT_EQ(read("LINT", {0, 0, 0, 0x8000}), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(read("LWORD", {0xCDEF, 0x89AB, 0x4567, 0x0123}), 0x0123456789ABCDEFU);
  EXPECT_EQ(read("ULINT", {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}), 18446744073709551615U);
  EXPECT_EQ(read("REAL", {0, 0x4050}), 3.25);
  EXPECT_EQ(read("LREAL", {0, 0, 0, 0xC004}), -2.5);
}

TEST(ValueWords, RealsThatJsonLacksAreTexts) {
  EXPECT_EQ(read("REAL", {0, 0x7F80}), "inf");
  EXPECT_EQ(read("REAL", {0, 0xFF80}), "-inf");
  EXPECT_EQ(read("LREAL", {0, 0, 0, 0x7FF8}), "nan");
  EXPECT_EQ(write("REAL", "-inf"), (Words{0, 0xFF80}));
}

TEST(ValueWords, EveryTypeIsWrittenAsItsWords) {
  EXPECT_EQ(write("BOOL", true), (Words{1}));
  EXPECT_EQ(write("BitArray", 0), (Words{0}));
  EXPECT_EQ(write("SINT", -5), (Words{0xFFFB}));
  EXPECT_EQ(write("INT", -2), (Words{0xFFFE}));
  EXPECT_EQ(write("DINT", 0x12345678), (Words{0x5678, 0x1234}));
  EXPECT_EQ(write("ULINT", 18446744073709551615U), (Words{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}));
  EXPECT_EQ(write("REAL", 3.25), (Words{0, 0x4050}));
  EXPECT_EQ(write("LREAL", 1), (Words{0, 0, 0, 0x3FF0}));
}

TEST(ValueWords, NumbersMayBeWrittenAsThePlcWritesThem) {
  EXPECT_EQ(write("WORD", "16#BEEF"), (Words{0xBEEF}));
  EXPECT_EQ(write("BYTE", "2#1010"), (Words{0xA}));
  EXPECT_EQ(write("DWORD", "0x10"), (Words{16, 0}));
  EXPECT_EQ(write("INT", "-32768"), (Words{0x8000}));
  EXPECT_EQ(write("REAL", "1e3"), (Words{0, 0x447A}));
}

TEST(ValueWords, WhatDoesNotFitIsRefused) {
  EXPECT_THROW(write("SINT", 128), UserError);
  EXPECT_THROW(write("SINT", -129), UserError);
  EXPECT_THROW(write("USINT", -1), UserError);
  EXPECT_THROW(write("USINT", 256), UserError);
  EXPECT_THROW(write("INT", 32768), UserError);
  EXPECT_THROW(write("LINT", 9223372036854775808U), UserError);
  EXPECT_THROW(write("UDINT", 4294967296), UserError);
  EXPECT_THROW(write("INT", 1.5), UserError);
  EXPECT_THROW(write("INT", "12x"), UserError);
  EXPECT_THROW(write("INT", "-99999999999999999999"), UserError);
  EXPECT_THROW(write("INT", json::array({1})), UserError);
  EXPECT_THROW(write("BOOL", 2), UserError);
  EXPECT_THROW(write("REAL", 1e39), UserError);
  EXPECT_THROW(write("REAL", "x"), UserError);
}

TEST(ValueWords, WordAlignedTextHasSignExtendedBytes) {
  EXPECT_EQ(text_from_words(TextLayout::WordAligned, Words{'a', 0xFFE4, 0xFF80, 0, 'x'}), "aä€");
  EXPECT_EQ(text_to_words(TextLayout::WordAligned, "aä€", 3), (Words{'a', 0xE4, 0x80}));
}

TEST(ValueWords, WordAlignedWordsBeyondAByteAreWideCharacters) {
  EXPECT_EQ(text_from_words(TextLayout::WordAligned, Words{0x65E5, 'a', 0x672C, 0}), "日a本");
  EXPECT_EQ(text_to_words(TextLayout::WordAligned, "日本", 2), (Words{0x65E5, 0x672C}));
}

TEST(ValueWords, CharPairedTextHasTheFirstCharacterInTheLowByte) {
  EXPECT_EQ(text_from_words(TextLayout::CharPaired, Words{0x4241, 0x0043}), "ABC");
  EXPECT_EQ(text_to_words(TextLayout::CharPaired, "ABC", 3), (Words{0x4241, 0x0043}));
}

TEST(ValueWords, WideTextThatTheDriverDoesNotRecogniseHasAWordForEachByte) {
  EXPECT_EQ(text_from_words(TextLayout::WideBytes, Words{0xFFE5, 0x65, 'a', 0, 0, 0}), "日a");
  EXPECT_EQ(text_to_words(TextLayout::WideBytes, "日a", 2), (Words{0xE5, 0x65, 'a', 0}));
}

TEST(ValueWords, TextLongerThanItsVariableIsRefused) {
  EXPECT_THROW(text_to_words(TextLayout::WordAligned, "abcd", 3), UserError);
  EXPECT_THROW(text_to_words(TextLayout::WordAligned, "\xFF", 3), UserError);
}

}  // namespace
}  // namespace ostravel::host
