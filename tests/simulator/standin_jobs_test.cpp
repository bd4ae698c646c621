// SPDX-License-Identifier: MIT
// Read and write jobs end to end: what the PLC's console says and what the library says are the same.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>

#include "tests/simulator/standin_world.h"

namespace ostravel::standin {
namespace {

class Jobs : public testing::Test {
 protected:
  nlohmann::json value(const std::string& path) { return world.command("read " + path)["value"]; }
  ConnectedWorld world;
};

TEST_F(Jobs, ReadScalarComesAsThePlcHoldsIt) {
  world.command("write Plant.aDInt -2");
  PathAccess access(world.root, "Plant.aDInt");
  EXPECT_EQ(access.read(world.connection), 0);
  EXPECT_EQ(access.buffer, (Data{0xFF, 0xFF, 0xFF, 0xFE}));
  agl_int32_t number = 0;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferInt32(access.handle, access.buffer.data(), 4, 0, &number), 0);
  EXPECT_EQ(number, -2);
}

TEST_F(Jobs, WrittenScalarArrivesInThePlc) {
  PathAccess access(world.root, "plant.AINT");  // names compare without case
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferInt16(access.handle, access.buffer.data(), 2, 0, -300), 0);
  EXPECT_EQ(access.write(world.connection), 0);
  EXPECT_EQ(value("Plant.aInt"), -300);
}

TEST_F(Jobs, QuotedNamesAreFound) {
  PathAccess access(world.root, "\"Plant\".\"Odd.Name 1\"");
  EXPECT_EQ(access.read(world.connection), 0);
  EXPECT_EQ(access.buffer, (Data{0, 77}));
}

TEST_F(Jobs, WholeArrayAndElementAreTheSameMemory) {
  world.command("write Plant.Numbers [3,4,5,6,7,8,9,10]");
  PathAccess array(world.root, "Plant.Numbers");
  PathAccess element(world.root, "Plant.Numbers[10]");
  EXPECT_EQ(array.read(world.connection), 0);
  EXPECT_EQ(array.buffer, (Data{0, 3, 0, 4, 0, 5, 0, 6, 0, 7, 0, 8, 0, 9, 0, 10}));
  EXPECT_EQ(element.read(world.connection), 0);
  EXPECT_EQ(element.buffer, (Data{0, 10}));
}

TEST_F(Jobs, ElementOfATwoDimensionalArrayIsWrittenAlone) {
  PathAccess element(world.root, "Plant.Matrix[2,-1]");
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferInt32(element.handle, element.buffer.data(), 4, 0, 7), 0);
  EXPECT_EQ(element.write(world.connection), 0);
  EXPECT_EQ(value("Plant.Matrix"), (nlohmann::json{0, 0, 0, 7, 0, 0}));
}

TEST_F(Jobs, SixDimensionsAreNoTooMany) {
  PathAccess element(world.root, "Plant.Six[1,0,0,0,0,2]");
  element.buffer = {9};
  EXPECT_EQ(element.write(world.connection), 0);
  EXPECT_EQ(value("Plant.Six")[33], 9);
}

TEST_F(Jobs, MemberOfAnElementIsReached) {
  world.command("write Plant.Tanks[2].Level 1.5");
  PathAccess access(world.root, "Plant.Tanks[2].Level");
  EXPECT_EQ(access.read(world.connection), 0);
  EXPECT_EQ(access.buffer, (Data{0x3F, 0xC0, 0, 0}));
}

TEST_F(Jobs, MixedJobKeepsItsGoodItems) {
  PathAccess good(world.root, "Plant.Locked");
  PathAccess hidden(world.root, "Plant.Hidden");
  PathAccess failing(world.root, "Plant.aInt");
  PathAccess unknown(world.root, "Plant.Nowhere");
  world.command("fail Plant.aInt");
  std::vector<SymbolicRW_t> items{unknown.item(), hidden.item(), failing.item(), good.item()};
  agl_int32_t plc_error = -1;
  EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, items.data(), 4, &plc_error, kTimeout, 0), 0);
  EXPECT_EQ(plc_error, 0);
  EXPECT_EQ(items[0].Result, code(Error::InvalidHandle));
  EXPECT_EQ(items[1].Result, code(Error::ItemNotPermitted));
  EXPECT_NE(items[1].SError, 0);
  EXPECT_EQ(items[2].Result, code(Error::ItemFaulty));
  EXPECT_EQ(items[3].Result, 0);
  EXPECT_EQ(items[3].SError, 0);
  EXPECT_EQ(good.buffer, (Data{0, 5}));
  world.command("heal Plant.aInt");
  EXPECT_EQ(failing.read(world.connection), 0);
}

TEST_F(Jobs, LockedVariableIsNotWritten) {
  PathAccess access(world.root, "Plant.Locked");
  EXPECT_EQ(access.write(world.connection), code(Error::ItemNotPermitted));
  EXPECT_EQ(value("Plant.Locked"), 5);
  PathAccess cycle(world.root, "Simulation.Cycle");
  EXPECT_EQ(cycle.write(world.connection), code(Error::ItemNotPermitted));
}

