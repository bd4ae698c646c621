// SPDX-License-Identifier: MIT
// Random values of every type, written to a simulated device and read back with what lies around them.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <tuple>

#include "tests/driver/device.h"
#include "tests/tables/roundtrip.h"

namespace roundtrip {
namespace {

const std::vector<std::string> kTags = {"Value", "Array",    "Array[3]", "Matrix[1,2]",
                                        "Text",  "Texts[0]", "Texts[3]"};
constexpr int kFirstText = 4;

// What a simulated device must hold: 64 bits an element, zero where nothing was written.
class Account {
 public:
  std::uint64_t& at(BYTE type, const std::string& tag, int index) {
    return values_[{type, tag, static_cast<WORD>(index)}];
  }

 private:
  std::map<std::tuple<BYTE, std::string, WORD>, std::uint64_t> values_;
};

// A place in the device: a type, a tag, and from which element on.
struct Spot {
  Type type;
  DWORD row;
  int index;
  std::string name() const {
    const auto& tag = kTags[row];
    if (type.code != DT_STRING) return tag;
    // A text's element is a tag of its own, named after the index.
    const auto open = tag.find('[');
    if (open == std::string::npos) return index == 0 ? tag : tag + "[" + std::to_string(index) + "]";
    return tag.substr(0, open) + "[" + std::to_string(index) + "]";
  }
  TagBlock block(int count) const { return TagBlock(type.code).row(row).index(index).count(count); }
};

class Simulated : public testing::Test {
 protected:
  static ProjectFile project(bool paired) {
    ProjectFile file(paired ? 1 : 0);
    for (const auto& name : kTags) file.tag(name);
    return file;
  }

  Spot random_spot() {
    const int kind = random.below(20);
    // Around zero and the end of the index's range, where it wraps around.
    const int index = random.below(8) == 0 ? 0xFFFC + random.below(4) : random.below(24);
    if (kind < 15)
      return {random.one_of(number_types()), static_cast<DWORD>(random.below(kFirstText)), index};
    if (kind == 15)
      return {{"BOOL", DT_BOOL, 1, 1, false}, static_cast<DWORD>(random.below(kFirstText)), index};
    if (kind == 16) {
      return {{"BITARY", DT_BITARY, 1, 1, false}, static_cast<DWORD>(random.below(kFirstText)), index};
    }
    const int row = random.between(kFirstText, static_cast<int>(kTags.size()) - 1);
    return {{"STRING", DT_STRING, 1, 1, false}, static_cast<DWORD>(row), random.below(8)};
  }

  std::uint64_t& held(const Spot& spot, int offset) {
    return account.at(spot.type.code, spot.name(), spot.index + offset);
  }

  RequestBuilder write(const Spot& spot, int count) {
    if (spot.type.code == DT_BOOL || spot.type.code == DT_BITARY) {
      const int value = random.flip() ? 0 : random.below(256);
      for (int i = 0; i < count; ++i) held(spot, i) = static_cast<std::uint64_t>(value);
      return RequestBuilder::BitWrite(spot.block(count), value);
    }
    const auto words = random.words(count * spot.type.words);
    auto next = words.begin();
    for (int i = 0; i < count; ++i) {
      std::uint64_t value = 0;
      for (int j = 0; j < spot.type.words; ++j) value |= std::uint64_t{*next++} << 16 * j;
      held(spot, i) = value;
    }
    return RequestBuilder::WordWrite(spot.block(count), words);
  }

  // Bits 0 to 30 are themselves; deliberately bit 31 is all from there upward.
  RequestBuilder write_bit(const Spot& spot) {
    const int bit = random.below(40);
    const std::uint64_t mask = bit % 32 == 31 ? ~std::uint64_t{0x7FFFFFFF} : std::uint64_t{1} << bit % 32;
    const int value = random.flip() ? random.between(1, 255) : 0;
    auto& number = held(spot, 0);
    number = value != 0 ? number | mask : number & ~mask;
    return RequestBuilder::BitWrite(spot.block(1).bit(bit), value);
  }

  std::vector<WORD> expected(const Spot& spot, int count) {
    std::vector<WORD> words;
    for (int i = 0; i < count; ++i) {
      for (int j = 0; j < spot.type.words; ++j) words.push_back(static_cast<WORD>(held(spot, i) >> 16 * j));
    }
    return words;
  }
  std::vector<WORD> expected_bits(const Spot& spot, int bit, int count) {
    const int width = spot.type.bytes == 1 ? 8 : std::min(8 * spot.type.bytes, 32);
    std::vector<WORD> words;
    for (int i = 0; i < count; ++i) {
      const int number = (bit + i) % 32;
      words.push_back(number < width && (held(spot, 0) >> number & 1) != 0 ? 0xFFFF : 0);
    }
    return words;
  }

  void expect(const INPUT_DATA& record, const Spot& spot, const std::vector<WORD>& words) {
    const auto what = std::string(spot.type.name) + " " + kTags[spot.row] + " @" + std::to_string(spot.index);
    ASSERT_EQ(status_of(record), "0/5") << what;
    const auto brought = words_of(record, words.size());
    ASSERT_EQ(brought, words) << what << ": " << text_of(brought) << "instead of " << text_of(words);
    ASSERT_EQ(record.wData[words.size()], kUntouchedWord) << what;
  }

  // One write; then, in one batch, what was written, what lies around it, and a few of its bits.
  void trip(Device& device) {
    const Spot spot = random_spot();
    const int count = random.between(1, 5);
    const bool number =
        spot.type.code != DT_STRING && spot.type.code != DT_BOOL && spot.type.code != DT_BITARY;
    const auto request = number && random.below(4) == 0 ? write_bit(spot) : write(spot, count);
    ASSERT_EQ(status_of(device.output({request})), "0/8/0");
    ASSERT_EQ(status_of(device.input(1, false)[0]), "0/5");
    Spot around = spot;
    if (spot.type.code != DT_STRING) around.index = (spot.index + 0x10000 - 2) % 0x10000;
    const int bit = random.below(64);
    const int bits = random.between(1, 40);
    std::vector<RequestBuilder> reads = {RequestBuilder::Read(spot.block(count)),
                                         RequestBuilder::Read(around.block(count + 4))};
    const bool has_bits = number || spot.type.code == DT_STRING;
    if (has_bits) reads.push_back(RequestBuilder::Read(spot.block(bits).bit(bit)));
    const auto records = device.read(reads);
    expect(records[0], spot, expected(spot, count));
    expect(records[1], around, expected(around, count + 4));
    if (has_bits) expect(records[2], spot, expected_bits(spot, bit, bits));
  }

  Random random{seed() + 1};
  Account account;
};

}  // namespace

TEST_F(Simulated, WhatIsWrittenIsReadAndNothingElseChanges) {
  int done = 0;
  for (const bool paired : {false, true}) {
    Device device{project(paired), Device::Simulated};
    account = {};
    for (int left = trips() / 2; left > 0; --left, ++done) {
      trip(device);
      ASSERT_FALSE(HasFatalFailure()) << "after " << done << " trips, OSTRAVEL_SEED=" << seed();
    }
  }
  report("offline", done);
}

}  // namespace roundtrip
