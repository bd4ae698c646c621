// SPDX-License-Identifier: MIT
// Read requests: the queue that a batch becomes, and what further calls leave alone.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

namespace {

class OutputReads : public testing::Test {
 protected:
  void SetUp() override { device.connected(); }

  static RequestBuilder scalar(DWORD row = 0) { return RequestBuilder::Read(TagBlock(DT_INT).row(row)); }
  static RequestBuilder array(int count = 2) { return RequestBuilder::Read(TagBlock(DT_INT).count(count)); }

  // The command indexes in queue order.
  std::string queue() const {
    std::string text;
    for (auto* at = device.data().pGCmdQueue; at != nullptr; at = at->pNext)
      text += (text.empty() ? "" : " ") + std::to_string(at->nCmdIndex);
    return text;
  }
  GData& data() { return device.data(); }

  FakeLibrary library;
  Device device{ProjectFile().tag("Motor").tag("Valve").tag("Line[INDEX]").tag("Bad INDEX]")};
};

}  // namespace

TEST_F(OutputReads, OneRequestBecomesAQueueOfOne) {
  auto batch = device.batch({scalar(1)});
  batch[0].byWaitResponse = 7;
  EXPECT_EQ(status_of(device.output(batch)), "0/8/0");
  EXPECT_EQ(batch[0].byWaitResponse, 0);
  EXPECT_EQ(batch[0].nResponseLength, 0);
  ASSERT_EQ(data().pGCmdQueue, &data().GCmdDesc[0]);
  EXPECT_EQ(data().GCmdDesc[0].tag_name, "Valve");
  EXPECT_EQ(data().GCmdDesc[0].pGData, &data());
  EXPECT_EQ(data().GCmdDesc[0].pPrev, nullptr);
  EXPECT_EQ(data().GCmdDesc[0].pNext, nullptr);
  EXPECT_EQ(data().GCmdDesc[0].bPack, TRUE);
  EXPECT_EQ(data().GCmdCounts, 1U);
  EXPECT_EQ(data().GTotalStep, 1U);
  EXPECT_EQ(data().GCurrentStep, 0U);
  EXPECT_EQ(data().GPackSize[0], 1U);
}

TEST_F(OutputReads, MakeNoCallToTheLibrary) {
  device.output({scalar(), array(), scalar(1)});
  EXPECT_TRUE(library.log().empty());
}

TEST_F(OutputReads, ArraysComeFirstTheLastOneForemostThenScalarsInOrder) {
  device.output({scalar(), array(), scalar(), array(), scalar()});
  EXPECT_EQ(queue(), "3 1 0 2 4");
  EXPECT_EQ(data().GCmdCounts, 5U);
}

TEST_F(OutputReads, FirstRequestStaysBehindAllArraysEvenWhenItIsOne) {
  device.output({array(), scalar(), array(), array()});
  EXPECT_EQ(queue(), "3 2 0 1");
}

TEST_F(OutputReads, CountBelowTwoIsAScalar) {
  device.output({scalar(), array(0), array(1), array(2), array(65535)});
  EXPECT_EQ(queue(), "4 3 0 1 2");
}

TEST_F(OutputReads, QueueIsLinkedBothWaysAfterPacking) {
  device.output({scalar(), array(), scalar()});
  auto* const d = data().GCmdDesc;
  ASSERT_EQ(queue(), "1 0 2");
  EXPECT_EQ(d[1].pPrev, &d[2]) << "the head's pPrev is the tail";
  EXPECT_EQ(d[0].pPrev, &d[1]);
  EXPECT_EQ(d[2].pPrev, &d[0]);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(d[i].pGData, &data()) << i;
    EXPECT_EQ(d[i].bPack, TRUE) << i;
    EXPECT_EQ(d[i].nCmdIndex, static_cast<UINT>(i));
  }
}

TEST_F(OutputReads, FullBatchPacksIntoOneStep) {
  device.output(std::vector<RequestBuilder>(31, scalar()));
  EXPECT_EQ(data().GTotalStep, 1U);
  EXPECT_EQ(data().GPackSize[0], 31U);
  EXPECT_EQ(data().GCmdCounts, 31U);
  EXPECT_LE(data().GPackSize[0], 99U) << "a step holds no more";
}

