// SPDX-License-Identifier: MIT
// The tag table section of project files written as raw bytes.
#include "driver/tagtable.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "tests/driver/projectfile.h"

namespace {

using std::string_view_literals::operator""sv;

long address_space_pages() {
  long pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages;
}

class TagTable : public testing::Test {
 protected:
  void read(const ProjectFile& project) { table.Read(project.write(folder).c_str(), project.position()); }
  void read_cut(const ProjectFile& project, std::size_t bytes) {
    table.Read(project.write_cut(folder, bytes).c_str(), project.position());
  }
  std::string name(DWORD row) const { return table.Get(row)->pStringA; }
  void expect_empty_row(DWORD row) const {
    const auto* info = table.Get(row);
    ASSERT_NE(info, nullptr) << row;
    ASSERT_NE(info->pStringA, nullptr) << row;
    EXPECT_STREQ(info->pStringA, "") << row;
    EXPECT_EQ(info->Reserved, 0U) << row;
    EXPECT_EQ(info->Reserved2, 0U) << row;
    EXPECT_EQ(info->DeviceID, 0) << row;
  }

  TemporaryFolder folder;
  CTagTable table;
};

}  // namespace

TEST_F(TagTable, IsConstructedWithoutRowsAndPassword) {
  EXPECT_EQ(table.m_pTagInfo, nullptr);
  EXPECT_EQ(table.m_Counts, 0U);
  EXPECT_EQ(table.get_device_descriptor().device_password, "");
  EXPECT_FALSE(table.get_device_descriptor().enable_password);
}

TEST_F(TagTable, ReadsRowsFromRawBytes) {
  const BYTE file[] = {
      1,    2,    3,    4,    5,    6,    7,                 // the runtime's own
      0x05, 0x00, 0x00, 0x80,                                // version
      0x02, 0x00, 0x00, 0x00,                                // rows
      0x03, 0x00, 'A',  '.',  'B',                           // name
      0x11, 0x78, 0x56, 0x34, 0x12, 0xEF, 0xCD, 0xAB, 0x90,  // device, tag id, Reserved2
      0x01, 0x00, 'C',  0x22, 0x01, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00,
  };
  const auto path = folder.path() / "raw.bin";
  FILE* out = std::fopen(path.c_str(), "wb");
  ASSERT_NE(out, nullptr);
  ASSERT_EQ(std::fwrite(file, 1, sizeof file, out), sizeof file);
  ASSERT_EQ(std::fclose(out), 0);

  table.Read(path.c_str(), 0);
  EXPECT_EQ(table.version_, 0x80000005U);
  ASSERT_EQ(table.m_Counts, 2U);
  EXPECT_EQ(name(0), "A.B");
  EXPECT_EQ(table.Get(0)->DeviceID, 0x11);
  EXPECT_EQ(table.Get(0)->Reserved, 0x12345678U);
  EXPECT_EQ(table.Get(0)->Reserved2, 0x90ABCDEFU);
  EXPECT_EQ(name(1), "C");
  EXPECT_EQ(table.Get(1)->DeviceID, 0x22);
  EXPECT_EQ(table.Get(1)->Reserved, 1U);
  EXPECT_EQ(table.Get(1)->Reserved2, 2U);
  EXPECT_FALSE(table.m_bUseUNICODE);
}

TEST_F(TagTable, RowsStandInFileOrderInOneBlock) {
  read(ProjectFile().tag("First", 10).tag("Second", 20).tag("Third", 30));
  ASSERT_EQ(table.m_Counts, 3U);
  ASSERT_NE(table.m_pTagInfo, nullptr);
  EXPECT_STREQ(table.m_pTagInfo[0].pStringA, "First");
  EXPECT_STREQ(table.m_pTagInfo[1].pStringA, "Second");
  EXPECT_EQ(table.m_pTagInfo[2].Reserved, 30U);
}

TEST_F(TagTable, SectionBeginsSevenBytesBehindThePosition) {
  read(ProjectFile().tag("Far").position(1234));
  EXPECT_EQ(table.m_Counts, 1U);
  EXPECT_EQ(name(0), "Far");
}

