// SPDX-License-Identifier: MIT
// Input cycles whose queue, steps and commands do not fit together, as after a batch that was never answered:
// no read or write goes beyond what is there.
#include <gtest/gtest.h>

#include "tests/driver/device.h"

namespace {

class OddQueue : public testing::Test {
 protected:
  OddQueue() {
    library.add("A", Item::Int16(1));
    library.add("B", Item::Int16(2));
    library.add("C", Item::Int16(3));
    device.connected();
  }
  static RequestBuilder read_of(DWORD row) { return RequestBuilder::Read(TagBlock(DT_INT).row(row)); }

  FakeLibrary library;
  Device device{ProjectFile().tag("A").tag("B").tag("C")};
};

TEST_F(OddQueue, AStepOfMoreCommandsThanAreQueuedEndsWithTheQueue) {
  device.output({read_of(0), read_of(1)});
  device.data().GPackSize[0] = 5;
  const auto records = device.input(2);
  EXPECT_EQ(status_of(records[0]), "0/5");
  EXPECT_EQ(records[0].wData[0], 1);
  EXPECT_EQ(records[1].wData[0], 2);
  ASSERT_EQ(library.reads().size(), 1U);
  EXPECT_EQ(library.reads()[0].accesses.size(), 2U);
  EXPECT_EQ(device.data().pGCmdQueue, nullptr);
  EXPECT_EQ(device.data().GCmdCounts, 0U);
}

TEST_F(OddQueue, ACommandThatAnswersForNoRecordIsLeftOut) {
  device.output({read_of(0), read_of(1), read_of(2)});
  device.data().GCmdDesc[1].nCmdIndex = 3;
  const auto records = device.input(3);
  EXPECT_EQ(records[0].wData[0], 1);
  EXPECT_EQ(records[1].wData[0], kUntouchedWord);
  EXPECT_EQ(records[2].wData[0], 3);
}

TEST_F(OddQueue, FewerRecordsThanRequestsGetTheFirstOnes) {
  device.output({read_of(0), read_of(1), read_of(2)});
  const auto records = device.input(1);
  EXPECT_EQ(status_of(records[0]), "0/5");
  EXPECT_EQ(records[0].wData[0], 1);
}

}  // namespace
