// SPDX-License-Identifier: MIT
#include "simulator/wire/symboltree.h"

#include <gtest/gtest.h>

#include <utility>

namespace ostravel::wire {
namespace {

using plc::DataType;
using plc::Symbol;

Symbol leaf(std::string name, DataType type, std::uint32_t offset, std::uint32_t size) {
  Symbol symbol;
  symbol.name = std::move(name);
  symbol.type = type;
  symbol.offset = offset;
  symbol.element_size = size;
  return symbol;
}

std::vector<Symbol> small_tree() {
  Symbol speed = leaf("Speed", DataType::Int, 0, 2);
  speed.dimensions = {{-3, 4}, {1, 2}};
  speed.writable = false;
  Symbol name = leaf("Näme", DataType::String, 32, 12);
  name.string_length = 10;
  Symbol block = leaf("Motor", DataType::Struct, 8, 44);
  block.type_name = "Drive";
  block.members = {speed, name};
  return {block, leaf("Flag", DataType::Bool, 52, 1)};
}

TEST(SymbolTree, ComesBackAsItWas) {
  const auto decoded = decode_tree(encode_tree(small_tree()));
  ASSERT_TRUE(decoded);
  EXPECT_EQ(*decoded, small_tree());
}

TEST(SymbolTree, EmptyTreeIsATree) {
  EXPECT_EQ(decode_tree(Bytes{0x90}), std::vector<Symbol>());
}

TEST(SymbolTree, HasTheDocumentedBytes) {
  // One Bool "A" at offset 2: ["A", 0, "", 0, [], 2, 1, true, false, []].
  Symbol symbol = leaf("A", DataType::Bool, 2, 1);
  symbol.writable = false;
  EXPECT_EQ(encode_tree({symbol}),
            (Bytes{0x91, 0x9A, 0xA1, 'A', 0x00, 0xA0, 0x00, 0x90, 0x02, 0x01, 0xC3, 0xC2, 0x90}));
}

TEST(SymbolTree, RefusesEveryTruncation) {
  const auto bytes = encode_tree(small_tree());
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_FALSE(decode_tree(std::span(bytes).first(length))) << length;
  }
}

TEST(SymbolTree, RefusesTrailingBytes) {
  auto bytes = encode_tree(small_tree());
  bytes.push_back(0);
  EXPECT_FALSE(decode_tree(bytes));
}

TEST(SymbolTree, SurvivesAnyOneChangedByte) {
  const auto good = encode_tree(small_tree());
  std::size_t refused = 0;
  for (std::size_t i = 0; i < good.size(); ++i) {
    for (int value = 0; value < 256; ++value) {
      auto bytes = good;
      bytes[i] = static_cast<std::uint8_t>(value);
      const auto tree = decode_tree(bytes);
      EXPECT_TRUE(!tree || is_sound(*tree));
      if (!tree) ++refused;
    }
  }
  EXPECT_GT(refused, good.size());
}

TEST(SymbolTree, RefusesAClaimOfFourBillionSymbolsWithoutReservingThem) {
  EXPECT_FALSE(decode_tree(Bytes{0xDD, 0xFF, 0xFF, 0xFF, 0xFF, 0x90}));
}

// Structures without a name or members, each in the one before.
Bytes chain_of_structures(std::size_t levels) {
  const Bytes one{0x91, 0x9A, 0xA0, static_cast<std::uint8_t>(DataType::Struct), 0xA0, 0, 0x90, 0,
                  0,    0xC3, 0xC3};
  Bytes bytes;
  for (std::size_t i = 0; i < levels; ++i) bytes.insert(bytes.end(), one.begin(), one.end());
  bytes.push_back(0x90);
  return bytes;
}

TEST(SymbolTree, RefusesNestingThatWouldExhaustTheStack) {
  EXPECT_TRUE(decode_tree(chain_of_structures(70)));
  EXPECT_FALSE(decode_tree(chain_of_structures(73)));
  EXPECT_FALSE(decode_tree(chain_of_structures(1'000'000)));
}

TEST(SymbolTree, AcceptsSixtyLevelsOfStructures) {
  Symbol symbol = leaf("x", DataType::Bool, 0, 1);
  for (int i = 0; i < 60; ++i) {
    Symbol outer = leaf("s", DataType::Struct, 0, 1);
    outer.members.push_back(std::move(symbol));
    symbol = std::move(outer);
  }
  EXPECT_TRUE(decode_tree(encode_tree({symbol})));
}

class Unsound : public testing::Test {
 protected:
  std::vector<Symbol> tree = small_tree();
  Symbol& speed = tree[0].members[0];
  Symbol& name = tree[0].members[1];
};

TEST_F(Unsound, BoundsTurnedRound) {
  speed.dimensions[0] = {1, 0};
  EXPECT_FALSE(is_sound(tree));
}
TEST_F(Unsound, SevenDimensions) {
  speed.dimensions.assign(7, {0, 0});
  EXPECT_FALSE(is_sound(tree));
}
TEST_F(Unsound, MoreElementsThanMemory) {
  speed.dimensions = {{-2147483647 - 1, 2147483647}, {-2147483647 - 1, 2147483647}, {0, 1}};
  EXPECT_FALSE(is_sound(tree));
}
TEST_F(Unsound, ManyElementsOfNoSize) {
  Symbol nothing = leaf("n", DataType::Struct, 0, 0);
  nothing.dimensions = {{0, 2147483647}};
  EXPECT_FALSE(is_sound({nothing}));
}
TEST_F(Unsound, ManyElementsOfNoSizeInsideEachOther) {
  Symbol nothing = leaf("n", DataType::Struct, 0, 0);
  nothing.dimensions = {{0, 60000}};
  Symbol outer = nothing;
  outer.members.push_back(nothing);
  EXPECT_TRUE(is_sound({nothing}));
  EXPECT_FALSE(is_sound({outer}));
}
TEST_F(Unsound, MemberBeyondItsStructure) {
  name.offset = 33;
  EXPECT_FALSE(is_sound(tree));
}
TEST_F(Unsound, BlockBeyondTheMemory) {
  tree[0].offset = 0xFFFFFFFF;
  EXPECT_FALSE(is_sound(tree));
}
TEST_F(Unsound, ElementSmallerThanItsType) {
  speed.type = DataType::LReal;
  EXPECT_FALSE(is_sound(tree));
}
TEST_F(Unsound, TextLongerThanItsElement) {
  name.string_length = 11;
  EXPECT_FALSE(is_sound(tree));
}
TEST_F(Unsound, TextLongerThanAString) {
  tree[0].element_size = 1000;
  name.element_size = 300;
  name.string_length = 255;
  EXPECT_FALSE(is_sound(tree));
}
TEST_F(Unsound, TypeThatDoesNotExist) {
  speed.type = static_cast<DataType>(99);
  EXPECT_FALSE(is_sound(tree));
}

}  // namespace
}  // namespace ostravel::wire
