// SPDX-License-Identifier: MIT
// Offline writes: the 64-bit value behind each element, bit by bit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/driver/offline.h"

namespace {

using testing::ElementsAre;

class OfflineWrites : public Offline {
 protected:
  // The value of the one entry that the map is expected to hold.
  std::uint64_t value() {
    EXPECT_EQ(map().size(), 1U);
    return map().empty() ? 0xDEADDEADDEADDEADULL : map().begin()->second;
  }
  std::vector<std::uint64_t> values() {
    std::vector<std::uint64_t> list;
    for (const auto& entry : map()) list.push_back(entry.second);
    return list;
  }
};

}  // namespace

TEST_F(OfflineWrites, Int1234IsReadBack) {
  write(TagBlock(DT_INT), {1234});
  EXPECT_EQ(value(), 1234U);
  EXPECT_THAT(words(TagBlock(DT_INT), 1), ElementsAre(1234));
}

TEST_F(OfflineWrites, TwoWordsOfADintAreReadBack) {
  write(TagBlock(DT_DINT), {0x5678, 0x1234});
  EXPECT_EQ(value(), 0x12345678U);
  EXPECT_THAT(words(TagBlock(DT_DINT), 2), ElementsAre(0x5678, 0x1234));
}

TEST_F(OfflineWrites, FourWordsOfALongTypeAreOneNumber) {
  write(TagBlock(DT_LINT), {0xDEF0, 0x9ABC, 0x5678, 0x1234});
  EXPECT_EQ(value(), 0x123456789ABCDEF0ULL);
}

TEST_F(OfflineWrites, KeyIsTheTagWithItsIdAndIndex) {
  write(TagBlock(DT_INT).row(1).index(9), {5});
  ASSERT_EQ(map().size(), 1U);
  const auto& key = map().begin()->first;
  EXPECT_EQ(key.TagIndex, 1);
  EXPECT_EQ(key.TagId, 200U);
  EXPECT_EQ(key.ArrayIndex, 9);
  EXPECT_EQ(key.DataType, DT_INT);
  EXPECT_EQ(key.BitIndex, -1);
  EXPECT_STREQ(key.pTagName, "Other");
}

TEST_F(OfflineWrites, SecondWriteReplacesTheFirst) {
  write(TagBlock(DT_LINT), {1, 2, 3, 4});
  write(TagBlock(DT_LINT), {5, 0, 0, 0});
  EXPECT_EQ(value(), 5U);
}

TEST_F(OfflineWrites, ElementsTakeConsecutiveIndexes) {
  write(TagBlock(DT_INT).index(7).count(3), {1, 2, 3});
  EXPECT_THAT(values(), ElementsAre(1, 2, 3));
  EXPECT_EQ(map().begin()->first.ArrayIndex, 7);
  EXPECT_EQ(map().rbegin()->first.ArrayIndex, 9);
}

TEST_F(OfflineWrites, CountDecidesAndNotTheAnnouncedWords) {
  device.output({RequestBuilder::WordWrite(TagBlock(DT_INT).index(0).count(2), {1, 2, 3}).announce(1)});
  EXPECT_THAT(values(), ElementsAre(1, 2));
}

TEST_F(OfflineWrites, CountOfZeroWritesNothing) {
  write(TagBlock(DT_INT).count(0), {5});
  EXPECT_TRUE(map().empty());
}

TEST_F(OfflineWrites, BitArrayAndBoolTakeTheBitCommandsByteForEveryElement) {
  for (int type : {DT_BITARY, DT_BOOL}) {
    map().clear();
    write(TagBlock(type).index(0).count(3), {}, 1);
    EXPECT_THAT(values(), ElementsAre(1, 1, 1)) << type;
  }
}

TEST_F(OfflineWrites, BooleanStoresTheByteAsItIs) {
  write(TagBlock(DT_BOOL), {}, 0x80);
  EXPECT_EQ(value(), 0x80U);
  EXPECT_THAT(words(TagBlock(DT_BOOL), 1), ElementsAre(0x80));
}

TEST_F(OfflineWrites, BooleanWordWriteTakesTheHighByteOfTheWordCount) {
  // The bit command's byte lies there.
  device.output({RequestBuilder::WordWrite(TagBlock(DT_BOOL), {0xFFFF}).announce(0x0301)});
  EXPECT_EQ(value(), 3U);
}

TEST_F(OfflineWrites, BitWriteOfAWholeNumberIsAWordWrite) {
  auto batch = device.batch({RequestBuilder::BitWrite(TagBlock(DT_INT), 1, 0)});
  batch[0].stCommand.stWORDWrite.wData[0] = 0x0102;
  device.output(batch);
  EXPECT_EQ(value(), 0x0102U);
}

TEST_F(OfflineWrites, HighHalfOf32BitValuesIsThatOfTheElementBefore) {
  // Within one write the running value begins at zero, so the high halves stay zero.
  write(TagBlock(DT_UDINT).index(0).count(2), {1, 2, 3, 4});
  EXPECT_THAT(values(), ElementsAre(0x00020001U, 0x00040003U));
}

