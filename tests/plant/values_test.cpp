// SPDX-License-Identifier: MIT
#include "tests/plant/values.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "simulator/program/data_type.h"
#include "simulator/program/paths.h"
#include "simulator/program/source.h"
#include "tests/plant/programtext.h"

namespace ostravel::plant {
namespace {

constexpr std::uint64_t kMoments = 40;

// What every variable holds over some moments.
std::map<std::string, std::vector<std::vector<std::uint8_t>>> histories(plc::DataType type) {
  const auto program = plc::load_text(program_text(0), "plant");
  const Values values(program);
  auto memory = program.initial;
  std::map<std::string, std::vector<std::vector<std::uint8_t>>> histories;
  for (std::uint64_t moment = 1; moment <= kMoments; ++moment) {
    values.put(moment, memory);
    plc::for_each_leaf(program.blocks, [&](const plc::Leaf& leaf) {
      if (leaf.symbol->type == type) {
        const auto* begin = memory.data() + leaf.address;
        histories[leaf.path].emplace_back(begin, begin + plc::byte_count(*leaf.symbol));
      }
      return true;
    });
  }
  return histories;
}

class PlantValues : public testing::TestWithParam<plc::DataType> {};

TEST_P(PlantValues, ChangeFromMomentToMoment) {
  for (const auto& [path, history] : histories(GetParam())) {
    const std::set<std::vector<std::uint8_t>> different(history.begin(), history.end());
    EXPECT_GE(different.size(), GetParam() == plc::DataType::Bool ? 2U : 15U) << path;
  }
}

TEST_P(PlantValues, TellVariablesApart) {
  const auto all = histories(GetParam());
  std::set<std::vector<std::vector<std::uint8_t>>> different;
  for (const auto& [path, history] : all) different.insert(history);
  EXPECT_EQ(different.size(), all.size());
  EXPECT_GT(all.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Types, PlantValues,
                         testing::Values(plc::DataType::Bool, plc::DataType::SInt, plc::DataType::Char,
                                         plc::DataType::Int, plc::DataType::DInt, plc::DataType::LInt,
                                         plc::DataType::Real, plc::DataType::LReal, plc::DataType::String,
                                         plc::DataType::WString, plc::DataType::Date,
                                         plc::DataType::TimeOfDay, plc::DataType::S5Time, plc::DataType::Dtl,
                                         plc::DataType::DateAndTime, plc::DataType::LDateTime),
                         [](const auto& type) { return std::string(plc::type_row(type.param).name); });

}  // namespace
}  // namespace ostravel::plant
