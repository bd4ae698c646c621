// SPDX-License-Identifier: MIT
#include "simulator/plc/timespan.h"

#include <gtest/gtest.h>

namespace ostravel::plc {
namespace {

using namespace std::chrono_literals;

TEST(TimeSpan, IsANumberAndItsUnit) {
  EXPECT_EQ(parse_time_span("500ms"), 500ms);
  EXPECT_EQ(parse_time_span("2s"), 2s);
  EXPECT_EQ(parse_time_span("0.25s"), 250ms);
  EXPECT_EQ(parse_time_span("3min"), 3min);
  EXPECT_EQ(parse_time_span("0ms"), 0ms);
  EXPECT_EQ(parse_time_span("1440min"), 24h);
}

TEST(TimeSpan, AnythingElseIsNone) {
  for (const auto* text : {"", "5", "s", "ms", "-1s", "+1s", "1 s", "1S", "1m", "1e3s", "nans", "infs",
                           "1441min", "99999999999999999999999ms", "1s2", "1,5s"}) {
    EXPECT_FALSE(parse_time_span(text)) << text;
  }
}

}  // namespace
}  // namespace ostravel::plc
