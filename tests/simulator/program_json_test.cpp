// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;
using testing::block_of;
using ::testing::HasSubstr;
using testing::load;
using testing::Octets;

// What a variable of this declaration shows at start.
json shown(std::string_view declaration) {
  const Program program = load(block_of("a : " + std::string(declaration) + ";"));
  return to_json(testing::target(program, "D.a"), Bytes(program.initial));
}

json shown_bytes(std::string_view type, const Octets& bytes) {
  const Program program = load(block_of("a : " + std::string(type) + ";"));
  return element_to_json(program.blocks.at(0).members.at(0), bytes);
}

// Bytes after writing a value; none when it is refused.
Octets written(std::string_view type, const json& value) {
  Program program = load(block_of("a : " + std::string(type) + ";"));
  const Octets before = program.initial;
  if (from_json(testing::target(program, "D.a"), value, MutableBytes(program.initial))) {
    EXPECT_EQ(program.initial, before) << "a refused value must change nothing";
    return {};
  }
  return program.initial;
}

const Octets refused;

TEST(Json, ShowsEveryType) {
  EXPECT_EQ(shown("Bool := TRUE"), json(true));
  EXPECT_EQ(shown("Byte := 16#A5"), json(165));
  EXPECT_EQ(shown("LWord := 16#FFFF_FFFF_FFFF_FFFF"), json(18446744073709551615U));
  EXPECT_EQ(shown("SInt := -5"), json(-5));
  EXPECT_EQ(shown("LInt := -9223372036854775808"), json(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(shown("Real := 1.5"), json(1.5));
  EXPECT_EQ(shown("Char := 'ü'"), json("ü"));
  EXPECT_EQ(shown("WChar := 'Ω'"), json("Ω"));
  EXPECT_EQ(shown("String[10] := 'Füll'"), json("Füll"));
  EXPECT_EQ(shown("WString[10] := '日本'"), json("日本"));
  EXPECT_EQ(shown("Time := T#-1s"), json(-1000));
  EXPECT_EQ(shown("LTime := LT#1s"), json(1'000'000'000));
  EXPECT_EQ(shown("S5Time := S5T#1m20s"), json(80'000));
  EXPECT_EQ(shown("Counter := 42"), json(42));
  EXPECT_EQ(shown("Date := D#2024-3-5"), json("D#2024-03-05"));
  EXPECT_EQ(shown("TOD := TOD#13:14:15.123"), json("TOD#13:14:15.123"));
  EXPECT_EQ(shown("LTOD := LTOD#13:14:15.123456789"), json("LTOD#13:14:15.123456789"));
  EXPECT_EQ(shown("DT := DT#2024-3-5-13:14:15.123"), json("DT#2024-03-05-13:14:15.123"));
  EXPECT_EQ(shown("LDT := LDT#2024-3-5-13:14:15.123456789"), json("LDT#2024-03-05-13:14:15.123456789"));
  EXPECT_EQ(shown("DTL := DTL#2024-3-5-13:14:15.123456789"), json("DTL#2024-03-05-13:14:15.123456789"));
}

TEST(Json, RealsBeyondNumbersAreTexts) {
  EXPECT_EQ(shown_bytes("Real", {0x7F, 0x80, 0, 0}), json("inf"));
  EXPECT_EQ(shown_bytes("Real", {0xFF, 0x80, 0, 0}), json("-inf"));
  EXPECT_EQ(shown_bytes("LReal", {0x7F, 0xF8, 0, 0, 0, 0, 0, 0}), json("nan"));
  EXPECT_EQ(written("Real", "-inf"), (Octets{0xFF, 0x80, 0, 0}));
  EXPECT_EQ(written("Real", "nan"), (Octets{0x7F, 0xC0, 0, 0}));
}

TEST(Json, BytesThatMakeNoSenseAreStillShown) {
  EXPECT_EQ(shown_bytes("DTL", Octets(12, 0)), json("DTL#0000-00-00-00:00:00.000000000"));
  // A nibble above 9 counts for its value: FF is 165.
  EXPECT_EQ(shown_bytes("DT", Octets(8, 0xFF)), json("DT#2065-165-165-165:165:165.1665"));
  EXPECT_EQ(shown_bytes("Int", {1}), json());
}

TEST(Json, ArraysAreRowMajorAndStructuresAreObjects) {
  EXPECT_EQ(shown("Array[0..1, 0..1] of Int := [1, 2, 3, 4]"), (json{1, 2, 3, 4}));
  EXPECT_EQ(shown("Array[0..1] of Struct x : Int := 1; y : Bool; END_STRUCT"),
            (json{{{"x", 1}, {"y", false}}, {{"x", 1}, {"y", false}}}));
  EXPECT_EQ(shown("Variant"), json());
}

TEST(Json, WritesWhatItShows) {
  EXPECT_EQ(written("Bool", true), (Octets{1}));
  EXPECT_EQ(written("Int", -2), (Octets{0xFF, 0xFE}));
  EXPECT_EQ(written("ULInt", 18446744073709551615U), Octets(8, 0xFF));
  EXPECT_EQ(written("Real", 1.5), (Octets{0x3F, 0xC0, 0, 0}));
  EXPECT_EQ(written("Real", 2), (Octets{0x40, 0, 0, 0}));
  EXPECT_EQ(written("Char", "ü"), (Octets{0xFC}));
  EXPECT_EQ(written("String[2]", "ab"), (Octets{2, 2, 'a', 'b'}));
  EXPECT_EQ(written("Time", -1), Octets(4, 0xFF));
  EXPECT_EQ(written("S5Time", 80'000), (Octets{0x18, 0}));
  EXPECT_EQ(written("Counter", 999), (Octets{0x09, 0x99}));
  EXPECT_EQ(written("Date", "D#1990-01-02"), (Octets{0, 1}));
  EXPECT_EQ(written("Array[0..2] of Byte", json({1, 2, 3})), (Octets{1, 2, 3}));
  EXPECT_EQ(written("Struct x : Byte; y : Byte := 7; END_STRUCT", {{"X", 5}}), (Octets{5, 7}));
}

TEST(Json, TakesLiteralsAsText) {
  EXPECT_EQ(written("Word", "16#FF"), (Octets{0, 0xFF}));
  EXPECT_EQ(written("Time", "T#5s"), (Octets{0, 0, 0x13, 0x88}));
  EXPECT_EQ(written("Bool", "TRUE"), (Octets{1}));
  EXPECT_EQ(written("String[4]", "T#5s"), (Octets{4, 4, 'T', '#', '5', 's'}));
}

TEST(Json, RefusedValuesChangeNothing) {
  EXPECT_EQ(written("Byte", 256), refused);
  EXPECT_EQ(written("Byte", 1.5), refused);
  EXPECT_EQ(written("Byte", nullptr), refused);
  EXPECT_EQ(written("Bool", 2), refused);
  EXPECT_EQ(written("Real", 1e39), refused);
  EXPECT_EQ(written("Real", true), refused);
  EXPECT_EQ(written("String[2]", "abc"), refused);
  EXPECT_EQ(written("String[2]", 5), refused);
  EXPECT_EQ(written("Char", ""), refused);
  EXPECT_EQ(written("Counter", 1000), refused);
  EXPECT_EQ(written("Array[0..2] of Byte", json({1, 2})), refused);
  EXPECT_EQ(written("Array[0..2] of Byte", json({1, 2, 300})), refused);
  EXPECT_EQ(written("Struct x : Byte; y : Byte; END_STRUCT", {{"x", 5}, {"y", 300}}), refused);
  EXPECT_EQ(written("Struct x : Byte; END_STRUCT", {{"z", 5}}), refused);
}

TEST(Json, AnElementIsWrittenAlone) {
  Program program = load(block_of("a : Array[1..3] of Int;"));
  EXPECT_EQ(from_json(testing::target(program, "D.a[2]"), 7, MutableBytes(program.initial)), std::nullopt);
  EXPECT_EQ(program.initial, (Octets{0, 0, 0, 7, 0, 0}));
  EXPECT_EQ(to_json(testing::target(program, "D.a[2]"), Bytes(program.initial)), json(7));
  const auto failure = from_json(testing::target(program, "D.a"), 7, MutableBytes(program.initial));
  ASSERT_TRUE(failure.has_value());
  EXPECT_THAT(*failure, HasSubstr("takes an array of 3 values"));
}

}  // namespace
}  // namespace ostravel::plc
