// SPDX-License-Identifier: MIT
// Every row of offline*.def in every event: writes to a simulated device, then a read. Nothing that happens
// to the connection shows.
#include <gtest/gtest.h>

#include "tests/tables/address.h"
#include "tests/tables/desk.h"

namespace tables {
namespace {

class TableOffline : public Desk, public testing::WithParamInterface<OfflineCase> {};

constexpr const char* kUntouched = " 165 -1515870811";

}  // namespace

TEST_P(TableOffline, IsAnsweredWithoutThePlc) {
  const auto& [row, answer] = GetParam();
  SCOPED_TRACE(std::string(row.writes) + "; " + row.address + " -> " + row.words);
  library().clearLog();
  Device& on = simulated_device(answer.event);
  for (const auto& step : split(row.writes, ';')) {
    Batch batch = on.batch({write_step(row.type, step)});
    EXPECT_EQ(output(on, batch), std::string("0/8/0") + kUntouched) << "a write leaves the request alone";
    expect_record(on.input(1, false).at(0), "0/5 0 -", 0, {});
  }
  Batch batch = on.batch({RequestBuilder::Read(tag_block(row.type, row.address)),
                          RequestBuilder::Read(tag_block("WORD", kGuard))});
  EXPECT_EQ(output(on, batch), "0/8/0 0 0");
  const auto records = on.input(2);
  expect_record(records[0], answer.record, kAsked, words_of(row.words));
  expect_record(records[1], answer.record, kAsked + 1, {0});
  EXPECT_TRUE(library().log().empty()) << "the library was called";
}
INSTANTIATE_TEST_SUITE_P(Offline, TableOffline, testing::ValuesIn(offline_cases()),
                         [](const auto& one) { return one.param.name(); });

}  // namespace tables
