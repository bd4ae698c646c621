// SPDX-License-Identifier: MIT
// The queue of commands, and the totals of a packed step.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "driver/cmddesc.h"
#include "driver/gdata.h"

namespace {

class CommandQueue : public testing::Test {
 protected:
  void SetUp() override {
    for (auto* command : {&a, &b, &c, &d}) {
      command->pGData = device.get();
      command->pNext = &stale;
      command->pPrev = &stale;
    }
  }
  std::string name(const stCmdDesc* command) const {
    if (command == nullptr) return "none";
    if (command == &a) return "A";
    if (command == &b) return "B";
    if (command == &c) return "C";
    return command == &d ? "D" : "stale";
  }
  std::string forward() const {
    std::string text;
    for (const auto* at = device->pGCmdQueue; at != nullptr && text.size() < 20; at = at->pNext)
      text += name(at);
    return text;
  }

  std::unique_ptr<GData> device = std::make_unique<GData>();
  stCmdDesc a, b, c, d, stale;
};

}  // namespace

TEST_F(CommandQueue, HeadAloneHasNoNeighbours) {
  SetCmdQueueHead(&a);
  EXPECT_EQ(forward(), "A");
  EXPECT_EQ(name(a.pPrev), "none");
  EXPECT_EQ(device->GCmdCounts, 1U);
}

TEST_F(CommandQueue, SettingTheHeadDropsWhatTheQueueHeld) {
  SetCmdQueueHead(&a);
  AddCmdQueueTail(&b);
  SetCmdQueueHead(&c);
  EXPECT_EQ(forward(), "C");
  EXPECT_EQ(device->GCmdCounts, 1U);
}

TEST_F(CommandQueue, TailsAreAppendedAndTheHeadPointsBackAtTheTail) {
  SetCmdQueueHead(&a);
  AddCmdQueueTail(&b);
  EXPECT_EQ(forward(), "AB");
  EXPECT_EQ(name(a.pPrev), "B");
  EXPECT_EQ(name(b.pPrev), "A");
  AddCmdQueueTail(&c);
  EXPECT_EQ(forward(), "ABC");
  EXPECT_EQ(name(a.pPrev), "C");
  EXPECT_EQ(name(b.pPrev), "A");
  EXPECT_EQ(name(c.pPrev), "B");
  EXPECT_EQ(device->GCmdCounts, 3U);

  AddCmdQueueHead(&d);
  EXPECT_EQ(forward(), "DABC");
  EXPECT_EQ(name(d.pPrev), "C");
  EXPECT_EQ(name(a.pPrev), "D");
  EXPECT_EQ(name(c.pNext), "none");
  EXPECT_EQ(device->GCmdCounts, 4U);
}

TEST_F(CommandQueue, HeadBeforeASingleCommandFindsItAsItsTail) {
  SetCmdQueueHead(&a);
  AddCmdQueueHead(&b);
  EXPECT_EQ(forward(), "BA");
  EXPECT_EQ(name(b.pPrev), "A");
  EXPECT_EQ(name(a.pPrev), "B");
  EXPECT_EQ(name(a.pNext), "none");
  AddCmdQueueTail(&c);
  EXPECT_EQ(forward(), "BAC");
  EXPECT_EQ(name(b.pPrev), "C");
  EXPECT_EQ(name(c.pPrev), "A");
  EXPECT_EQ(device->GCmdCounts, 3U);
}

TEST_F(CommandQueue, HeadsAreStackedInReverseOrder) {
  SetCmdQueueHead(&a);
  AddCmdQueueHead(&b);
  AddCmdQueueHead(&c);
  AddCmdQueueHead(&d);
  EXPECT_EQ(forward(), "DCBA");
  EXPECT_EQ(name(d.pPrev), "A");
}

TEST(Packing, TotalsBeginAtZero) {
  stCmdRestrictInfo info{1, 2, 3};
  InitCmdRestrictInfo(&info);
  EXPECT_EQ(info.CmdCounts, 0U);
  EXPECT_EQ(info.ResponseLength, 0U);
  EXPECT_EQ(info.CmdLength, 0U);
}

TEST(Packing, MarksTheCommandAndAddsItsLengths) {
  stCmdRestrictInfo info{};
  stCmdDesc command;
  command.ResponseLength = 14;
  command.ServiceDataLength = 5;
  EXPECT_EQ(CanPackCmd(&command, &info), 1);
  EXPECT_EQ(command.bPack, 1);
  EXPECT_EQ(CanPackCmd(&command, &info), 1);
  EXPECT_EQ(info.CmdCounts, 2U);
  EXPECT_EQ(info.ResponseLength, 28U);
  EXPECT_EQ(info.CmdLength, 10U);
}

TEST(Packing, HasNoLimit) {
  // Deliberate: the totals record what was packed, and nothing more.
  stCmdRestrictInfo info{1000000, 4000000000U, 4000000000U};
  stCmdDesc command;
  command.ResponseLength = 65535;
  command.ServiceDataLength = 65535;
  EXPECT_EQ(CanPackCmd(&command, &info), 1);
  EXPECT_EQ(info.CmdCounts, 1000001U);
  EXPECT_EQ(info.ResponseLength, 4000065535U);
  EXPECT_EQ(info.CmdLength, 4000065535U);
}
