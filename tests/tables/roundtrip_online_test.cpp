// SPDX-License-Identifier: MIT
// Random values of every type, written and read back through the entry points on a PLC that is a piece of
// memory. After each write the whole memory is compared: nothing but what was written has changed.
#include <gtest/gtest.h>

#include <functional>

#include "tests/tables/roundtrip_plc.h"

namespace roundtrip {
namespace {

using Bytes = std::vector<unsigned char>;

std::string element(const std::string& array, int index) {
  return array + "[" + std::to_string(index) + "]";
}

// One write, and a read that covers it. What the read must bring is asked for when all writes of its round
// are done.
struct Trip {
  std::string what;
  RequestBuilder write;
  RequestBuilder read;
  std::function<std::vector<WORD>()> expected;
};

// Where a value lies and how the runtime names it: a tag, perhaps an index.
struct Name {
  std::string tag;
  int index = 0xFFFF;
};

class Online : public testing::Test {
 protected:
  MemoryLibrary library;
  Plc plc{library};
  Device aligned{Plc::project(false)};
  Device paired{Plc::project(true)};
  Random random{seed()};
  bool is_paired = false;

  static TagBlock block(BYTE code, const Name& name) {
    return TagBlock(code).row(Plc::row(name.tag)).index(name.index);
  }

  // The ways to name one element, and its path in the PLC.
  std::pair<std::vector<Name>, std::string> place(const std::string& type, bool by_index) {
    const int k = random.below(kElements);
    const int line = random.below(4);
    switch (random.below(by_index ? 6 : 5)) {
      case 0:
        return {{{type + ".Value"}}, type + ".Value"};
      case 1:
        return {{{type + ".Array[3]"}, {type + ".Array[INDEX]", 3}}, type + ".Array[3]"};
      case 2:
        return {{{type + ".Array[INDEX]", k}}, element(type + ".Array", k)};
      case 3:
        return {{{type + ".Matrix[1,2]"}, {type + ".Matrix[1,2]", k}}, type + ".Matrix[1,2]"};
      case 4:
        return {{{type + ".Line[INDEX].Value", line}}, element(type + ".Line", line) + ".Value"};
      default:
        return {{{type + ".Array", k}, {type + ".Array[INDEX]", k}}, element(type + ".Array", k)};
    }
  }

  // Numbers: the low bytes of the words go to the PLC.
  static Bytes bytes_of(const Type& type, const std::vector<WORD>& words) {
    Bytes bytes;
    for (const WORD word : words) {
      bytes.push_back(static_cast<unsigned char>(word));
      if (type.bytes > 1) bytes.push_back(static_cast<unsigned char>(word >> 8));
    }
    return bytes;
  }
  static std::vector<WORD> words_from(const Type& type, const Bytes& bytes) {
    std::vector<WORD> words;
    if (type.bytes == 1) {
      for (const auto byte : bytes) {
        words.push_back(static_cast<WORD>(type.sign && byte >= 0x80 ? 0xFF00 | byte : byte));
      }
      return words;
    }
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
      words.push_back(static_cast<WORD>(bytes[i] | bytes[i + 1] << 8));
    }
    return words;
  }
  static std::vector<WORD> bits_from(const Bytes& bytes, int bit, int count) {
    std::vector<WORD> words;
    for (int i = 0; i < count; ++i) {
      const auto number = static_cast<std::size_t>((bit + i) % 32);
      const bool set = number / 8 < bytes.size() && (bytes[number / 8] >> (number % 8) & 1) != 0;
      words.push_back(set ? 0xFFFF : 0);
    }
    return words;
  }

  // A read of one element at a path, whole or a few bits of it.
  Trip read_back(const Type& type, const RequestBuilder& write, TagBlock tag, const std::string& path) {
    if (random.below(4) != 0) {
      return {path, write, RequestBuilder::Read(tag),
              [this, type, path] { return words_from(type, plc.bytes(path)); }};
    }
    // As many bytes as bits are asked for must be there for a byte type.
    const int bit = random.below(64);
    const int count = type.bytes == 1 ? 1 : random.between(1, 40);
    return {path + " bits", write, RequestBuilder::Read(tag.bit(bit).count(count)),
            [this, path, bit, count] { return bits_from(plc.bytes(path), bit, count); }};
  }

  Trip number_trip() {
    const Type& type = random.one_of(number_types());
    const std::string name = type.name;
    switch (random.below(8)) {
      case 0:
        return whole_trip(type, name + ".Array", 0);
      case 1:
        return whole_trip(type, name + ".Based", kBase);
      case 2: {
        const int index = random.between(kBase, kBase + kElements - 1);
        const auto words = random.words(type.words);
        const auto path = element(name + ".Based", index);
        plc.put(path, bytes_of(type, words));
        const auto tag = block(type.code, {name + ".Based", index});
        return read_back(type, RequestBuilder::WordWrite(tag, words), tag, path);
      }
      default: {
        const auto [names, path] = place(name, true);
        const auto words = random.words(type.words);
        plc.put(path, bytes_of(type, words));
        const auto write = RequestBuilder::WordWrite(block(type.code, random.one_of(names)), words);
        return read_back(type, write, block(type.code, random.one_of(names)), path);
      }
    }
  }

