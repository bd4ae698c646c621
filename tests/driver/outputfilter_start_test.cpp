// SPDX-License-Identifier: MIT
// What the output filter does before it looks at a tag: failed loader, lazy start, connection thread.
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cstring>
#include <thread>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

namespace {

class OutputStart : public testing::Test {
 protected:
  // Until the connection thread has said its last word to the library; ctest bounds the wait.
  void await(SymbolsLoader::loader_status_ state) const {
    while (device.loader().loader_state != state) std::this_thread::yield();
  }
  FRAME_DATA output() { return device.output({RequestBuilder::Read(TagBlock(DT_INT))}); }

  FakeLibrary library;
  Device device{ProjectFile().tag("Motor")};
};

bool no_thread(const Device& device) {
  return pthread_equal(device.data().thread, pthread_t{}) != 0;
}

}  // namespace

TEST_F(OutputStart, FirstCallStartsTheConnectionThreadOfAnIdleDevice) {
  library.cache_file_loads = true;
  std::atomic<bool> detached{false};
  std::atomic<bool> same_thread{true};
  pthread_t worker{};
  const auto runtime_thread = pthread_self();
  library.onCall("AGL_OpenDevice", [&] {
    pthread_attr_t attributes;
    int state = PTHREAD_CREATE_JOINABLE;
    pthread_getattr_np(pthread_self(), &attributes);
    pthread_attr_getdetachstate(&attributes, &state);
    pthread_attr_destroy(&attributes);
    detached = state == PTHREAD_CREATE_DETACHED;
    worker = pthread_self();
    same_thread = pthread_equal(pthread_self(), runtime_thread) != 0;
  });
  device.address(9);
  auto& data = device.data();
  data.pGCmdQueue = nullptr;
  data.GTotalStep = 5;
  data.GCurrentStep = 4;
  data.GCmdCounts = 3;
  data.GCacheBitArray = TRUE;
  const auto before = GetCurSystemMS_Tick();

  const auto frame = output();
  await(SymbolsLoader::Success);
  EXPECT_EQ(status_of(frame), "0/8/0");
  EXPECT_TRUE(detached);
  EXPECT_FALSE(same_thread);
  EXPECT_NE(pthread_equal(data.thread, worker), 0) << "its handle is kept";
  EXPECT_TRUE(data.bIsInitDevice);
  EXPECT_EQ(device.loader().RemoteIP, "192.168.1.10");
  EXPECT_LE(data.LOADER_PROJECT - before, GetCurSystemMS_Tick() - before);
  EXPECT_EQ(data.GCurrentStep, 0U);
  EXPECT_EQ(data.GTotalStep, 1U) << "cleared, then one step packed";
  EXPECT_EQ(data.GCmdCounts, 1U);
  EXPECT_EQ(data.GCacheBitArray, FALSE);

  ASSERT_EQ(library.parametersSet().size(), 1U);
  const auto bytes = library.parametersSet()[0].bytes;
  EXPECT_EQ(library.parametersSet()[0].device, 9);
  EXPECT_STREQ(reinterpret_cast<const char*>(&bytes[32]), "192.168.1.10");
}

TEST_F(OutputStart, FurtherCallsStartNoSecondThread) {
  library.cache_file_loads = true;
  device.address(9);
  output();
  await(SymbolsLoader::Success);
  const auto tick = device.data().LOADER_PROJECT = 1;
  // An idle loader alone does not bring the thread back.
  device.loader().loader_state = SymbolsLoader::Idle;
  device.loader().RemoteIP = "kept";
  output();
  EXPECT_EQ(device.data().LOADER_PROJECT, tick);
  EXPECT_EQ(device.loader().RemoteIP, "kept");
  EXPECT_EQ(library.count("AGL_OpenDevice"), 1);
}

TEST_F(OutputStart, EveryConnectionThreadEndsInErrorWhenThePlcCannotBeReached) {
  library.fail("AGL_Symbolic_LoadAGLinkSymbolsFromPLC", -5);
  device.address(9);
  output();
  await(SymbolsLoader::Error);
  while (library.count("AGL_GetErrorMsg") < 2) std::this_thread::yield();
  EXPECT_EQ(library.count("AGL_Symbolic_LoadAGLinkSymbolsFromPLC"), 1);
}

TEST_F(OutputStart, LoaderThatIsNotIdleGetsNoThread) {
  for (auto state : {SymbolsLoader::Loading, SymbolsLoader::Success, SymbolsLoader::Disconnect}) {
    SCOPED_TRACE(static_cast<int>(state));
    Device other(ProjectFile().tag("Motor"));
    other.address(9);
    other.loader().loader_state = state;
    other.loader().RemoteIP = "kept";
    other.data().GTotalStep = 7;
    other.data().GCurrentStep = 7;
    other.data().GCacheBitArray = TRUE;
    other.output({RequestBuilder::Read(TagBlock(DT_INT))});
    EXPECT_TRUE(no_thread(other));
    EXPECT_EQ(other.loader().RemoteIP, "kept");
    EXPECT_TRUE(other.data().bIsInitDevice);
    EXPECT_NE(other.data().LOADER_PROJECT, 0U);
    EXPECT_EQ(other.data().GTotalStep, 1U);
    EXPECT_EQ(other.data().GCurrentStep, 0U);
    EXPECT_EQ(other.data().GCacheBitArray, FALSE);
  }
  EXPECT_TRUE(library.log().empty());
}

