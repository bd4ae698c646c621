// SPDX-License-Identifier: MIT
#include "host/project.h"

#include <gtest/gtest.h>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

using namespace std::string_literals;

Tag tag(const std::string& name, const char* type, std::uint16_t count = 1) {
  Tag result;
  result.name = name;
  result.type = find_tag_type(type);
  result.count = count;
  return result;
}

std::string failure(const std::string& bytes) {
  try {
    decode_project(bytes, "p");
  } catch (const UserError& error) {
    return error.what();
  }
  return "none";
}

// The bytes of the tag table as the driver reads them, from 7 bytes behind the table's position.
std::string section(const std::string& file) {
  const auto position = static_cast<std::size_t>(decode_project(file, "p").table_position) + 7;
  const auto settings = static_cast<unsigned char>(file[16]) + 256U * static_cast<unsigned char>(file[17]);
  return file.substr(position, settings - position);
}

TEST(Project, TagTableSectionHasTheBytesThatTheDriverReads) {
  Project project;
  project.tags = {tag("A.B", "INT"), tag("Ü", "REAL")};
  project.tags[0].device = 3;
  project.tags[0].id = 0x01020304;
  EXPECT_EQ(section(encode_project(project)),
            "\x00\x00\x00\x00"  // version: no flags
            "\x02\x00\x00\x00"  // two rows
            "\x03\x00"
            "A.B"
            "\x03"
            "\x04\x03\x02\x01"
            "\0\0\0\0"  // length, name, device, id, unused
            "\x02\x00"
            "\xC3\x9C"
            "\x01"
            "\0\0\0\0"
            "\0\0\0\0"s);
}

TEST(Project, PasswordAndStringLayoutStandInTheVersionAndBehindTheRows) {
  Project project;
  project.char_paired = true;
  project.password = "ab";
  EXPECT_EQ(section(encode_project(project)),
            "\x03\x00\x00\x00"  // version: bit 0 char-paired, bit 1 descriptor
            "\x00\x00\x00\x00"  // no rows
            "\x00\x00"
            "\x01"  // unused word, enabled
            "\x02\x00"
            "ab"s);
}

TEST(Project, EverythingSurvivesTheWayThroughTheFile) {
  Project project;
  project.password = "";
  auto names = tag("Names", "WSTRING", 20);
  names.first = -3;
  names.elements = 5;
  names.id = 7;
  project.tags = {names, tag("Long", "LREAL", 512)};
  const auto back = decode_project(encode_project(project), "p").project;
  EXPECT_EQ(back.password, "");
  EXPECT_FALSE(back.char_paired);
  ASSERT_EQ(back.tags.size(), 2U);
  EXPECT_EQ(back.tags[0].name, "Names");
  EXPECT_EQ(back.tags[0].type->name, "WSTRING");
  EXPECT_EQ(back.tags[0].count, 20);
  EXPECT_EQ(back.tags[0].first, -3);
  EXPECT_EQ(back.tags[0].elements, 5);
  EXPECT_EQ(back.tags[0].id, 7U);
  EXPECT_EQ(back.tags[1].type->name, "LREAL");
  EXPECT_EQ(back.tags[1].first, std::nullopt);
}

TEST(Project, ListStandsBehindTheSettingsAndItsPlaceInTheHead) {
  Project project;
  const auto file = encode_project(project, ListText{"x;y", ';'});
  EXPECT_EQ(file,
            "OSTRAVEL"
            "\x01\0\0\0"
            "\x18\0\0\0"  // the table, behind a head that is 4 bytes longer
            "\x27\0\0\0"
            "\x27\0\0\0"  // no settings, then the list
            "TAGLIST\0\0\0\0\0\0\0\0"
            "CSVTEXT;\x03\0\0\0x;y"s);
  EXPECT_EQ(decode_project(file, "p").list, (ListText{"x;y", ';'}));
}

