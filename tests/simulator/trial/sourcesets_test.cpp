// SPDX-License-Identifier: MIT
#include "tests/simulator/trial/sourcesets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace ostravel::trial {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SourceSets : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "ostravel-sets-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(folder); }
  void write(const std::string& name, std::string_view text) const {
    std::filesystem::create_directories((folder / name).parent_path());
    std::ofstream(folder / name) << text;
  }
  // The files of the set of one of them, beginning with it.
  std::vector<std::string> set_of(const std::string& name) const {
    for (const auto& set : source_sets(folder)) {
      if (set.file != folder / name) continue;
      std::vector<std::string> names;
      for (const auto& file : set.files()) names.push_back(std::filesystem::relative(file, folder).string());
      return names;
    }
    return {};
  }
  static std::string type(const std::string& name, const std::string& members) {
    return "TYPE \"" + name + "\" VERSION : 0.1 STRUCT " + members + " END_STRUCT; END_TYPE\n";
  }
  std::filesystem::path folder;
};

TEST_F(SourceSets, FileComesWithThoseThatDeclareItsTypesAndTheirTypes) {
  write("plant.db", "DATA_BLOCK \"Plant\" VAR m : Array[1..2] of \"Motor\"; END_VAR BEGIN END_DATA_BLOCK");
  write("motor.UDT", type("MOTOR", "d : Struct e : \"Drive\"; END_STRUCT;"));
  write("drive.scl", type("Drive", "x : Int;"));
  write("other.udt", type("Other", "x : Int;"));
  EXPECT_THAT(set_of("plant.db"), ElementsAre("plant.db", "motor.UDT", "drive.scl"));
  EXPECT_THAT(set_of("other.udt"), ElementsAre("other.udt"));
}

TEST_F(SourceSets, OwnFolderIsSearchedFirst) {
  write("a/type.udt", type("T", "x : Int;"));
  write("b/block.db", "DATA_BLOCK \"B\" \"T\" BEGIN END_DATA_BLOCK");
  EXPECT_THAT(set_of("b/block.db"), ElementsAre("b/block.db", "a/type.udt"));
  write("b/type.udt", type("T", "x : Int;"));
  EXPECT_THAT(set_of("b/block.db"), ElementsAre("b/block.db", "b/type.udt"));
}

TEST_F(SourceSets, TypeThatNobodyDeclaresAddsNothing) {
  write("block.db", "DATA_BLOCK \"B\" \"Nowhere\" BEGIN END_DATA_BLOCK");
  EXPECT_THAT(set_of("block.db"), ElementsAre("block.db"));
}

TEST_F(SourceSets, FileThatCannotBeParsedStandsAlone) {
  write("bad.db", "DATA_BLOCK {{template}}");
  EXPECT_THAT(set_of("bad.db"), ElementsAre("bad.db"));
}

TEST_F(SourceSets, FolderWithoutSourcesIsRefused) {
  write("notes.txt", "nothing");
  EXPECT_THROW(source_sets(folder), std::runtime_error);
}

}  // namespace
}  // namespace ostravel::trial
