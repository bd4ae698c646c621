// SPDX-License-Identifier: MIT
// Garbage in every argument: an error code comes back, nothing is written, nothing is touched.
#include <gtest/gtest.h>

#include <array>
#include <random>

#include "tests/simulator/standin_world.h"

namespace ostravel::standin {
namespace {

constexpr HandleType kBadHandles[] = {
    0, -1, 1, 0x10000, 0x7FFFFFFFFFFFFFFF, std::numeric_limits<HandleType>::min()};

TEST(Garbage, HandlesAreRefusedEverywhere) {
  agl_int32_t number = 42;
  HandleType handle = 42;
  auto system = SystemType_t::st_UNDEFINED;
  auto value = ValueType_t::vt_UNDEFINED;
  std::array<std::uint8_t, 64> buffer{};
  std::array<char, 64> text{};
  std::array<agl_char16_t, 64> wide{};
  agl_uint8_t byte = 42;
  agl_uint16_t word = 42;
  agl_uint32_t dword = 42;
  const auto invalid = code(Error::InvalidHandle);
  for (const auto bad : kBadHandles) {
    EXPECT_EQ(AGL_Symbolic_FreeHandle(bad), invalid);
    EXPECT_EQ(AGL_Symbolic_GetNodeByPath(bad, "A", &handle, &number), invalid);
    EXPECT_EQ(AGL_Symbolic_CreateAccessByPath(bad, "A", &handle, &number), invalid);
    number = 42;
    EXPECT_EQ(AGL_Symbolic_GetArrayDimensionCount(bad, &number), invalid);
    EXPECT_EQ(AGL_Symbolic_GetArrayDimension(bad, 0, &number, &number), invalid);
    EXPECT_EQ(AGL_Symbolic_GetArrayIndexAsLinearIndex(bad, &number, 1, &number), invalid);
    EXPECT_EQ(AGL_Symbolic_GetIndexSize(bad, &number), invalid);
    EXPECT_EQ(AGL_Symbolic_GetIndex(bad, 0, &number), invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessBufferSize(bad, &number), invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessBufferElementSize(bad, &number), invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessBufferElementCount(bad, &number), invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessStringSize(bad, &number), invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessElementSystemType(bad, &system), invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessElementValueType(bad, &value), invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessBufferUInt8(bad, buffer.data(), 64, 0, &byte), invalid);
    EXPECT_EQ(AGL_Symbolic_SetAccessBufferUInt8(bad, buffer.data(), 64, 0, 1), invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessBufferS7_Counter(bad, buffer.data(), 64, 0, &word), invalid);
    EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_Counter(bad, buffer.data(), 64, 0, 1), invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessBufferS7_S5TimeMs(bad, buffer.data(), 64, 0, &dword), invalid);
    EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_S5TimeMs(bad, buffer.data(), 64, 0, 1, 1), invalid);
    EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_DTLParts(bad, buffer.data(), 64, 0, 2024, 1, 1, 1, 1, 1, 1, 1),
              invalid);
    EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts(bad, buffer.data(), 64, 0, 2024, 1, 1, 1, 1,
                                                                1, 1, 1),
              invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessBufferString8(bad, buffer.data(), 64, 0, text.data(), 64, &number),
              invalid);
    EXPECT_EQ(AGL_Symbolic_SetAccessBufferString8(bad, buffer.data(), 64, 0, text.data(), 1), invalid);
    EXPECT_EQ(AGL_Symbolic_GetAccessBufferString16(bad, buffer.data(), 64, 0, wide.data(), 64, &number),
              invalid);
    EXPECT_EQ(AGL_Symbolic_SetAccessBufferString16(bad, buffer.data(), 64, 0, wide.data(), 1), invalid);
    EXPECT_EQ(number, 42);
  }
  EXPECT_EQ((std::array<std::uint8_t, 64>{}), buffer);
}