TEST_F(OutputStart, LazyStartDropsAQueueLeftOver) {
  device.loader().loader_state = SymbolsLoader::Success;
  device.data().pGCmdQueue = &device.data().GCmdDesc[30];
  device.data().GCmdCounts = 9;
  output();
  EXPECT_EQ(device.data().pGCmdQueue, &device.data().GCmdDesc[0]);
  EXPECT_EQ(device.data().GCmdCounts, 1U);
}

TEST_F(OutputStart, TimeoutBringsNoThreadWhileTheLoaderIsNotIdle) {
  device.connected();
  KORVALE_DRV_Timeout(0, device.handle());
  output();
  EXPECT_TRUE(no_thread(device));
  EXPECT_TRUE(device.data().bIsInitDevice);
  EXPECT_NE(device.data().LOADER_PROJECT, 0U);
  EXPECT_TRUE(library.log().empty());
}

TEST_F(OutputStart, TimeoutAndInitCommandBringTheThreadBack) {
  library.cache_file_loads = true;
  device.address(9);
  output();
  await(SymbolsLoader::Success);
  KORVALE_DRV_Timeout(0, device.handle());
  device.address(9);
  output();
  await(SymbolsLoader::Success);
  EXPECT_EQ(library.count("AGL_OpenDevice"), 2);
}

TEST_F(OutputStart, WaitsWhileAnEarlierThreadHasNotTakenItsOrder) {
  device.address(9);
  ASSERT_TRUE(device.loader().OrderSetup("192.168.1.99"));
  EXPECT_EQ(status_of(output()), "0/8/0");
  EXPECT_FALSE(device.data().bIsInitDevice);
  EXPECT_TRUE(no_thread(device));
  EXPECT_EQ(device.loader().RemoteIP, "192.168.1.99") << "the order that was given stands";
  EXPECT_EQ(device.data().LOADER_PROJECT, 0U);

  device.loader().CancelOrder();
  library.cache_file_loads = true;
  output();
  await(SymbolsLoader::Success);
  EXPECT_TRUE(device.data().bIsInitDevice);
  EXPECT_EQ(device.loader().RemoteIP, "192.168.1.10");
}

TEST_F(OutputStart, FailedLoaderAnswersAtOnce) {
  device.address(9);
  device.loader().loader_state = SymbolsLoader::Error;
  for (auto request : {RequestBuilder::Read(TagBlock(DT_INT).alternate(DT_REAL)),
                       RequestBuilder::WordWrite(TagBlock(DT_INT).alternate(DT_REAL), {1}),
                       RequestBuilder::BitWrite(TagBlock(DT_INT).alternate(DT_REAL), 1)}) {
    auto batch = device.batch({request, request});
    const auto second = batch[1];
    const auto frame = device.output(batch);
    EXPECT_EQ(status_of(frame), "0/8/0");
    EXPECT_EQ(batch[0].byWaitResponse, 1);
    EXPECT_EQ(batch[0].nResponseLength, 8);
    EXPECT_EQ(field<BYTE>(batch[0], 4171 + 4), DT_INT) << "no tag is looked at";
    EXPECT_EQ(std::memcmp(&second, &batch[1], sizeof second), 0) << "the second request stays as it was";
  }
  EXPECT_FALSE(device.data().bIsInitDevice);
  EXPECT_EQ(device.data().pGCmdQueue, nullptr);
  EXPECT_TRUE(no_thread(device));
  EXPECT_TRUE(library.log().empty());
}

TEST_F(OutputStart, CountOfZeroOrLessTouchesNothing) {
  for (int count : {0, -1, -2147483647}) {
    const auto frame = KORVALE_DRV_OutputFilterEx(nullptr, count);
    EXPECT_EQ(status_of(frame), "0/8/0") << count;
  }
}

TEST_F(OutputStart, FrameIsZeroBesidesItsStatus) {
  device.connected();
  for (auto request :
       {RequestBuilder::Read(TagBlock(DT_INT)), RequestBuilder::WordWrite(TagBlock(DT_INT), {1}),
        RequestBuilder::BitWrite(TagBlock(DT_BOOL), 1)}) {
    const auto frame = device.output({request});
    for (std::size_t i = 0; i < sizeof frame; ++i) ASSERT_EQ(field<BYTE>(frame, i), i == 3 ? 8 : 0) << i;
  }
}
