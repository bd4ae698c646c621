// SPDX-License-Identifier: MIT
// The cache file itself. Runs in a mount namespace of its own, with an empty /mnt/project.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "symbolic/symbolsloader.h"
#include "tests/symbolic/access.h"

namespace {

namespace fs = std::filesystem;

const fs::path kProject = "/mnt/project";

class CacheFileOnDisk : public ::testing::Test {
 protected:
  void SetUp() override {
    // Never on somebody's project: not empty means that this is no private folder.
    ASSERT_TRUE(fs::is_directory(kProject)) << "run this through scripts/private-project";
    ASSERT_TRUE(fs::is_empty(kProject)) << "run this through scripts/private-project";
    private_folder = true;
  }
  void TearDown() override {
    if (!private_folder) return;
    for (const auto& entry : fs::directory_iterator(kProject)) fs::remove_all(entry);
  }

  static void write(const std::string& name, const std::string& content) {
    std::ofstream(kProject / name, std::ios::binary) << content;
  }
  static std::string read(const std::string& name) {
    std::ostringstream content;
    content << std::ifstream(kProject / name, std::ios::binary).rdbuf();
    return content.str();
  }

  bool private_folder = false;
  FakeLibrary library;
  SymbolsLoader loader;
};

TEST_F(CacheFileOnDisk, IsRemovedForItsStationOnly) {
  write("0_s71500_symbolic.ap", "zero");
  write("3_s71500_symbolic.ap", "three");
  write("33_s71500_symbolic.ap", "thirty-three");
  loader.set_station_id(3);
  loader.RemoveSymbolsFile();
  EXPECT_FALSE(fs::exists(kProject / "3_s71500_symbolic.ap"));
  EXPECT_EQ(read("0_s71500_symbolic.ap"), "zero");
  EXPECT_EQ(read("33_s71500_symbolic.ap"), "thirty-three");
  EXPECT_EQ(library.count("*"), 0);
}

TEST_F(CacheFileOnDisk, IsRemovedForStations0And255) {
  for (const int station : {0, 255}) {
    const std::string name = std::to_string(station) + "_s71500_symbolic.ap";
    write(name, "tree");
    loader.set_station_id(static_cast<unsigned char>(station));
    loader.RemoveSymbolsFile();
    EXPECT_FALSE(fs::exists(kProject / name));
  }
}

TEST_F(CacheFileOnDisk, MayBeMissingWhenItIsRemoved) {
  loader.set_station_id(3);
  EXPECT_EQ(printed_by([&] { loader.RemoveSymbolsFile(); }), "");
  EXPECT_TRUE(fs::is_empty(kProject));
}

TEST_F(CacheFileOnDisk, StaysWhenThereIsNoTreeToSave) {
  write("3_s71500_symbolic.ap", "three");
  loader.set_station_id(3);
  EXPECT_EQ(loader.doSymbolic_SaveAGLinkSymbolsToFile(), -1048575);
  EXPECT_EQ(read("3_s71500_symbolic.ap"), "three");
}

TEST_F(CacheFileOnDisk, IsNeitherReadNorWrittenByTheDriverItself) {
  write("3_s71500_symbolic.ap", "three");
  loader.set_station_id(3);
  loader.SetupDevice("192.168.0.10");
  EXPECT_EQ(read("3_s71500_symbolic.ap"), "three");
  EXPECT_EQ(std::distance(fs::directory_iterator(kProject), fs::directory_iterator()), 1);
}

}  // namespace
