// SPDX-License-Identifier: MIT
// Two connection threads of one device: never in SetupDevice at once, wherever in the library the first one
// waits.
#include <thread>

#include "tests/threads/plant.h"

namespace {

class TwoThreads : public Plant, public testing::WithParamInterface<QuietLibrary::Place> {
 protected:
  // The first connection thread waits at the place.
  void start_first(int plc) {
    library.hold(GetParam());
    set_up_for(plc);
    poll();
    library.await_arrival(GetParam());
    first_ = library.thread_at(GetParam());
  }
  // The runtime's next call starts another one, which comes to rest before it has called the library.
  void start_second() {
    poll();
    await_connection_threads(2);
    for (const pid_t thread : connection_threads()) {
      if (thread != first_) await_second(thread);
    }
  }
  void expect_value_of(int plc) {
    library.release(GetParam());
    ASSERT_NO_FATAL_FAILURE(poll_until_value_of(plc));
    await_connection_threads(0);
  }

 private:
  void await_second(pid_t thread) {
    // A second one that did not wait would call the library, and not sleep at all.
    for (int times_asleep = 0; times_asleep < 5 && library.setups() == 1; std::this_thread::yield()) {
      times_asleep = is_asleep(thread) ? times_asleep + 1 : 0;
    }
    EXPECT_EQ(library.setups(), 1) << "the second called the library beside the first";
  }

  pid_t first_ = 0;
};

}  // namespace

TEST_P(TwoThreads, SecondForAnotherPlcWaitsAndThenHasItsTurn) {
  start_first(1);
  time_out();
  set_up_for(2);
  start_second();
  expect_value_of(2);
  EXPECT_EQ(library.setups(), 2);
}

TEST_P(TwoThreads, SecondForTheSamePlcWaitsAndThenHasItsTurn) {
  start_first(1);
  time_out();
  set_up_for(1);
  start_second();
  expect_value_of(1);
  EXPECT_EQ(library.setups(), 2) << "the first was overtaken, so what it found does not count";
}

// From Loading on a time-out starts no thread.
TEST_P(TwoThreads, SecondAfterATimeOutAloneHasNothingLeftToDo) {
  if (GetParam() == QuietLibrary::LoadPlc || GetParam() == QuietLibrary::SaveFile) {
    start_first(1);
    time_out();
    poll();
    EXPECT_EQ(connection_threads().size(), 1U);
  } else {
    start_first(1);
    time_out();
    start_second();
  }
  expect_value_of(1);
  EXPECT_EQ(library.setups(), 1);
}

INSTANTIATE_TEST_SUITE_P(AtEachPlace, TwoThreads,
                         testing::Values(QuietLibrary::Parameters, QuietLibrary::Disconnect,
                                         QuietLibrary::Connect, QuietLibrary::Password,
                                         QuietLibrary::LoadFile, QuietLibrary::LoadPlc,
                                         QuietLibrary::SaveFile));
