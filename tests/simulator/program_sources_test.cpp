// SPDX-License-Identifier: MIT
// Sources from elsewhere: OSTRAVEL_PLC_SOURCES names a folder whose files are each loaded or refused with a
// line.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "program_support.h"
#include "simulator/program/paths.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

using ::testing::MatchesRegex;

bool is_source(const std::filesystem::path& file) {
  const std::string extension = folded(file.extension().string());
  return extension == ".scl" || extension == ".db" || extension == ".udt";
}

TEST(Sources, EveryFileOfTheFolderIsLoadedOrRefusedWithItsPlace) {
  const char* const folder = std::getenv("OSTRAVEL_PLC_SOURCES");
  if (folder == nullptr) GTEST_SKIP() << "set OSTRAVEL_PLC_SOURCES to a folder of PLC sources";
  unsigned files = 0;
  unsigned loaded = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file() || !is_source(entry.path())) continue;
    ++files;
    const std::vector<std::filesystem::path> one{entry.path()};
    try {
      const Program program = load_program(one);
      for_each_leaf(program.blocks, [&program](const Leaf& leaf) {
        const std::optional<Target> target = resolve(program.blocks, leaf.path);
        EXPECT_TRUE(target && target->address == leaf.address) << leaf.path;
        return true;
      });
      ++loaded;
    } catch (const SourceError& error) {
      EXPECT_THAT(error.what(), MatchesRegex(".+:[0-9]+:[0-9]+: .+"));
    }
  }
  EXPECT_GT(files, 0U) << "no sources in " << folder;
  EXPECT_GT(loaded, 0U) << "not one source of " << folder << " could be loaded";
}

}  // namespace
}  // namespace ostravel::plc
