// SPDX-License-Identifier: MIT
// What the input filter answers by loader state, and how it steps through a read cycle.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

namespace {

using testing::ElementsAre;

class InputStates : public testing::Test {
 protected:
  void SetUp() override { device.connected(); }
  static RequestBuilder request(DWORD row, int type = DT_INT) {
    return RequestBuilder::Read(TagBlock(type).row(row));
  }
  std::vector<std::string> paths_read() const {
    std::vector<std::string> list;
    for (const auto& job : library.reads())
      for (const auto& access : job.accesses) list.push_back(access.path);
    return list;
  }
  // All bytes but those at the given offsets hold what they held before the call.
  static void expect_untouched_but(const INPUT_DATA& record, std::initializer_list<std::size_t> offsets) {
    for (std::size_t i = 0; i < sizeof record; ++i) {
      if (std::find(offsets.begin(), offsets.end(), i) != offsets.end()) continue;
      ASSERT_EQ(field<BYTE>(record, i), kUntouchedByte) << i;
    }
  }
  GData& data() { return device.data(); }

  FakeLibrary library;
  Device device{ProjectFile().tag("Motor").tag("Valve").tag("motor").tag("Pump")};
};

}  // namespace

TEST_F(InputStates, LoadingAnswersTwo) {
  device.loader().loader_state = SymbolsLoader::Loading;
  for (bool read : {true, false}) {
    const auto records = device.input(3, read);
    EXPECT_EQ(status_of(records[0]), "2/5");
    EXPECT_EQ(records[0].nLength, 0);
    expect_untouched_but(records[0], {0, 1, 4, 5, 6, 7});
    for (int i : {1, 2}) {
      EXPECT_EQ(records[static_cast<std::size_t>(i)].byErrCode, 2);
      expect_untouched_but(records[static_cast<std::size_t>(i)], {0});
    }
  }
}

TEST_F(InputStates, IdleAnswersThirteen) {
  device.loader().loader_state = SymbolsLoader::Idle;
  for (bool read : {true, false}) {
    const auto records = device.input(3, read);
    EXPECT_EQ(records[0].nLength, 0);
    expect_untouched_but(records[0], {0, 1, 4, 5, 6, 7});
    for (const auto& record : records) EXPECT_EQ(status_of(record), "13/5");
    expect_untouched_but(records[1], {0, 1});
    expect_untouched_but(records[2], {0, 1});
  }
}

TEST_F(InputStates, EveryRecordOfALongBatchGetsTheStatesAnswer) {
  device.loader().loader_state = SymbolsLoader::Loading;
  for (const auto& record : device.input(40)) EXPECT_EQ(record.byErrCode, 2);
  device.loader().loader_state = SymbolsLoader::Idle;
  for (const auto& record : device.input(40)) EXPECT_EQ(status_of(record), "13/5");
}

TEST_F(InputStates, WriteBatchIsAnsweredWithSuccessInTheFirstRecordAlone) {
  for (auto state : {SymbolsLoader::Success, SymbolsLoader::Error, SymbolsLoader::Disconnect}) {
    device.loader().loader_state = state;
    data().GTotalStep = 3;
    data().GCurrentStep = 2;
    data().write_device_state = false;
    const auto records = device.input(3, false);
    EXPECT_EQ(status_of(records[0]), "0/5");
    EXPECT_EQ(records[0].nLength, 0);
    expect_untouched_but(records[0], {0, 1, 4, 5, 6, 7});
    expect_untouched_but(records[1], {});
    expect_untouched_but(records[2], {});
    EXPECT_EQ(data().GTotalStep, 0U);
    EXPECT_EQ(data().GCurrentStep, 0U);
  }
  EXPECT_TRUE(library.log().empty());
}

TEST_F(InputStates, FailedWriteIsAnsweredWithSuccess) {
  // Kept on purpose: the result stays in write_device_state.
  library.add("Motor", Item::Int16(0));
  library.fail("AGL_Symbolic_WriteMixEx", -1);
  device.output({RequestBuilder::WordWrite(TagBlock(DT_INT), {1})});
  const auto records = device.input(1, false);
  EXPECT_EQ(status_of(records[0]), "0/5");
  EXPECT_EQ(records[0].nLength, 0);
  EXPECT_FALSE(data().write_device_state);
}

