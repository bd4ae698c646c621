// SPDX-License-Identifier: MIT
// Every row of reads*.def in every event: a batch of the row and a guard, one output and one input call.
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/tables/address.h"
#include "tests/tables/desk.h"
#include "tests/tables/plcworld.h"

namespace tables {
namespace {

// "aligned | paired", or the same for both.
std::string in_layout(const std::string& words, bool paired) {
  const auto layouts = split(words, '|');
  if (layouts.empty()) return "";
  return layouts.size() == 1 || !paired ? layouts[0] : layouts[1];
}

class TableRead : public Desk, public testing::WithParamInterface<ReadCase> {
 public:
  static void TearDownTestSuite() {
    EXPECT_EQ(library().liveAccesses(), 0) << "accesses are kept";
    Desk::TearDownTestSuite();
  }

 protected:
  void Try() {
    const auto& [row, answer] = GetParam();
    SCOPED_TRACE(std::string(row.address) + " -> " + row.words);
    fill(library(), row.type, row.address, answer.event);
    begin(library(), answer.event);
    // What an LTIME delivers is what its descriptor held before.
    Device& on = row.type == std::string("LTIME") ? new_device(answer.event) : device(answer.event);
    Batch batch = on.batch({RequestBuilder::Read(tag_block(row.type, row.address)),
                            RequestBuilder::Read(tag_block("WORD", kGuard))});
    EXPECT_EQ(output(on, batch), answer.output);
    expect_answer(on);
    end(library());
  }

 private:
  static bool good(Event event) { return event == Event::Aligned || event == Event::Paired; }

  void expect_answer(const Device& on) {
    const auto& [row, answer] = GetParam();
    const auto words = in_layout(row.words, answer.event == Event::Paired);
    if (words == "out of range" && good(answer.event)) {
      EXPECT_THROW(on.input(2), std::out_of_range);
      return;
    }
    const auto records = on.input(2);
    const bool no_data = words == "no data" && good(answer.event);
    const bool has_words = good(answer.event) && !no_data;
    expect_record(records[0], no_data ? "2/5 asked -" : answer.record, kAsked,
                  has_words ? words_of(words) : std::vector<WORD>());
    expect_record(records[1], answer.guard, kAsked + 1, {kGuardValue});
    EXPECT_EQ(state_of(on), answer.loader);
  }
};

std::string name_of(const testing::TestParamInfo<ReadCase>& info) {
  return info.param.name();
}

}  // namespace

TEST_P(TableRead, IsAnswered) {
  Try();
}
INSTANTIATE_TEST_SUITE_P(Reads, TableRead, testing::ValuesIn(read_cases()), name_of);
INSTANTIATE_TEST_SUITE_P(LostConnection, TableRead, testing::ValuesIn(lost_connection_cases()), name_of);

}  // namespace tables
