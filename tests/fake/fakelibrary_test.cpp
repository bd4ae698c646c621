// SPDX-License-Identifier: MIT
// The fake is what other tests believe; so it is tested itself.
#include "tests/fake/fakelibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(FakeLibrary, LogsCallsInOrderWithAllArguments) {
  FakeLibrary library;
  agl_int32_t connection = 9;
  AGL_OpenDevice(3);
  AGL_PLCConnectEx(3, 0, 1, 2, &connection, 60000, -4);
  AGL_SetPassword(9, "se\ncret", 10000, 1);
  EXPECT_THAT(library.log(), ElementsAre("AGL_OpenDevice(3)", "AGL_PLCConnectEx(3, 0, 1, 2, &9, 60000, -4)",
                                         "AGL_SetPassword(9, \"se\\x0Acret\", 10000, 1)"));
  EXPECT_EQ(connection, 0);
  library.clearLog();
  EXPECT_THAT(library.log(), IsEmpty());
}

TEST(FakeLibrary, ServesAnAccessFromPathToValue) {
  FakeLibrary library;
  library.add("Motor.Speed", Item::Int16({5, -6}));
  HandleType access = 0;
  agl_int32_t position = 0;
  agl_int16_t value = 0;
  ASSERT_EQ(AGL_Symbolic_CreateAccessByPath(FakeLibrary::kRoot, "Motor.Speed", &access, &position), 0);
  unsigned char buffer[4] = {};
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferInt16(access, buffer, 4, 1, &value), 0);
  EXPECT_EQ(value, -6);
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferInt16(access, buffer, 4, 2, &value), FakeLibrary::kBadElement);
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_Symbolic_CreateAccessByPath(root, \"Motor.Speed\", &0, &0)",
                          "AGL_Symbolic_GetAccessBufferInt16(access:Motor.Speed, buffer, 4, 1, &0)",
                          "AGL_Symbolic_GetAccessBufferInt16(access:Motor.Speed, buffer, 4, 2, &-6)"));
}

TEST(FakeLibrary, AnswersAnElementPathFromItsArray) {
  FakeLibrary library;
  library.add("Matrix", Item::UInt8({1, 2, 3, 4, 5, 6}).array(0, 1).array(5, 7));
  agl_uint8_t value = 0;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferUInt8(library.access("Matrix[1,6]"), nullptr, 1, 0, &value), 0);
  EXPECT_EQ(value, 5);
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferUInt8(library.access("Matrix[2,6]"), nullptr, 1, 0, &value),
            FakeLibrary::kBadElement);
}

TEST(FakeLibrary, CountsLiveHandlesAndDoubleFrees) {
  FakeLibrary library;
  library.add("A", Item::Bool(true));
  const HandleType access = library.access("A");
  const HandleType node = library.node("A");
  EXPECT_EQ(library.liveAccesses(), 1);
  EXPECT_EQ(library.liveNodes(), 1);
  EXPECT_EQ(AGL_Symbolic_FreeHandle(access), 0);
  EXPECT_EQ(AGL_Symbolic_FreeHandle(access), FakeLibrary::kBadHandle);
  EXPECT_EQ(AGL_Symbolic_FreeHandle(node), 0);
  EXPECT_EQ(AGL_Symbolic_FreeHandle(0), FakeLibrary::kBadHandle);
  EXPECT_EQ(library.liveAccesses(), 0);
  EXPECT_EQ(library.liveNodes(), 0);
  EXPECT_EQ(library.doubleFrees(), 1);
  EXPECT_EQ(library.zeroFrees(), 1);
}

