// SPDX-License-Identifier: MIT
// What happens on a connection apart from jobs: order number, password, upload, time-outs, loss.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <future>
#include <string>

#include "tests/simulator/standin_world.h"

namespace ostravel::standin {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

plc::ServerOptions with_password(const std::string& password) {
  auto options = plc::test_options();
  options.plc.password = password;
  return options;
}

TEST(Connection, ReadsTheOrderNumberWithItsTerminator) {
  ConnectedWorld world;
  std::array<char, 22> text{};
  text.fill('#');
  EXPECT_EQ(AGL_ReadMLFBNr(world.connection, text.data(), 1, 0), 0);
  EXPECT_STREQ(text.data(), "OST 1500-0SIM0-0AA0");
  EXPECT_EQ(text[21], '#');  // 21 bytes and no more
}

TEST(Connection, LongOrderNumberIsCutAtTwentyCharacters) {
  auto options = plc::test_options();
  options.plc.order_number = "123456789012345678901234567890";
  ConnectedWorld world(1, options);
  std::array<char, 21> text{};
  EXPECT_EQ(AGL_ReadMLFBNr(world.connection, text.data(), 1, 0), 0);
  EXPECT_STREQ(text.data(), "12345678901234567890");
}

TEST(Connection, UnprotectedPlcTakesAnyPassword) {
  ConnectedWorld world;
  EXPECT_EQ(AGL_SetPassword(world.connection, "whatever", kTimeout, 1), 0);
  EXPECT_EQ(AGL_SetPassword(world.connection, nullptr, kTimeout, 1), code(Error::InvalidParameter));
}

TEST(Connection, ProtectedPlcRefusesUploadReadsAndWritesUntilThePasswordIsGiven) {
  ConnectedWorld open(1);  // the same program, so its symbols fit
  World world(2, with_password("geheim"));
  world.prepare();
  ASSERT_EQ(world.connect(), 0);
  EXPECT_EQ(world.upload(), code(Error::PasswordMissing));
  EXPECT_EQ(world.root, 0);
  PathAccess access(open.root, "Plant.aInt");
  EXPECT_EQ(access.read(world.connection), code(Error::PasswordMissing));
  EXPECT_EQ(access.write(world.connection), code(Error::PasswordMissing));
  EXPECT_EQ(AGL_SetPassword(world.connection, "falsch", kTimeout, 1), code(Error::PasswordWrong));
  EXPECT_EQ(access.read(world.connection), code(Error::PasswordMissing));
  EXPECT_EQ(AGL_SetPassword(world.connection, "geheim", kTimeout, 1), 0);
  EXPECT_EQ(world.upload(), 0);
  EXPECT_EQ(access.read(world.connection), 0);
}

TEST(Connection, UnknownNumbersAreRefused) {
  HandleType root = 0;
  std::array<char, 21> text{};
  for (const agl_int32_t number : {-1, 77, 1024, 0x7FFFFFFF}) {
    EXPECT_EQ(AGL_PLCDisconnect(number, 1, 0), code(Error::InvalidConnection)) << number;
    EXPECT_EQ(AGL_ReadMLFBNr(number, text.data(), 1, 0), code(Error::InvalidConnection));
    EXPECT_EQ(AGL_SetPassword(number, "x", 1, 0), code(Error::InvalidConnection));
    EXPECT_EQ(AGL_Symbolic_LoadAGLinkSymbolsFromPLC(number, &root), code(Error::InvalidConnection));
    EXPECT_EQ(AGL_Symbolic_ReadMixEx(number, nullptr, 0, nullptr, 1, 0), code(Error::InvalidConnection));
  }
}

TEST(Connection, LossIsReportedByTheNextJobAtOnceAndForGood) {
  ConnectedWorld world;
  PathAccess access(world.root, "Plant.aInt");
  EXPECT_EQ(access.read(world.connection), 0);
  world.server.command("cut");
  const auto start = Clock::now();
  EXPECT_EQ(access.read(world.connection), code(Error::ConnectionLost));
  EXPECT_EQ(access.read(world.connection), code(Error::ConnectionLost));
  EXPECT_EQ(access.write(world.connection), code(Error::ConnectionLost));
  EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(kTimeout));
  EXPECT_EQ(world.command("stats")["accepted"], 1);  // it does not come back by itself
}

TEST(Connection, EmptyJobSeesTheLossToo) {
  ConnectedWorld world;
  EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, nullptr, 0, nullptr, kTimeout, 0), 0);
  world.server.command("cut");
  EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, nullptr, 0, nullptr, kTimeout, 0),
            code(Error::ConnectionLost));
}

TEST(Connection, ComesBackByConnectingAnew) {
  ConnectedWorld world;
  world.server.command("cut");
  EXPECT_EQ(AGL_PLCDisconnect(world.connection, 1, 0), 0);
  EXPECT_EQ(world.connect(), 0);
  EXPECT_EQ(world.connection, 1);
  PathAccess access(world.root, "Plant.aInt");
  EXPECT_EQ(access.read(world.connection), 0);
}

TEST(Connection, TimeOutOfOneMillisecondMeansASecond) {
  ConnectedWorld world;
  world.server.command("delay 200");
  EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, nullptr, 0, nullptr, 1, 0), 0);
  world.server.command("freeze");
  const auto start = Clock::now();
  EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, nullptr, 0, nullptr, 1, 0), code(Error::JobTimeout));
  EXPECT_GE(Clock::now() - start, 1000ms);
}

TEST(Connection, SurvivesATimeOutAndNeverTakesTheLateAnswerForAnother) {
  ConnectedWorld world;
  world.command("write Plant.aInt 1");
  PathAccess access(world.root, "Plant.aInt");
  auto rw = access.item();
  world.server.command("late");
  EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, &rw, 1, nullptr, 1, 0), code(Error::JobTimeout));
  world.command("write Plant.aInt 2");
  EXPECT_EQ(access.read(world.connection), 0);
  EXPECT_EQ(access.buffer, (Data{0, 2}));
}

TEST(Connection, BlockedDeviceDoesNotBlockAnother) {
  ConnectedWorld blocked(1);
  ConnectedWorld free(2);
  PathAccess access(free.root, "Plant.aInt");
  blocked.server.command("freeze");
  auto waiting = std::async(std::launch::async, [&] {
    return AGL_Symbolic_ReadMixEx(blocked.connection, nullptr, 0, nullptr, 3000, 0);
  });
  for (int i = 0; i < 20; ++i) EXPECT_EQ(access.read(free.connection), 0);
  EXPECT_EQ(waiting.wait_for(0s), std::future_status::timeout);
  EXPECT_EQ(waiting.get(), code(Error::JobTimeout));
}

TEST(Connection, DisconnectedDuringAJobEndsThatJobInPeace) {
  ConnectedWorld world;
  world.server.command("delay 300");
  auto job = std::async(std::launch::async, [&] {
    return AGL_Symbolic_ReadMixEx(world.connection, nullptr, 0, nullptr, kTimeout, 0);
  });
  while (world.command("stats")["reads"] == 0) std::this_thread::sleep_for(1ms);
  EXPECT_EQ(AGL_PLCDisconnect(world.connection, 1, 0), 0);
  EXPECT_EQ(job.get(), 0);
}

}  // namespace
}  // namespace ostravel::standin
