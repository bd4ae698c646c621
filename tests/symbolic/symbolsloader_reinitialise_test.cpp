// SPDX-License-Identifier: MIT
// Re-initialisation beside a connection thread that is still at work, and the order in which addresses are
// handed over.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symbolic/symbolsloader.h"
#include "tests/symbolic/access.h"

namespace {

class Reinitialise : public ::testing::Test {
 protected:
  Reinitialise() { loader.Reinitialise(7, "first", true); }

  // While the first connection is made, as slow ones are, the runtime sets the device up anew.
  void reinitialise_during(const std::string& function) {
    library.onCall(function, [this] {
      if (overtaken) return;
      overtaken = true;
      loader.Reinitialise(8, "second", true);
    });
  }

  FakeLibrary library;
  SymbolsLoader loader;
  bool overtaken = false;
};

TEST_F(Reinitialise, MakesTheLoaderIdleUnderTheNewSettings) {
  loader.loader_state = SymbolsLoader::Error;
  loader.bDisconnect = true;
  loader.read_data_queue_filter["a"] = {1};
  loader.Reinitialise(9, "word", false);
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Idle);
  EXPECT_FALSE(loader.bDisconnect);
  EXPECT_TRUE(loader.read_data_queue_filter.empty());
  EXPECT_EQ(loader.station_id, 9);
  EXPECT_EQ(loader.m_password, "word");
  EXPECT_FALSE(loader.m_enable_parameter);
}

TEST_F(Reinitialise, ThreadWithoutAnOrderConnectsToTheAddressThatIsThere) {
  loader.RemoteIP = "192.168.0.20";
  printed_by([&] { EXPECT_EQ(loader.RunOrderedSetup(), 1); });
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
  ASSERT_EQ(library.parametersSet().size(), 1U);
  const auto bytes = library.parametersSet()[0].bytes;
  const std::string text(bytes.begin(), bytes.end());
  EXPECT_NE(text.find("192.168.0.20"), std::string::npos);
}

// The values of the PLC that was left would count as those of the new one.
TEST_F(Reinitialise, ConnectionThatIsOvertakenShowsNoSuccess) {
  reinitialise_during("AGL_PLCConnectEx");
  printed_by([&] { loader.SetupDevice("192.168.0.10"); });
  EXPECT_TRUE(overtaken);
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Idle);
}

TEST_F(Reinitialise, ConnectionThatIsOvertakenShowsNoFailure) {
  reinitialise_during("AGL_PLCConnectEx");
  library.fail("AGL_Symbolic_LoadAGLinkSymbolsFromPLC", -77);
  printed_by([&] { loader.SetupDevice("192.168.0.10"); });
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Idle);
}

TEST_F(Reinitialise, OvertakenConnectionLoadsNothingMoreOnceItHasTheFile) {
  library.cache_file_loads = true;
  reinitialise_during("AGL_PLCConnectEx");
  printed_by([&] { loader.SetupDevice("192.168.0.10"); });
  EXPECT_EQ(library.count("AGL_Symbolic_LoadAGLinkSymbolsFromPLC"), 0);
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Idle);
}

TEST_F(Reinitialise, OvertakenConnectionGoesOnWithItsOwnSettings) {
  reinitialise_during("AGL_PLCConnectEx");
  printed_by([&] { loader.SetupDevice("192.168.0.10"); });
  EXPECT_THAT(library.log(), ::testing::Contains(::testing::HasSubstr("AGL_SetPassword(0, \"first\"")));
  EXPECT_THAT(library.log(), ::testing::Contains(::testing::HasSubstr("/mnt/project/7_s71500_symbolic.ap")));
  EXPECT_THAT(library.log(), ::testing::Not(::testing::Contains(::testing::HasSubstr("/mnt/project/8_"))));
}

TEST_F(Reinitialise, ConnectionAfterwardsShowsItsSuccess) {
  reinitialise_during("AGL_PLCConnectEx");
  printed_by([&] {
    loader.SetupDevice("192.168.0.10");
    loader.SetupDevice("192.168.0.11");
  });
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
}

TEST_F(Reinitialise, OrderIsTakenOnceAndHandsTheAddressOver) {
  EXPECT_TRUE(loader.OrderSetup("192.168.0.10"));
  EXPECT_EQ(loader.RemoteIP, "192.168.0.10");
  printed_by([&] { EXPECT_EQ(loader.RunOrderedSetup(), 1); });
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
}

TEST_F(Reinitialise, AddressStaysThatOfTheThreadThatHasNotTakenItYet) {
  EXPECT_TRUE(loader.OrderSetup("192.168.0.10"));
  EXPECT_FALSE(loader.OrderSetup("192.168.0.11"));
  EXPECT_EQ(loader.RemoteIP, "192.168.0.10");
  printed_by([&] { loader.RunOrderedSetup(); });
  EXPECT_TRUE(loader.OrderSetup("192.168.0.11"));
}

TEST_F(Reinitialise, OrderWhoseThreadCouldNotBeStartedMakesWayForTheNext) {
  EXPECT_TRUE(loader.OrderSetup("192.168.0.10"));
  loader.CancelOrder();
  EXPECT_TRUE(loader.OrderSetup("192.168.0.11"));
  EXPECT_EQ(loader.RemoteIP, "192.168.0.11");
}

TEST_F(Reinitialise, OrderOvertakenBeforeItsThreadRunsConnectsNothing) {
  EXPECT_TRUE(loader.OrderSetup("192.168.0.10"));
  loader.Reinitialise(7, "", false);
  printed_by([&] { EXPECT_EQ(loader.RunOrderedSetup(), 0); });
  EXPECT_EQ(library.count("AGL_PLCConnectEx"), 0);
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Idle);
}

TEST_F(Reinitialise, OrderThatAnotherThreadHasServedConnectsNothing) {
  printed_by([&] { loader.SetupDevice("192.168.0.10"); });
  EXPECT_TRUE(loader.OrderSetup("192.168.0.10"));
  printed_by([&] { EXPECT_EQ(loader.RunOrderedSetup(), 1); });
  EXPECT_EQ(library.count("AGL_PLCConnectEx"), 1);
}

}  // namespace
