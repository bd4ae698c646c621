// SPDX-License-Identifier: MIT
// The driver's own file operations, each failing in turn: the project file, the removal of the symbol cache
// file, and what it prints.
#include <gmock/gmock.h>

#include <string>

#include "tests/failures/online.h"

namespace {

using injection::Armed;
using injection::Kind;
using testing::ElementsAreArray;

// What becomes of the table. Its rows are those in front of the first chunk that could not be read.
enum class Table { Whole, Empty, FirstChunk };

struct Rule {
  const char* function;
  int occurrence;  // 0: each
  Table table;
};

// The size is asked for by fseek and ftell, and only for how much to read at a time.
const Rule kRules[] = {
    {"fopen", 1, Table::Empty},  {"fseek", 1, Table::Whole},      {"ftell", 1, Table::Whole},
    {"fseek", 2, Table::Empty},  // else the rows would be looked for at the end
    {"fread", 1, Table::Empty},  {"fread", 2, Table::FirstChunk}, {"fread", 3, Table::FirstChunk},
    {"fclose", 1, Table::Whole},
};

constexpr std::size_t kRows = 600;
constexpr std::size_t kNameLength = 1000;
constexpr const char* kPassword = "a password of some length";

std::string name_of_row(std::size_t row) {
  std::string name = std::to_string(row) + '.';
  return name + std::string(kNameLength - name.size(), static_cast<char>('a' + row % 26));
}

// Three chunks long: a chunk is 256 KiB.
ProjectFile long_project() {
  ProjectFile project;
  for (std::size_t row = 0; row < kRows; ++row)
    project.tag(name_of_row(row), static_cast<std::uint32_t>(row + 1));
  return project.password(true, kPassword);
}

// Each row is the file's or none at all; returns how many are there, from the first on.
std::size_t rows_of(const CTagTable& table) {
  std::size_t held = 0;
  for (std::size_t row = 0; row < kRows; ++row) {
    const CTagTable::stTagInfo& info = *table.Get(static_cast<DWORD>(row));
    if (info.Reserved == 0) {
      EXPECT_STREQ(info.pStringA, "");
      continue;
    }
    EXPECT_EQ(held, row) << "a gap";
    EXPECT_EQ(info.pStringA, name_of_row(row));
    EXPECT_EQ(info.Reserved, row + 1);
    ++held;
  }
  return held;
}

void expect_table(const CTagTable& table, Table expected, std::size_t chunk) {
  const std::size_t rows = rows_of(table);
  const device_descriptor descriptor = table.get_device_descriptor();
  switch (expected) {
    case Table::Whole:
      EXPECT_EQ(rows, kRows);
      EXPECT_EQ(descriptor.device_password, kPassword);
      EXPECT_TRUE(descriptor.enable_password);
      return;
    case Table::Empty:
      EXPECT_EQ(rows, 0U);
      break;
    case Table::FirstChunk:
      EXPECT_GE(rows, (chunk - 1) * 250);
      EXPECT_LT(rows, kRows);
      break;
  }
  // What was not read is empty; nothing of the rows is taken for a password.
  EXPECT_EQ(descriptor.device_password, "");
  EXPECT_FALSE(descriptor.enable_password);
}

class FileFailures : public Online, public testing::WithParamInterface<bool> {
 protected:
  FileFailures() { injection::let_reads_deliver_half(GetParam()); }
};

std::vector<std::string> poll_lost(Plant& plant) {
  plant.library.fail("AGL_Symbolic_ReadMixEx", -1);
  std::vector<std::string> records = poll(plant.runtime);
  plant.library.succeed("AGL_Symbolic_ReadMixEx");
  return records;
}

}  // namespace

TEST_P(FileFailures, EachOperationOnTheProjectFile) {
  const ProjectFile project = long_project();
  std::vector<std::string> operations;
  {
    Runtime runtime(project);
    const Armed none(Kind::File);
    ASSERT_EQ(runtime.start(), "");
    operations = injection::asked();
    expect_table(runtime.data().GTagTable, Table::Whole, 0);
  }
  ASSERT_THAT(operations,
              ElementsAreArray({"fopen", "fseek", "ftell", "fseek", "fread", "fread", "fread", "fclose"}));
  std::map<std::string, int> occurrences;
  for (std::size_t n = 1; n <= operations.size(); ++n) {
    const std::string& function = operations[n - 1];
    const int occurrence = ++occurrences[function];
    SCOPED_TRACE("project file, operation " + std::to_string(n) + ": " + function);
    const Rule* rule = std::find_if(std::begin(kRules), std::end(kRules), [&](const Rule& one) {
      return one.function == function && one.occurrence == occurrence;
    });
    ASSERT_NE(rule, std::end(kRules)) << "no table is expected of this operation";
    Runtime runtime(project);
    {
      const Armed armed(Kind::File, static_cast<int>(n));
      EXPECT_EQ(runtime.start(), "");
      EXPECT_TRUE(armed.hit());
    }
    // Half of the first chunk is a chunk of its own.
    const bool half = GetParam() && function == "fread" && occurrence == 1;
    expect_table(runtime.data().GTagTable, half ? Table::FirstChunk : rule->table,
                 static_cast<std::size_t>(occurrence));
    ASSERT_EQ(runtime.start(), "");
    expect_table(runtime.data().GTagTable, Table::Whole, 0);
  }
}

TEST_P(FileFailures, EachOperationOfALostConnection) {
  // Record 0 was preset.
  std::vector<std::string> lost(read_tags().size(), "2/-/-");
  lost[0] = "2/5/0";
  std::vector<std::string> operations;
  {
    ConnectedPlant plant;
    const Armed none(Kind::File);
    ASSERT_THAT(poll_lost(plant), ElementsAreArray(lost));
    operations = injection::asked();
  }
  ASSERT_EQ(operations.back(), "remove");
  injection::take_removed_files();
  for (std::size_t n = 1; n <= operations.size(); ++n) {
    SCOPED_TRACE("lost connection, operation " + std::to_string(n) + ": " + operations[n - 1]);
    ConnectedPlant plant;
    {
      const Armed armed(Kind::File, static_cast<int>(n));
      EXPECT_THAT(poll_lost(plant), ElementsAreArray(lost));
      EXPECT_TRUE(armed.hit());
    }
    EXPECT_EQ(injection::take_removed_files().size(), operations[n - 1] == "remove" ? 0U : 1U);
    EXPECT_EQ(plant.runtime.output(read_requests()), kFailedFrame);
    plant.runtime.reconnect(read_requests());
    EXPECT_THAT(poll(plant.runtime), ElementsAreArray(read_answers()));
  }
}

INSTANTIATE_TEST_SUITE_P(, FileFailures, testing::Bool(), [](const auto& which) {
  return which.param ? "ReadsDeliverHalf" : "ReadsDeliverNothing";
});
