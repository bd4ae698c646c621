// SPDX-License-Identifier: MIT
// Bit accesses: single bits of a value, delivered as 0xFFFF or 0.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

namespace {

using testing::ElementsAre;

class Bits : public testing::Test {
 protected:
  void SetUp() override { device.connected(); }
  INPUT_DATA read(const TagBlock& tag) { return device.read({RequestBuilder::Read(tag)}).at(0); }
  // Set bits as "1", clear ones as "0", anything else as "?"; the word behind them must be untouched.
  std::string bits(const TagBlock& tag, std::size_t count) {
    const auto record = read(tag);
    EXPECT_EQ(status_of(record), "0/5");
    EXPECT_EQ(record.wData[count], kUntouchedWord) << "no word behind the bits is written";
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
      text += record.wData[i] == 0xFFFF ? '1' : record.wData[i] == 0 ? '0' : '?';
    return text;
  }

  FakeLibrary library;
  Device device{ProjectFile().tag("Plain").tag("Matrix[1,2]").tag("Line[INDEX]")};
};

// A type that has bits, a value of which bits 0, 3 and the last one are set, and how many bits count.
struct BitSource {
  const char* name;
  int code;
  Item item;
  int width;
};

const BitSource kSources[] = {
    {"Byte", DT_BYTE, Item::UInt8(0x89), 8},
    {"Usint", DT_USINT, Item::UInt8(0x89), 8},
    {"Sint", DT_SINT, Item::Int8(static_cast<std::int8_t>(0x89)), 8},
    {"Word", DT_WORD, Item::UInt16(0x8009), 16},
    {"Uint", DT_UINT, Item::UInt16(0x8009), 16},
    {"Int", DT_INT, Item::Int16(static_cast<std::int16_t>(0x8009)), 16},
    {"Dword", DT_DWORD, Item::UInt32(0x80000009U), 32},
    {"Udint", DT_UDINT, Item::UInt32(0x80000009U), 32},
    {"Dint", DT_DINT, Item::Int32(static_cast<std::int32_t>(0x80000009U)), 32},
    {"Real", DT_REAL, Item::UInt32(0x80000009U), 32},
    {"Lword", DT_LWORD, Item::UInt64(0xFFFFFFFF80000009ULL), 32},
    {"Lint", DT_LINT, Item::UInt64(0x7FFFFFFF80000009ULL), 32},
    {"Ulint", DT_ULINT, Item::UInt64(0xFFFFFFFF80000009ULL), 32},
    {"Lreal", DT_LREAL, Item::UInt64(0xFFFFFFFF80000009ULL), 32},
};

class BitAccess : public Bits, public testing::WithParamInterface<BitSource> {
 protected:
  void SetUp() override {
    Bits::SetUp();
    library.add("Plain", GetParam().item);
  }
  TagBlock tag(int bit) const { return TagBlock(GetParam().code).bit(bit); }
  bool byte_wide() const { return GetParam().width == 8; }
};

}  // namespace

TEST_P(BitAccess, SetBitIsFFFFAndClearBitIsZero) {
  EXPECT_EQ(bits(tag(0), 1), "1");
  EXPECT_EQ(bits(tag(1), 1), "0");
  EXPECT_EQ(bits(tag(3), 1), "1");
  EXPECT_EQ(bits(tag(GetParam().width - 1), 1), "1");
}

TEST_P(BitAccess, BitsBeyondTheValueAreZero) {
  const auto last = bits(tag(31), 1);
  EXPECT_EQ(last, GetParam().width == 32 ? "1" : "0");
}

TEST_P(BitAccess, NumberIsTakenModulo32) {
  EXPECT_EQ(bits(tag(32), 1), "1");
  EXPECT_EQ(bits(tag(33), 1), "0");
  EXPECT_EQ(bits(tag(35), 1), "1");
  EXPECT_EQ(bits(tag(127), 1), GetParam().width == 32 ? "1" : "0");
}

