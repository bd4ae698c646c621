// SPDX-License-Identifier: MIT
// Values read, as the runtime's words: every type as a scalar, an element and an array.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

enum Row : DWORD { kPlain, kMatrix, kRegister };

class Conversion : public testing::Test {
 protected:
  void SetUp() override { device.connected(); }
  INPUT_DATA read(const TagBlock& tag) { return device.read({RequestBuilder::Read(tag)}).at(0); }
  // The words of a good answer, and the word behind them.
  std::vector<WORD> words(const TagBlock& tag, std::size_t count) {
    const auto record = read(tag);
    EXPECT_EQ(status_of(record), "0/5");
    EXPECT_EQ(record.wData[count], kUntouchedWord) << "no word behind the value is written";
    return words_of(record, count);
  }

  // A read that raised leaves its queue behind; the runtime's time-out drops it.
  void drop_queue() {
    KORVALE_DRV_Timeout(0, device.handle());
    device.connected();
  }

  FakeLibrary library;
  Device device{ProjectFile().tag("Plain").tag("Matrix[1,2]").tag("Line[INDEX]")};
};

// Four elements of one type in the PLC, and the words of each.
struct TypeWords {
  const char* name;
  int code;
  Item item;
  std::vector<std::vector<WORD>> elements;
};

const TypeWords kTypes[] = {
    {"Byte", DT_BYTE, Item::UInt8({1, 0x7F, 0x80, 0xFF}), {{1}, {0x7F}, {0x80}, {0xFF}}},
    {"Usint", DT_USINT, Item::UInt8({1, 0x7F, 251, 0xFF}), {{1}, {0x7F}, {0x00FB}, {0xFF}}},
    {"Sint", DT_SINT, Item::Int8({1, 127, -5, -128}), {{1}, {0x7F}, {0xFFFB}, {0xFF80}}},
    {"BitArray", DT_BITARY, Item::UInt8({1, 0, 1, 0xFE}), {{1}, {0}, {1}, {0xFE}}},
    {"Word", DT_WORD, Item::UInt16({1, 0x8000, 0x1234, 0xFFFF}), {{1}, {0x8000}, {0x1234}, {0xFFFF}}},
    {"Uint", DT_UINT, Item::UInt16({2, 0x8000, 0x1234, 0xFFFF}), {{2}, {0x8000}, {0x1234}, {0xFFFF}}},
    {"Int", DT_INT, Item::Int16({1, -2, 300, -32768}), {{1}, {0xFFFE}, {300}, {0x8000}}},
    {"Dword",
     DT_DWORD,
     Item::UInt32({1, 0x12345678, 0x80000000U, 0xFFFFFFFFU}),
     {{1, 0}, {0x5678, 0x1234}, {0, 0x8000}, {0xFFFF, 0xFFFF}}},
    {"Udint",
     DT_UDINT,
     Item::UInt32({7, 0x12345678, 0x80000000U, 0xFFFFFFFFU}),
     {{7, 0}, {0x5678, 0x1234}, {0, 0x8000}, {0xFFFF, 0xFFFF}}},
    {"Dint", DT_DINT, Item::Int32({1, -2, 65536, -65536}), {{1, 0}, {0xFFFE, 0xFFFF}, {0, 1}, {0, 0xFFFF}}},
    {"Real",
     DT_REAL,
     Item::Float32({1.5F, -2.0F, 0.0F, 100.0F}),
     {{0, 0x3FC0}, {0, 0xC000}, {0, 0}, {0, 0x42C8}}},
    {"Lword",
     DT_LWORD,
     Item::UInt64({0x123456789ABCDEF0ULL, 2, 3, 4}),
     {{0xDEF0, 0x9ABC, 0x5678, 0x1234}, {2, 0, 0, 0}, {3, 0, 0, 0}, {4, 0, 0, 0}}},
    {"Lint",
     DT_LINT,
     Item::Int64({-3, 2, 3, 4}),
     {{0xFFFD, 0xFFFF, 0xFFFF, 0xFFFF}, {2, 0, 0, 0}, {3, 0, 0, 0}, {4, 0, 0, 0}}},
    {"Ulint",
     DT_ULINT,
     Item::UInt64({1ULL << 63, 2, 3, 4}),
     {{0, 0, 0, 0x8000}, {2, 0, 0, 0}, {3, 0, 0, 0}, {4, 0, 0, 0}}},
    {"Lreal",
     DT_LREAL,
     Item::Float64({0.25, -3.0, 0, 1}),
     {{0, 0, 0, 0x3FD0}, {0, 0, 0, 0xC008}, {0, 0, 0, 0}, {0, 0, 0, 0x3FF0}}},
};

