// SPDX-License-Identifier: MIT
// Access rights that declarations give, and the option that opens all.
#include <gmock/gmock.h>

#include "program_support.h"
#include "simulator/program/paths.h"

namespace ostravel::plc {
namespace {

using ::testing::ElementsAre;

constexpr std::string_view kRestricted = R"(
TYPE "T" VERSION : 0.1 STRUCT
  Inner { ExternalAccessible := 'False' } : Int;
END_STRUCT; END_TYPE
DATA_BLOCK "B"
READ_ONLY
VAR
  Hidden { ExternalAccessible := 'False' } : Struct Deep : Int; END_STRUCT;
  Locked { ExternalWritable := 'False' } : Int;
  t : "T";
END_VAR
BEGIN
END_DATA_BLOCK
)";

// Path, then "r" and "w" for what is allowed.
std::vector<std::string> rights(bool accessible) {
  LoadOptions options;
  options.accessible = accessible;
  std::vector<std::string> lines;
  for_each_variable(load_text(kRestricted, "test.db", options).blocks, [&](const Leaf& leaf) {
    lines.push_back(leaf.path + " " + (leaf.symbol->readable ? "r" : "") +
                    (leaf.symbol->writable ? "w" : ""));
    return true;
  });
  return lines;
}

TEST(Access, IsWhatTheDeclarationsSay) {
  EXPECT_THAT(rights(false), ElementsAre("B.Hidden.Deep ", "B.Locked r", "B.t.Inner "));
}

TEST(Access, IsOpenedEverywhereByTheOption) {
  EXPECT_THAT(rights(true), ElementsAre("B.Hidden.Deep rw", "B.Locked rw", "B.t.Inner rw"));
}

}  // namespace
}  // namespace ostravel::plc
