// SPDX-License-Identifier: MIT
#include "host/watch/wording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/watch/samples.h"

namespace ostravel::host::watch {
namespace {

using nlohmann::json;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::HasSubstr;

std::string shown(const std::string& type, json value) {
  auto model = model_of({{"A", type}});
  deliver(model, 0, std::move(value));
  return shown_value(model.row(0));
}

TEST(Wording, RealHasNoMoreDigitsThanItHas) {
  EXPECT_EQ(shown("REAL", static_cast<double>(9.549151F)), "9.549151");
  EXPECT_EQ(shown("REAL", json::array({0.5, static_cast<double>(0.1F)})), "[0.5,0.1]");
  EXPECT_EQ(shown("LREAL", 2.718281828459045), "2.718281828459045");
}

TEST(Wording, OtherValuesAreAsReadPrintsThem) {
  EXPECT_EQ(shown("STRING", "a\nb"), "\"a\\nb\"");
  EXPECT_EQ(shown("INT", json{1, 2}), "[1,2]");
  EXPECT_EQ(shown("REAL", "inf"), "\"inf\"");
  EXPECT_EQ(shown_value(model_of({{"A", "INT"}}).row(0)), "-");
}

TEST(Wording, AgeFitsFourCells) {
  EXPECT_EQ(age_text(std::nullopt), "-");
  EXPECT_EQ(age_text(milliseconds(999)), "0s");
  EXPECT_EQ(age_text(seconds(59)), "59s");
  EXPECT_EQ(age_text(seconds(60)), "1m");
  EXPECT_EQ(age_text(seconds(7200)), "2h");
  EXPECT_EQ(age_text(seconds(86400)), "1d");
  EXPECT_EQ(age_text(seconds(86400L * 5000)), "999d");
}

TEST(Wording, RateFitsFourCells) {
  EXPECT_EQ(rate_text(std::nullopt), "-");
  EXPECT_EQ(rate_text(0), "0.0");
  EXPECT_EQ(rate_text(9.94), "9.9");
  EXPECT_EQ(rate_text(9.96), "10");
  EXPECT_EQ(rate_text(12345), "1k+");
}

TEST(Wording, TimesAndCountsForPeople) {
  EXPECT_EQ(time_text(microseconds(432)), "0.4 ms");
  EXPECT_EQ(time_text(microseconds(12'345)), "12 ms");
  EXPECT_EQ(time_text(microseconds(1'500'000)), "1.5 s");
  EXPECT_EQ(time_text(microseconds(60'000'000)), "60 s");
  EXPECT_EQ(count_text(7), "7");
  EXPECT_EQ(count_text(1000), "1,000");
  EXPECT_EQ(count_text(1234567), "1,234,567");
}

TEST(Wording, DeviceThatFailsSaysHowOftenItWasTried) {
  auto device = online("north");
  EXPECT_EQ(device_text(device), "north online");
  device.link = LinkState::Failed;
  device.attempts = 3;
  EXPECT_EQ(device_text(device), "north failed, initialising again (attempt 3)");
  device.name.clear();
  EXPECT_EQ(device_text(device), "127.0.0.1 failed, initialising again (attempt 3)");
}

TEST(Wording, CauseDependsOnTheDevice) {
  auto model = model_of({{"A", "INT"}});
  model.take({0, 2, 5, {}}, kStart);
  EXPECT_EQ(quality_text(model.row(0)), "2 no data");
  EXPECT_THAT(std::string(explain(model.row(0), LinkState::Online).cause), HasSubstr("this tag alone"));
  EXPECT_THAT(std::string(explain(model.row(0), LinkState::Lost).cause),
              HasSubstr("after there had been values"));
}

TEST(Wording, StatusThatNobodyKnowsIsSaidToBeUnknown) {
  auto model = model_of({{"A", "INT"}});
  model.take({0, 77, 5, {}}, kStart);
  EXPECT_EQ(quality_text(model.row(0)), "77 unknown");
  EXPECT_THAT(std::string(explain(model.row(0), LinkState::Online).cause), HasSubstr("not know"));
}

}  // namespace
}  // namespace ostravel::host::watch
