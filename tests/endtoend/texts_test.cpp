// SPDX-License-Identifier: MIT
// Texts in both layouts, narrow and wide.
#include <gtest/gtest.h>

#include "tests/endtoend/world.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

void read_and_write(World& world) {
  EXPECT_EQ(world.read("Values.Name"), "Kessel");
  EXPECT_EQ(world.read("Values.Umlaut"), "Füllstand");
  EXPECT_EQ(world.read("Arrays.Names"), json({"Nord", "Ost", "Süd", "West"}));
  world.write("Values.Name", "12345678901234567890");
  EXPECT_EQ(world.held("Values.Name"), "12345678901234567890");
  EXPECT_EQ(world.read("Values.Name"), "12345678901234567890");
  world.write("Values.Name", "");
  EXPECT_EQ(world.held("Values.Name"), "");
  EXPECT_EQ(world.read("Values.Name"), "");
  world.write("Arrays.Names[2]", "€ ñ");
  EXPECT_EQ(world.held("Arrays.Names"), json({"Nord", "Ost", "€ ñ", "West"}));
  EXPECT_EQ(world.read("Arrays.Names"), json({"Nord", "Ost", "€ ñ", "West"}));
}

TEST(Texts, AreReadAndWrittenWordAligned) {
  World world;
  read_and_write(world);
}

TEST(Texts, AreReadAndWrittenCharPaired) {
  World world({.char_paired = true});
  read_and_write(world);
}

TEST(WideTexts, AreReadAndWritten) {
  World world({.tags = "Values.Note,WSTRING,254,,1,1,1\n"});
  EXPECT_EQ(world.read("Values.Note"), "日本語のテキスト");
  world.write("Values.Note", "圧力");
  EXPECT_EQ(world.held("Values.Note"), "圧力");
  EXPECT_EQ(world.read("Values.Note"), "圧力");
}

// Deliberate: the driver drops every zero byte of a text, which a wide text of plain letters is half made of.
TEST(WideTexts, PlainLettersArriveInPairs) {
  World world({.tags = "Values.Note,STRING,254,,1,1,1\n"});
  world.read("Values.Note");
  world.write("Values.Note", "AB");
  EXPECT_EQ(world.held("Values.Note"), "\xE4\x89\x81") << "the one character 16#4241";
}

// The driver recognises a wide text by its 510 bytes and nothing else.
TEST(WideTexts, OfAnotherDeclaredLengthAreDeliveredByteByByte) {
  World world({.tags = "Short.Note,WSTRING,6,,1,1,1\nShort.Note,STRING,6,,1,1,2\n",
               .source = "DATA_BLOCK \"Short\"\nVAR\nNote : WString[6] := WSTRING#'Grad ä';\nEND_VAR\nBEGIN\n"
                         "END_DATA_BLOCK\n"});
  EXPECT_EQ(world.read("Short.Note"), "Grad ä");
  const auto answer = world.session().read(std::vector<Access>{{1, DT_STRING, 0xFFFF, 6, 0, 6}});
  EXPECT_EQ(answer.records.at(0).words, (Words{'G', 0, 'r', 0, 'a', 0}));
}

// Deliberate: a text declared with 254 characters marks its place in the batch as wide, and the mark stays.
TEST(WideTexts, NarrowTextAtThePlaceOfAWideOneArrivesCharPaired) {
  World world;
  world.read("Values.Name");
  const Access wide{world.row("Values.Note"), DT_STRING, 0xFFFF, 254, 0, 254};
  const Access narrow{world.row("Values.Name"), DT_STRING, 0xFFFF, 20, 0, 20};
  const Access level{world.row("Values.Small"), DT_INT, 0xFFFF, 1, 0, 1};
  EXPECT_EQ(world.session().read(std::vector{level, narrow}).records.at(1).words.at(0), 'K');
  EXPECT_EQ(world.session().read(std::vector{level, wide}).records.at(1).words.at(0), u'日');
  EXPECT_EQ(world.session().read(std::vector{level, narrow}).records.at(1).words.at(0), 'K' | 'e' << 8);
}

// Deliberate: as many zeros as the missing indexes take stand in front of each text.
TEST(TextArrays, FromOneReadAsEmpty) {
  World world;
  EXPECT_EQ(world.read("Limits.NamesFromOne"), json({"", ""}));
  EXPECT_EQ(world.held("Limits.NamesFromOne"), json({"eins", "zwei"}));
  world.write("Limits.NamesFromOne[2]", "drei");
  EXPECT_EQ(world.held("Limits.NamesFromOne"), json({"eins", "drei"}));
}

}  // namespace
}  // namespace ostravel::host
