// SPDX-License-Identifier: MIT
// Connection parameters, connecting and disconnecting. symbolsloader_setup_test.cpp has the whole of
// SetupDevice.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "symbolic/symbolsloader.h"
#include "tests/symbolic/access.h"
#include "tests/symbolic/connectionrecord.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::KilledBySignal;

TEST(ConnectionParameters, FillOneConnectionOfTheDevice) {
  FakeLibrary library;
  set_aglink_s7_tcp_ip_tia_paras("192.168.0.10", 7, 0, 0, 102, 60000);
  EXPECT_THAT(library.log(), ElementsAre("AGL_GetParas(7, 1, buffer, 512)",
                                         "AGL_SetParas(7, 21, buffer, 512)", "AGL_SetDevType(7, 21)"));
  Bytes expected = connection_record("192.168.0.10");
  expected.resize(512, 0);
  ASSERT_EQ(library.parametersSet().size(), 1U);
  EXPECT_EQ(library.parametersSet()[0].bytes, expected);
}

TEST(ConnectionParameters, AreZeroBeforeTheLibraryFillsThem) {
  FakeLibrary library;
  set_aglink_s7_tcp_ip_tia_paras("192.168.0.10", 7, 0, 0, 102, 60000);
  ASSERT_EQ(library.parametersGot().size(), 1U);
  EXPECT_EQ(library.parametersGot()[0].bytes, Bytes(512, 0));
}

// Deliberate: fetched as type 1, stored as type 21.
TEST(ConnectionParameters, AreFetchedWithAnotherTypeThanTheyAreStored) {
  FakeLibrary library;
  set_aglink_s7_tcp_ip_tia_paras("192.168.0.10", 7, 0, 0, 102, 60000);
  EXPECT_EQ(library.parametersGot()[0].type, 1);
  EXPECT_EQ(library.parametersSet()[0].type, 21);
}

TEST(ConnectionParameters, KeepWhatTheLibraryHadInEveryOtherField) {
  FakeLibrary library;
  library.parameters_on_get = Bytes(512, 0x5A);
  set_aglink_s7_tcp_ip_tia_paras("10.0.0.1", 7, 0, 0x1234, 102, 60000);
  Bytes expected(512, 0x5A);
  const Bytes filled = connection_record("10.0.0.1");
  const auto fill = [&](std::size_t offset, std::size_t size) {
    std::copy_n(filled.begin() + static_cast<std::ptrdiff_t>(offset), size,
                expected.begin() + static_cast<std::ptrdiff_t>(offset));
  };
  fill(0, 4);    // lTimeOut
  fill(8, 1);    // bPLCClassEx
  fill(16, 1);   // bConnTypeEx
  fill(96, 4);   // Flags
  fill(100, 2);  // wPortNr
  expected[6] = 0x34;
  expected[7] = 0x12;
  Bytes set = library.parametersSet()[0].bytes;
  EXPECT_STREQ(reinterpret_cast<const char*>(&set[32]), "10.0.0.1");
  // What follows the terminator inside the address field is nobody's.
  std::copy_n(set.begin() + 32, 64, expected.begin() + 32);
  EXPECT_EQ(set, expected);
}

TEST(ConnectionParameters, ReachEachOfTheFourConnections) {
  for (int index = 0; index < 4; ++index) {
    FakeLibrary library;
    set_aglink_s7_tcp_ip_tia_paras("192.168.0.10", 255, index, 0, 102, 60000);
    Bytes expected(512, 0);
    const Bytes record = connection_record("192.168.0.10");
    std::copy(record.begin(), record.end(), expected.begin() + std::ptrdiff_t{128} * index);
    EXPECT_EQ(library.parametersSet()[0].bytes, expected) << index;
    EXPECT_EQ(library.parametersSet()[0].device, 255);
  }
}

