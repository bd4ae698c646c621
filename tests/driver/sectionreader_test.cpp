// SPDX-License-Identifier: MIT
// Chunks of a file, and the tag table's rows over their borders.
#include "driver/sectionreader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "driver/tagtable.h"
#include "tests/driver/projectfile.h"

namespace {

TEST(SectionReader, BytesTakenStayWhereTheyAre) {
  TemporaryFolder folder;
  const std::string path = folder.path() / "bytes";
  constexpr std::size_t kSize = 1000000;
  {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    for (std::size_t i = 0; i < kSize; ++i) std::fputc(static_cast<int>(i * 31 % 251), file);
    std::fclose(file);
  }
  std::FILE* file = std::fopen(path.c_str(), "rb");
  SectionReader reader(file, kSize);
  std::vector<std::span<BYTE>> taken;
  std::size_t bytes = 0;
  for (std::size_t count = 1; bytes < kSize; count = count * 3 % 7919 + 1) {
    taken.push_back(reader.TakeUpTo(count));
    ASSERT_FALSE(taken.back().empty());
    bytes += taken.back().size();
  }
  EXPECT_EQ(bytes, kSize);
  EXPECT_TRUE(reader.TakeUpTo(1).empty()) << "past the end there are none";
  EXPECT_EQ(reader.Number<std::uint32_t>(), 0U);
  const SectionReader::Chunks chunks = reader.TakeChunks();
  std::size_t position = 0;
  for (const std::span<BYTE> piece : taken) {
    for (const BYTE byte : piece) ASSERT_EQ(byte, position++ * 31 % 251);
  }
  std::fclose(file);
}

TEST(SectionReader, ReadsOnWhereTheFilesSizeIsNotKnown) {
  TemporaryFolder folder;
  const std::string path = folder.path() / "bytes";
  std::FILE* file = std::fopen(path.c_str(), "w+b");
  std::fputs("abcdef", file);
  std::rewind(file);
  SectionReader reader(file, 0);
  EXPECT_EQ(reader.Number<std::uint16_t>(), 'a' + 256 * 'b');
  EXPECT_EQ(reader.TakeUpTo(10).size(), 4U);
  std::fclose(file);
}

TEST(SectionReader, TakesAFileInLargeChunks) {
  TemporaryFolder folder;
  const std::string path = folder.path() / "bytes";
  constexpr std::size_t kSize = 1000000;
  std::FILE* file = std::fopen(path.c_str(), "w+b");
  for (std::size_t i = 0; i < kSize; ++i) std::fputc('x', file);
  std::rewind(file);
  SectionReader reader(file, kSize);
  std::size_t bytes = 0;
  while (bytes < kSize) bytes += reader.TakeUpTo(100).size();
  EXPECT_EQ(reader.TakeChunks().size(), 4U) << "of 262,144 bytes each";
  std::fclose(file);
}

TEST(SectionReader, OfBytesEndsWithThem) {
  const BYTE bytes[] = {1, 2, 3};
  SectionReader reader(bytes);
  EXPECT_EQ(reader.Number<std::uint16_t>(), 0x0201);
  EXPECT_EQ(reader.TakeUpTo(5).size(), 1U);
  EXPECT_EQ(reader.Number<BYTE>(), 0);
}

TEST(TagTableRows, NamesOverTheBordersOfChunksAreWhole) {
  TemporaryFolder folder;
  ProjectFile project;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < 3000; ++i) {
    // Long enough for a border every few hundred rows, and two of the longest.
    const std::size_t length = i == 100 || i == 2000 ? 65535 : i % 997;
    names.push_back(std::string(length, static_cast<char>('a' + i % 26)));
    project.tag(names.back(), static_cast<std::uint32_t>(i + 1), static_cast<int>(i % 200), 7);
  }
  CTagTable table;
  table.Read(project.write(folder).c_str(), project.position());
  ASSERT_EQ(table.m_Counts, names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const CTagTable::stTagInfo& row = *table.Get(static_cast<DWORD>(i));
    ASSERT_EQ(row.pStringA, names[i]) << i;
    ASSERT_EQ(row.Reserved, i + 1);
    ASSERT_EQ(row.DeviceID, i % 200);
    ASSERT_EQ(row.Reserved2, 7U);
    ASSERT_EQ(table.name_traits(static_cast<DWORD>(i)).length, names[i].size());
  }
}

TEST(TagTableRows, OfEqualNamesTheFirstRowIsFound) {
  TemporaryFolder folder;
  ProjectFile project;
  for (const char* name : {"A", "B", "", "A", "B", ""}) project.tag(name);
  CTagTable table;
  table.Read(project.write(folder).c_str(), project.position());
  EXPECT_EQ(table.get_index_by_name("A"), 0);
  EXPECT_EQ(table.get_index_by_name("B"), 1);
  EXPECT_EQ(table.get_index_by_name(""), 2);
  EXPECT_EQ(table.get_index_by_name("a"), -1);
  EXPECT_EQ(CTagTable().get_index_by_name("A"), -1) << "a table without rows";
}

TEST(TagTableRows, RowsThatAreAnnouncedAndNotThereHaveAnEmptyName) {
  TemporaryFolder folder;
  CTagTable table;
  table.Read(ProjectFile().tag("A").announce(3).write(folder).c_str(), 0);
  EXPECT_EQ(table.get_index_by_name("A"), 0);
  EXPECT_EQ(table.get_index_by_name("B"), -1);
  EXPECT_EQ(table.get_index_by_name(""), 1);
  table.Read(ProjectFile().tag("A").write(folder).c_str(), 0);
  EXPECT_EQ(table.get_index_by_name(""), -1) << "all are there";
}

TEST(TagTableRows, ANewTableForgetsTheIndexOfTheOld) {
  TemporaryFolder first, second;
  CTagTable table;
  table.Read(ProjectFile().tag("A").tag("B").write(first).c_str(), 0);
  EXPECT_EQ(table.get_index_by_name("B"), 1);
  EXPECT_EQ(table.name_traits(1).length, 1U);
  table.Read(ProjectFile().tag("Long").tag("A").write(second).c_str(), 0);
  EXPECT_EQ(table.get_index_by_name("B"), -1);
  EXPECT_EQ(table.get_index_by_name("A"), 1);
  EXPECT_EQ(table.name_traits(0).length, 4U);
}

}  // namespace
