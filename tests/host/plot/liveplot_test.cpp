// SPDX-License-Identifier: MIT
#include "host/plot/liveplot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/usererror.h"
#include "tests/host/plot/seriesof.h"
#include "tests/host/scratch.h"

namespace ostravel::host::plot {
namespace {

using namespace std::chrono_literals;
using testing::SizeIs;

record::Round round(double at, const nlohmann::json& value) {
  return {second(at), "ok", {{value, "ok"}}};
}

Selection selection(const char* type, std::uint16_t count = 1, std::optional<std::int32_t> first = {}) {
  Tag tag;
  tag.name = "A";
  tag.type = find_tag_type(type);
  tag.count = count;
  tag.first = first;
  return {"A", 0, tag, std::nullopt};
}

std::string refusal(const Selection& selection) {
  try {
    require_number(selection, selection.text);
  } catch (const UserError& error) {
    return error.what();
  }
  return "";
}

TEST(LiveSeries, KeepsTheWindowOnly) {
  LiveSeries live({series_of("A", {})}, 10s);
  for (int i = 0; i <= 100; ++i) {
    live.add(round(i, i));
  }
  const auto& points = live.series()[0].points;
  ASSERT_THAT(points, SizeIs(11));
  EXPECT_EQ(points.front().value, 90);
  EXPECT_EQ(points.back().value, 100);
}

TEST(LiveSeries, ALossIsAGap) {
  LiveSeries live({series_of("A", {})}, 10s);
  live.add(round(0, nullptr));
  EXPECT_FALSE(live.has_values());
  live.add(round(1, true));
  EXPECT_TRUE(live.has_values());
  EXPECT_TRUE(live.series()[0].points[0].is_gap());
  EXPECT_EQ(live.series()[0].points[1].value, 1);
}

TEST(LiveSeries, BeginsAnewWhenTheClockIsPutBack) {
  LiveSeries live({series_of("A", {})}, 10s);
  live.add(round(5000, 1));
  live.add(round(0, 2));
  EXPECT_THAT(live.series()[0].points, SizeIs(1));
}

TEST(LiveSeries, OnlySingleNumbersCanBePlotted) {
  EXPECT_EQ(refusal(selection("INT")), "");
  EXPECT_EQ(refusal(selection("BOOL")), "");
  EXPECT_EQ(refusal(selection("STRING", 8)), "A is a text; plot shows numbers");
  EXPECT_EQ(refusal(selection("INT", 6, 1)), "A is an array; name one element of it, as in A[1]");
  auto element = selection("INT", 1, 3);
  element.text = "A[3]";
  EXPECT_EQ(refusal(element), "");
}

TEST(LiveLines, AreDrawnOverTheOldOnes) {
  const Scratch scratch;
  std::FILE* file = std::fopen(scratch.path("out").c_str(), "w");
  LiveLines lines(file);
  lines.draw({"one", "two"});
  lines.draw({"three"});
  std::fclose(file);
  EXPECT_EQ(scratch.read("out"), "one\033[K\ntwo\033[K\n\033[J\033[2A\rthree\033[K\n\033[J");
}

}  // namespace
}  // namespace ostravel::host::plot