class TypeConversion : public Conversion, public testing::WithParamInterface<TypeWords> {
 protected:
  TagBlock tag(DWORD row = kPlain) const { return TagBlock(GetParam().code).row(row); }
  std::size_t width() const { return GetParam().elements[0].size(); }
  std::vector<WORD> expected(std::size_t from, std::size_t count) const {
    std::vector<WORD> list;
    for (std::size_t i = from; i < from + count; ++i)
      list.insert(list.end(), GetParam().elements[i].begin(), GetParam().elements[i].end());
    return list;
  }
};

}  // namespace

TEST_P(TypeConversion, ScalarWithoutAnIndex) {
  library.add("Plain", GetParam().item.element(0));
  EXPECT_THAT(words(tag(), width()), ElementsAreArray(expected(0, 1)));
}

TEST_P(TypeConversion, ScalarWithIndexZero) {
  library.add("Plain", GetParam().item.element(2));
  EXPECT_THAT(words(tag().index(0), width()), ElementsAreArray(expected(2, 1)));
}

TEST_P(TypeConversion, ElementIsPickedOutOfTheArray) {
  library.add("Plain", GetParam().item);
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_THAT(words(tag().index(static_cast<int>(i)), width()), ElementsAreArray(expected(i, 1))) << i;
}

TEST_P(TypeConversion, WholeArray) {
  library.add("Plain", GetParam().item);
  EXPECT_THAT(words(tag().count(4).index(0), 4 * width()), ElementsAreArray(expected(0, 4)));
  EXPECT_THAT(words(tag().count(4), 4 * width()), ElementsAreArray(expected(0, 4)));
}

TEST_P(TypeConversion, PartOfAnArray) {
  library.add("Plain", GetParam().item);
  EXPECT_THAT(words(tag().count(2).index(1), 2 * width()), ElementsAreArray(expected(1, 2)));
}

TEST_P(TypeConversion, ArrayFromALowerBoundAboveZeroIsCountedFromZero) {
  library.add("Plain", Item(GetParam().item).array(3, 6));
  EXPECT_THAT(words(tag().index(4), width()), ElementsAreArray(expected(1, 1)));
  auto with_fill = std::vector<WORD>(3 * width(), 0);
  with_fill.insert(with_fill.end(), GetParam().elements[0].begin(), GetParam().elements[0].end());
  EXPECT_THAT(words(tag().count(4).index(0), 4 * width()), ElementsAreArray(with_fill));
}

TEST_P(TypeConversion, MultiDimensionalNameIgnoresTheIndex) {
  library.add("Matrix[1,2]", GetParam().item.element(1));
  EXPECT_THAT(words(tag(kMatrix).index(3), width()), ElementsAreArray(expected(1, 1)));
}

TEST_P(TypeConversion, IndexRegisterNamesTheElementAndIgnoresTheIndex) {
  library.add("Line[3]", GetParam().item.element(2));
  EXPECT_THAT(words(tag(kRegister).index(3), width()), ElementsAreArray(expected(2, 1)));
  EXPECT_EQ(device.data().GCmdDesc[0].ArrayIndex, 0xFFFF);
}

TEST_P(TypeConversion, CountOfZeroDeliversNoWord) {
  library.add("Plain", GetParam().item);
  EXPECT_THAT(words(tag().count(0).index(0), 0), ElementsAre());
}

TEST_P(TypeConversion, IndexAtTheEndOfTheArrayRaisesOutOfRange) {
  library.add("Plain", GetParam().item);
  for (int index : {4, 5, 40000, 65534}) {
    EXPECT_THROW(read(tag().index(index)), std::out_of_range) << index;
    drop_queue();
  }
}