TEST_F(OfflineWrites, LtimeStoresZero) {
  write(TagBlock(DT_LTIME).index(0).count(2), {1, 2, 3, 4});
  EXPECT_THAT(values(), ElementsAre(0, 0));
}

TEST_F(OfflineWrites, SetBitThreeOfAWord) {
  write(TagBlock(DT_WORD).bit(3), {}, 1);
  EXPECT_EQ(value(), 0x0008U);
  EXPECT_THAT(words(TagBlock(DT_WORD), 1), ElementsAre(0x0008));
  EXPECT_THAT(words(TagBlock(DT_WORD).bit(3), 1), ElementsAre(0xFFFF));
  EXPECT_THAT(words(TagBlock(DT_WORD).bit(2), 1), ElementsAre(0));
}

TEST_F(OfflineWrites, ClearBitThreeOfAWord) {
  write(TagBlock(DT_WORD), {0xFFFF});
  write(TagBlock(DT_WORD).bit(3), {}, 0);
  EXPECT_EQ(value(), 0xFFF7U);
}

TEST_F(OfflineWrites, AnyNonZeroByteSetsTheBit) {
  write(TagBlock(DT_WORD).bit(1), {}, 0x40);
  EXPECT_EQ(value(), 2U);
}

TEST_F(OfflineWrites, ClearingABitNeverSeenMakesAZeroEntry) {
  write(TagBlock(DT_WORD).bit(1), {}, 0);
  EXPECT_EQ(value(), 0U);
}

TEST_F(OfflineWrites, Bit31SetsAndClearsTheUpperHalfWithIt) {
  // Kept on purpose: the mask is a signed 32-bit value widened with its sign.
  write(TagBlock(DT_LINT).bit(31), {}, 1);
  EXPECT_EQ(value(), 0xFFFFFFFF80000000ULL);
  write(TagBlock(DT_LINT).bit(31), {}, 0);
  EXPECT_EQ(value(), 0U);
}

TEST_F(OfflineWrites, ClearingALowerBitKeepsTheUpperHalf) {
  write(TagBlock(DT_LINT), {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF});
  write(TagBlock(DT_LINT).bit(0), {}, 0);
  EXPECT_EQ(value(), 0xFFFFFFFFFFFFFFFEULL);
  write(TagBlock(DT_LINT).bit(30), {}, 0);
  EXPECT_EQ(value(), 0xFFFFFFFFBFFFFFFEULL);
}

TEST_F(OfflineWrites, BitNumberIsTakenModulo32) {
  write(TagBlock(DT_LINT).bit(32), {}, 1);
  EXPECT_EQ(value(), 1U);
  write(TagBlock(DT_LINT).bit(35), {}, 1);
  EXPECT_EQ(value(), 9U);
}

TEST_F(OfflineWrites, NegativeBitNumberIsTakenModulo32) {
  // Selector 200 is bit 199, which is -57 as a signed byte: bit 7.
  write(TagBlock(DT_LINT).selector(200), {}, 1);
  EXPECT_EQ(value(), 0x80U);
  EXPECT_THAT(words(TagBlock(DT_LINT).selector(200), 1), ElementsAre(0xFFFF));
  EXPECT_THAT(words(TagBlock(DT_LINT).selector(201), 1), ElementsAre(0));
  EXPECT_THAT(words(TagBlock(DT_LINT).selector(199).count(3), 3), ElementsAre(0, 0xFFFF, 0));
}

TEST_F(OfflineWrites, WordWriteOfABitAddressedTagIsABitWriteToo) {
  // The bit's value is the high byte of the word count.
  device.output({RequestBuilder::WordWrite(TagBlock(DT_WORD).bit(2), {0xFFFF}).announce(0x0101)});
  EXPECT_EQ(value(), 4U);
  device.output({RequestBuilder::WordWrite(TagBlock(DT_WORD).bit(2), {0xFFFF}).announce(0x0001)});
  EXPECT_EQ(value(), 0U);
}

TEST_F(OfflineWrites, AllBitsOfAnElementShareItsEntry) {
  write(TagBlock(DT_WORD).bit(0).index(4), {}, 1);
  write(TagBlock(DT_WORD).bit(5).index(4), {}, 1);
  EXPECT_EQ(value(), 0x21U);
  EXPECT_EQ(map().begin()->first.BitIndex, -1);
  EXPECT_THAT(words(TagBlock(DT_WORD).index(4), 1), ElementsAre(0x21));
}

TEST_F(OfflineWrites, BitFromTheIndexAndIndexOff) {
  write(TagBlock(DT_WORD).selector(255).index(0x0105).index_off(1), {}, 1);
  EXPECT_EQ(value(), 0x20U);
  EXPECT_EQ(map().begin()->first.ArrayIndex, 0);
}