TEST_F(OutputReads, PackingOnlyAddsToTheSteps) {
  data().GTotalStep = 2;
  data().GPackSize[1] = 77;
  device.output({scalar(), scalar()});
  EXPECT_EQ(data().GTotalStep, 3U);
  EXPECT_EQ(data().GPackSize[2], 2U);
  EXPECT_EQ(data().GPackSize[1], 77U);
}

TEST_F(OutputReads, EveryFunctionCodeButOneAndTwoIsARead) {
  for (int code : {0, 3, 4, 16, 255}) {
    Device other(ProjectFile().tag("Motor"));
    other.connected();
    other.output({scalar().function(code)});
    EXPECT_EQ(other.data().GTotalStep, 1U) << code;
  }
  EXPECT_TRUE(library.log().empty());
}

TEST_F(OutputReads, FirstRequestDecidesTheKindOfTheWholeBatch) {
  device.output({scalar(), scalar().function(1), scalar().function(2)});
  EXPECT_EQ(queue(), "0 1 2");
  EXPECT_TRUE(library.log().empty());
}

TEST_F(OutputReads, TagUseFlagIsNotRead) {
  device.output({scalar(1).use_tag(0), scalar(1).use_tag(1)});
  EXPECT_EQ(data().GCmdDesc[0].tag_name, "Valve");
  EXPECT_EQ(data().GCmdDesc[1].tag_name, "Valve");
}

TEST_F(OutputReads, AlternateTypeIsReplacedInTheRuntimesRequests) {
  auto batch = device.batch({RequestBuilder::Read(TagBlock(DT_INT).alternate(DT_REAL)),
                             RequestBuilder::Read(TagBlock(DT_INT).alternate(DT_SINT))});
  device.output(batch);
  EXPECT_EQ(field<BYTE>(batch[0], 4171 + 4), DT_REAL);
  EXPECT_EQ(field<BYTE>(batch[1], 4171 + 4), DT_SINT);
  EXPECT_EQ(data().GCmdDesc[0].DataType, DT_REAL);
  EXPECT_EQ(data().GCmdDesc[1].DataType, DT_SINT);
}

TEST_F(OutputReads, OnlyTwoFieldsAndTheTypeOfTheFirstRequestAreWritten) {
  auto batch = device.batch({scalar(), scalar()});
  auto expected = batch;
  expected[0].byWaitResponse = 0;
  expected[0].nResponseLength = 0;
  device.output(batch);
  for (std::size_t offset = 0; offset < 2 * sizeof(GUI_REQUEST); ++offset)
    ASSERT_EQ(reinterpret_cast<const BYTE*>(batch.data())[offset],
              reinterpret_cast<const BYTE*>(expected.data())[offset])
        << offset;
}

TEST_F(OutputReads, QueueUnderWayIsLeftAloneWhateverTheBatchNames) {
  device.output({scalar(), scalar(), scalar()});
  data().GPackSize[0] = 1;  // as if a step held one command
  data().GPackSize[1] = 2;
  data().GTotalStep = 2;
  library.add("Motor", Item::Int16(1));
  device.input(3);
  ASSERT_EQ(queue(), "1 2");

  auto batch = device.batch({scalar(1), array()});
  EXPECT_EQ(status_of(device.output(batch)), "0/8/0");
  EXPECT_EQ(batch[0].byWaitResponse, 0);
  EXPECT_EQ(batch[0].nResponseLength, 0);
  EXPECT_EQ(queue(), "1 2");
  EXPECT_EQ(data().GTotalStep, 2U);
  EXPECT_EQ(data().GCurrentStep, 1U);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(data().GCmdDesc[i].tag_name, "Motor") << i;

  device.input(3);
  EXPECT_EQ(queue(), "");
  device.output({scalar(1)});
  EXPECT_EQ(queue(), "0");
  EXPECT_EQ(data().GCmdDesc[0].tag_name, "Valve") << "the next cycle is built from its own batch";
}