TEST(Project, FileWithoutAListIsReadAsItAlwaysWas) {
  const auto file =
      "OSTRAVEL"
      "\x01\0\0\0"
      "\x14\0\0\0"
      "\x2F\0\0\0"
      "TAGLIST\0\0\0\0\x01\0\0\0"
      "\x01\0A\x02\x07\0\0\0\0\0\0\0"
      "\xC3\0\x04\0\x01\0\0\0\x01\0"s;
  const auto read = decode_project(file, "p");
  EXPECT_EQ(read.list, std::nullopt);
  ASSERT_EQ(read.project.tags.size(), 1U);
  EXPECT_EQ(read.project.tags[0].type->name, "INT");
  EXPECT_EQ(read.project.tags[0].first, 1);
  EXPECT_EQ(encode_project(read.project), file);
}

TEST(Project, TagThatCannotBeUsedIsKeptWhenAskedFor) {
  Project project;
  project.tags = {tag("A", "BOOL", 9), tag("B", "LREAL", 60000)};
  const auto file = encode_project(project);
  EXPECT_EQ(failure(file).substr(0, 2), "p:");
  EXPECT_EQ(decode_project(file, "p", TagFaults::Keep).project, project);
}

TEST(Project, EveryFaultOfATagIsTold) {
  auto bits = tag("a", "BOOL", 3000);
  bits.elements = 2;
  EXPECT_EQ(tag_faults(bits, false).size(), 3U);
}

TEST(Project, EveryShorterFileIsRefusedByALine) {
  Project project;
  project.password = "secret";
  project.tags = {tag("A.B", "INT"), tag("C", "STRING", 20)};
  for (const auto& list : {std::optional<ListText>(), std::optional(ListText{"some text", std::nullopt})}) {
    const auto whole = encode_project(project, list);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      EXPECT_NE(failure(whole.substr(0, size)), "none") << size;
    }
    EXPECT_EQ(failure(whole), "none");
  }
}

// Whatever a flipped bit makes of the file: it is read or refused, and what is read can be written.
TEST(Project, FlippedBitsNeverDoMoreThanBeRefused) {
  Project project;
  project.password = "secret";
  project.tags = {tag("A.B", "INT", 3), tag("C", "STRING", 20)};
  project.tags[0].first = 0;
  const auto whole = encode_project(project, ListText{"name,type,count,device,id\nA.B,INT,3,1,0\n", ','});
  for (std::size_t bit = 0; bit < 8 * whole.size(); ++bit) {
    auto flipped = whole;
    flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
    try {
      const auto file = decode_project(flipped, "p");
      EXPECT_EQ(decode_project(encode_project(file.project, file.list), "p").project, file.project) << bit;
    } catch (const UserError&) {
    }
  }
}

TEST(Project, AnotherFileIsRefusedByName) {
  EXPECT_EQ(failure("something else"),
            "p: is no project file of this host; make one with: ostravel-tags pack TAGS.csv p");
}

TEST(Project, WordsFollowTypeAndStringLayout) {
  EXPECT_EQ(words_of(tag("a", "DINT", 3), false), 6U);
  EXPECT_EQ(words_of(tag("a", "STRING", 21), false), 21U);
  EXPECT_EQ(words_of(tag("a", "STRING", 21), true), 11U);
  // The driver takes only a text declared with 254 characters for a wide one; of others it makes a word a
  // byte.
  EXPECT_EQ(words_of(tag("a", "WSTRING", 254), false), 254U);
  EXPECT_EQ(words_of(tag("a", "WSTRING", 20), false), 40U);
  EXPECT_EQ(words_of(tag("a", "WSTRING", 20), true), 20U);
}

TEST(Project, FaultyTagsAreNamed) {
  EXPECT_EQ(tag_fault(tag("a", "INT", 2048), false), "");
  EXPECT_EQ(tag_fault(tag("a", "INT", 2049), false),
            "2049 x INT needs 2049 words, and a record holds 2048; split the tag");
  EXPECT_NE(tag_fault(tag("a", "INT", 0), false), "");
  EXPECT_EQ(tag_fault(tag("a", "BOOL", 8), false), "an array of Bool has the type BitArray; change the type");
  auto array = tag("a", "INT", 10);
  array.elements = 2;
  EXPECT_EQ(tag_fault(array, false), "elements belongs to arrays of texts; leave it 1, or give first");
  array.elements = 1;
  array.first = 65530;
  EXPECT_EQ(tag_fault(array, false), "the last index is 65539, and the highest is 65534");
}

}  // namespace
}  // namespace ostravel::host
