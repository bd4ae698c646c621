// SPDX-License-Identifier: MIT
// A simulated device's life, with each allocation failing in turn. No library function is called.
#include <gmock/gmock.h>

#include "tests/failures/online.h"

namespace {

using injection::Armed;
using injection::Kind;
using testing::ElementsAreArray;

enum class After { Repeats, GoesOn };

struct OfflineTag {
  TagBlock block;
  std::vector<WORD> words;
  std::string answer;  // after the write of words
};

const std::vector<OfflineTag> kTags = {
    {TagBlock(DT_INT).row(2), {7}, "0/5/40 0007"},
    {TagBlock(DT_DINT).row(3), {1, 2}, "0/5/40 0001 0002"},
    {TagBlock(DT_INT).row(23).index(0).count(5), {1, 2, 3, 4, 5}, "0/5/40 0001 0002 0003 0004 0005"},
    // Known by a name and a row of its own.
    {TagBlock(DT_STRING).row(21).index(2).count(3), {0x41, 0x42, 0x43}, "0/5/40 0041 0042 0043"},
    {TagBlock(DT_WORD).row(24), {8}, "0/5/40 0008"},
};

std::vector<RequestBuilder> reads() {
  std::vector<RequestBuilder> requests;
  for (const OfflineTag& tag : kTags) requests.push_back(RequestBuilder::Read(tag.block));
  return requests;
}

std::vector<std::string> answers() {
  std::vector<std::string> texts;
  for (const OfflineTag& tag : kTags) texts.push_back(tag.answer);
  return texts;
}

// Record 0 is preset.
std::vector<std::string> no_data() {
  std::vector<std::string> texts(kTags.size(), "2/-/-");
  texts[0] = "2/5/0";
  return texts;
}

constexpr const char* kUnset = "0/8/0 wait 165 length -1515870811";  // a write sets no response fields

void write_all(Runtime& runtime) {
  for (const OfflineTag& tag : kTags) {
    const std::vector<RequestBuilder> request = {RequestBuilder::WordWrite(tag.block, tag.words)};
    std::string saw = runtime.output(request);
    if (saw == "bad_alloc") saw = runtime.output(request);
    EXPECT_EQ(saw, kUnset);
    EXPECT_THAT(runtime.input(1, false), testing::ElementsAre("0/5/0"));
  }
}

void read_all(Runtime& runtime, After after) {
  const int count = static_cast<int>(kTags.size());
  std::string saw = runtime.output(reads());
  if (saw == "bad_alloc") {
    if (after == After::GoesOn) {
      EXPECT_THAT(runtime.input(count), ElementsAreArray(no_data()));
    }
    saw = runtime.output(reads());
  }
  EXPECT_EQ(saw, kFrame);
  const std::vector<std::string> records = runtime.input(count);
  EXPECT_TRUE(runtime.raised().empty());
  EXPECT_THAT(records, ElementsAreArray(answers()));
}

// Tags that were never written, so that the read makes their entries.
void read_new(Runtime& runtime, After after) {
  const std::vector<RequestBuilder> requests = {
      RequestBuilder::Read(TagBlock(DT_INT).row(23).index(100).count(3)), reads()[0],
      RequestBuilder::Read(TagBlock(DT_STRING).row(21).index(3).count(2))};
  std::string saw = runtime.output(requests);
  if (saw == "bad_alloc") {
    if (after == After::GoesOn) {
      EXPECT_THAT(runtime.input(3), testing::ElementsAre("2/5/0", "2/-/-", "2/-/-"));
    }
    saw = runtime.output(requests);
  }
  EXPECT_EQ(saw, kFrame);
  EXPECT_THAT(runtime.input(3),
              testing::ElementsAre("0/5/40 0000 0000 0000", "0/5/40 0007", "0/5/40 0000 0000"));
}

class OfflineFailures : public Online, public testing::WithParamInterface<After> {};

}  // namespace

TEST_P(OfflineFailures, EachAllocationOfADevicesLife) {
  FakeLibrary library;
  injection::guard_library();
  for (int n = 1;; ++n) {
    SCOPED_TRACE("a simulated device's life, allocation " + std::to_string(n));
    bool hit = false;
    {
      Runtime runtime(plant_project(), Runtime::Simulated);
      {
        const Armed armed(Kind::Memory, n);
        if (runtime.start() == "bad_alloc") {
          EXPECT_EQ(runtime.start(), "");
        }
        if (runtime.init() == "bad_alloc") {
          EXPECT_EQ(runtime.init(), "");
        }
        if (runtime.init_command() == "bad_alloc") {
          EXPECT_EQ(runtime.init_command(), "");
        }
        write_all(runtime);
        read_new(runtime, GetParam());
        read_all(runtime, GetParam());
        hit = armed.hit();
      }
      read_all(runtime, GetParam());
      EXPECT_EQ(runtime.raised(), "");
    }
    forget_globals();
    ASSERT_EQ(injection::blocks_alive(), 0U) << "leaked, " << injection::bytes_alive() << " bytes";
    if (!hit) break;
  }
  EXPECT_GT(injection::asked().size(), 20U);
  EXPECT_TRUE(library.calls().empty());
}

INSTANTIATE_TEST_SUITE_P(, OfflineFailures, testing::Values(After::Repeats, After::GoesOn),
                         [](const auto& which) {
                           return which.param == After::Repeats ? "RuntimeRepeatsTheCall" : "RuntimeGoesOn";
                         });