TEST(Garbage, NullPointersAreRefusedEverywhere) {
  ConnectedWorld world;
  PathAccess access(world.root, "Plant.aInt");
  HandleType node = 0;
  ASSERT_EQ(AGL_Symbolic_GetNodeByPath(world.root, "Plant.Matrix", &node, nullptr), 0);
  agl_int32_t number = 0;
  const auto invalid = code(Error::InvalidParameter);
  EXPECT_EQ(AGL_PLCConnectEx(1, 0, 0, 0, nullptr, 1, 0), invalid);
  EXPECT_EQ(AGL_ReadMLFBNr(world.connection, nullptr, 1, 0), invalid);
  EXPECT_EQ(AGL_Symbolic_LoadAGLinkSymbolsFromPLC(world.connection, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, nullptr, 1, nullptr, 1, 0), invalid);
  EXPECT_EQ(AGL_Symbolic_WriteMixEx(world.connection, nullptr, 1, nullptr, 1, 0), invalid);
  EXPECT_EQ(AGL_Symbolic_GetNodeByPath(world.root, nullptr, &node, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_GetNodeByPath(world.root, "Plant", nullptr, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_CreateAccessByPath(world.root, "Plant", nullptr, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_GetArrayDimensionCount(node, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_GetArrayDimension(node, 0, nullptr, &number), invalid);
  EXPECT_EQ(AGL_Symbolic_GetArrayDimension(node, 0, &number, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_GetArrayIndexAsLinearIndex(node, &number, 2, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_GetIndexSize(node, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_GetIndex(node, 0, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferSize(access.handle, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_GetAccessElementValueType(access.handle, nullptr), invalid);
  EXPECT_EQ(AGL_Symbolic_GetAccessElementSystemType(access.handle, nullptr), invalid);
  PathAccess dtl(world.root, "Plant.aDtl");
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferS7_DTLParts(dtl.handle, dtl.buffer.data(), 12, 0, nullptr, nullptr,
                                                    nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
            invalid);
  EXPECT_EQ(AGL_Symbolic_FreeHandle(node), 0);
}

TEST(Garbage, CountsOfItemsAreRefused) {
  ConnectedWorld world;
  PathAccess access(world.root, "Plant.aInt");
  auto rw = access.item();
  for (const agl_int32_t count : {-1, std::numeric_limits<agl_int32_t>::min(), 100'001, 0x7FFFFFFF}) {
    EXPECT_EQ(AGL_Symbolic_ReadMixEx(world.connection, &rw, count, nullptr, 1, 0),
              code(Error::InvalidParameter));
    EXPECT_EQ(AGL_Symbolic_WriteMixEx(world.connection, &rw, count, nullptr, 1, 0),
              code(Error::InvalidParameter));
  }
}

TEST(Garbage, PathsNeverDoHarm) {
  ConnectedWorld world;
  std::mt19937 random(4);  // the same garbage every time
  const std::string alphabet = "\"Plant.aInt[]1,2-+ \xC3\xA4\x01\xFF";
  int found = 0;
  for (int round = 0; round < 20'000; ++round) {
    std::string path = round % 2 == 0 ? "Plant.Matrix" : "";
    for (auto length = random() % 12; length > 0; --length) path += alphabet[random() % alphabet.size()];
    HandleType handle = -1;
    agl_int32_t position = -1;
    const auto result = AGL_Symbolic_CreateAccessByPath(world.root, path.c_str(), &handle, &position);
    ASSERT_EQ(handle != 0, result == 0);
    ASSERT_GE(position, 0);
    ASSERT_LE(position, static_cast<agl_int32_t>(path.size()));
    if (handle != 0) ++found;
    if (handle != 0) AGL_Symbolic_FreeHandle(handle);
  }
  EXPECT_GT(found, 0);
  EXPECT_LT(found, 20'000);
}

TEST(Garbage, VeryLongPathIsOnlyUnknown) {
  ConnectedWorld world;
  HandleType handle = -1;
  const std::string path(1'000'000, '[');
  EXPECT_EQ(AGL_Symbolic_CreateAccessByPath(world.root, path.c_str(), &handle, nullptr),
            code(Error::PathUnknown));
}

TEST(Leaks, NothingIsLeftOfAWorldThatFreesItsHandles) {
  const auto before = statistics();
  {
    ConnectedWorld world;
    HandleType node = 0;
    HandleType none = 0;
    ASSERT_EQ(AGL_Symbolic_GetNodeByPath(world.root, "Plant.Matrix", &node, nullptr), 0);
    ASSERT_NE(AGL_Symbolic_GetNodeByPath(world.root, "Plant.None", &none, nullptr), 0);
    ASSERT_NE(AGL_Symbolic_CreateAccessByPath(world.root, "Plant.Tanks", &none, nullptr), 0);
    const PathAccess access(world.root, "Plant.aInt");
    const auto during = statistics();
    EXPECT_EQ(during.live_roots, before.live_roots + 1);
    EXPECT_EQ(during.live_nodes, before.live_nodes + 1);
    EXPECT_EQ(during.live_accesses, before.live_accesses + 1);
    EXPECT_EQ(during.open_connections, before.open_connections + 1);
    EXPECT_EQ(AGL_Symbolic_FreeHandle(node), 0);
  }
  const auto after = statistics();
  EXPECT_EQ(after.live_roots, before.live_roots);
  EXPECT_EQ(after.live_nodes, before.live_nodes);
  EXPECT_EQ(after.live_accesses, before.live_accesses);
  EXPECT_EQ(after.open_connections, before.open_connections);
}

}  // namespace
}  // namespace ostravel::standin
