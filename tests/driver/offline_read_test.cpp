// SPDX-License-Identifier: MIT
// Offline simulation: what is written is read back, by element, without a PLC.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/driver/offline.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;

// One type, and words to write and to find again.
struct TypeWords {
  const char* name;
  int code;
  std::vector<WORD> words;  // of two elements
};

const TypeWords kTypes[] = {
    {"Byte", DT_BYTE, {0x00FB, 0x1234}},
    {"Word", DT_WORD, {0x8001, 1}},
    {"Uint", DT_UINT, {0xFFFF, 2}},
    {"Usint", DT_USINT, {0x00FF, 3}},
    {"Sint", DT_SINT, {0x0080, 0xFFFB}},
    {"Int", DT_INT, {1234, 0xFFFF}},
    {"String", DT_STRING, {0x4241, 0x0043}},
    {"Dword", DT_DWORD, {0x5678, 0x1234, 1, 2}},
    {"Udint", DT_UDINT, {0xFFFF, 0xFFFF, 0, 1}},
    {"Dint", DT_DINT, {0x5678, 0x1234, 0xFFFE, 0xFFFF}},
    {"Real", DT_REAL, {0, 0x3FC0, 0, 0xC000}},
    {"Lword", DT_LWORD, {1, 2, 3, 4, 5, 6, 7, 8}},
    {"Lint", DT_LINT, {0xFFFD, 0xFFFF, 0xFFFF, 0xFFFF, 1, 0, 0, 0x8000}},
    {"Ulint", DT_ULINT, {9, 8, 7, 6, 5, 4, 3, 2}},
    {"Lreal", DT_LREAL, {0, 0, 0, 0x3FD0, 0, 0, 0, 0xC008}},
};

class OfflineRoundTrip : public Offline, public testing::WithParamInterface<TypeWords> {
 protected:
  std::size_t width() const { return GetParam().words.size() / 2; }
  TagBlock tag(int index, int count = 1) const { return TagBlock(GetParam().code).index(index).count(count); }
};

class OfflineReads : public Offline {};

}  // namespace

TEST_P(OfflineRoundTrip, OneElement) {
  const std::vector<WORD> first(GetParam().words.begin(),
                                GetParam().words.begin() + static_cast<long>(width()));
  write(tag(3), first);
  EXPECT_THAT(words(tag(3), width()), ElementsAreArray(first));
  EXPECT_THAT(words(tag(4), width()), Each(0)) << "the next element is another value";
}

TEST_P(OfflineRoundTrip, SeveralElements) {
  write(tag(3, 2), GetParam().words);
  EXPECT_THAT(words(tag(3, 2), 2 * width()), ElementsAreArray(GetParam().words));
  const std::vector<WORD> second(GetParam().words.begin() + static_cast<long>(width()),
                                 GetParam().words.end());
  // The words of a text belong to the element that the write named.
  if (GetParam().code == DT_STRING) return;
  EXPECT_THAT(words(tag(4), width()), ElementsAreArray(second));
}

TEST_P(OfflineRoundTrip, IsTheSameInBothStringLayouts) {
  Device paired(ProjectFile(1).tag("Plain"), Device::Simulated);
  paired.output({RequestBuilder::WordWrite(tag(3, 2), GetParam().words)});
  const auto record = paired.read({RequestBuilder::Read(tag(3, 2))}).at(0);
  EXPECT_THAT(words_of(record, 2 * width()), ElementsAreArray(GetParam().words));
}

