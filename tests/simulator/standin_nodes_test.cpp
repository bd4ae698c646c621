// SPDX-License-Identifier: MIT
// Paths, nodes, arrays, accesses, handles.
#include <gtest/gtest.h>

#include <thread>

#include "tests/simulator/standin_world.h"

namespace ostravel::standin {
namespace {

class Nodes : public testing::Test {
 protected:
  HandleType node(const char* path) {
    HandleType handle = -1;
    agl_int32_t position = -1;
    EXPECT_EQ(AGL_Symbolic_GetNodeByPath(world.root, path, &handle, &position), 0) << path;
    nodes.push_back(handle);
    return handle;
  }
  ~Nodes() override {
    for (const auto handle : nodes) AGL_Symbolic_FreeHandle(handle);
  }
  ConnectedWorld world;
  std::vector<HandleType> nodes;
};

TEST_F(Nodes, UnknownPathSaysWhereItStopsToFit) {
  HandleType handle = -1;
  agl_int32_t position = -1;
  EXPECT_EQ(AGL_Symbolic_GetNodeByPath(world.root, "Plant.Nowhere", &handle, &position),
            code(Error::PathUnknown));
  EXPECT_EQ(handle, 0);
  EXPECT_EQ(position, 6);
  handle = -1;
  EXPECT_EQ(AGL_Symbolic_CreateAccessByPath(world.root, "Plant.Numbers[11]", &handle, nullptr),
            code(Error::PathUnknown));
  EXPECT_EQ(handle, 0);
}

TEST_F(Nodes, StructureIsANodeButHasNoValue) {
  node("Plant");
  node("Plant.Tanks");
  node("Plant.Tanks[1]");
  for (const auto* path : {"Plant", "Plant.Tanks", "Plant.Tanks[1]"}) {
    HandleType handle = -1;
    EXPECT_EQ(AGL_Symbolic_CreateAccessByPath(world.root, path, &handle, nullptr),
              code(Error::NotAccessible));
    EXPECT_EQ(handle, 0);
  }
}

TEST_F(Nodes, BoundsOfArraysOfAnyBase) {
  agl_int32_t count = -1;
  agl_int32_t lower = 0;
  agl_int32_t upper = 0;
  EXPECT_EQ(AGL_Symbolic_GetArrayDimensionCount(node("Plant.Matrix"), &count), 0);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(AGL_Symbolic_GetArrayDimension(nodes[0], 0, &lower, &upper), 0);
  EXPECT_EQ(lower, 1);
  EXPECT_EQ(upper, 2);
  EXPECT_EQ(AGL_Symbolic_GetArrayDimension(nodes[0], 1, &lower, &upper), 0);
  EXPECT_EQ(lower, -1);
  EXPECT_EQ(upper, 1);
  EXPECT_EQ(AGL_Symbolic_GetArrayDimension(nodes[0], 2, &lower, &upper), code(Error::DimensionInvalid));
  EXPECT_EQ(AGL_Symbolic_GetArrayDimension(nodes[0], -1, &lower, &upper), code(Error::DimensionInvalid));
  EXPECT_EQ(AGL_Symbolic_GetArrayDimensionCount(node("Plant.Six"), &count), 0);
  EXPECT_EQ(count, 6);
}

TEST_F(Nodes, ScalarAndElementHaveNoDimensions) {
  agl_int32_t count = -1;
  EXPECT_EQ(AGL_Symbolic_GetArrayDimensionCount(node("Plant.aInt"), &count), 0);
  EXPECT_EQ(count, 0);
  count = -1;
  EXPECT_EQ(AGL_Symbolic_GetArrayDimensionCount(node("Plant.Matrix[1,0]"), &count), 0);
  EXPECT_EQ(count, 0);
}

TEST_F(Nodes, LinearIndexIsRowMajorFromTheLowerBounds) {
  const auto matrix = node("Plant.Matrix");
  agl_int32_t linear = -1;
  const std::vector<agl_int32_t> first{1, -1};
  const std::vector<agl_int32_t> last{2, 1};
  const std::vector<agl_int32_t> outside{3, 0};
  EXPECT_EQ(AGL_Symbolic_GetArrayIndexAsLinearIndex(matrix, first.data(), 2, &linear), 0);
  EXPECT_EQ(linear, 0);
  EXPECT_EQ(AGL_Symbolic_GetArrayIndexAsLinearIndex(matrix, last.data(), 2, &linear), 0);
  EXPECT_EQ(linear, 5);
  EXPECT_EQ(AGL_Symbolic_GetArrayIndexAsLinearIndex(matrix, outside.data(), 2, &linear),
            code(Error::IndexInvalid));
  EXPECT_EQ(AGL_Symbolic_GetArrayIndexAsLinearIndex(matrix, first.data(), 1, &linear),
            code(Error::IndexInvalid));
  EXPECT_EQ(AGL_Symbolic_GetArrayIndexAsLinearIndex(matrix, nullptr, 0, &linear), code(Error::IndexInvalid));
  EXPECT_EQ(AGL_Symbolic_GetArrayIndexAsLinearIndex(matrix, nullptr, 2, &linear),
            code(Error::InvalidParameter));
  EXPECT_EQ(linear, 5);
}

TEST_F(Nodes, ElementTellsItsIndex) {
  const auto element = node("Plant.Matrix[2,-1]");
  agl_int32_t size = -1;
  agl_int32_t value = 0;
  EXPECT_EQ(AGL_Symbolic_GetIndexSize(element, &size), 0);
  EXPECT_EQ(size, 2);
  EXPECT_EQ(AGL_Symbolic_GetIndex(element, 1, &value), 0);
  EXPECT_EQ(value, -1);
  EXPECT_EQ(AGL_Symbolic_GetIndex(element, 2, &value), code(Error::IndexInvalid));
  EXPECT_EQ(AGL_Symbolic_GetIndexSize(node("Plant.Matrix"), &size), 0);
  EXPECT_EQ(size, 0);
  EXPECT_EQ(AGL_Symbolic_GetIndex(nodes[1], 0, &value), code(Error::IndexInvalid));
}

TEST_F(Nodes, AccessTellsItsSizes) {
  PathAccess array(world.root, "Plant.Numbers");
  agl_int32_t value = -1;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferSize(array.handle, &value), 0);
  EXPECT_EQ(value, 16);
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferElementSize(array.handle, &value), 0);
  EXPECT_EQ(value, 2);
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferElementCount(array.handle, &value), 0);
  EXPECT_EQ(value, 8);
  PathAccess element(world.root, "Plant.Numbers[3]");
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferElementCount(element.handle, &value), 0);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(AGL_Symbolic_GetAccessStringSize(element.handle, &value), code(Error::WrongType));
}

