// SPDX-License-Identifier: MIT
// Closing, re-initialising, timing out, and starting a device anew in each state of its loader, also while
// the connection thread waits in the library.
#include <string>
#include <thread>
#include <tuple>

#include "tests/threads/plant.h"

namespace {

using Place = QuietLibrary::Place;

// Where the device stands when the runtime's call comes.
struct Situation {
  const char* name;
  SymbolsLoader::loader_status_ state;
  int waits_at;  // of Place; kNowhere when no connection thread is at work
};
constexpr int kNowhere = -1;
constexpr Situation kSituations[] = {
    {"NotStarted", SymbolsLoader::Idle, kNowhere},
    {"SettingParameters", SymbolsLoader::Idle, QuietLibrary::Parameters},
    {"CleaningUp", SymbolsLoader::Idle, QuietLibrary::Disconnect},
    {"Connecting", SymbolsLoader::Idle, QuietLibrary::Connect},
    {"LoggingIn", SymbolsLoader::Idle, QuietLibrary::Password},
    {"LoadingTheFile", SymbolsLoader::Idle, QuietLibrary::LoadFile},
    {"LoadingFromThePlc", SymbolsLoader::Loading, QuietLibrary::LoadPlc},
    {"SavingTheFile", SymbolsLoader::Loading, QuietLibrary::SaveFile},
    {"Connected", SymbolsLoader::Success, kNowhere},
    {"Failed", SymbolsLoader::Error, kNowhere},
    {"Disconnected", SymbolsLoader::Disconnect, kNowhere},
};

class InEachSituation : public Plant, public testing::WithParamInterface<Situation> {
 protected:
  static constexpr int kFirst = 1;
  static constexpr int kNext = 2;

  void SetUp() override {
    set_up_for(kFirst);
    const int place = GetParam().waits_at;
    if (place != kNowhere) {
      library.hold(static_cast<Place>(place));
      poll();
      library.await_arrival(static_cast<Place>(place));
    } else if (GetParam().state == SymbolsLoader::Error) {
      library.set_plc_fails(true);
      poll();
      while (loader().loader_state != SymbolsLoader::Error) std::this_thread::yield();
      library.set_plc_fails(false);
    } else if (GetParam().state != SymbolsLoader::Idle) {
      poll_until_value_of(kFirst);
      loader().loader_state = GetParam().state;
    }
    ASSERT_EQ(loader().loader_state, GetParam().state);
  }

  void let_the_thread_go_on() {
    if (GetParam().waits_at != kNowhere) library.release(static_cast<Place>(GetParam().waits_at));
  }
};

}  // namespace

TEST_P(InEachSituation, ClosedDeviceLeavesItsThreadWhatItWorksOn) {
  KORVALE_DRV_CloseDevice(0, handle);
  // What is freed and allocated anew would show in what the thread does next.
  const std::vector<std::string> others(1000, std::string(100, 'x'));
  let_the_thread_go_on();
  await_connection_threads(0);
  EXPECT_EQ(others.back(), std::string(100, 'x'));
}

TEST_P(InEachSituation, DeviceStartedInItsPlaceHasAConnectionOfItsOwn) {
  KORVALE_DRV_CloseDevice(0, handle);
  DWORD* const closed = handle;
  KORVALE_DRV_StartDeviceEx(0, &handle, file.data(), 0);
  ASSERT_NE(handle, closed);
  set_up_for(kNext, kNumber + 1);
  let_the_thread_go_on();
  poll_until_value_of(kNext);
}

TEST_P(InEachSituation, ReinitialisedDeviceServesTheNewPlc) {
  set_up_for(kNext);
  EXPECT_EQ(loader().loader_state, SymbolsLoader::Idle);
  poll_times(10, kNext);
  let_the_thread_go_on();
  // The lazy start is due after a re-initialisation, a time-out or not.
  poll_until_value_of(kNext);
}

TEST_P(InEachSituation, ReinitialisedManyTimesServesTheLastPlc) {
  for (int round = 0; round < 10; ++round) {
    set_up_for(100 + round);
    poll_times(1, 100 + round);
    time_out();
  }
  set_up_for(kNext);
  poll_times(10, kNext);
  let_the_thread_go_on();
  poll_until_value_of(kNext);
}

TEST_P(InEachSituation, TimeOutKeepsTheStateAndTheConnectionGoesOn) {
  time_out();
  EXPECT_EQ(loader().loader_state, GetParam().state);
  poll_times(10, kFirst);
  let_the_thread_go_on();
  if (GetParam().waits_at != kNowhere) await_connection_threads(0);
  if (GetParam().state == SymbolsLoader::Error || GetParam().state == SymbolsLoader::Disconnect) {
    EXPECT_EQ(poll().value, kUntouchedWord) << "only a re-initialisation leads out of it";
  } else {
    poll_until_value_of(kFirst);
  }
}

TEST_P(InEachSituation, CloseCommandAndCheckAreSafe) {
  int response_length = 0;
  KORVALE_DRV_GetCloseCmd(&response_length, 0);
  FRAME_DATA frame{};
  EXPECT_EQ(KORVALE_DRV_CheckInitCmdResponseEx2(&frame, 0, &handle),
            GetParam().state == SymbolsLoader::Success || GetParam().state == SymbolsLoader::Disconnect);
}

INSTANTIATE_TEST_SUITE_P(Loader, InEachSituation, testing::ValuesIn(kSituations),
                         [](const auto& situation) { return std::string(situation.param.name); });
