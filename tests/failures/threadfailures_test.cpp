// SPDX-License-Identifier: MIT
// The connection thread that cannot be started.
#include <gmock/gmock.h>

#include "tests/failures/online.h"

using injection::Armed;
using injection::Kind;
using testing::ElementsAreArray;

using ThreadFailures = Online;

TEST_F(ThreadFailures, NextOutputCallStartsTheThreadThatCouldNotBeStarted) {
  const std::size_t count = read_tags().size();
  std::vector<std::string> ask_again(count, "13/5/-");
  ask_again[0] = "13/5/0";
  Plant plant;
  Runtime& runtime = plant.runtime;
  runtime.bring_up();
  {
    const Armed armed(Kind::Thread, 1);
    EXPECT_EQ(runtime.output(read_requests()), kFrame);
    EXPECT_TRUE(armed.hit());
  }
  EXPECT_FALSE(injection::run_started_thread());
  EXPECT_THAT(runtime.input(static_cast<int>(count)), ElementsAreArray(ask_again));

  EXPECT_EQ(runtime.output(read_requests()), kFrame);
  ASSERT_TRUE(injection::run_started_thread());
  EXPECT_THAT(poll(runtime), ElementsAreArray(read_answers()));
}