TEST_F(TagTable, PositionWrapsInUnsigned32BitArithmetic) {
  // 0xFFFFFFF9 + 7 is 0: the section begins with the file.
  const auto path = folder.path() / "wrapped.bin";
  const auto section = ProjectFile().tag("Wrapped", 5).section();
  FILE* out = std::fopen(path.c_str(), "wb");
  ASSERT_NE(out, nullptr);
  std::fwrite(section.data(), 1, section.size(), out);
  std::fclose(out);
  table.Read(path.c_str(), 0xFFFFFFF9U);
  ASSERT_EQ(table.m_Counts, 1U);
  EXPECT_EQ(name(0), "Wrapped");
}

TEST_F(TagTable, PositionBeyondTheFileGivesNoRows) {
  table.Read(ProjectFile().tag("Lost").write(folder).c_str(), 0x7FFFFFFF);
  EXPECT_EQ(table.m_Counts, 0U);
  EXPECT_EQ(table.m_pTagInfo, nullptr);
  EXPECT_EQ(table.get_index_by_name("Lost"), -1);
}

TEST_F(TagTable, FileThatCannotBeOpenedGivesNoRows) {
  table.Read((folder.path() / "missing.bin").c_str(), 0);
  EXPECT_EQ(table.m_pTagInfo, nullptr);
  EXPECT_EQ(table.m_Counts, 0U);
  EXPECT_EQ(table.get_index_by_name("Motor"), -1);
  EXPECT_EQ(table.get_index_by_name(""), -1);
}

TEST_F(TagTable, FolderInsteadOfAFileGivesNoRows) {
  table.Read(folder.path().c_str(), 0);
  EXPECT_EQ(table.m_Counts, 0U);
  EXPECT_EQ(table.get_index_by_name("Motor"), -1);
}

TEST_F(TagTable, NameOfLengthZeroIsEmpty) {
  read(ProjectFile().tag("", 9).tag("Next", 10));
  EXPECT_STREQ(table.Get(0)->pStringA, "");
  EXPECT_EQ(table.Get(0)->Reserved, 9U);
  EXPECT_EQ(name(1), "Next");
  EXPECT_EQ(table.get_index_by_name(""), 0);
}

TEST_F(TagTable, LongestNameIsReadWhole) {
  const std::string longest(65535, 'x');
  read(ProjectFile().tag(longest, 1).tag("Behind", 2));
  EXPECT_EQ(name(0), longest);
  EXPECT_EQ(name(1), "Behind");
}

TEST_F(TagTable, NamesOfALargeTableStayApart) {
  constexpr DWORD kRows = 5000;
  const auto name_of = [](DWORD row) {
    return "Line" + std::to_string(row) + std::string(row % 97, 'x') + "." + std::to_string(row);
  };
  ProjectFile project;
  for (DWORD row = 0; row < kRows; ++row) project.tag(name_of(row), row + 1);
  read(project);
  ASSERT_EQ(table.m_Counts, kRows);
  for (DWORD row = 0; row < kRows; ++row) {
    ASSERT_EQ(name(row), name_of(row));
    ASSERT_EQ(table.Get(row)->Reserved, row + 1);
  }
}

TEST_F(TagTable, NamesAreEightBitCharacters) {
  read(ProjectFile().tag("\xC3\x84nderung\xFF", 1));
  EXPECT_EQ(name(0), "\xC3\x84nderung\xFF");
  EXPECT_EQ(table.get_index_by_name("\xC3\x84nderung\xFF"), 0);
}

TEST_F(TagTable, IndexByNameIsTheFirstExactMatch) {
  read(ProjectFile().tag("Motor").tag("motor").tag("Motor").tag("Motor1"));
  EXPECT_EQ(table.get_index_by_name("Motor"), 0);
  EXPECT_EQ(table.get_index_by_name("motor"), 1);
  EXPECT_EQ(table.get_index_by_name("Motor1"), 3);
  EXPECT_EQ(table.get_index_by_name("MOTOR"), -1);
  EXPECT_EQ(table.get_index_by_name("Moto"), -1);
}

TEST_F(TagTable, ReadAlwaysClearsTheWideCharacterFlag) {
  // Deliberate: the files hold 8-bit names, whatever the flag said before.
  table.m_bUseUNICODE = TRUE;
  read(ProjectFile(0xFFFFFFFDU).tag("Narrow"));
  EXPECT_EQ(table.m_bUseUNICODE, FALSE);
  EXPECT_EQ(name(0), "Narrow");
}

