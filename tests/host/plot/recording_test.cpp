// SPDX-License-Identifier: MIT
#include "host/plot/recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/record/recordrows.h"
#include "host/usererror.h"
#include "tests/host/plot/seriesof.h"

namespace ostravel::host::plot {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr const char* kWide =
    "time,status,Speed,Running,Name,List\n"
    "2024-03-05T13:14:15.000Z,ok,1.5,false,a,\"[1,2]\"\n"
    "2024-03-05T13:14:16.000Z,connection lost,,,,\n"
    "2024-03-05T13:14:17.000Z,ok,-2,true,b,\"[1,2]\"\n";

std::vector<double> values(const Series& series) {
  std::vector<double> found;
  for (const auto& point : series.points) {
    found.push_back(point.is_gap() ? 9999 : point.value);
  }
  return found;
}

std::string error_of(std::string_view text, const std::vector<std::string>& names = {}) {
  try {
    read_recording(text, "a.csv", names);
  } catch (const UserError& error) {
    return error.what();
  }
  return "nothing was thrown";
}

TEST(Recording, WideFormIsReadByColumn) {
  const auto series = read_recording(kWide, "a.csv", {"Running", "Speed"});
  ASSERT_THAT(series, SizeIs(2));
  EXPECT_EQ(series[0].name, "Running");
  EXPECT_TRUE(series[0].stepped);
  EXPECT_THAT(values(series[0]), ElementsAre(0, 9999, 1));
  EXPECT_FALSE(series[1].stepped);
  EXPECT_THAT(values(series[1]), ElementsAre(1.5, 9999, -2));
  EXPECT_EQ(series[1].points[2].time, second(2));
}

TEST(Recording, WithoutNamesAllNumbersAreTaken) {
  const auto series = read_recording(kWide, "a.csv", {});
  ASSERT_THAT(series, SizeIs(2));
  EXPECT_EQ(series[0].name, "Speed");
  EXPECT_EQ(series[1].name, "Running");
}

TEST(Recording, LongFormIsReadByTag) {
  const auto series = read_recording(
      "time,tag,value,status\n"
      "2024-03-05T13:14:15.000Z,A,1,ok\n"
      "2024-03-05T13:14:15.000Z,B,5,ok\n"
      "2024-03-05T13:14:16.000Z,A,,no data\n"
      "2024-03-05T13:14:17.000Z,A,3,ok\n",
      "a.csv", {"A"});
  ASSERT_THAT(series, SizeIs(1));
  EXPECT_THAT(values(series[0]), ElementsAre(1, 9999, 3));
}

TEST(Recording, ReadsWhatRecordWrites) {
  for (const auto form : {record::Form::Wide, record::Form::Long}) {
    record::RecordRows rows(form, {"Plant.\"Tank, 1\".Level", "B"}, false);
    auto text = rows.header();
    text += rows.rows({second(0), "ok", {{0.1, "ok"}, {7, "ok"}}});
    text += rows.gap(second(1), "connection lost");
    text += rows.rows({second(2), "ok", {{"inf", "ok"}, {nullptr, "no data"}}});
    const auto series = read_recording(text, "a.csv", {"Plant.\"Tank, 1\".Level", "B"});
    EXPECT_THAT(values(series[0]), ElementsAre(0.1, 9999, 9999));
    EXPECT_THAT(values(series[1]), ElementsAre(7, 9999, 9999));
  }
}

TEST(Recording, ARowThatIsStillBeingWrittenIsLeftOut) {
  EXPECT_THAT(
      values(read_recording("time,status,A\n2024-03-05T13:14:15.000Z,ok,1\n2024-03-05T13:14:16.000Z,ok,1",
                            "a.csv", {"A"})[0]),
      ElementsAre(1));
}

TEST(Recording, RowsAreInOrderOfTimeEvenIfTheClockWasNot) {
  const auto series = read_recording(
      "time,status,A\n2024-03-05T13:14:17Z,ok,3\n2024-03-05T13:14:15Z,ok,1\n2024-03-05T13:14:16Z,ok,2\n",
      "a.csv", {});
  EXPECT_THAT(values(series[0]), ElementsAre(1, 2, 3));
}

TEST(Recording, MistakesNameTheirPlace) {
  EXPECT_EQ(error_of(kWide, {"Sped"}), "a.csv: has no tag Sped; it has Speed, Running, Name, List");
  EXPECT_EQ(error_of(kWide, {"Name"}), "a.csv:2:39: 'a' of Name is no number");
  EXPECT_EQ(error_of(kWide, {"List"}),
            "a.csv:2:41: List is an array; record one element of it, as in List[0]");
  EXPECT_EQ(
      error_of("name,type\nA,INT\n"),
      "a.csv:1:1: is no recording; its first line must be time,status,TAG,... or time,tag,value,status");
  EXPECT_EQ(
      error_of(""),
      "a.csv:1:1: is no recording; its first line must be time,status,TAG,... or time,tag,value,status");
  EXPECT_EQ(error_of("time,status,A\nnow,ok,1\n"),
            "a.csv:2:1: 'now' is no time; write it like 2024-03-05T13:14:15.500Z");
  EXPECT_EQ(error_of("time,status,A\n2024-03-05T13:14:15Z,ok\n"),
            "a.csv:2:1: 2 cells, and the first line has 3");
}

TEST(Recording, CellsOfAThirdOfAnythingDoNotPass) {
  EXPECT_EQ(error_of("time,status,A\n2024-03-05T13:14:15Z,ok,1.5x\n", {"A"}),
            "a.csv:2:25: '1.5x' of A is no number");
  EXPECT_THAT(values(read_recording("time,status,A\n2024-03-05T13:14:15Z,ok,1e999\n", "a.csv", {"A"})[0]),
              ElementsAre(9999));
}

}  // namespace
}  // namespace ostravel::host::plot
