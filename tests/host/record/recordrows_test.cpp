// SPDX-License-Identifier: MIT
#include "host/record/recordrows.h"

#include <gtest/gtest.h>

namespace ostravel::host::record {
namespace {

using nlohmann::json;

Moment second(int number) {
  return Moment(std::chrono::seconds(1'709'644'455 + number));
}

Sample ok(json value) {
  return {std::move(value), kStatusOk};
}

const Sample kNone{nullptr, "no data"};

TEST(RecordRows, WideIsARowAMomentAndACellATag) {
  RecordRows rows(Form::Wide, {"Speed", "Names", "A,B", "Text"}, false);
  EXPECT_EQ(rows.header(), "time,status,Speed,Names,\"A,B\",Text\n");
  EXPECT_EQ(rows.rows({second(0), "ok", {ok(-5), ok({1, 2}), ok(true), ok("a \"b\"")}}),
            "2024-03-05T13:14:15.000Z,ok,-5,\"[1,2]\",true,\"a \"\"b\"\"\"\n");
  EXPECT_EQ(rows.written(), 1U);
}

TEST(RecordRows, WideCellWithoutDataIsEmptyAndCounted) {
  RecordRows rows(Form::Wide, {"A", "B"}, false);
  EXPECT_EQ(rows.rows({second(0), "ok", {ok(1.5), kNone}}), "2024-03-05T13:14:15.000Z,1 without data,1.5,\n");
}

TEST(RecordRows, AGapIsARowWithoutValues) {
  RecordRows rows(Form::Wide, {"A", "B"}, false);
  rows.rows({second(0), "ok", {ok(1), ok(2)}});
  EXPECT_EQ(rows.gap(second(1), "connection lost"), "2024-03-05T13:14:16.000Z,connection lost,,\n");
  rows.gap(second(2), "connection lost");
  rows.rows({second(3), "ok", {ok(1), ok(2)}});
  EXPECT_EQ(rows.gaps(), 1U);
}

TEST(RecordRows, LongIsARowATag) {
  RecordRows rows(Form::Long, {"A", "B"}, false);
  EXPECT_EQ(rows.header(), "time,tag,value,status\n");
  EXPECT_EQ(rows.rows({second(0), "ok", {ok(1), kNone}}),
            "2024-03-05T13:14:15.000Z,A,1,ok\n2024-03-05T13:14:15.000Z,B,,no data\n");
  EXPECT_EQ(rows.written(), 2U);
}

TEST(RecordRows, OnChangeLeavesOutWhatIsAsBefore) {
  RecordRows wide(Form::Wide, {"A", "B"}, true);
  EXPECT_NE(wide.rows({second(0), "ok", {ok(1), ok(2)}}), "");
  EXPECT_EQ(wide.rows({second(1), "ok", {ok(1), ok(2)}}), "");
  EXPECT_NE(wide.rows({second(2), "ok", {ok(1), ok(3)}}), "");
  EXPECT_NE(wide.gap(second(3), "connection lost"), "");
  EXPECT_EQ(wide.gap(second(4), "connection lost"), "");
  EXPECT_NE(wide.rows({second(5), "ok", {ok(1), ok(3)}}), "");
  EXPECT_EQ(wide.written(), 4U);

  RecordRows narrow(Form::Long, {"A", "B"}, true);
  narrow.rows({second(0), "ok", {ok(1), ok(2)}});
  EXPECT_EQ(narrow.rows({second(1), "ok", {ok(1), ok(3)}}), "2024-03-05T13:14:16.000Z,B,3,ok\n");
}

}  // namespace
}  // namespace ostravel::host::record
