// SPDX-License-Identifier: MIT
#include "host/recovery.h"

#include <gtest/gtest.h>

namespace ostravel::host {
namespace {

using std::chrono::milliseconds;

struct Observed {
  Recovery recovery{"press"};
  Recovery::Clock::time_point now{};

  std::string operator()(LinkState link, std::uint64_t attempts = 0, int pause_ms = 0) {
    const auto line = recovery.observe(link, attempts, milliseconds(pause_ms), now);
    now += milliseconds(500);
    return line.value_or("");
  }
};

TEST(Recovery, NothingIsSaidWhileAllIsWell) {
  Observed observed;
  EXPECT_EQ(observed(LinkState::Connecting), "");
  EXPECT_EQ(observed(LinkState::Loading), "");
  EXPECT_EQ(observed(LinkState::Online), "");
  EXPECT_EQ(observed(LinkState::Online), "");
}

TEST(Recovery, LossAttemptsAndReturnAreALineEach) {
  Observed observed;
  observed(LinkState::Online);
  EXPECT_EQ(observed(LinkState::Lost), "press: connection lost");
  EXPECT_EQ(observed(LinkState::Lost), "");
  EXPECT_EQ(observed(LinkState::Failed, 1, 100),
            "press: still lost; trying again, attempt 1, the next in 0.1 s");
  EXPECT_EQ(observed(LinkState::Connecting, 1, 100), "");
  EXPECT_EQ(observed(LinkState::Failed, 2, 5000),
            "press: still lost; trying again, attempt 2, the next in 5.0 s");
  EXPECT_EQ(observed(LinkState::Online, 2), "press: online again after 2.5 s and 2 attempts");
  EXPECT_EQ(observed(LinkState::Online, 2), "");
}

TEST(Recovery, AttemptsAreCountedFromEachLoss) {
  Observed observed;
  observed(LinkState::Online, 7);
  EXPECT_EQ(observed(LinkState::Failed, 8, 100),
            "press: connection lost; trying again, attempt 1, the next in 0.1 s");
  EXPECT_EQ(observed(LinkState::Online, 8), "press: online again after 0.5 s and 1 attempt");
}

TEST(Recovery, FirstConnectionThatFailsIsToldToo) {
  Observed observed;
  EXPECT_EQ(observed(LinkState::Connecting), "");
  EXPECT_EQ(observed(LinkState::Failed, 1, 100),
            "press: no connection; trying again, attempt 1, the next in 0.1 s");
  EXPECT_EQ(observed(LinkState::Online, 1), "press: online after 1.0 s and 1 attempt");
}

}  // namespace
}  // namespace ostravel::host
