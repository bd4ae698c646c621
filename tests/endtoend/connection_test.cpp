// SPDX-License-Identifier: MIT
// Connections that are lost and regained, the symbol file, passwords.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "host/files.h"
#include "tests/endtoend/world.h"

namespace ostravel::host {
namespace {

constexpr const char* kTags = "Values.Small,INT,1,,1,1,1\n";

TEST(Connection, IsUpOnceTheDeviceHasServed) {
  World world({.tags = kTags});
  EXPECT_FALSE(world.session().connected());
  EXPECT_EQ(world.read("Values.Small"), -12345);
  EXPECT_TRUE(world.session().connected());
}

TEST(Connection, PlcThatIsRestartedIsServedAgainAfterATimeOut) {
  World world;
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  world.write("Values.Small", 1);
  world.plc().take_away();
  EXPECT_EQ(poller.poll(), LinkState::Lost);
  EXPECT_EQ(poller.state(0).error, 2);
  EXPECT_FALSE(world.session().connected());
  EXPECT_EQ(poller.poll(), LinkState::Failed);
  world.plc().start();
  ASSERT_TRUE(World::online(poller));
  EXPECT_EQ(world.read("Values.Small"), -12345) << "the restarted PLC has its initial values";
}

TEST(Connection, PlcThatIsNotThereGivesTheFailedLoaderAnswerUntilItIs) {
  World world({.tags = kTags});
  world.plc().take_away();
  auto poller = world.poller();
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  LinkState link = LinkState::Connecting;
  while (link != LinkState::Failed && std::chrono::steady_clock::now() < until) {
    link = poller.poll();
    std::this_thread::sleep_for(poller.pause());
  }
  EXPECT_EQ(link, LinkState::Failed);
  world.plc().start();
  EXPECT_TRUE(World::online(poller));
}

TEST(Connection, DroppedConnectionIsMadeAgain) {
  World world({.tags = kTags});
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  world.plc().command("cut");
  EXPECT_EQ(poller.poll(), LinkState::Lost);
  EXPECT_TRUE(World::online(poller));
}

TEST(SymbolFile, IsKeptAndSavesTheNextUpload) {
  World world({.tags = kTags});
  ASSERT_EQ(world.read("Values.Small"), -12345);
  ASSERT_TRUE(std::filesystem::exists(kSymbolFile));
  EXPECT_EQ(World::statistics().uploads, 1U);
  world.new_session();
  EXPECT_EQ(world.read("Values.Small"), -12345);
  EXPECT_EQ(World::statistics().uploads, 1U);
}

TEST(SymbolFile, IsRemovedWithTheConnectionAndMadeAnew) {
  World world({.tags = kTags});
  auto poller = world.poller();
  ASSERT_TRUE(World::online(poller));
  world.plc().command("cut");
  EXPECT_EQ(poller.poll(), LinkState::Lost);
  EXPECT_FALSE(std::filesystem::exists(kSymbolFile));
  ASSERT_TRUE(World::online(poller));
  EXPECT_TRUE(std::filesystem::exists(kSymbolFile));
  EXPECT_EQ(World::statistics().uploads, 2U);
}

TEST(SymbolFile, ThatIsBrokenIsReplaced) {
  write_file(kSymbolFile, "no symbols", false);
  World world({.tags = kTags});
  EXPECT_EQ(world.read("Values.Small"), -12345);
  EXPECT_NE(read_file(kSymbolFile), "no symbols");
}

// The file of another program loads well; the first read fails, and the symbols are then fetched anew.
TEST(SymbolFile, OfAnotherProgramIsReplacedAfterAFailedRead) {
  {
    World other({.tags = kTags,
                 .source = "DATA_BLOCK \"Values\"\nVAR\nBefore : DInt;\nSmall : Int := 1;\nEND_VAR\nBEGIN\n"
                           "END_DATA_BLOCK\n"});
    ASSERT_EQ(other.read("Values.Small"), 1);
  }
  const auto before = read_file(kSymbolFile);
  World world({.tags = kTags});
  EXPECT_EQ(world.read("Values.Small"), -12345);
  EXPECT_NE(read_file(kSymbolFile), before);
  EXPECT_EQ(World::statistics().uploads, 2U);
}

TEST(Password, RightOneOpensThePlc) {
  World world({.tags = kTags, .plc_password = "open sesame", .password = "open sesame"});
  EXPECT_EQ(world.read("Values.Small"), -12345);
}

TEST(Password, WrongOrMissingOneKeepsItClosed) {
  for (const char* password : {"", "wrong"}) {
    World world({.tags = kTags, .plc_password = "open sesame", .password = password});
    auto poller = world.poller();
    LinkState link = LinkState::Connecting;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);  // generous to an emulator
    while (link != LinkState::Failed && std::chrono::steady_clock::now() < end) {
      link = poller.poll();
      ASSERT_NE(link, LinkState::Online);
    }
    EXPECT_EQ(link, LinkState::Failed) << password;
    EXPECT_FALSE(std::filesystem::exists(kSymbolFile));
  }
}

}  // namespace
}  // namespace ostravel::host