  // All elements written at once; a few of them read, from any one on.
  Trip whole_trip(const Type& type, const std::string& array, int lower) {
    const auto words = random.words(kElements * type.words);
    plc.put(element(array, lower), bytes_of(type, words));
    // An array that begins above zero is written without an index: the index would count from its beginning.
    const int index = lower == 0 && random.flip() ? 0 : 0xFFFF;
    const auto write = RequestBuilder::WordWrite(block(type.code, {array, index}), words);
    const int from = random.below(kElements);
    const int count = random.between(1, kElements - from);
    const auto path = element(array, lower + from);
    return {path + " x" + std::to_string(count), write,
            RequestBuilder::Read(block(type.code, {array, lower + from}).count(count)),
            [this, type, path, count] { return words_from(type, plc.bytes(path, count)); }};
  }

  Trip bit_trip() {
    const bool is_array = random.flip();
    const BYTE code = is_array ? DT_BITARY : DT_BOOL;
    const auto [names, path] = place(is_array ? "BITARY" : "BOOL", is_array);
    const bool value = random.flip();
    plc.put(path, {static_cast<unsigned char>(value)});
    return {path,
            RequestBuilder::BitWrite(block(code, random.one_of(names)), value ? random.between(1, 255) : 0),
            RequestBuilder::Read(block(code, random.one_of(names))),
            [this, path = path] { return std::vector<WORD>{plc.bytes(path)[0]}; }};
  }

  // Two characters a word, or one; the zeros do not reach the PLC.
  std::vector<WORD> text_words(const Bytes& text) {
    std::vector<WORD> words;
    if (random.flip()) {
      for (const auto byte : text) words.push_back(byte);
      return words;
    }
    for (std::size_t i = 0; i < text.size(); i += 2) {
      const int high = i + 1 < text.size() ? text[i + 1] : 0;
      words.push_back(static_cast<WORD>(text[i] | high << 8));
    }
    return words;
  }
  std::vector<WORD> text_expected(Bytes bytes, int count) const {
    bytes.resize(4096);
    std::vector<WORD> words;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
      words.push_back(is_paired ? static_cast<WORD>(bytes[2 * i] | bytes[2 * i + 1] << 8)
                                : static_cast<WORD>(bytes[i] >= 0x80 ? 0xFF00 | bytes[i] : bytes[i]));
    }
    return words;
  }

  Trip text_trip() {
    Bytes text;
    for (int left = random.between(0, kTextSize); left > 0; --left) {
      text.push_back(static_cast<unsigned char>(random.between(1, 255)));
    }
    const bool wide = random.below(8) == 0;
    auto [names, path] = wide ? std::pair<std::vector<Name>, std::string>{{{"Wide"}}, "Wide"} : text_place();
    // A wide text takes the bytes two a character and, deliberately, as many characters as there are bytes;
    // of no bytes, those are two.
    Bytes stored(wide ? 2 * kTextSize + 2 : kTextSize + 2);
    stored[0] = static_cast<unsigned char>(wide && text.empty() ? 2 : text.size());
    std::copy(text.begin(), text.end(), stored.begin() + 2);
    plc.put(path, stored);
    const int count = random.between(1, wide ? 2 * kTextSize : kTextSize + 1);
    return {path, RequestBuilder::WordWrite(block(DT_STRING, random.one_of(names)), text_words(text)),
            RequestBuilder::Read(block(DT_STRING, random.one_of(names)).count(count)),
            [this, path = path, count] {
              const auto bytes = plc.bytes(path);
              return text_expected({bytes.begin() + 2, bytes.end()}, count);
            }};
  }
  // The index takes the place of the last one of a text's name.
  std::pair<std::vector<Name>, std::string> text_place() {
    const int k = random.below(kElements);
    if (random.flip()) return place("STRING", true);
    return {{{"STRING.Array[3]", k}, {"STRING.Array", k}}, element("STRING.Array", k)};
  }

  Trip trip() {
    const int kind = random.below(20);
    return kind < 15 ? number_trip() : kind < 17 ? bit_trip() : text_trip();
  }

  // Up to 31 writes, then one batch that reads them all.
  void round(int size) {
    Device& device = is_paired ? paired : aligned;
    std::vector<Trip> made;
    std::vector<RequestBuilder> reads;
    for (int i = 0; i < size; ++i) {
      made.push_back(trip());
      reads.push_back(made.back().read);
      ASSERT_EQ(status_of(device.output({made.back().write})), "0/8/0");
      ASSERT_EQ(status_of(device.input(1, false)[0]), "0/5");
      ASSERT_TRUE(device.data().write_device_state) << made.back().what;
      ASSERT_TRUE(plc.agrees()) << made.back().what << ": something else has changed, or it has not";
    }
    const auto records = device.read(reads);
    for (std::size_t i = 0; i < made.size(); ++i) {
      const auto expected = made[i].expected();
      ASSERT_EQ(status_of(records[i]), "0/5") << made[i].what;
      const auto brought = words_of(records[i], expected.size());
      ASSERT_EQ(brought, expected) << made[i].what << ": " << text_of(brought) << "instead of "
                                   << text_of(expected);
      ASSERT_EQ(records[i].wData[expected.size()], kUntouchedWord) << made[i].what;
    }
    ASSERT_TRUE(plc.agrees()) << "a read has changed something";
  }
};

}  // namespace

TEST_F(Online, WhatIsWrittenIsReadAndNothingElseChanges) {
  aligned.connected();
  paired.connected();
  int done = 0;
  while (done < trips()) {
    const int size = std::min(random.between(1, 31), trips() - done);
    is_paired = random.flip();
    round(size);
    ASSERT_FALSE(HasFatalFailure()) << "after " << done << " trips, OSTRAVEL_SEED=" << seed();
    done += size;
  }
  EXPECT_EQ(library.open_accesses(), 0U);
  report("online", done);
}

}  // namespace roundtrip
