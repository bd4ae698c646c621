// SPDX-License-Identifier: MIT
// A batch that is kept from poll to poll: nothing of one poll may show in the next.
#include "symbolic/readbatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symbolic/symbolsloader.h"
#include "tests/symbolic/access.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class KeptBatch : public ::testing::Test {
 protected:
  KeptBatch() {
    loader.root_schema_node = FakeLibrary::kRoot;
    loader.loader_state = SymbolsLoader::Success;
  }

  // What the paths deliver, one after the other.
  std::vector<Bytes> read(const std::vector<std::string>& paths) {
    batch.Clear();
    for (const std::string& path : paths) batch.Add(path);
    int error = 0;
    printed_by([&] { good = loader.ReadPaths(batch, error); });
    std::vector<Bytes> values;
    for (std::size_t i = 0; i < paths.size(); ++i) {
      values.emplace_back(batch.value(i).begin(), batch.value(i).end());
    }
    return values;
  }

  FakeLibrary library;
  SymbolsLoader loader;
  ReadBatch batch;
  bool good = false;
};

TEST_F(KeptBatch, ValuesAreThoseOfThePresentPoll) {
  library.add("Long", Item::UInt32({0x11111111, 0x22222222, 0x33333333}).array(0, 2));
  library.add("Short", Item::UInt8(5));
  EXPECT_THAT(
      read({"Long", "Short"}),
      ElementsAre(Bytes{0x11, 0x11, 0x11, 0x11, 0x22, 0x22, 0x22, 0x22, 0x33, 0x33, 0x33, 0x33}, Bytes{5}));
  EXPECT_THAT(read({"Short", "Long"}).front(), ElementsAre(5)) << "in the place where a longer value was";
  EXPECT_THAT(read({"Short"}), ElementsAre(Bytes{5}));
}

TEST_F(KeptBatch, AValueThatCannotBeReadAnyMoreIsEmpty) {
  library.add("A", Item::Int16(1));
  read({"A"});
  library.item("A").result(-5);
  EXPECT_THAT(read({"A"}), ElementsAre(IsEmpty()));
  EXPECT_TRUE(good) << "the job itself was good";
}

TEST_F(KeptBatch, AJobThatFailsLeavesNoValues) {
  library.add("A", Item::Int16(1));
  read({"A"});
  library.fail("AGL_Symbolic_ReadMixEx", -7);
  EXPECT_THAT(read({"A"}), ElementsAre(IsEmpty()));
  EXPECT_FALSE(good);
  EXPECT_FALSE(loader.bDisconnect) << "what that means is the caller's to say";
}

TEST_F(KeptBatch, EachJobGetsClearedBuffersAndRecords) {
  library.add("A", Item::UInt32({1, 2, 3, 4}).array(0, 3));
  library.add("B", Item::UInt32({5, 6, 7, 8}).array(0, 3));
  library.item("A").result(-5).sError(9);
  read({"A", "B"});
  read({"B", "A"});
  ASSERT_EQ(library.reads().size(), 2U);
  for (const auto& job : library.reads()) {
    for (const auto& access : job.accesses) {
      EXPECT_EQ(access.bytes.size(), 16U);
      EXPECT_THAT(access.bytes, Each(0)) << access.path;
      EXPECT_EQ(access.result_on_entry, 0);
      EXPECT_EQ(access.serror_on_entry, 0);
    }
  }
}

TEST_F(KeptBatch, NoPathsAreNoGoodJob) {
  EXPECT_THAT(read({}), IsEmpty());
  EXPECT_FALSE(good);
}

TEST_F(KeptBatch, AnArrayOfAnotherBaseIsRebasedAndTheNextOneIsNot) {
  library.add("FromTwo", Item::Int16({7, 8}).array(2, 3));
  library.add("FromZero", Item::Int16(9).array(0, 0));
  library.add("Scalar", Item::Int16(6));
  EXPECT_THAT(read({"FromTwo", "FromZero", "Scalar"}),
              ElementsAre(Bytes{0, 0, 0, 0, 7, 0, 8, 0}, Bytes{9, 0}, Bytes{6, 0}));
}

TEST_F(KeptBatch, ElementsOfManyMoreThanOneRunKeepTheirOrder) {
  std::vector<std::int16_t> numbers(1500);
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<std::int16_t>(i * 7);
  library.add("A", Item::Int16(numbers).array(0, 1499));
  const std::vector<Bytes> values = read({"A"});
  ASSERT_EQ(values[0].size(), 3000U);
  EXPECT_EQ(std::memcmp(values[0].data(), numbers.data(), 3000), 0);
  EXPECT_EQ(library.count("AGL_Symbolic_GetAccessElementValueType"), 1500) << "once an element, never more";
}

TEST_F(KeptBatch, ElementsThatCannotBeFetchedAreLeftOutWithoutATrace) {
  library.add("A", Item::UInt32({1, 2, 3}).array(0, 2));
  library.failCall("AGL_Symbolic_GetAccessBufferUInt32", 2, -9);
  EXPECT_THAT(read({"A"}), ElementsAre(Bytes{1, 0, 0, 0, 3, 0, 0, 0}));
  EXPECT_THAT(library.log("AGL_Symbolic_GetAccessBufferUInt32").back(), testing::HasSubstr("&0"))
      << "each fetch starts from zero";
}

// A library may change its mind about an element's type: each element is of the type that it says then.
TEST_F(KeptBatch, ElementsOfChangingTypesFollowOneAnother) {
  Item& item = library.add("A", Item::UInt8({1, 2, 3, 4}).array(0, 3));
  int asked = 0;
  library.onCall("AGL_Symbolic_GetAccessElementValueType", [&] {
    ++asked;
    item.valueType(asked == 2 || asked == 3 ? ValueType_t::vt_CHAR16 : ValueType_t::vt_UINT8);
  });
  EXPECT_THAT(read({"A"}), ElementsAre(Bytes{1, 0, 0, 0, 0, 0, 0, 0, 0, 4}));
  EXPECT_EQ(asked, 4);
}

}  // namespace