TEST_F(InputStates, ReadWithAFailedLoaderIsAnsweredLikeAWrite) {
  for (auto state : {SymbolsLoader::Error, SymbolsLoader::Disconnect}) {
    device.output({request(0), request(1)});
    device.loader().loader_state = state;
    const auto records = device.input(2);
    EXPECT_EQ(status_of(records[0]), "0/5");
    EXPECT_EQ(records[0].nLength, 0);
    expect_untouched_but(records[1], {});
    EXPECT_EQ(data().GTotalStep, 0U);
    EXPECT_EQ(data().GCurrentStep, 0U);
    device.loader().loader_state = SymbolsLoader::Success;
    data().pGCmdQueue = nullptr;
  }
  EXPECT_TRUE(library.log().empty());
}

TEST_F(InputStates, ReadWithoutAQueueAnswersThirteenAndCallsNothing) {
  const auto records = device.input(3);
  for (const auto& record : records) EXPECT_EQ(status_of(record), "13/5");
  EXPECT_TRUE(library.log().empty());
  EXPECT_EQ(device.loader().loader_state, SymbolsLoader::Success) << "no disconnection";
  EXPECT_FALSE(device.loader().bDisconnect);
}

TEST_F(InputStates, CountOfZeroOrLessTouchesNothing) {
  device.output({request(0)});
  INPUT_DATA record;
  std::memset(&record, kUntouchedByte, sizeof record);
  DEVICE_INFO info{};
  info.bRead = TRUE;
  info.pdwMemAddr = device.handle();
  FRAME_DATA frame{};
  for (int count : {0, -1, -2147483647}) {
    KORVALE_DRV_InputFilterEx(&record, &frame, &info, count);
    expect_untouched_but(record, {});
  }
  EXPECT_EQ(data().GCmdCounts, 1U);
  EXPECT_TRUE(library.log().empty());
}

TEST_F(InputStates, OneIntIsAnsweredInASingleCall) {
  library.add("Motor", Item::Int16(1234));
  device.read_words(17);
  const auto records = device.read({request(0)});
  EXPECT_EQ(status_of(records[0]), "0/5");
  EXPECT_EQ(records[0].nLength, 17);
  EXPECT_EQ(records[0].wData[0], 1234);
  expect_untouched_but(records[0], {0, 1, 4, 5, 6, 7, 8, 9});
  EXPECT_EQ(data().pGCmdQueue, nullptr);
  EXPECT_EQ(data().GCmdCounts, 0U);
  EXPECT_EQ(data().GTotalStep, 0U);
  EXPECT_EQ(data().GCurrentStep, 0U);
}

TEST_F(InputStates, ReadIsOneJobOnTheDevicesConnection) {
  library.add("Motor", Item::Int16(1));
  library.add("Valve", Item::Int16(2));
  device.read({request(0), request(1)});
  ASSERT_EQ(library.reads().size(), 1U);
  EXPECT_EQ(library.reads()[0].connection, kStation);
  EXPECT_EQ(library.reads()[0].timeout, 5000);
  EXPECT_THAT(paths_read(), ElementsAre("Motor", "Valve"));
  EXPECT_EQ(library.liveAccesses(), 0);
}

TEST_F(InputStates, GoodReadSetsTheConnectState) {
  library.add("Motor", Item::Int16(1));
  device.read({request(0)});
  EXPECT_TRUE(data().device_connect_state);
}

TEST_F(InputStates, RecordsAreInRequestOrderWhateverTheQueueOrder) {
  library.add("Motor", Item::Int16(1));
  library.add("Valve", Item::Int16({21, 22, 23}));
  library.add("Pump", Item::Int16(3));
  const auto records =
      device.read({request(0), RequestBuilder::Read(TagBlock(DT_INT).row(1).index(0).count(3)), request(3)});
  EXPECT_THAT(paths_read(), ElementsAre("Valve", "Motor", "Pump"));
  EXPECT_EQ(records[0].wData[0], 1);
  EXPECT_THAT(words_of(records[1], 3), ElementsAre(21, 22, 23));
  EXPECT_EQ(records[2].wData[0], 3);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(records[static_cast<std::size_t>(i)].nLength, 40 + i);
}

TEST_F(InputStates, SamePathIsReadOnceAndDeliveredTwice) {
  library.add("Motor", Item::Int16(5));
  const auto records = device.read({request(0), request(0)});
  EXPECT_THAT(paths_read(), ElementsAre("Motor"));
  EXPECT_EQ(records[0].wData[0], 5);
  EXPECT_EQ(records[1].wData[0], 5);
}

TEST_F(InputStates, PathsThatDifferInCaseAreTwo) {
  library.add("Motor", Item::Int16(5));
  library.add("motor", Item::Int16(6));
  const auto records = device.read({request(0), request(2), request(0)});
  EXPECT_THAT(paths_read(), ElementsAre("Motor", "motor"));
  EXPECT_EQ(records[1].wData[0], 6);
}