TEST(ConnectionParameters, IgnoreEveryResult) {
  FakeLibrary library;
  for (const char* function : {"AGL_GetParas", "AGL_SetParas", "AGL_SetDevType"}) library.fail(function, -3);
  set_aglink_s7_tcp_ip_tia_paras("192.168.0.10", 7, 0, 0, 102, 60000);
  EXPECT_EQ(library.count("*"), 3);
}

TEST(ConnectionParameters, HoldAnAddressOf63Characters) {
  FakeLibrary library;
  const std::string address(63, '1');
  set_aglink_s7_tcp_ip_tia_paras(address.c_str(), 7, 0, 0, 102, 60000);
  const Bytes set = library.parametersSet()[0].bytes;
  EXPECT_STREQ(reinterpret_cast<const char*>(&set[32]), address.c_str());
}

TEST(ConnectionParametersDeathTest, DieOfAnAddressOf64Characters) {
  FakeLibrary library;
  EXPECT_EXIT(set_aglink_s7_tcp_ip_tia_paras(std::string(64, '1').c_str(), 7, 0, 0, 102, 60000),
              KilledBySignal(SIGABRT), "");
  EXPECT_EXIT(set_aglink_s7_tcp_ip_tia_paras(std::string(5000, '1').c_str(), 7, 0, 0, 102, 60000),
              KilledBySignal(SIGABRT), "");
}

TEST(Connecting, OpensDialsInitialisesAndConnects) {
  FakeLibrary library;
  library.connection_number = 5;
  int connection = 9;
  agl_connect(1, 2, 3, 4, connection, 600, 7);
  EXPECT_EQ(connection, 5);
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_OpenDevice(1)", "AGL_DialUp(1, 600, 7)", "AGL_InitAdapter(1, 600, 7)",
                          "AGL_PLCConnectEx(1, 2, 3, 4, &9, 600, 7)"));
}

TEST(Connecting, TestsNoResult) {
  FakeLibrary library;
  for (const char* function : {"AGL_OpenDevice", "AGL_DialUp", "AGL_InitAdapter", "AGL_PLCConnectEx"}) {
    library.fail(function, -3);
  }
  int connection = 9;
  EXPECT_EQ(printed_by([&] { agl_connect(1, 2, 3, 4, connection, 600, 7); }), "");
  EXPECT_EQ(connection, 9);
  EXPECT_EQ(library.count("*"), 4);
}

TEST(Disconnecting, UndoesTheStepsInReverse) {
  FakeLibrary library;
  agl_disconnect(1, 2, 600, 7);
  EXPECT_THAT(library.log(), ElementsAre("AGL_PLCDisconnect(2, 600, 7)", "AGL_ExitAdapter(1, 600, 7)",
                                         "AGL_HangUp(1, 600, 7)", "AGL_CloseDevice(1)"));
}

TEST(Disconnecting, TestsNoResult) {
  FakeLibrary library;
  for (const char* function : {"AGL_PLCDisconnect", "AGL_ExitAdapter", "AGL_HangUp", "AGL_CloseDevice"}) {
    library.fail(function, -3);
  }
  EXPECT_EQ(printed_by([] { agl_disconnect(1, 2, 600, 7); }), "");
  EXPECT_EQ(library.count("*"), 4);
}

// Deliberate: whatever the station, it is device 0 and connection 0 that are closed.
TEST(CloseHandle, AlwaysClosesDevice0Connection0) {
  FakeLibrary library;
  SymbolsLoader loader;
  loader.set_station_id(7);
  loader.CloseHandle();
  EXPECT_THAT(library.log(), ElementsAre("AGL_PLCDisconnect(0, 1000, 0)", "AGL_ExitAdapter(0, 1000, 0)",
                                         "AGL_HangUp(0, 1000, 0)", "AGL_CloseDevice(0)"));
}

TEST(Destruction, LeavesConnectionAndTreeToTheLibrary) {
  FakeLibrary library;
  {
    SymbolsLoader loader;
    loader.root_schema_node = FakeLibrary::kRoot;
  }
  EXPECT_THAT(library.log(), IsEmpty());
}

}  // namespace