TEST_F(OfflineWrites, SeveralBitsAreReadFromTheFirstElementAlone) {
  write(TagBlock(DT_WORD).index(0).count(2), {0x8001, 0xFFFF});
  const auto list = words(TagBlock(DT_WORD).bit(14).index(0).count(4), 4);
  EXPECT_THAT(list, ElementsAre(0, 0xFFFF, 0, 0)) << "bits 16 and 17 of a 16-bit word are clear";
}

TEST_F(OfflineWrites, BitsWrapModulo32) {
  write(TagBlock(DT_DWORD).index(0), {0x0001, 0x8000});
  EXPECT_THAT(words(TagBlock(DT_DWORD).bit(30).index(0).count(4), 4), ElementsAre(0, 0xFFFF, 0xFFFF, 0));
}

TEST_F(OfflineWrites, BitsOfEachTypeComeFromItsWidth) {
  // Bits 0, 7, 15 and 31 of an element in which all of them are set.
  struct Row {
    int type;
    std::vector<WORD> bits;
  };
  const Row rows[] = {
      {DT_BYTE, {0xFFFF, 0xFFFF, 0, 0}},
      {DT_USINT, {0xFFFF, 0xFFFF, 0, 0}},
      {DT_SINT, {0xFFFF, 0xFFFF, 0, 0}},
      {DT_STRING, {0xFFFF, 0xFFFF, 0, 0}},
      {DT_WORD, {0xFFFF, 0xFFFF, 0xFFFF, 0}},
      {DT_UINT, {0xFFFF, 0xFFFF, 0xFFFF, 0}},
      {DT_INT, {0xFFFF, 0xFFFF, 0xFFFF, 0}},
      {DT_DWORD, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}},
      {DT_UDINT, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}},
      {DT_DINT, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}},
      {DT_REAL, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}},
      {DT_LWORD, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}},
      {DT_LINT, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}},
      {DT_ULINT, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}},
      {DT_LREAL, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}},
      {DT_BOOL, {0, 0, 0, 0}},
      {DT_BITARY, {0, 0, 0, 0}},
      {DT_LTIME, {0, 0, 0, 0}},
  };
  for (const auto& row : rows) {
    const int bit_numbers[] = {0, 7, 15, 31};
    for (int bit : bit_numbers) write(TagBlock(row.type).bit(bit).index(0), {}, 1);
    for (std::size_t i = 0; i < 4; ++i)
      EXPECT_THAT(words(TagBlock(row.type).bit(bit_numbers[i]).index(0), 1), ElementsAre(row.bits[i]))
          << row.type << " " << i;
  }
}

TEST_F(OfflineWrites, RecordsAreLeftAlone) {
  for (auto request : {RequestBuilder::WordWrite(TagBlock(DT_INT), {1}),
                       RequestBuilder::BitWrite(TagBlock(DT_WORD).bit(1), 1)}) {
    auto batch = device.batch({request, request});
    const auto before = batch;
    device.output(batch);
    EXPECT_EQ(std::memcmp(before.data(), batch.data(), 2 * sizeof(GUI_REQUEST)), 0)
        << "response length and wait mark are not touched on writes";
  }
}

TEST_F(OfflineWrites, OnlyTheFirstRequestOfABatchIsWritten) {
  device.output({RequestBuilder::WordWrite(TagBlock(DT_INT).index(1), {1}),
                 RequestBuilder::WordWrite(TagBlock(DT_INT).index(2), {2})});
  EXPECT_EQ(value(), 1U);
}

TEST_F(OfflineWrites, MakeNoCallToTheLibraryAndNoCommand) {
  write(TagBlock(DT_INT), {1});
  write(TagBlock(DT_BOOL), {}, 1);
  EXPECT_TRUE(library.log().empty());
  EXPECT_FALSE(device.data().write_device_state);
  EXPECT_FALSE(device.data().bIsInitDevice);
  EXPECT_EQ(device.data().GCmdDesc[0].tag_name, "");
}

TEST_F(OfflineWrites, ValuesOutliveATimeout) {
  write(TagBlock(DT_INT), {1});
  KORVALE_DRV_Timeout(1, device.handle());
  EXPECT_EQ(value(), 1U);
}

TEST_F(OfflineWrites, FullCountsReadNoWordBehindTheRecords) {
  // The word behind the data is the check sum; it must show up nowhere.
  for (int type : {DT_INT, DT_DINT, DT_LINT, DT_STRING}) {
    map().clear();
    auto batch = device.batch(
        {RequestBuilder::WordWrite(TagBlock(type).index(0).count(65535), std::vector<WORD>(2048, 0x1111))});
    batch[0].stCommand.stWORDWrite.wCheckSum = 0x7EAD;
    std::memset(batch[0].byReserved, 0x7E, sizeof batch[0].byReserved);
    EXPECT_EQ(status_of(device.output(batch)), "0/8/0");
    EXPECT_EQ(map().size(), 65535U);
    for (const auto& [key, stored] : map()) {
      for (int shift = 0; shift < 64; shift += 16) {
        const auto word = static_cast<WORD>(stored >> shift);
        ASSERT_TRUE(word == 0x1111 || word == 0) << type << " element " << key.ArrayIndex;
      }
    }
  }
}
