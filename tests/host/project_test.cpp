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

TEST(Project, EveryShorterFileIsRefusedByALine) {
  Project project;
  project.password = "secret";
  project.tags = {tag("A.B", "INT"), tag("C", "STRING", 20)};
  const auto whole = encode_project(project);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_NE(failure(whole.substr(0, size)), "none") << size;
  }
  EXPECT_EQ(failure(whole), "none");
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