TEST_P(BitAccess, SeveralBitsFollowAndWrapModulo32) {
  if (byte_wide()) {
    // A byte type takes as many bytes as bits are asked for.
    library.add("Plain", Item::UInt8({0x89, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(bits(tag(0), 1), "1");
    EXPECT_EQ(bits(TagBlock(GetParam().code).bit(0).count(4), 4), "1001");
    EXPECT_EQ(bits(TagBlock(GetParam().code).bit(31).count(4), 4), "0100");
    return;
  }
  EXPECT_EQ(bits(tag(0).count(5), 5), "10010");
  const std::string top = GetParam().width == 32 ? "1" : "0";
  EXPECT_EQ(bits(tag(31).count(5), 5), top + "1001");
}

INSTANTIATE_TEST_SUITE_P(EveryType, BitAccess, testing::ValuesIn(kSources),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Bits, ThirdBitOfWordEightDeliversFFFF) {
  library.add("Plain", Item::UInt16(0x0008));
  EXPECT_EQ(read(TagBlock(DT_WORD).bit(3)).wData[0], 0xFFFF);
}

TEST_F(Bits, AllBitsOfAWordTwiceAround) {
  library.add("Plain", Item::UInt16(0xA005));
  const std::string once = "1010000000000101" + std::string(16, '0');
  EXPECT_EQ(bits(TagBlock(DT_WORD).bit(0).count(64), 64), once + once);
}

TEST_F(Bits, BitOfAnArrayElement) {
  library.add("Plain", Item::UInt16({0, 0, 0x0008, 0}));
  EXPECT_EQ(bits(TagBlock(DT_WORD).bit(3).index(2), 1), "1");
  EXPECT_EQ(bits(TagBlock(DT_WORD).bit(3).index(1), 1), "0");
}

TEST_F(Bits, BitNumberFromTheIndexLeavesTheIndexToo) {
  // Selector 255: the low byte of the index is the bit, and the index still picks the element.
  library.add("Plain", Item::UInt16({1, 2, 4, 8, 0}));
  EXPECT_EQ(bits(TagBlock(DT_WORD).selector(255).index(3), 1), "1");
  EXPECT_EQ(bits(TagBlock(DT_WORD).selector(255).index(4), 1), "0");
  EXPECT_EQ(bits(TagBlock(DT_WORD).selector(255).index(0x0100).index_off(1), 1), "1");
  EXPECT_EQ(bits(TagBlock(DT_WORD).selector(255).index(0x0103).index_off(1), 1), "0");
}

TEST_F(Bits, BitsOfAString) {
  library.add("Plain", Item::String8("\x09", 10));
  EXPECT_EQ(bits(TagBlock(DT_STRING).bit(0).count(5), 5), "10010");
  EXPECT_EQ(bits(TagBlock(DT_STRING).bit(8).count(2), 2), "00") << "the first byte alone counts";
}

TEST_F(Bits, TypesWithoutBitsDeliverZero) {
  library.add("Plain", Item::UInt8({0xFF, 0xFF}));
  EXPECT_EQ(bits(TagBlock(DT_BOOL).bit(0).count(2), 2), "00");
  EXPECT_EQ(bits(TagBlock(DT_BITARY).bit(0).count(2), 2), "00");
  EXPECT_EQ(bits(TagBlock(DT_LTIME).bit(0).count(2), 2), "00");
}

TEST_F(Bits, NumberBelowMinusOnePutsNothingIntoTheWords) {
  library.add("Plain", Item::UInt16(0xFFFF));
  for (int selector : {129, 200, 254}) {
    const auto record = read(TagBlock(DT_WORD).selector(selector).count(4));
    EXPECT_EQ(status_of(record), "0/5");
    for (int i = 0; i < 4; ++i) EXPECT_EQ(record.wData[i], kUntouchedWord) << selector;
  }
}

TEST_F(Bits, NumberMinusOneFromTheIndexIsTheWholeValue) {
  library.add("Plain", Item::UInt16(0x1234));
  EXPECT_EQ(read(TagBlock(DT_WORD).selector(255).index(0x00FF).index_off(1)).wData[0], 0x1234);
}

TEST_F(Bits, CommandWithoutDataDeliversNoBit) {
  library.add("Plain", Item::UInt16(0xFFFF).result(-1));
  const auto record = read(TagBlock(DT_WORD).bit(3));
  EXPECT_EQ(status_of(record), "2/5");
  EXPECT_EQ(record.wData[0], kUntouchedWord);
}

TEST_F(Bits, CountsBeyondTheRecordStayInsideIt) {
  library.add("Plain", Item::UInt32(0xFFFFFFFFU));
  const auto record = read(TagBlock(DT_DWORD).bit(0).count(65535));
  EXPECT_EQ(record.wData[0], 0xFFFF);
  EXPECT_EQ(record.wData[2047], 0xFFFF);
}
