// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>

#include "tests/simulator/standin_world.h"

namespace ostravel::standin {
namespace {

class Strings : public testing::Test {
 protected:
  ConnectedWorld world;
  PathAccess text{world.root, "Plant.Text"};  // String[10]
  PathAccess wide{world.root, "Plant.Wide"};  // WString[10]

  agl_int32_t set(const std::string& value) {
    return AGL_Symbolic_SetAccessBufferString8(text.handle, text.buffer.data(), text.length(), 0,
                                               value.data(), static_cast<agl_int32_t>(value.size()));
  }
  agl_int32_t set(const std::vector<agl_char16_t>& value, agl_int32_t count) {
    return AGL_Symbolic_SetAccessBufferString16(wide.handle, wide.buffer.data(), wide.length(), 0,
                                                value.data(), count);
  }
};

TEST_F(Strings, DeclaredLengthIsInCharacters) {
  agl_int32_t length = 0;
  EXPECT_EQ(AGL_Symbolic_GetAccessStringSize(text.handle, &length), 0);
  EXPECT_EQ(length, 10);
  EXPECT_EQ(AGL_Symbolic_GetAccessStringSize(wide.handle, &length), 0);
  EXPECT_EQ(length, 10);
}

TEST_F(Strings, TextIsPrecededByDeclaredAndCurrentLength) {
  EXPECT_EQ(set("abc"), 0);
  EXPECT_EQ(text.buffer, (Data{10, 3, 'a', 'b', 'c', 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(text.write(world.connection), 0);
  EXPECT_EQ(world.command("read Plant.Text")["value"], "abc");
}

TEST_F(Strings, TextComesWithATerminatorBehindItsCharacters) {
  world.command("write Plant.Text \"abc\"");
  EXPECT_EQ(text.read(world.connection), 0);
  std::array<char, 11> out{};
  out.fill('#');
  agl_int32_t count = -1;
  EXPECT_EQ(
      AGL_Symbolic_GetAccessBufferString8(text.handle, text.buffer.data(), 12, 0, out.data(), 11, &count), 0);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(std::string(out.data(), 5), std::string("abc\0#", 5));
}

TEST_F(Strings, ZerosCountAsCharacters) {
  EXPECT_EQ(set(std::string("a\0b", 3)), 0);
  EXPECT_EQ(text.buffer, (Data{10, 3, 'a', 0, 'b', 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(Strings, LongTextIsCutAtTheDeclaredLength) {
  EXPECT_EQ(set("0123456789ABC"), 0);
  EXPECT_EQ(text.buffer, (Data{10, 10, '0', '1', '2', '3', '4', '5', '6', '7', '8', '9'}));
}

TEST_F(Strings, EmptyTextNeedsNoPointer) {
  text.buffer.assign(12, 0xEE);
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferString8(text.handle, text.buffer.data(), 12, 0, nullptr, 0), 0);
  EXPECT_EQ(text.buffer, (Data{10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferString8(text.handle, text.buffer.data(), 12, 0, nullptr, 1),
            code(Error::InvalidParameter));
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferString8(text.handle, text.buffer.data(), 12, 0, "a", -1),
            code(Error::InvalidParameter));
}

TEST_F(Strings, RoomThatIsTooSmallIsLeftUntouched) {
  set("abc");
  std::array<char, 4> out{'#', '#', '#', '#'};
  agl_int32_t count = -1;
  EXPECT_EQ(
      AGL_Symbolic_GetAccessBufferString8(text.handle, text.buffer.data(), 12, 0, out.data(), 3, &count),
      code(Error::BufferTooSmall));
  EXPECT_EQ(out[0], '#');
  EXPECT_EQ(count, -1);
  EXPECT_EQ(
      AGL_Symbolic_GetAccessBufferString8(text.handle, text.buffer.data(), 12, 0, out.data(), 4, &count), 0);
  EXPECT_EQ(
      AGL_Symbolic_GetAccessBufferString8(text.handle, text.buffer.data(), 12, 0, out.data(), 0, &count),
      code(Error::InvalidParameter));
}

TEST_F(Strings, CurrentLengthBeyondTheDeclaredOneIsNotBelieved) {
  text.buffer = {255, 255, '0', '1', '2', '3', '4', '5', '6', '7', '8', '9'};
  std::array<char, 300> out{};
  agl_int32_t count = -1;
  EXPECT_EQ(
      AGL_Symbolic_GetAccessBufferString8(text.handle, text.buffer.data(), 12, 0, out.data(), 300, &count),
      0);
  EXPECT_EQ(count, 10);
}

TEST_F(Strings, ElementsOfAnArrayHaveTheirOwnTexts) {
  PathAccess texts(world.root, "Plant.Texts");  // Array[1..3] of String[4]
  ASSERT_EQ(texts.length(), 18);
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferString8(texts.handle, texts.buffer.data(), 18, 2, "xy", 2), 0);
  EXPECT_EQ((Data{texts.buffer.begin() + 12, texts.buffer.end()}), (Data{4, 2, 'x', 'y', 0, 0}));
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferString8(texts.handle, texts.buffer.data(), 18, 3, "xy", 2),
            code(Error::ElementInvalid));
}

TEST_F(Strings, WideTextIsBigEndianWithWideLengths) {
  EXPECT_EQ(set({0x0041, 0x03A9}, 2), 0);
  Data expected(24);
  const Data start{0, 10, 0, 2, 0x00, 0x41, 0x03, 0xA9};
  std::copy(start.begin(), start.end(), expected.begin());
  EXPECT_EQ(wide.buffer, expected);
  EXPECT_EQ(wide.write(world.connection), 0);
  EXPECT_EQ(world.command("read Plant.Wide")["value"], "AΩ");
  std::array<agl_char16_t, 22> out{};
  agl_int32_t count = -1;
  EXPECT_EQ(
      AGL_Symbolic_GetAccessBufferString16(wide.handle, wide.buffer.data(), 24, 0, out.data(), 22, &count),
      0);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(out[1], 0x03A9);
  EXPECT_EQ(out[2], 0);
}

TEST_F(Strings, WideTextEndsAtItsFirstZeroSoACountInBytesDoesNoHarm) {
  EXPECT_EQ(set({'H', 'i', 0, 0}, 4), 0);  // two characters, counted as four bytes
  EXPECT_EQ(wide.write(world.connection), 0);
  EXPECT_EQ(world.command("read Plant.Wide")["value"], "Hi");
}

TEST_F(Strings, LongWideTextIsCutAtTheDeclaredLength) {
  EXPECT_EQ(set(std::vector<agl_char16_t>(20, 'w'), 20), 0);
  EXPECT_EQ(wide.buffer[3], 10);
  EXPECT_EQ(wide.buffer[23], 'w');
}

TEST_F(Strings, NarrowAndWideAreDifferentTypes) {
  std::array<char, 30> out{};
  agl_int32_t count = 0;
  EXPECT_EQ(
      AGL_Symbolic_GetAccessBufferString8(wide.handle, wide.buffer.data(), 24, 0, out.data(), 30, &count),
      code(Error::WrongType));
}

}  // namespace
}  // namespace ostravel::standin
