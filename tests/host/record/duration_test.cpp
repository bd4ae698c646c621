// SPDX-License-Identifier: MIT
#include "host/record/duration.h"

#include <gtest/gtest.h>

namespace ostravel::host::record {
namespace {

using namespace std::chrono_literals;

TEST(Duration, HasAUnitOrIsMilliseconds) {
  EXPECT_EQ(parse_duration("250"), 250ms);
  EXPECT_EQ(parse_duration("500ms"), 500ms);
  EXPECT_EQ(parse_duration("1.5s"), 1500ms);
  EXPECT_EQ(parse_duration("2m"), 2min);
  EXPECT_EQ(parse_duration("8h"), 8h);
  EXPECT_EQ(parse_duration("1d"), 24h);
}

TEST(Duration, RefusesWhatIsNoneOrTooShortOrTooLong) {
  for (const auto* text : {"", "s", "5 s", "5 x", "-1s", "0", "0.1ms", "366d", "inf", "nan"}) {
    EXPECT_FALSE(parse_duration(text)) << text;
  }
}

TEST(Duration, AsAnOptionSaysHowToWriteIt) {
  CLI::App app;
  auto time = 1000ms;
  add_duration(app, "--for", time, "how long");
  app.parse("--for 3s");
  EXPECT_EQ(time, 3s);
  try {
    app.parse("--for soon");
    FAIL() << "taken";
  } catch (const CLI::ParseError& error) {
    EXPECT_STREQ(error.what(),
                 "--for: 'soon' is no length of time from 1ms to 365d; write it like 500ms, 10s, 5m, 1h");
  }
}

}  // namespace
}  // namespace ostravel::host::record