TEST_F(Nodes, HandleOfOneKindIsNoneOfAnother) {
  agl_int32_t value = 0;
  HandleType handle = 0;
  const auto some_node = node("Plant.aInt");
  PathAccess access(world.root, "Plant.aInt");
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferSize(some_node, &value), code(Error::InvalidHandle));
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferSize(world.root, &value), code(Error::InvalidHandle));
  EXPECT_EQ(AGL_Symbolic_GetArrayDimensionCount(access.handle, &value), code(Error::InvalidHandle));
  EXPECT_EQ(AGL_Symbolic_GetNodeByPath(some_node, "Plant", &handle, nullptr), code(Error::InvalidHandle));
  EXPECT_EQ(AGL_Symbolic_SaveAGLinkSymbolsToFile(access.handle, "x"), code(Error::InvalidHandle));
}

TEST_F(Nodes, HandlesAreNeverUsedAgain) {
  HandleType first = 0;
  HandleType second = 0;
  EXPECT_EQ(AGL_Symbolic_CreateAccessByPath(world.root, "Plant.aInt", &first, nullptr), 0);
  EXPECT_EQ(AGL_Symbolic_FreeHandle(first), 0);
  EXPECT_EQ(AGL_Symbolic_CreateAccessByPath(world.root, "Plant.aInt", &second, nullptr), 0);
  EXPECT_NE(first, second);
  EXPECT_EQ(AGL_Symbolic_FreeHandle(second), 0);
}

TEST_F(Nodes, FreeingTwiceAndFreeingNothingAreCountedApart) {
  const auto before = statistics();
  HandleType handle = 0;
  EXPECT_EQ(AGL_Symbolic_CreateAccessByPath(world.root, "Plant.aInt", &handle, nullptr), 0);
  EXPECT_EQ(AGL_Symbolic_FreeHandle(handle), 0);
  EXPECT_EQ(AGL_Symbolic_FreeHandle(handle), code(Error::InvalidHandle));
  EXPECT_EQ(AGL_Symbolic_FreeHandle(0), code(Error::InvalidHandle));
  EXPECT_EQ(AGL_Symbolic_FreeHandle(-5), code(Error::InvalidHandle));
  const auto after = statistics();
  EXPECT_EQ(after.double_frees - before.double_frees, 1U);
  EXPECT_EQ(after.invalid_frees - before.invalid_frees, 2U);
}

TEST_F(Nodes, LiveHandlesAreCountedByKind) {
  const auto before = statistics();
  node("Plant");
  node("Plant.aInt");
  const PathAccess access(world.root, "Plant.aInt");
  const auto after = statistics();
  EXPECT_EQ(after.live_roots, before.live_roots);
  EXPECT_EQ(after.live_nodes - before.live_nodes, 2U);
  EXPECT_EQ(after.live_accesses - before.live_accesses, 1U);
}

TEST_F(Nodes, ThatNobodyFreesCanBeReleased) {
  const auto before = statistics();
  const auto handle = node("Plant");
  const PathAccess access(world.root, "Plant.aInt");
  EXPECT_EQ(agl_standin_release_nodes(), before.live_nodes + 1);
  const auto after = statistics();
  EXPECT_EQ(after.live_nodes, 0U);
  EXPECT_EQ(after.released_nodes - before.released_nodes, before.live_nodes + 1);
  EXPECT_EQ(after.live_accesses - before.live_accesses, 1U) << "other handles stay";
  EXPECT_EQ(AGL_Symbolic_FreeHandle(handle), code(Error::InvalidHandle));
}

TEST_F(Nodes, TimeInTheLibraryIsThatOfTheThreadWhichAsks) {
  const auto before = agl_standin_nanoseconds_here();
  world.command("delay 30ms");
  PathAccess access(world.root, "Plant.aInt");
  EXPECT_EQ(access.read(world.connection), 0);
  world.command("delay 0ms");
  EXPECT_GE(agl_standin_nanoseconds_here() - before, 30'000'000U);
  std::uint64_t of_another = 1;
  std::thread([&of_another] { of_another = agl_standin_nanoseconds_here(); }).join();
  EXPECT_EQ(of_another, 0U);
}

TEST_F(Nodes, AccessOutlivesItsRoot) {
  PathAccess access(world.root, "Plant.Locked");
  EXPECT_EQ(AGL_Symbolic_FreeHandle(world.root), 0);
  world.root = 0;
  EXPECT_EQ(access.read(world.connection), 0);
  EXPECT_EQ(access.buffer, (Data{0, 5}));
}

}  // namespace
}  // namespace ostravel::standin