INSTANTIATE_TEST_SUITE_P(EveryType, OfflineRoundTrip, testing::ValuesIn(kTypes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(OfflineReads, TagNeverWrittenDeliversZerosAndCreatesEntries) {
  for (int type : {DT_INT, DT_DINT, DT_LREAL, DT_BOOL, DT_BITARY}) {
    const auto before = map().size();
    const auto record = read(TagBlock(type).index(7).count(2));
    EXPECT_EQ(status_of(record), "0/5");
    EXPECT_EQ(record.wData[0], 0);
    EXPECT_EQ(map().size(), before + 2) << type;
  }
  for (const auto& [key, value] : map()) {
    EXPECT_EQ(value, 0U);
    EXPECT_EQ(key.BitIndex, -1);
    EXPECT_STREQ(key.pTagName, "Plain");
  }
}

TEST_F(OfflineReads, ArrayOfFiveIntsTakesFiveConsecutiveEntries) {
  read(TagBlock(DT_INT).index(10).count(5));
  ASSERT_EQ(map().size(), 5U);
  WORD index = 10;
  for (const auto& [key, value] : map()) {
    EXPECT_EQ(key.ArrayIndex, index++);
    EXPECT_EQ(key.TagIndex, 0);
    EXPECT_EQ(key.DataType, DT_INT);
  }
}

TEST_F(OfflineReads, ValueIsKeptPerTypeIndexAndRow) {
  write(TagBlock(DT_INT).index(1), {11});
  write(TagBlock(DT_WORD).index(1), {12});
  write(TagBlock(DT_INT).index(2), {13});
  write(TagBlock(DT_INT).row(1).index(1), {14});
  EXPECT_EQ(map().size(), 4U);
  EXPECT_THAT(words(TagBlock(DT_INT).index(1), 1), ElementsAre(11));
  EXPECT_THAT(words(TagBlock(DT_WORD).index(1), 1), ElementsAre(12));
  EXPECT_THAT(words(TagBlock(DT_INT).index(2), 1), ElementsAre(13));
  EXPECT_THAT(words(TagBlock(DT_INT).row(1).index(1), 1), ElementsAre(14));
}

TEST_F(OfflineReads, FrameAndFirstRequestSaySuccess) {
  auto batch = device.batch({RequestBuilder::Read(TagBlock(DT_INT)), RequestBuilder::Read(TagBlock(DT_INT))});
  const auto frame = device.output(batch);
  for (std::size_t i = 0; i < sizeof frame; ++i) ASSERT_EQ(field<BYTE>(frame, i), i == 3 ? 8 : 0) << i;
  EXPECT_EQ(batch[0].nResponseLength, 0);
  EXPECT_EQ(batch[0].byWaitResponse, 0);
  EXPECT_EQ(batch[1].byWaitResponse, kReservedPattern);
}

TEST_F(OfflineReads, CommandsKeepTypeCountBitAndValues) {
  write(TagBlock(DT_INT).index(3), {0x1234});
  device.output({RequestBuilder::Read(TagBlock(DT_WORD).bit(4).index(3).count(9)),
                 RequestBuilder::Read(TagBlock(DT_INT).index(3).count(2))});
  const auto* commands = device.data().GCmdDesc;
  EXPECT_EQ(commands[0].DataType, DT_WORD);
  EXPECT_EQ(commands[0].BitIndex, 4);
  EXPECT_EQ(commands[0].ElementCounts, 9);
  EXPECT_EQ(commands[1].DataType, DT_INT);
  EXPECT_EQ(commands[1].BitIndex, -1);
  EXPECT_EQ(commands[1].ElementCounts, 2);
  EXPECT_EQ(commands[1].DataBuffer[0], 0x34);
  EXPECT_EQ(commands[1].DataBuffer[1], 0x12);
}

TEST_F(OfflineReads, EachRequestOfABatchIsAnsweredInItsPlace) {
  write(TagBlock(DT_INT).index(1), {11});
  write(TagBlock(DT_DINT).index(1), {1, 2});
  const auto records = device.read({RequestBuilder::Read(TagBlock(DT_INT).index(1)),
                                    RequestBuilder::Read(TagBlock(DT_DINT).index(1)),
                                    RequestBuilder::Read(TagBlock(DT_INT).index(0).count(2))});
  EXPECT_EQ(records[0].wData[0], 11);
  EXPECT_THAT(words_of(records[1], 3), ElementsAre(1, 2, kUntouchedWord));
  EXPECT_THAT(words_of(records[2], 3), ElementsAre(0, 11, kUntouchedWord));
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(status_of(records[i]), "0/5");
    EXPECT_EQ(records[i].nLength, 40 + static_cast<int>(i));
  }
}

TEST_F(OfflineReads, RecordsGoByPositionAndNotByCommandIndex) {
  write(TagBlock(DT_INT).index(1), {11});
  device.output(
      {RequestBuilder::Read(TagBlock(DT_INT).index(1)), RequestBuilder::Read(TagBlock(DT_INT).index(2))});
  device.data().GCmdDesc[0].nCmdIndex = 1;
  device.data().GCmdDesc[1].nCmdIndex = 0;
  const auto records = device.input(2);
  EXPECT_EQ(records[0].wData[0], 11);
  EXPECT_EQ(records[1].wData[0], 0);
}

TEST_F(OfflineReads, AreAnsweredAtOnceWithoutQueueStepOrState) {
  for (auto state :
       {SymbolsLoader::Idle, SymbolsLoader::Loading, SymbolsLoader::Error, SymbolsLoader::Disconnect}) {
    device.loader().loader_state = state;
    device.loader().bDisconnect = true;
    EXPECT_EQ(status_of(read(TagBlock(DT_INT))), "0/5");
    EXPECT_EQ(device.loader().loader_state, state);
  }
  EXPECT_EQ(device.data().pGCmdQueue, nullptr);
  EXPECT_EQ(device.data().GTotalStep, 0U);
  EXPECT_FALSE(device.data().bIsInitDevice) << "no lazy start";
  EXPECT_TRUE(library.log().empty());
}

TEST_F(OfflineReads, WholeNumberOfTheAlternateTypeIsTaken) {
  write(TagBlock(DT_DINT).index(1), {1, 2});
  auto batch = device.batch({RequestBuilder::Read(TagBlock(DT_INT).alternate(DT_DINT).index(1))});
  device.output(batch);
  EXPECT_EQ(field<BYTE>(batch[0], 4171 + 4), DT_DINT);
  EXPECT_THAT(words_of(device.input(1)[0], 2), ElementsAre(1, 2));
}

TEST_F(OfflineReads, UpperHalfOf32BitElementsStaysOutsideTheDeliveredWords) {
  // Each element stores 8 bytes and advances 4; only two words an element are delivered.
  write(TagBlock(DT_DINT).index(0).bit(31), {}, 1);
  write(TagBlock(DT_DINT).index(1), {7, 8});
  EXPECT_THAT(words(TagBlock(DT_DINT).index(0).count(2), 4), ElementsAre(0, 0x8000, 7, 8));
}

TEST_F(OfflineReads, LtimeDeliversNothing) {
  write(TagBlock(DT_LTIME).index(0), {1, 2, 3, 4});
  const auto record = read(TagBlock(DT_LTIME).index(0));
  EXPECT_EQ(status_of(record), "0/5");
  EXPECT_EQ(record.wData[0], kUntouchedWord);
}

TEST_F(OfflineReads, StringIsDeliveredAsPlainBytesAndTheWordsBehindItLeftAlone) {
  // Both layouts: nothing is spread, no word beyond the count is touched.
  write(TagBlock(DT_STRING).count(2), {0x4241, 0xE443});
  EXPECT_THAT(words(TagBlock(DT_STRING).count(2), 2), ElementsAre(0x4241, 0xE443));
}

TEST_F(OfflineReads, SintIsNotSignExtended) {
  write(TagBlock(DT_SINT), {0x00FB});
  EXPECT_THAT(words(TagBlock(DT_SINT), 1), ElementsAre(0x00FB));
}

TEST_F(OfflineReads, IndexPlaceholderIsNotSubstituted) {
  // The name stays as it is; the index alone tells the elements apart.
  write(TagBlock(DT_INT).row(5).index(3), {33});
  EXPECT_THAT(words(TagBlock(DT_INT).row(5).index(3), 1), ElementsAre(33));
  EXPECT_STREQ(map().begin()->first.pTagName, "Line[INDEX]");
}

TEST_F(OfflineReads, IndexRunsOverAtSixteenBits) {
  write(TagBlock(DT_INT).index(0), {5});
  EXPECT_THAT(words(TagBlock(DT_INT).index(0xFFFF).count(2), 2), ElementsAre(0, 5));
}

TEST_F(OfflineReads, RowOutsideTheTableReadsZero) {
  for (DWORD row : {1000U, 0x80000000U, 0xFFFFFFFFU}) {
    const auto record = read(TagBlock(DT_INT).row(row));
    EXPECT_EQ(status_of(record), "0/5");
    EXPECT_EQ(record.wData[0], 0);
    EXPECT_EQ(status_of(read(TagBlock(DT_STRING).row(row).index(3))), "0/5");
  }
}

TEST_F(OfflineReads, WriteBatchTouchesTheFirstRecordAlone) {
  const auto records = device.input(3, false);
  EXPECT_EQ(status_of(records[0]), "0/5");
  EXPECT_EQ(records[0].nLength, 0);
  EXPECT_EQ(records[0].wData[0], kUntouchedWord);
  for (std::size_t i = 1; i < 3; ++i) {
    for (std::size_t at = 0; at < sizeof(INPUT_DATA); ++at)
      ASSERT_EQ(field<BYTE>(records[i], at), kUntouchedByte) << i << " " << at;
  }
}

TEST_F(OfflineReads, EntryPointsMayBeCalledDirectlyWhateverTheDeviceIs) {
  Device online(ProjectFile().tag("Plain"));
  auto batch = online.batch({RequestBuilder::WordWrite(TagBlock(DT_INT), {77})});
  EXPECT_EQ(status_of(KORVALE_DRV_OutputFilterExOffLine(batch.data(), 1)), "0/8/0");
  batch = online.batch({RequestBuilder::Read(TagBlock(DT_INT))});
  KORVALE_DRV_OutputFilterExOffLine(batch.data(), 1);
  DEVICE_INFO info{};
  info.bRead = TRUE;
  info.nReadWORDSize = 6;
  info.pdwMemAddr = online.handle();
  INPUT_DATA record{};
  KORVALE_DRV_InputFilterExOffLine(&record, nullptr, &info, 1);
  EXPECT_EQ(record.wData[0], 77);
  EXPECT_EQ(record.nLength, 6);
  EXPECT_TRUE(library.log().empty());
}

TEST_F(OfflineReads, FullCountsStayInsideBufferAndRecord) {
  for (int type : {DT_INT, DT_DINT, DT_LREAL}) {
    device.data().GCmdDesc[0].WordCount = 0x55AA55AA;
    const auto record = read(TagBlock(type).index(0).count(65535));
    EXPECT_EQ(status_of(record), "0/5");
    EXPECT_EQ(record.wData[2047], 0);
    EXPECT_EQ(device.data().GCmdDesc[0].WordCount, 0x55AA55AAU) << "the field behind the buffer";
  }
  EXPECT_EQ(map().size(), 3U * 65535U);
}

TEST_F(OfflineReads, UpperHalfOfTheLastElementStaysInsideTheBuffer) {
  // Elements 0 to 1023 of four bytes fill the buffer; the last one's upper half has no room.
  device.data().GCmdDesc[0].WordCount = 0x55AA55AA;
  write(TagBlock(DT_DINT).index(1023).bit(31), {}, 1);
  const auto record = read(TagBlock(DT_DINT).index(0).count(1024));
  EXPECT_EQ(record.wData[2047], 0x8000);
  EXPECT_EQ(device.data().GCmdDesc[0].WordCount, 0x55AA55AAU);
}

TEST_F(OfflineReads, BatchBeyondThePoolServesItsFirst31) {
  write(TagBlock(DT_INT).index(1), {11});
  const auto records =
      device.read(std::vector<RequestBuilder>(35, RequestBuilder::Read(TagBlock(DT_INT).index(1))));
  for (std::size_t i = 0; i < 31; ++i) {
    EXPECT_EQ(status_of(records[i]), "0/5") << i;
    EXPECT_EQ(records[i].wData[0], 11) << i;
  }
  for (std::size_t i = 31; i < 35; ++i) {
    EXPECT_EQ(records[i].byErrCode, 2) << i;
    EXPECT_EQ(records[i].wData[0], kUntouchedWord) << i;
  }
}

TEST_F(OfflineReads, CountOfZeroOrLessTouchesNothing) {
  for (int count : {0, -1, -2147483647}) {
    EXPECT_EQ(status_of(KORVALE_DRV_OutputFilterExOffLine(nullptr, count)), "0/8/0");
    KORVALE_DRV_InputFilterExOffLine(nullptr, nullptr, nullptr, count);
    auto batch = device.batch({RequestBuilder::Read(TagBlock(DT_INT))});
    EXPECT_EQ(status_of(KORVALE_DRV_OutputFilterEx(batch.data(), count)), "0/8/0");
  }
  EXPECT_TRUE(map().empty());
}
