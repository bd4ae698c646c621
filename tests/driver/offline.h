// SPDX-License-Identifier: MIT
// A simulated device with the fake library beside it, which must never be called.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

class Offline : public testing::Test {
 protected:
  // A word write, or with a bit value a bit write.
  void write(const TagBlock& tag, const std::vector<WORD>& words, int bit_value = -1) {
    const auto request =
        bit_value < 0 ? RequestBuilder::WordWrite(tag, words) : RequestBuilder::BitWrite(tag, bit_value);
    EXPECT_EQ(status_of(device.output({request})), "0/8/0");
  }
  INPUT_DATA read(const TagBlock& tag) { return device.read({RequestBuilder::Read(tag)}).at(0); }
  // The words of a good answer; the word behind them must be untouched.
  std::vector<WORD> words(const TagBlock& tag, std::size_t count) {
    const auto record = read(tag);
    EXPECT_EQ(status_of(record), "0/5");
    EXPECT_EQ(record.wData[count], kUntouchedWord) << "no word behind the value is written";
    return words_of(record, count);
  }
  std::map<stTag, std::uint64_t>& map() { return device.data().GMap; }

  FakeLibrary library;
  Device device{ProjectFile()
                    .tag("Plain", 100)
                    .tag("Other", 200)
                    .tag("Texts[0]", 300)
                    .tag("Texts[3]", 400)
                    .tag("Matrix[1,2]", 500)
                    .tag("Line[INDEX]", 600),
                Device::Simulated};
};
