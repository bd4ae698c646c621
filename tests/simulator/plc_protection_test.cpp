// SPDX-License-Identifier: MIT
#include "simulator/plc/protection.h"

#include <gtest/gtest.h>

namespace ostravel::plc {
namespace {

Symbol symbol(DataType type, std::uint32_t offset, std::uint32_t size) {
  Symbol made;
  made.type = type;
  made.offset = offset;
  made.element_size = size;
  return made;
}

// 0..7 block: two elements of { Int at 0, Int at 2 that must not be written } from 8 on, 4 bytes each.
std::vector<Symbol> blocks() {
  Symbol locked = symbol(DataType::Int, 2, 2);
  locked.writable = false;
  Symbol records = symbol(DataType::Struct, 0, 4);
  records.dimensions = {{1, 2}};
  records.members = {symbol(DataType::Int, 0, 2), locked};
  Symbol block = symbol(DataType::Struct, 8, 8);
  block.members = {records};
  return {symbol(DataType::LInt, 0, 8), block};
}

TEST(Protection, PermitsAVariableAndItsParts) {
  EXPECT_TRUE(permits(blocks(), 0, 8, Reach::Write));
  EXPECT_TRUE(permits(blocks(), 3, 2, Reach::Write));
}

TEST(Protection, PermitsAVariableInEveryElement) {
  EXPECT_TRUE(permits(blocks(), 8, 2, Reach::Write));
  EXPECT_TRUE(permits(blocks(), 12, 2, Reach::Write));
}

TEST(Protection, ForbidsWritingWhatIsLockedButNotReadingIt) {
  EXPECT_FALSE(permits(blocks(), 14, 2, Reach::Write));
  EXPECT_TRUE(permits(blocks(), 14, 2, Reach::Read));
}

TEST(Protection, ForbidsRangesOverSeveralVariables) {
  EXPECT_FALSE(permits(blocks(), 8, 4, Reach::Read));
  EXPECT_FALSE(permits(blocks(), 6, 4, Reach::Read));
}

TEST(Protection, ForbidsWhatLiesOutside) {
  EXPECT_FALSE(permits(blocks(), 16, 1, Reach::Read));
  EXPECT_FALSE(permits(blocks(), 0xFFFFFFFFFFFFFFFF, 2, Reach::Read));
  EXPECT_FALSE(permits(blocks(), 0, 0xFFFFFFFFFFFFFFFF, Reach::Read));
}

TEST(Protection, StructureThatMustNotBeReadHidesItsMembers) {
  auto all = blocks();
  all[1].readable = false;
  EXPECT_FALSE(permits(all, 8, 2, Reach::Read));
  EXPECT_FALSE(permits(all, 8, 2, Reach::Write));
}

}  // namespace
}  // namespace ostravel::plc
