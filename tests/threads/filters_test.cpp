// SPDX-License-Identifier: MIT
// The filters at full speed beside a connection thread that connects, is slow, fails, and is overtaken. The
// thread sanitizer looks for what the two share without order; the values tell whether a filter saw half a
// connection.
#include <random>
#include <thread>

#include "tests/threads/plant.h"

namespace {

class FiltersAtFullSpeed : public Plant {
 protected:
  static int plc_of(int round) { return 1 + round % 250; }
  void let_it_fail() {
    library.set_plc_fails(true);
    while (loader().loader_state != SymbolsLoader::Error) ASSERT_NO_FATAL_FAILURE(poll_times(1, -1));
    library.set_plc_fails(false);
  }
};

}  // namespace

TEST_F(FiltersAtFullSpeed, WhileItConnectsFromTheCacheFile) {
  library.set_cache_file(true);
  for (int round = 0; round < 50; ++round) {
    set_up_for(plc_of(round));
    ASSERT_NO_FATAL_FAILURE(poll_until_value_of(plc_of(round)));
  }
}

TEST_F(FiltersAtFullSpeed, WhileItLoadsTheSymbolsSlowly) {
  library.set_slowness(20);
  for (int round = 0; round < 30; ++round) {
    set_up_for(plc_of(round));
    ASSERT_NO_FATAL_FAILURE(poll_until_value_of(plc_of(round)));
  }
  EXPECT_GT(library.writes(), 0);
}

TEST_F(FiltersAtFullSpeed, WhileItFailsAndIsSetUpAnew) {
  for (int round = 0; round < 30; ++round) {
    set_up_for(plc_of(round));
    ASSERT_NO_FATAL_FAILURE(let_it_fail());
    EXPECT_EQ(poll().value, kUntouchedWord);
    time_out();
    set_up_for(plc_of(round));
    ASSERT_NO_FATAL_FAILURE(poll_until_value_of(plc_of(round)));
  }
}

TEST_F(FiltersAtFullSpeed, WhileItIsOvertakenInTheLibrary) {
  for (int round = 0; round < 20; ++round) {
    library.hold(QuietLibrary::LoadPlc);
    set_up_for(plc_of(round));
    ASSERT_NO_FATAL_FAILURE(poll_times(1, -1));
    library.await_arrival(QuietLibrary::LoadPlc);
    ASSERT_NO_FATAL_FAILURE(poll_times(20, -1));
    time_out();
    set_up_for(plc_of(round + 1));
    ASSERT_NO_FATAL_FAILURE(poll_times(20, -1));
    library.release(QuietLibrary::LoadPlc);
    ASSERT_NO_FATAL_FAILURE(poll_until_value_of(plc_of(round + 1)));
  }
}

// Nobody waits for anybody: the runtime's calls fall where they fall.
TEST_F(FiltersAtFullSpeed, WhateverHappensInWhateverOrder) {
  std::minstd_rand chance(20);  // NOLINT(cert-msc51-cpp): the same each time
  int plc = 1;
  for (int round = 0; round < 500; ++round) {
    std::this_thread::yield();  // the other thread may have this processor
    switch (chance() % 8) {
      case 0:
        library.set_cache_file(chance() % 2 == 0);
        break;
      case 1:
        library.set_plc_fails(chance() % 2 == 0);
        break;
      case 2:
        library.set_slowness(static_cast<int>(chance() % 40));
        break;
      case 3:
        time_out();
        break;
      case 4:
        // The value of one PLC under another one's name would show.
        plc = plc_of(static_cast<int>(chance() % 1000));
        time_out();
        set_up_for(plc);
        break;
      default:
        ASSERT_NO_FATAL_FAILURE(poll_times(static_cast<int>(chance() % 50), plc));
    }
  }
  library.set_plc_fails(false);
  set_up_for(plc);
  ASSERT_NO_FATAL_FAILURE(poll_until_value_of(plc));
}

// The state alone orders what the two threads share.
TEST_F(FiltersAtFullSpeed, TreeAndWhatIsBehindItAreThereOnceTheStateIsSuccess) {
  for (int round = 0; round < 50; ++round) {
    library.set_cache_file(round % 2 == 0);
    set_up_for(plc_of(round));
    poll();
    while (loader().loader_state != SymbolsLoader::Success) std::this_thread::yield();
    const HandleType seen = loader().root_schema_node;
    ASSERT_EQ(value_of_tree(seen), plc_of(round));
  }
}
