// SPDX-License-Identifier: MIT
// A library that changes its mind about an element's type in the middle of an array: each element is read and
// written as what it is said to be then.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symbolic/bufferreader.h"
#include "symbolic/bufferwriter.h"
#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;

// Of an array whose elements all hold the number 0x0201.
class TypeChange : public ::testing::Test {
 protected:
  void types(std::vector<ValueType_t::enum_t> each) {
    types_ = std::move(each);
    library.onCall("AGL_Symbolic_GetAccessElementValueType", [this] {
      library.item("X").valueType(types_.at(std::min(asked, types_.size() - 1)));
      ++asked;
    });
  }
  Bytes read(std::size_t elements) {
    const Access access(library, Item::UInt16(std::vector<std::uint16_t>(elements, 0x0201)));
    Bytes data;
    BufferReader::GetBufferValues(access.rw, data);
    return data;
  }

  FakeLibrary library;
  std::size_t asked = 0;

 private:
  std::vector<ValueType_t::enum_t> types_;
};

TEST_F(TypeChange, AWiderNumberBehindANarrowOneLiesAtAnOddPlace) {
  types({ValueType_t::vt_UINT8, ValueType_t::vt_UINT16, ValueType_t::vt_UINT16});
  EXPECT_THAT(read(3), ElementsAre(1, 1, 2, 1, 2));
  EXPECT_EQ(asked, 3U);
}

TEST_F(TypeChange, AsTheLastElementAsksForNoFurtherType) {
  types({ValueType_t::vt_UINT8, ValueType_t::vt_UINT32});
  EXPECT_THAT(read(2), ElementsAre(1, 1, 2, 0, 0));
  EXPECT_EQ(asked, 2U);
}

TEST_F(TypeChange, ANumberThatCannotBeFetchedAtAnOddPlaceContributesNothing) {
  types({ValueType_t::vt_UINT8, ValueType_t::vt_UINT16, ValueType_t::vt_UINT8});
  library.fail("AGL_Symbolic_GetAccessBufferUInt16", -9);
  EXPECT_THAT(read(3), ElementsAre(1, 1));
  EXPECT_EQ(library.log("AGL_GetErrorMsg").size(), 1U);
}

TEST_F(TypeChange, AWriteGoesOnWithTheTypeThatIsSaidThen) {
  Access access(library, Item::UInt32({0, 0, 0, 0}));
  // The access as a whole, then each element; the second is a real.
  types({ValueType_t::vt_UINT32, ValueType_t::vt_UINT32, ValueType_t::vt_FLOAT32, ValueType_t::vt_UINT32});
  BufferWriter::WriteBufferValues(access.rw, {1, 0, 0, 0, 0, 0, 0x80, 0x3F, 3, 0, 0, 0}, 0, 4);
  const auto stored = library.stored("X");
  ASSERT_EQ(stored.size(), 3U);
  EXPECT_EQ(stored[0].function, "AGL_Symbolic_SetAccessBufferUInt32");
  EXPECT_EQ(stored[0].number, 1U);
  EXPECT_EQ(stored[1].function, "AGL_Symbolic_SetAccessBufferFloat32");
  EXPECT_EQ(stored[1].element, 1);
  EXPECT_EQ(stored[1].real, 1.0);
  EXPECT_EQ(stored[2].function, "AGL_Symbolic_SetAccessBufferUInt32");
  EXPECT_EQ(stored[2].element, 2);
  EXPECT_EQ(stored[2].number, 3U);
}

}  // namespace
