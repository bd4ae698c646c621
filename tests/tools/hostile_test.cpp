// SPDX-License-Identifier: MIT
// Whatever a file holds, it is read or refused by a line.
#include <gtest/gtest.h>

#include "host/usererror.h"
#include "tests/host/scratch.h"
#include "tools/diff.h"
#include "tools/listcheck.h"
#include "tools/merge.h"

namespace ostravel::tags {
namespace {

using namespace host;

const std::string kList =
    "# password: x\nName;TYPE;count;first;elements;device;id;note\n\"A.\"\"B\"\"\";INT;4;0;1;1;1;x\n"
    "C[INDEX];STRING;20;1;3;1;2;\n\n# end\nC;wstring;20;;;1;3;";

std::string project_file() {
  return encode_with_list(project_from_csv(kList, "t"), {kList, std::nullopt});
}

// All that the commands do with a file; what it may say is that it cannot be used.
void use(const Scratch& scratch, const std::string& content) {
  const auto path = scratch.write("file", content);
  try {
    const auto file = open_tag_list(path, std::nullopt);
    const auto check = check_list(file.list);
    EXPECT_LE(check.count(Severity::Error), check.findings.size());
    const auto loaded = load_tags(path, std::nullopt);
    const auto merged = merge({loaded, loaded}, {Prefer::First, true});
    EXPECT_LE(merged.tags.size(), loaded.project.tags.size());
    EXPECT_TRUE(diff(loaded.project, loaded.project).none());
    const auto normal = project_to_csv(loaded.project);
    EXPECT_EQ(project_from_csv(normal, "normal form"), loaded.project);
  } catch (const UserError& error) {
    EXPECT_EQ(std::string(error.what()).rfind(path + ":", 0), 0U) << error.what();
  }
}

TEST(HostileFiles, ProjectCutAtEveryByteIsRefused) {
  const Scratch scratch;
  const auto whole = project_file();
  ASSERT_EQ(list_of(decode_project(whole, "p")).list.text, kList);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    use(scratch, whole.substr(0, size));
    EXPECT_THROW(decode_project(whole.substr(0, size), "p"), UserError) << size;
  }
}

TEST(HostileFiles, ProjectWithAnyBitFlippedIsUsedOrRefused) {
  const Scratch scratch;
  const auto whole = project_file();
  for (std::size_t bit = 0; bit < 8 * whole.size(); ++bit) {
    auto flipped = whole;
    flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
    SCOPED_TRACE(bit);
    use(scratch, flipped);
  }
}

TEST(HostileFiles, ProjectWithAnyByteSetToItsExtremesIsUsedOrRefused) {
  const Scratch scratch;
  const auto whole = project_file();
  for (std::size_t byte = 0; byte < whole.size(); ++byte) {
    for (const char value : {'\0', '\x7F', '\xFF'}) {
      auto changed = whole;
      changed[byte] = value;
      SCOPED_TRACE(byte);
      use(scratch, changed);
    }
  }
}

TEST(HostileFiles, ListCutOrWithBitsFlippedIsUsedOrRefused) {
  const Scratch scratch;
  for (std::size_t bit = 0; bit < 8 * kList.size(); bit += 3) {
    auto flipped = kList;
    flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
    SCOPED_TRACE(bit);
    use(scratch, flipped);
    use(scratch, kList.substr(0, bit / 8));
  }
}

// Each of these grows with the square of its length where every row is compared with every other.
TEST(HostileFiles, ManyRowsOfOneNameDoNotTakeLong) {
  const Scratch scratch;
  std::string rows = "name,type,count,first,elements,device,id\n";
  for (int i = 0; i < 30000; ++i) {
    rows += "A,INT,1," + std::to_string(i) + ",1,1,1\n";
  }
  use(scratch, rows);
  std::string same = "name,type,count,device,id\n";
  for (int i = 0; i < 30000; ++i) {
    same += "A,INT,1,1,1\n";
  }
  use(scratch, same);
  use(scratch, "name,type,count,device,id," + std::string(300000, ','));
  use(scratch, std::string(300000, '#'));
  std::string comments = "\"";
  for (int i = 0; i < 100000; ++i) {
    comments += "#\n\"";
  }
  use(scratch, comments);
}

}  // namespace
}  // namespace ostravel::tags
