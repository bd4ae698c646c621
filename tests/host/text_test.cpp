// SPDX-License-Identifier: MIT
#include "host/text.h"

#include <gtest/gtest.h>

namespace ostravel::host {
namespace {

TEST(Text, CharactersOfEveryLengthGoToUtf16AndBack) {
  const std::string text = "aä€𝄞";
  EXPECT_EQ(utf16_from_utf8(text), u"aä€\xD834\xDD1E");
  EXPECT_EQ(utf8_from_utf16(u"aä€\xD834\xDD1E"), text);
}

TEST(Text, BrokenUtf8IsRefused) {
  for (const char* text :
       {"\x80", "\xC3", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF", "\xC3("}) {
    EXPECT_EQ(utf16_from_utf8(text), std::nullopt) << text;
  }
}

TEST(Text, LoneSurrogateBecomesTheReplacementCharacter) {
  EXPECT_EQ(utf8_from_utf16(u"\xD834x"), "\xEF\xBF\xBDx");
  EXPECT_EQ(utf8_from_utf16(u"\xDD1E"), "\xEF\xBF\xBD");
}

TEST(Text, EveryByteHasOneCharacterOfThePage) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(byte_from_unit(unit_from_byte(static_cast<std::uint8_t>(byte))), byte);
  }
  EXPECT_EQ(unit_from_byte(0x80), u'€');
  EXPECT_EQ(unit_from_byte(0xE4), u'ä');
  EXPECT_EQ(byte_from_unit(u'日'), std::nullopt);
  EXPECT_EQ(byte_from_unit(0x80), std::nullopt);
}

TEST(Text, WhatCouldSteerATerminalIsMadeVisible) {
  EXPECT_EQ(visible("a\x1B[31mb"), "a\\u001b[31mb");
  EXPECT_EQ(visible("a\nb\x7F"), "a\\u000ab\\u007f");
  EXPECT_EQ(visible("\xC2\x9B"
                    "2J"),
            "\\u009b2J")
      << "the control sequence introducer as one character";
  EXPECT_EQ(visible("\xE2\x80\xAE"
                    "x"),
            "\\u202ex")
      << "writing from right to left";
  EXPECT_EQ(visible("a\xFF\xE2\x82"), "a\\xff\\xe2\\x82") << "no UTF-8";
}

TEST(Text, HarmlessTextIsVisibleAsItIs) {
  for (const char* text : {"", "Plant.\"Tank.1 (north)\".Level", "aä€𝄞", "back\\slash", "\xC2\xA0"}) {
    EXPECT_EQ(visible(text), text);
  }
}

}  // namespace
}  // namespace ostravel::host
