// SPDX-License-Identifier: MIT
// A device from start to close, in the runtime's order of calls.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

namespace {

void await_success(const Device& device) {
  while (device.loader().loader_state != SymbolsLoader::Success) std::this_thread::yield();
}

BOOL connected(const Device& device) {
  DWORD* handle = device.handle();
  FRAME_DATA frame{};
  return KORVALE_DRV_CheckInitCmdResponseEx2(&frame, 0, &handle);
}

const RequestBuilder kRead = RequestBuilder::Read(TagBlock(DT_INT));
const RequestBuilder kWrite = RequestBuilder::WordWrite(TagBlock(DT_INT), {7});

}  // namespace

TEST(DeviceLife, OnlineFromStartToClose) {
  FakeLibrary library;
  library.cache_file_loads = true;
  library.add("Motor", Item::Int16(1234));
  Device device(ProjectFile().tag("Motor").password(true, "secret"));
  device.address(5);
  EXPECT_EQ(connected(device), 0);

  EXPECT_EQ(status_of(device.output({kRead})), "0/8/0");
  await_success(device);
  EXPECT_EQ(connected(device), 0) << "connected only when a filter has seen data";
  const auto records = device.input(1);
  EXPECT_EQ(status_of(records[0]), "0/5");
  EXPECT_EQ(records[0].wData[0], 1234);
  EXPECT_EQ(connected(device), 1);
  EXPECT_EQ(library.reads().at(0).connection, 5);
  EXPECT_EQ(library.count("AGL_SetPassword"), 1);

  KORVALE_DRV_Timeout(0, device.handle());
  EXPECT_EQ(connected(device), 0);
  EXPECT_EQ(status_of(device.output({kWrite})), "0/8/0");
  EXPECT_EQ(status_of(device.input(1, false)[0]), "0/5");
  EXPECT_EQ(connected(device), 1) << "an accepted write connects too";
  EXPECT_EQ(library.count("AGL_OpenDevice"), 1) << "the loader was not idle: no second thread";

  int response_length = 0;
  EXPECT_EQ(KORVALE_DRV_GetCloseCmd(&response_length, 0).nLength, 0);
  const auto calls = library.calls().size();
  KORVALE_DRV_CloseDevice(0, device.handle());
  EXPECT_EQ(library.calls().size(), calls) << "the connection is left to the library's unloading";
}

TEST(DeviceLife, PollingWhileTheSymbolsLoadIsHarmless) {
  FakeLibrary library;
  library.add("Motor", Item::Int16(5));
  Device device(ProjectFile().tag("Motor"));
  device.address(5);
  std::atomic<bool> answered{false};
  // While the symbols are on their way the runtime goes on asking.
  library.onCall("AGL_Symbolic_LoadAGLinkSymbolsFromPLC", [&] {
    while (!answered) std::this_thread::yield();
  });
  device.output({kRead});
  while (device.loader().loader_state != SymbolsLoader::Loading) std::this_thread::yield();
  EXPECT_EQ(status_of(device.input(1)[0]), "2/5");
  answered = true;
  await_success(device);
  EXPECT_EQ(status_of(device.input(1)[0]), "0/5");
}

TEST(DeviceLife, TwoDevicesHaveTheirOwnConnections) {
  FakeLibrary library;
  library.cache_file_loads = true;
  library.add("Motor", Item::Int16(1));
  library.add("Valve", Item::Int16(2));
  Device one(ProjectFile().tag("Motor"));
  one.address(3);
  Device other(ProjectFile().tag("Valve"));
  other.address(4);
  one.output({kRead});
  other.output({kRead});
  await_success(one);
  await_success(other);
  EXPECT_EQ(one.input(1)[0].wData[0], 1);
  EXPECT_EQ(other.input(1)[0].wData[0], 2);
  EXPECT_EQ(library.reads().at(0).connection, 3);
  EXPECT_EQ(library.reads().at(1).connection, 4);
}

TEST(DeviceLife, SimulatedNeedsNoLibrary) {
  FakeLibrary library;
  Device device(ProjectFile().tag("Motor"), Device::Simulated);
  device.address(5);
  device.output({kWrite});
  EXPECT_EQ(status_of(device.input(1, false)[0]), "0/5");
  EXPECT_EQ(device.read({kRead})[0].wData[0], 7);
  EXPECT_EQ(connected(device), 0) << "nothing is connected";
  EXPECT_TRUE(library.log().empty());
}
