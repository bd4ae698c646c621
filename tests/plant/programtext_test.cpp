// SPDX-License-Identifier: MIT
#include "tests/plant/programtext.h"

#include <gtest/gtest.h>

#include <set>

#include "simulator/program/data_type.h"
#include "simulator/program/paths.h"
#include "simulator/program/source.h"

namespace ostravel::plant {
namespace {

plc::Program load(unsigned variant) {
  return plc::load_text(program_text(variant), "plant");
}

TEST(ProgramText, HasEveryTypeThatTheDriverKnows) {
  std::set<plc::DataType> missing;
  for (int i = 0; i <= static_cast<int>(plc::DataType::Dtl); ++i) {
    const auto type = static_cast<plc::DataType>(i);
    if (!plc::type_row(type).tag_type.empty()) missing.insert(type);
  }
  plc::for_each_leaf(load(0).blocks, [&](const plc::Leaf& leaf) {
    missing.erase(leaf.symbol->type);
    return true;
  });
  EXPECT_TRUE(missing.empty()) << plc::type_row(*missing.begin()).name;
}

TEST(ProgramText, IsTheSameAtEveryCall) {
  EXPECT_EQ(program_text(3), program_text(3));
}

TEST(ProgramText, OfAVariantMovesRenamesRetypesAndDropsVariables) {
  const auto first = load(0);
  for (unsigned variant = 1; variant < 6; ++variant) {
    const auto other = load(variant);
    int moved = 0;
    int retyped = 0;
    int gone = 0;
    plc::for_each_leaf(first.blocks, [&](const plc::Leaf& leaf) {
      const auto target = plc::resolve(other.blocks, leaf.path);
      gone += target ? 0 : 1;
      moved += target && target->address != leaf.address ? 1 : 0;
      retyped += target && target->symbol->type != leaf.symbol->type ? 1 : 0;
      return true;
    });
    EXPECT_GT(moved, 300) << variant;
    EXPECT_GT(retyped, 0) << variant;
    EXPECT_GT(gone, 10) << variant;
    EXPECT_NE(other.fingerprint, first.fingerprint);
  }
}

}  // namespace
}  // namespace ostravel::plant
