// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/simulator/standin_world.h"

namespace ostravel::standin {
namespace {

class SymbolFile : public testing::Test {
 protected:
  SymbolFile() {
    std::string pattern = testing::TempDir() + "standin-XXXXXX";
    folder = mkdtemp(pattern.data());
    path = (folder / "1.ap").string();
  }
  ~SymbolFile() override { std::filesystem::remove_all(folder); }

  void save() { ASSERT_EQ(AGL_Symbolic_SaveAGLinkSymbolsToFile(world.root, path.c_str()), 0); }
  agl_int32_t load() {
    HandleType root = 0;
    const auto result = AGL_Symbolic_LoadAGLinkSymbolsFromFile(path.c_str(), &root);
    if (result == 0) AGL_Symbolic_FreeHandle(root);
    EXPECT_EQ(root != 0, result == 0);
    return result;
  }
  Data read_file() {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void write_file(const Data& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }

  ConnectedWorld world;
  std::filesystem::path folder;
  std::string path;
};

TEST_F(SymbolFile, LoadedTreeServesReadsLikeTheUploadedOne) {
  save();
  HandleType root = 0;
  ASSERT_EQ(AGL_Symbolic_LoadAGLinkSymbolsFromFile(path.c_str(), &root), 0);
  EXPECT_NE(root, world.root);
  {
    PathAccess access(root, "Plant.Locked");
    EXPECT_EQ(access.read(world.connection), 0);
    EXPECT_EQ(access.buffer, (Data{0, 5}));
  }
  EXPECT_EQ(AGL_Symbolic_FreeHandle(root), 0);
}

TEST_F(SymbolFile, StartsWithMagicAndVersion) {
  save();
  auto bytes = read_file();
  bytes.resize(12);
  EXPECT_EQ(bytes, (Data{'A', 'G', 'L', 'S', 'Y', 'M', 'B', 0x1A, 0, 0, 0, 1}));
}

TEST_F(SymbolFile, SavingReplacesAndLeavesNothingElseBehind) {
  write_file({1, 2, 3});
  save();
  EXPECT_EQ(load(), 0);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
}

TEST_F(SymbolFile, MissingFileOrFolderIsUnreadable) {
  EXPECT_EQ(load(), code(Error::FileUnreadable));
  path = (folder / "none" / "1.ap").string();
  EXPECT_EQ(load(), code(Error::FileUnreadable));
  path = folder.string();
  EXPECT_EQ(load(), code(Error::FileUnreadable));
}

TEST_F(SymbolFile, PlaceThatCannotBeWrittenIsReportedAndLeavesNothing) {
  const auto missing = (folder / "none" / "1.ap").string();
  EXPECT_EQ(AGL_Symbolic_SaveAGLinkSymbolsToFile(world.root, missing.c_str()), code(Error::FileUnwritable));
  EXPECT_EQ(AGL_Symbolic_SaveAGLinkSymbolsToFile(world.root, folder.c_str()), code(Error::FileUnwritable));
  EXPECT_EQ(AGL_Symbolic_SaveAGLinkSymbolsToFile(world.root, ""), code(Error::FileUnwritable));
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(SymbolFile, ForeignFileIsNoSymbolFile) {
  write_file({});
  EXPECT_EQ(load(), code(Error::FileForeign));
  write_file({'A', 'G', 'L'});
  EXPECT_EQ(load(), code(Error::FileForeign));
  write_file(Data(1000, 'x'));
  EXPECT_EQ(load(), code(Error::FileForeign));
}

TEST_F(SymbolFile, AnotherVersionIsRefusedByName) {
  save();
  auto bytes = read_file();
  bytes[11] = 2;
  write_file(bytes);
  EXPECT_EQ(load(), code(Error::FileVersion));
}

TEST_F(SymbolFile, EveryTruncationIsRefused) {
  save();
  const auto bytes = read_file();
  for (std::size_t length = 0; length < bytes.size(); length += 37) {
    write_file({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)});
    const auto result = load();
    EXPECT_TRUE(result == code(Error::FileDamaged) || result == code(Error::FileForeign)) << length;
  }
}

TEST_F(SymbolFile, EveryChangedByteIsNoticed) {
  save();
  const auto bytes = read_file();
  for (std::size_t i = 0; i < bytes.size(); i += i < 40 ? 1 : 29) {
    auto damaged = bytes;
    damaged[i] ^= 0x10;
    write_file(damaged);
    EXPECT_NE(load(), 0) << i;
  }
}

TEST_F(SymbolFile, TrailingBytesAreNoticed) {
  save();
  auto bytes = read_file();
  bytes.push_back(0);
  write_file(bytes);
  EXPECT_EQ(load(), code(Error::FileDamaged));
}

TEST_F(SymbolFile, NullNamesAreRefused) {
  HandleType root = 0;
  EXPECT_EQ(AGL_Symbolic_LoadAGLinkSymbolsFromFile(nullptr, &root), code(Error::InvalidParameter));
  EXPECT_EQ(AGL_Symbolic_LoadAGLinkSymbolsFromFile(path.c_str(), nullptr), code(Error::InvalidParameter));
  EXPECT_EQ(AGL_Symbolic_SaveAGLinkSymbolsToFile(world.root, nullptr), code(Error::InvalidParameter));
  EXPECT_EQ(AGL_Symbolic_SaveAGLinkSymbolsToFile(0, path.c_str()), code(Error::InvalidHandle));
}

}  // namespace
}  // namespace ostravel::standin
