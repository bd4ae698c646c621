// SPDX-License-Identifier: MIT
#include "simulator/program/text.h"

#include <gtest/gtest.h>

namespace ostravel::plc {
namespace {

TEST(Text, NamesCompareWithoutCaseBeyondAscii) {
  EXPECT_TRUE(equal_names("Füllstand", "FÜLLSTAND"));
  EXPECT_TRUE(equal_names("Ωμέγα", "ωμέγα"));
  EXPECT_TRUE(equal_names("НАСОС", "насос"));
  EXPECT_FALSE(equal_names("Motor", "Motor1"));
  EXPECT_FALSE(equal_names("Motor1", "Motor"));
  EXPECT_FALSE(equal_names("a", "b"));
}

TEST(Text, MultiplicationSignIsNoCapitalOfDivisionSign) {
  EXPECT_FALSE(equal_names("\u00D7", "\u00F7"));
}

TEST(Text, PlainIdentifierTakesNoDigitInFront) {
  EXPECT_TRUE(is_plain_identifier("_a1"));
  EXPECT_TRUE(is_plain_identifier("Größe"));
  EXPECT_FALSE(is_plain_identifier("1a"));
  EXPECT_FALSE(is_plain_identifier("a b"));
  EXPECT_FALSE(is_plain_identifier("a.b"));
  EXPECT_FALSE(is_plain_identifier("a-b"));
  EXPECT_FALSE(is_plain_identifier(""));
}

TEST(Text, RefusesMalformedUtf8) {
  EXPECT_TRUE(is_utf8("aä日\U0001F600"));
  EXPECT_FALSE(is_utf8("\xC3"));              // cut off
  EXPECT_FALSE(is_utf8("\xC0\xAF"));          // longer than needed
  EXPECT_FALSE(is_utf8("\xED\xA0\x80"));      // half of a pair
  EXPECT_FALSE(is_utf8("\xF5\x80\x80\x80"));  // above 10FFFF
  EXPECT_FALSE(is_utf8("\xFF"));
}

TEST(Text, EveryByteOfTheCodePageHasACharacterOfItsOwn) {
  for (unsigned code = 0; code < 256; ++code) {
    const char32_t character = from_code_page(static_cast<std::uint8_t>(code));
    EXPECT_EQ(to_code_page(character), code);
  }
  EXPECT_EQ(from_code_page(0x80), U'\u20AC');
  EXPECT_EQ(from_code_page(0xFC), U'\u00FC');
  EXPECT_FALSE(to_code_page(U'\u65E5').has_value());
}

}  // namespace
}  // namespace ostravel::plc