TEST_F(OutputReads, FirstRequestIsLookedAtEvenWhileTheQueueIsUnderWay) {
  device.output({scalar()});
  auto batch = device.batch({RequestBuilder::Read(TagBlock(DT_INT).alternate(DT_REAL)),
                             RequestBuilder::Read(TagBlock(DT_INT).alternate(DT_REAL))});
  device.output(batch);
  EXPECT_EQ(field<BYTE>(batch[0], 4171 + 4), DT_REAL);
  EXPECT_EQ(field<BYTE>(batch[1], 4171 + 4), DT_INT);
  EXPECT_EQ(data().GCmdDesc[0].DataType, DT_INT);
}

TEST_F(OutputReads, StringInFrontClearsTheWideMarkOfTheHead) {
  data().GCmdDesc[0].is_wstring = true;
  device.output({RequestBuilder::Read(TagBlock(DT_STRING))});
  EXPECT_FALSE(data().GCmdDesc[0].is_wstring);
}

TEST_F(OutputReads, WideMarkOfTheHeadIsClearedWhateverTagItHolds) {
  // Kept on purpose: the first request is a string, the head is the array behind it.
  data().GCmdDesc[0].is_wstring = true;
  data().GCmdDesc[1].is_wstring = true;
  device.output({RequestBuilder::Read(TagBlock(DT_STRING)), array()});
  ASSERT_EQ(queue(), "1 0");
  EXPECT_FALSE(data().GCmdDesc[1].is_wstring);
  EXPECT_TRUE(data().GCmdDesc[0].is_wstring);
}

TEST_F(OutputReads, WideMarkIsClearedOnEveryCallAlsoWithoutABuild) {
  device.output({scalar(), scalar()});
  data().GCmdDesc[0].is_wstring = true;
  device.output({RequestBuilder::Read(TagBlock(DT_STRING))});
  EXPECT_FALSE(data().GCmdDesc[0].is_wstring);
}

TEST_F(OutputReads, WideMarkStaysWhenTheFirstRequestIsNoString) {
  data().GCmdDesc[0].is_wstring = true;
  device.output({scalar(), RequestBuilder::Read(TagBlock(DT_STRING))});
  EXPECT_TRUE(data().GCmdDesc[0].is_wstring);
}

TEST_F(OutputReads, IndexPlaceholderIsSubstituted) {
  device.output({RequestBuilder::Read(TagBlock(DT_INT).row(2).index(5))});
  EXPECT_EQ(data().GCmdDesc[0].tag_name, "Line[5]");
  EXPECT_TRUE(data().GCmdDesc[0].use_index_register);
}

TEST_F(OutputReads, WritesBetweenReadsLeaveTheQueueAlone) {
  device.output({scalar(), scalar(1)});
  library.add("Motor", Item::Int16(0));
  device.output({RequestBuilder::WordWrite(TagBlock(DT_INT), {5})});
  EXPECT_EQ(queue(), "0 1");
  EXPECT_EQ(data().GTotalStep, 1U);
}

TEST_F(OutputReads, BatchBeyondThePoolServesItsFirst31) {
  auto batch = device.batch(
      std::vector<RequestBuilder>(40, RequestBuilder::Read(TagBlock(DT_INT).alternate(DT_REAL))));
  EXPECT_EQ(status_of(device.output(batch)), "0/8/0");
  EXPECT_EQ(data().GCmdCounts, 31U);
  EXPECT_EQ(data().GPackSize[0], 31U);
  EXPECT_EQ(data().GTotalStep, 1U);
  EXPECT_EQ(field<BYTE>(batch[30], 4171 + 4), DT_REAL);
  EXPECT_EQ(field<BYTE>(batch[31], 4171 + 4), DT_INT);
}

TEST_F(OutputReads, ImpossibleNameRaisesAndDoesNotSpoilTheNextBatch) {
  EXPECT_THROW(device.output({scalar(), scalar(3), scalar()}), std::out_of_range);
  EXPECT_THROW(device.output({scalar(3)}), std::out_of_range);
  library.add("Valve", Item::Int16(5));
  const auto records = device.read({scalar(1), scalar(1)});
  EXPECT_EQ(status_of(records[0]), "0/5");
  EXPECT_EQ(status_of(records[1]), "0/5");
}