TEST_F(TagTable, WideRowsAreReadWhenTheFlagIsSet) {
  table.m_bUseUNICODE = TRUE;
  const BYTE rows[] = {
      0x02, 0x00, 'A',  0x00, 0xAC, 0x20, 0x07, 0x44, 0x33, 0x22, 0x11, 0x04, 0x03, 0x02, 0x01,  //
      0x00, 0x00, 0x08, 0x09, 0x00, 0x00, 0x00, 0x0A, 0x00, 0x00, 0x00,
  };
  table.ReadRows(rows, 2);
  EXPECT_EQ(std::u16string(table.Get(0)->pString), u"A\u20AC");
  EXPECT_EQ(table.Get(0)->DeviceID, 7);
  EXPECT_EQ(table.Get(0)->Reserved, 0x11223344U);
  EXPECT_EQ(table.Get(0)->Reserved2, 0x01020304U);
  EXPECT_EQ(std::u16string(table.Get(1)->pString), u"");
  EXPECT_EQ(table.Get(1)->DeviceID, 8);
  EXPECT_EQ(table.Get(1)->Reserved, 9U);
}

TEST_F(TagTable, WideRowThatIsNotThereWholeEndsTheRows) {
  table.m_bUseUNICODE = TRUE;
  const BYTE rows[] = {
      0x01, 0x00, 'A', 0x00, 0x07, 0x44, 0x33, 0x22, 0x11, 0x04, 0x03, 0x02, 0x01,  //
      0x01, 0x00, 'B', 0x00, 0x08, 0x09, 0x00, 0x00, 0x00, 0x0A, 0x00, 0x00,
  };
  table.ReadRows(rows, 2);
  EXPECT_EQ(std::u16string(table.Get(0)->pString), u"A");
  expect_empty_row(1);
}

// A file whose size cannot be had: the system's information files are read on without it.
TEST_F(TagTable, FileWithoutASizeIsReadFromItsPositionOn) {
  table.Read("/proc/version", 0);
  EXPECT_EQ(table.version_, 'e' | 'r' << 8 | 's' << 16 | 'i' << 24) << "of: Linux version";
}

TEST_F(TagTable, PasswordFollowsTheRows) {
  read(ProjectFile().tag("Motor").password(true, "secret"));
  EXPECT_EQ(table.version_ & 2U, 2U);
  EXPECT_TRUE(table.get_device_descriptor().enable_password);
  EXPECT_EQ(table.get_device_descriptor().device_password, "secret");
  EXPECT_EQ(name(0), "Motor");
}

TEST_F(TagTable, PasswordIsReadFromATableWithoutRows) {
  read(ProjectFile().password(true, "secret"));
  EXPECT_EQ(table.m_Counts, 0U);
  EXPECT_TRUE(table.get_device_descriptor().enable_password);
  EXPECT_EQ(table.get_device_descriptor().device_password, "secret");
}

TEST_F(TagTable, PasswordEndsAtItsFirstNul) {
  read(ProjectFile().password(false, "se\0cret"sv));
  EXPECT_FALSE(table.get_device_descriptor().enable_password);
  EXPECT_EQ(table.get_device_descriptor().device_password, "se");
}

TEST_F(TagTable, PasswordIsNotReadWhenTheVersionDoesNotAnnounceIt) {
  // The same bytes behind the rows, but bit 1 of the version is clear.
  auto section = ProjectFile().tag("Motor").password(true, "secret").section();
  section[0] = 0x01;
  const auto path = folder.path() / "nobit.bin";
  FILE* out = std::fopen(path.c_str(), "wb");
  ASSERT_NE(out, nullptr);
  std::fwrite("1234567", 1, 7, out);
  std::fwrite(section.data(), 1, section.size(), out);
  std::fclose(out);
  table.Read(path.c_str(), 0);
  EXPECT_EQ(name(0), "Motor");
  EXPECT_FALSE(table.get_device_descriptor().enable_password);
  EXPECT_EQ(table.get_device_descriptor().device_password, "");
}

TEST_F(TagTable, AnyNonZeroFlagByteEnablesThePassword) {
  auto section = ProjectFile().password(true, "p").section();
  section[10] = 0x80;
  const auto path = folder.path() / "flag.bin";
  FILE* out = std::fopen(path.c_str(), "wb");
  ASSERT_NE(out, nullptr);
  std::fwrite("1234567", 1, 7, out);
  std::fwrite(section.data(), 1, section.size(), out);
  std::fclose(out);
  table.Read(path.c_str(), 0);
  EXPECT_TRUE(table.get_device_descriptor().enable_password);
}