INSTANTIATE_TEST_SUITE_P(EveryType, TypeConversion, testing::ValuesIn(kTypes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Conversion, SintMinusFiveDeliversFFFB) {
  library.add("Plain", Item::Int8(-5));
  EXPECT_THAT(words(TagBlock(DT_SINT), 1), ElementsAre(0xFFFB));
}

TEST_F(Conversion, Usint251Delivers00FB) {
  library.add("Plain", Item::UInt8(251));
  EXPECT_THAT(words(TagBlock(DT_USINT), 1), ElementsAre(0x00FB));
}

TEST_F(Conversion, BoolIsOneByteForSixteenElements) {
  std::vector<std::uint8_t> bytes = {1, 0, 0xC5};
  library.add("Plain", Item::UInt8(bytes));
  EXPECT_THAT(words(TagBlock(DT_BOOL), 1), ElementsAre(1));
  EXPECT_THAT(words(TagBlock(DT_BOOL).index(15), 1), ElementsAre(1));
  EXPECT_THAT(words(TagBlock(DT_BOOL).index(16), 1), ElementsAre(0));
  EXPECT_THAT(words(TagBlock(DT_BOOL).index(47), 1), ElementsAre(0xC5)) << "zero-extended, not made 0xFFFF";
  EXPECT_THAT(words(TagBlock(DT_BOOL).index(32).count(3), 3), ElementsAre(0xC5, 0xC5, 0xC5));
  EXPECT_THROW(read(TagBlock(DT_BOOL).index(48)), std::out_of_range);
}

TEST_F(Conversion, BoolWithoutIndexOrBehindAMatrixTakesTheFirstByte) {
  library.add("Plain", Item::Bool(true));
  library.add("Matrix[1,2]", Item::Bool(true));
  library.add("Line[40]", Item::Bool(true));
  EXPECT_THAT(words(TagBlock(DT_BOOL), 1), ElementsAre(1));
  EXPECT_THAT(words(TagBlock(DT_BOOL).row(kMatrix).index(40), 1), ElementsAre(1));
  EXPECT_THAT(words(TagBlock(DT_BOOL).row(kRegister).index(40), 1), ElementsAre(1));
}

TEST_F(Conversion, DirectTypesDeliverWhatTheDataHoldsAndZerosBehindIt) {
  library.add("Plain", Item::Int16({1, 2, 3}));
  EXPECT_THAT(words(TagBlock(DT_INT).index(1).count(5), 5), ElementsAre(2, 3, 0, 0, 0));
  library.add("Plain", Item::Int16(7));
  EXPECT_THAT(words(TagBlock(DT_DINT), 2), ElementsAre(7, 0)) << "half a value";
}

TEST_F(Conversion, ByteTypesTakeNoByteBeyondTheData) {
  library.add("Plain", Item::UInt8({1, 2, 3}));
  for (int type : {DT_BYTE, DT_USINT, DT_SINT, DT_BITARY}) {
    EXPECT_THROW(read(TagBlock(type).index(0).count(4)), std::out_of_range) << type;
    drop_queue();
  }
}

TEST_F(Conversion, SignExtensionReaches270Words) {
  // Deliberate, and whatever the word count is.
  library.add("Plain", Item::Int8(std::vector<std::int8_t>(300, -1)));
  const auto list = words(TagBlock(DT_SINT).index(0).count(300), 300);
  for (std::size_t i = 0; i < 300; ++i) ASSERT_EQ(list[i], i < 270 ? 0xFFFF : 0x00FF) << i;
}

TEST_F(Conversion, LtimeDeliversNothingThoughItCountsAsRead) {
  library.add("Plain", Item::Int64(5));
  const auto record = read(TagBlock(DT_LTIME));
  EXPECT_EQ(status_of(record), "0/5");
  EXPECT_TRUE(device.data().GCmdDesc[0].Cmd_Status);
  EXPECT_EQ(record.wData[0], kUntouchedWord) << "no words are known for the type";
}

TEST_F(Conversion, UnknownTypeDeliversTheZeroedBufferForItsOldWordCount) {
  library.add("Plain", Item::Int16(5));
  words(TagBlock(DT_DINT), 2);
  EXPECT_THAT(words(TagBlock(99), 2), ElementsAre(0, 0)) << "the word count is that of the command before";
}

TEST_F(Conversion, OldValueDoesNotShineThrough) {
  library.add("Plain", Item::Int16({1, 2, 3, 4}));
  words(TagBlock(DT_INT).index(0).count(4), 4);
  library.add("Plain", Item::Int16(9));
  EXPECT_THAT(words(TagBlock(DT_INT).index(0).count(4), 4), ElementsAre(9, 0, 0, 0));
}

TEST_F(Conversion, CommandsOfOneArrayGetTheirOwnElements) {
  library.add("Plain", Item::Int16({10, 11, 12, 13}));
  const auto records = device.read({RequestBuilder::Read(TagBlock(DT_INT).index(2)),
                                    RequestBuilder::Read(TagBlock(DT_INT).index(0)),
                                    RequestBuilder::Read(TagBlock(DT_INT).index(1).count(2))});
  EXPECT_EQ(records[0].wData[0], 12);
  EXPECT_EQ(records[1].wData[0], 10);
  EXPECT_THAT(words_of(records[2], 2), ElementsAre(11, 12));
  EXPECT_EQ(library.reads().at(0).accesses.size(), 1U);
}

TEST_F(Conversion, DateAndTimeArrivesAsItsTenBytes) {
  library.add("Plain", Item::DateAndTime({2024, 3, 5, 3, 13, 14, 15, 678}));
  EXPECT_THAT(words(TagBlock(DT_WORD).count(5), 5), ElementsAre(2024, 0x0503, 0x0D03, 0x0F0E, 678));
}

TEST_F(Conversion, ArrayFromBelowZeroReadsZerosWhereverTheRuntimeLooks) {
  // The lower bound counts as unsigned: more zeros stand in front than an index can pass.
  library.add("Plain", Item::Int16({1, 2, 3, 4}).array(-1, 2));
  EXPECT_THAT(words(TagBlock(DT_INT).index(0).count(4), 4), ElementsAre(0, 0, 0, 0));
  EXPECT_THAT(words(TagBlock(DT_INT).index(65534).count(4), 4), ElementsAre(0, 0, 0, 0));
}

TEST_F(Conversion, SignIsExtendedInTheCommandsBuffer) {
  library.add("Plain", Item::Int8(-5));
  words(TagBlock(DT_SINT), 1);
  EXPECT_EQ(device.data().GCmdDesc[0].DataBuffer[0], 0xFB);
  EXPECT_EQ(device.data().GCmdDesc[0].DataBuffer[1], 0xFF);
}

TEST_F(Conversion, CountsBeyondTheRecordStayInsideIt) {
  library.add("Plain", Item::UInt16(std::vector<std::uint16_t>(3000, 0x1111)));
  for (int type : {DT_WORD, DT_DWORD, DT_LREAL}) {
    const auto record = read(TagBlock(type).index(0).count(65535));
    EXPECT_EQ(status_of(record), "0/5");
    EXPECT_EQ(record.wData[0], 0x1111);
    EXPECT_EQ(record.wData[2047], 0x1111);
    EXPECT_EQ(device.data().GCmdDesc[1].tag_name, "") << "the next command is untouched";
  }
  library.add("Plain", Item::UInt8(std::vector<std::uint8_t>(2100, 0x22)));
  for (int type : {DT_BYTE, DT_USINT, DT_SINT, DT_BITARY, DT_BOOL}) {
    const auto record = read(TagBlock(type).index(0).count(65535));
    EXPECT_EQ(record.wData[0], 0x22) << type;
    EXPECT_EQ(record.wData[2047], 0x22) << type;
  }
}

TEST_F(Conversion, WordCountBehindTheBufferIsKeptWhenItOverflows) {
  // The field behind the 4096 bytes of the buffer.
  library.add("Plain", Item::UInt8(std::vector<std::uint8_t>(2100, 0x22)));
  read(TagBlock(DT_BYTE).index(0).count(65535));
  EXPECT_EQ(device.data().GCmdDesc[0].WordCount, 65535U);
  read(TagBlock(DT_LREAL).index(0).count(8191));
  EXPECT_EQ(device.data().GCmdDesc[0].WordCount, 4U * 8191U);
}