TEST_F(InputStates, CommandWithoutDataGetsTwoAndKeepsItsWords) {
  library.add("Motor", Item::Int16(5));
  library.add("Valve", Item::Int16(6).result(-8));
  library.add("Pump", Item::Int16(7));
  const auto records = device.read({request(0), request(1), request(3)});
  EXPECT_EQ(status_of(records[0]), "0/5");
  EXPECT_EQ(records[0].wData[0], 5);
  EXPECT_EQ(status_of(records[1]), "2/5");
  EXPECT_EQ(records[1].nLength, 41);
  expect_untouched_but(records[1], {0, 1, 4, 5, 6, 7});
  EXPECT_EQ(status_of(records[2]), "0/5");
  EXPECT_EQ(records[2].wData[0], 7);
}

TEST_F(InputStates, AccessWithAPlcErrorHasNoData) {
  library.add("Motor", Item::Int16(5).sError(3));
  const auto records = device.read({request(0)});
  EXPECT_EQ(status_of(records[0]), "2/5");
}

TEST_F(InputStates, AllCommandsWithoutDataAreNoDisconnection) {
  library.add("Motor", Item::Int16(5).result(-8));
  const auto records = device.read({request(0)});
  EXPECT_EQ(status_of(records[0]), "2/5");
  EXPECT_EQ(device.loader().loader_state, SymbolsLoader::Success);
  EXPECT_FALSE(device.loader().bDisconnect);
  EXPECT_TRUE(data().device_connect_state) << "the map was not empty";
}

TEST_F(InputStates, CommandThatFailsAfterAGoodCycleDoesNotDeliverTheOldValue) {
  library.add("Motor", Item::Int16(5));
  device.read({request(0)});
  library.add("Motor", Item::Int16(5).result(-8));
  const auto records = device.read({request(0)});
  EXPECT_EQ(status_of(records[0]), "2/5");
  EXPECT_EQ(records[0].wData[0], kUntouchedWord);
}

TEST_F(InputStates, StepsAreReadOneACallAndAnsweredAfterTheLast) {
  library.add("Motor", Item::Int16(1));
  library.add("Valve", Item::Int16(2));
  library.add("Pump", Item::Int16(3));
  device.output({request(0), request(1), request(3)});
  data().GPackSize[0] = 1;  // as if a step held fewer commands
  data().GPackSize[1] = 2;
  data().GTotalStep = 2;

  auto records = device.input(3);
  for (const auto& record : records) EXPECT_EQ(status_of(record), "13/5");
  expect_untouched_but(records[1], {0, 1});
  EXPECT_THAT(paths_read(), ElementsAre("Motor"));
  EXPECT_EQ(data().GCurrentStep, 1U);
  EXPECT_EQ(data().GCmdCounts, 2U);
  EXPECT_EQ(data().pGCmdQueue, &data().GCmdDesc[1]);

  records = device.input(3);
  EXPECT_THAT(paths_read(), ElementsAre("Motor", "Valve", "Pump"));
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(status_of(records[i]), "0/5");
    EXPECT_EQ(records[i].wData[0], i + 1);
  }
  EXPECT_EQ(data().GTotalStep, 0U);
  EXPECT_EQ(data().GCurrentStep, 0U);
  EXPECT_EQ(data().pGCmdQueue, nullptr);
}

TEST_F(InputStates, FullBatchIsReadInOneJob) {
  library.add("Motor", Item::Int16(5));
  const auto records = device.read(std::vector<RequestBuilder>(31, request(0)));
  ASSERT_EQ(records.size(), 31U);
  for (const auto& record : records) {
    EXPECT_EQ(status_of(record), "0/5");
    EXPECT_EQ(record.wData[0], 5);
  }
  EXPECT_EQ(library.count("AGL_Symbolic_ReadMixEx"), 1);
}

TEST_F(InputStates, RecordsBeyondThe31stGetTwo) {
  library.add("Motor", Item::Int16(5));
  const auto records = device.read(std::vector<RequestBuilder>(35, request(0)));
  for (std::size_t i = 0; i < 31; ++i) EXPECT_EQ(status_of(records[i]), "0/5") << i;
  for (std::size_t i = 31; i < 35; ++i) {
    EXPECT_EQ(records[i].byErrCode, 2) << i;
    EXPECT_EQ(records[i].wData[0], kUntouchedWord) << i;
  }
}

TEST_F(InputStates, SmallerCountThanTheOutputFiltersWritesNoFurtherRecord) {
  library.add("Motor", Item::Int16(5));
  device.output({request(0), request(0), request(0)});
  const auto records = device.input(1);
  EXPECT_EQ(records[0].wData[0], 5);
}