TEST(FakeLibrary, RecordsJobsWithTheirBuffers) {
  FakeLibrary library;
  library.add("A", Item::UInt8({1, 2}).result(-3).sError(4));
  unsigned char buffer[2] = {7, 8};
  SymbolicRW_t rw{library.access("A"), buffer, 2, 0, 0};
  agl_int32_t serror = 0;
  library.job_serror = 11;
  EXPECT_EQ(AGL_Symbolic_WriteMixEx(5, &rw, 1, &serror, 1, 0), 0);
  EXPECT_EQ(serror, 11);
  EXPECT_EQ(rw.Result, -3);
  EXPECT_EQ(rw.SError, 4);
  ASSERT_EQ(library.writes().size(), 1U);
  EXPECT_THAT(library.writes()[0].accesses[0].bytes, ElementsAre(7, 8));
  EXPECT_EQ(AGL_Symbolic_ReadMixEx(5, &rw, 1, &serror, 5000, 0), 0);
  EXPECT_THAT(buffer, ElementsAre(0xA5, 0xA5));
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_WriteMixEx(5, [access:A], 1, &0, 1, 0)",
                                         "AGL_Symbolic_ReadMixEx(5, [access:A], 1, &11, 5000, 0)"));
}

TEST(FakeLibrary, TellsABufferThatIsNotTheJobsBuffer) {
  FakeLibrary library;
  library.add("A", Item::UInt8(1));
  unsigned char buffer[1] = {};
  SymbolicRW_t rw{library.access("A"), buffer, 1, 0, 0};
  agl_int32_t serror = 0;
  AGL_Symbolic_ReadMixEx(5, &rw, 1, &serror, 5000, 0);
  agl_uint8_t value = 0;
  AGL_Symbolic_GetAccessBufferUInt8(rw.AccessHandle, &value, 1, 0, &value);
  EXPECT_EQ(library.log().back(), "AGL_Symbolic_GetAccessBufferUInt8(access:A, other-buffer, 1, 0, &0)");
}

TEST(FakeLibrary, RecordsStoredValuesAndPutsScalarsIntoTheBuffer) {
  FakeLibrary library;
  library.add("A", Item::UInt16({0, 0}));
  unsigned char buffer[4] = {};
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferUInt16(library.access("A"), buffer, 4, 1, 0x1234), 0);
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferUInt16(library.access("A"), buffer, 4, 2, 0x5678),
            FakeLibrary::kBadElement);
  EXPECT_THAT(buffer, ElementsAre(0, 0, 0x34, 0x12));
  ASSERT_EQ(library.stored("A").size(), 2U);
  EXPECT_EQ(library.stored("A")[1].element, 2);
  EXPECT_EQ(library.stored("A")[1].number, 0x5678U);
}

TEST(FakeLibrary, FailsAsScripted) {
  FakeLibrary library;
  library.fail("AGL_DialUp", -5);
  EXPECT_EQ(AGL_DialUp(1, 2, 3), -5);
  library.succeed("AGL_DialUp");
  library.failCall("AGL_DialUp", 3, -6);
  EXPECT_EQ(AGL_DialUp(1, 2, 3), 0);
  EXPECT_EQ(AGL_DialUp(1, 2, 3), -6);
  EXPECT_EQ(AGL_DialUp(1, 2, 3), 0);
  library.failAfterwards("AGL_PLCConnectEx", -8);
  library.connection_number = 4;
  agl_int32_t connection = 0;
  EXPECT_EQ(AGL_PLCConnectEx(1, 0, 0, 0, &connection, 1, 0), -8);
  EXPECT_EQ(connection, 4);
}

TEST(FakeLibrary, RunsHooksOnTheCallersThread) {
  FakeLibrary library;
  std::thread::id caller;
  library.onCall("AGL_OpenDevice", [&] { caller = std::this_thread::get_id(); });
  std::thread([] { AGL_OpenDevice(1); }).join();
  EXPECT_NE(caller, std::thread::id());
  EXPECT_NE(caller, std::this_thread::get_id());
}

TEST(FakeLibrary, LeavesNothingBehind) {
  { FakeLibrary library; }
  EXPECT_EQ(pAGL_OpenDevice, nullptr);
  EXPECT_EQ(AGL_OpenDevice(1), AGL40_LIB_NOT_LOADED);
}

TEST(AbsentLibrary, LetsEveryCallEndInTheNotLoadedResult) {
  AbsentLibrary absent;
  EXPECT_EQ(AGL_OpenDevice(1), -1048554);
}

}  // namespace
