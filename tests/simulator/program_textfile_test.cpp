// SPDX-License-Identifier: MIT
#include "simulator/program/text_file.h"

#include <gmock/gmock.h>
#include <stdlib.h>  // mkdtemp

#include <filesystem>
#include <fstream>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using testing::block_of;
using ::testing::HasSubstr;
using testing::refusal;
using ::testing::StartsWith;

class Folder {
 public:
  Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ostravel-sources-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::filesystem::path write(const std::string& name, const std::string& text) const {
    std::ofstream(path_ / name, std::ios::binary) << text;
    return path_ / name;
  }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

std::string refusal_of(const std::vector<std::filesystem::path>& files) {
  try {
    load_program(files);
  } catch (const SourceError& error) {
    return error.what();
  }
  return {};
}

TEST(TextFile, ByteOrderMarkAndLineEndsDoNotMatter) {
  const Program program = testing::load(
      "\xEF\xBB\xBF"
      "DATA_BLOCK \"D\"\r\nVERSION : 0.1\r\nVAR\r\na : Int;\r\nEND_VAR\r\nEND_DATA_BLOCK");
  EXPECT_EQ(program.blocks.at(0).members.at(0).name, "a");
}

TEST(TextFile, BytesThatAreNoUtf8AreReadInTheOldCodePage) {
  const Program program = testing::load(block_of("F\xFCll : Int;"));
  EXPECT_EQ(program.blocks.at(0).members.at(0).name, "Füll");
}

TEST(TextFile, RefusesOtherKindsOfFilesByName) {
  EXPECT_THAT(refusal("SQLite format 3\0rest"), HasSubstr("starts with 'SQLite format 3'"));
  EXPECT_THAT(refusal("\xFF\xFE"
                      "D"),
              HasSubstr("UTF-16"));
  EXPECT_THAT(refusal("\xFE\xFF"
                      "D"),
              HasSubstr("UTF-16"));
  EXPECT_THAT(refusal(std::string("D\0A\0T\0A\0", 8)), HasSubstr("zero bytes"));
  EXPECT_THAT(refusal("DB17\r\n000.0: STATIC:\r\n"), HasSubstr("dump"));
  EXPECT_THAT(refusal("000.0: STATIC:\n"), HasSubstr("dump"));
  EXPECT_THAT(refusal("record(ai, \"x\") {\n}\n"), HasSubstr("EPICS"));
  EXPECT_THAT(refusal("hello world"), HasSubstr("DATA_BLOCK"));
}

TEST(TextFile, RefusesTheNewerTextFormat) {
  const Folder folder;
  EXPECT_THAT(refusal_of({folder.write("a.S7DCL", block_of("a : Int;"))}), HasSubstr(".s7dcl"));
  EXPECT_THAT(refusal("{ S7_Optimized := \"TRUE\" }\nDATA_BLOCK X\nEND_DATA_BLOCK"), HasSubstr(".s7dcl"));
  EXPECT_THAT(refusal("DATA_BLOCK X VAR { S7_Setpoint := \"True\" } a : Bool; END_VAR END_DATA_BLOCK"),
              HasSubstr(".s7dcl"));
  EXPECT_THAT(refusal("DATA_BLOCK X VAR u : _.Udt1; END_VAR END_DATA_BLOCK"), HasSubstr(".s7dcl"));
}

TEST(TextFile, RefusesTemplatesWithTheirLine) {
  EXPECT_THAT(refusal("DATA_BLOCK X\n{{if a}}\nSTRUCT\nEND_STRUCT\nEND_DATA_BLOCK"),
              StartsWith("test.db:2:1: holds a template mark"));
  EXPECT_THAT(refusal("DATA_BLOCK \"X{{n}}\"\nEND_DATA_BLOCK"), HasSubstr("template mark"));
}

TEST(TextFile, SaysWhatIsWrongWithAName) {
  const Folder folder;
  EXPECT_THAT(refusal_of({folder.path() / "missing.db"}), HasSubstr("missing.db:1:1: there is no such file"));
  EXPECT_THAT(refusal_of({folder.path()}), HasSubstr("is no file"));
}

TEST(TextFile, LoadsAllFilesBeforeItResolvesNames) {
  const Folder folder;
  const auto block = folder.write("block.db", "DATA_BLOCK \"D\"\n\"T\"\nEND_DATA_BLOCK\n");
  const auto type = folder.write("type.udt", "TYPE \"T\"\nSTRUCT\na : Int := 7;\nEND_STRUCT;\nEND_TYPE\n");
  const std::vector<std::filesystem::path> files{block, type};
  EXPECT_EQ(load_program(files).initial, (testing::Octets{0, 7}));
  EXPECT_THAT(refusal_of({block}),
              HasSubstr("block.db:2:1: the type or function block \"T\" is not declared"));
}

}  // namespace
}  // namespace ostravel::plc