TEST_F(TagTable, RowIndexOutsideTheTableIsAnEmptyRow) {
  read(ProjectFile().tag("Only", 5));
  expect_empty_row(1);
  expect_empty_row(0x7FFFFFFF);
  expect_empty_row(0x80000000U);
  expect_empty_row(0xFFFFFFFFU);
}

TEST_F(TagTable, EveryCutOfTheFileIsHarmless) {
  // Whatever a cut leaves whole is there; everything behind it is empty or zero.
  const auto project =
      ProjectFile().tag("Abc", 0x01010101, 0x7F, 0x02020202).tag("Defg", 7).password(true, "xyz");
  const std::size_t row0_end = 8 + 2 + 3 + 9;
  const std::size_t row1_end = row0_end + 2 + 4 + 9;
  const std::size_t whole = row1_end + 2 + 1 + 2 + 3;
  ASSERT_EQ(project.section().size(), whole);
  for (std::size_t size = 0; size <= whole; ++size) {
    SCOPED_TRACE(size);
    CTagTable cut;
    cut.Read(project.write_cut(folder, size).c_str(), 0);
    EXPECT_STREQ(cut.Get(0)->pStringA, size >= row0_end ? "Abc" : "");
    EXPECT_EQ(cut.Get(0)->Reserved, size >= row0_end ? 0x01010101U : 0U);
    EXPECT_EQ(cut.Get(0)->Reserved2, size >= row0_end ? 0x02020202U : 0U);
    EXPECT_EQ(cut.Get(0)->DeviceID, size >= row0_end ? 0x7F : 0);
    EXPECT_STREQ(cut.Get(1)->pStringA, size >= row1_end ? "Defg" : "");
    EXPECT_EQ(cut.Get(1)->Reserved, size >= row1_end ? 7U : 0U);
    EXPECT_EQ(cut.get_index_by_name("Abc"), size >= row0_end ? 0 : -1);
    EXPECT_EQ(cut.get_device_descriptor().enable_password, size >= row1_end + 3);
    if (size == whole) {
      EXPECT_EQ(cut.get_device_descriptor().device_password, "xyz");
    }
    if (size < row1_end + 5) {
      EXPECT_EQ(cut.get_device_descriptor().device_password, "");
    }
  }
}

TEST_F(TagTable, FileWithoutAVersionHasNoRows) {
  read_cut(ProjectFile().tag("Motor"), 0);
  EXPECT_EQ(table.version_, 0U);
  EXPECT_EQ(table.m_Counts, 0U);
  EXPECT_EQ(table.m_pTagInfo, nullptr);
}

TEST_F(TagTable, RowCountThatTheFileCannotHoldAllocatesNoMoreThanTheFile) {
  // 4,294,967,295 rows would take more than 100 GB of address space.
  const auto before = address_space_pages();
  read(ProjectFile().tag("Real", 3).announce(0xFFFFFFFFU));
  EXPECT_LT(address_space_pages(), before + 16384) << "pages; 16384 are 64 MiB";
  EXPECT_EQ(table.m_Counts, 0xFFFFFFFFU);
  EXPECT_EQ(name(0), "Real");
  expect_empty_row(1);
  expect_empty_row(0xFFFFFFFEU);
  EXPECT_EQ(table.get_index_by_name("Real"), 0);
  EXPECT_EQ(table.get_index_by_name("Other"), -1);
}

TEST_F(TagTable, PasswordLengthBeyondTheFileIsCut) {
  auto section = ProjectFile().password(true, "secret").section();
  section[11] = 0xFF;
  section[12] = 0xFF;
  const auto path = folder.path() / "long.bin";
  FILE* out = std::fopen(path.c_str(), "wb");
  ASSERT_NE(out, nullptr);
  std::fwrite("1234567", 1, 7, out);
  std::fwrite(section.data(), 1, section.size(), out);
  std::fclose(out);
  table.Read(path.c_str(), 0);
  EXPECT_TRUE(table.get_device_descriptor().enable_password);
  const auto password = table.get_device_descriptor().device_password;
  EXPECT_TRUE(password == "secret" || password.empty()) << password;
}