TEST_F(Jobs, BufferThatIsTooSmallFailsAloneAndIsLeftUntouched) {
  PathAccess access(world.root, "Plant.aDInt");
  access.buffer.assign(4, 0xEE);
  for (auto length : {3, 0, -1}) {
    auto rw = access.item();
    rw.BufferLen = length;
    EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, &rw, 1, nullptr, kTimeout, 0), 0);
    EXPECT_EQ(rw.Result, code(Error::BufferTooSmall));
  }
  auto rw = access.item();
  rw.Buffer = nullptr;
  EXPECT_EQ(AGL_Symbolic_WriteMixEx(world.connection, &rw, 1, nullptr, kTimeout, 0), 0);
  EXPECT_EQ(rw.Result, code(Error::InvalidParameter));
  EXPECT_EQ(access.buffer, Data(4, 0xEE));
}

TEST_F(Jobs, BufferBeyondTheAccessIsLeftUntouched) {
  PathAccess access(world.root, "Plant.aInt");
  access.buffer.assign(4, 0xEE);
  EXPECT_EQ(access.read(world.connection), 0);
  EXPECT_EQ(access.buffer, (Data{0, 0, 0xEE, 0xEE}));
}

TEST_F(Jobs, EmptyJobSucceeds) {
  agl_int32_t plc_error = -1;
  EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, nullptr, 0, &plc_error, kTimeout, 0), 0);
  EXPECT_EQ(plc_error, 0);
  EXPECT_EQ(AGL_Symbolic_WriteMixEx(world.connection, nullptr, 0, nullptr, kTimeout, 0), 0);
}

TEST_F(Jobs, SymbolsOfAnotherProgramFailTheWholeJob) {
  plc::Server other(
      plc::load_text("DATA_BLOCK \"B\"\nVAR\na : Int;\nEND_VAR\nBEGIN\nEND_DATA_BLOCK\n", "b.db"),
      plc::test_options());
  auto bytes = parameters("127.0.0.1", other.port());
  AGL_SetParas(5, 21, bytes.data(), 512);
  AGL_OpenDevice(5);
  AGL_DialUp(5, kTimeout, 0);
  AGL_InitAdapter(5, kTimeout, 0);
  agl_int32_t connection = -1;
  EXPECT_EQ(AGL_PLCConnectEx(5, 0, 0, 0, &connection, kTimeout, 0), 0);
  PathAccess access(world.root, "Plant.aInt");
  EXPECT_EQ(access.read(connection), code(Error::ProgramChanged));
  EXPECT_EQ(access.write(connection), code(Error::ProgramChanged));
  AGL_CloseDevice(5);
}

TEST_F(Jobs, ItemOfAnotherTreeThanTheFirstFailsAlone) {
  ConnectedWorld other(
      6, plc::test_options(),
      plc::load_text("DATA_BLOCK \"B\"\nVAR\na : Int;\nEND_VAR\nBEGIN\nEND_DATA_BLOCK\n", "b.db"));
  PathAccess own(world.root, "Plant.Locked");
  PathAccess foreign(other.root, "B.a");
  std::vector<SymbolicRW_t> items{own.item(), foreign.item()};
  EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, items.data(), 2, nullptr, kTimeout, 0), 0);
  EXPECT_EQ(items[0].Result, 0);
  EXPECT_EQ(items[1].Result, code(Error::ProgramChanged));
}

TEST_F(Jobs, AllItemsOfAJobShowOneCycle) {
  auto options = plc::test_options();
  options.cycle = std::chrono::microseconds(500);
  options.plc.generator_rules = {"Plant.aUDInt=counter(0,0)"};
  ConnectedWorld running(2, options);
  PathAccess cycle(running.root, "Simulation.Cycle");
  PathAccess counter(running.root, "Plant.aUDInt");
  Data first;
  Data last;
  for (int i = 0; i < 200; ++i) {
    std::vector<SymbolicRW_t> items{cycle.item(), counter.item()};
    ASSERT_EQ(AGL_Symbolic_ReadMixEx(running.connection, items.data(), 2, nullptr, kTimeout, 0), 0);
    ASSERT_EQ(cycle.buffer, counter.buffer);
    if (i == 0) first = cycle.buffer;
    last = cycle.buffer;
  }
  EXPECT_NE(first, last);
}

TEST_F(Jobs, SeveralThreadsShareOneConnection) {
  std::array<std::thread, 4> threads;
  std::atomic<int> good = 0;
  for (auto& thread : threads) {
    thread = std::thread([&] {
      for (int i = 0; i < 50; ++i) {
        PathAccess access(world.root, "Plant.Locked");
        if (access.read(world.connection) == 0 && access.buffer == Data{0, 5}) ++good;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(good, 200);
}

TEST_F(Jobs, AreCountedWithTheirBytes) {
  const auto before = statistics();
  PathAccess access(world.root, "Plant.aInt");
  access.read(world.connection);
  access.write(world.connection);
  const auto after = statistics();
  EXPECT_EQ(after.read_jobs - before.read_jobs, 1U);
  EXPECT_EQ(after.write_jobs - before.write_jobs, 1U);
  EXPECT_EQ(after.items_read - before.items_read, 1U);
  EXPECT_EQ(after.items_written - before.items_written, 1U);
  EXPECT_GT(after.bytes_sent, before.bytes_sent);
  EXPECT_GT(after.bytes_received, before.bytes_received);
  EXPECT_EQ(after.live_accesses - before.live_accesses, 1U);
}

}  // namespace
}  // namespace ostravel::standin
