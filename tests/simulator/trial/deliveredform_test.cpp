// SPDX-License-Identifier: MIT
#include "tests/simulator/trial/deliveredform.h"

#include <gtest/gtest.h>

#include <set>

#include "simulator/program/encoding.h"
#include "simulator/program/paths.h"
#include "simulator/program/source.h"

namespace ostravel::trial {
namespace {

using nlohmann::json;

plc::Program one(const std::string& type) {
  return plc::load_text("DATA_BLOCK \"D\" VAR a : " + type + "; END_VAR BEGIN END_DATA_BLOCK", "test.db");
}

json delivered(const std::string& type, const json& shown) {
  const auto program = one(type);
  return delivered_form(*plc::resolve(program.blocks, "D.a")->symbol, shown);
}

TEST(DeliveredForm, DatesAndCharactersAreNumbers) {
  EXPECT_EQ(delivered("Date", "D#1990-01-03"), 2);
  EXPECT_EQ(delivered("Time_Of_Day", "TOD#00:00:01.5"), 1500);
  EXPECT_EQ(delivered("LTOD", "LTOD#00:00:00.000000007"), 7);
  EXPECT_EQ(delivered("LDT", "LDT#1970-01-01-00:00:01"), 1'000'000'000);
  EXPECT_EQ(delivered("Char", "ü"), 0xFC);
}

TEST(DeliveredForm, DatesWithTimesAreTheBytesOfTheirParts) {
  // 2024 is 16#07E8; the fifth of March is a Tuesday, the third day of the week.
  EXPECT_EQ(delivered("DTL", "DTL#2024-03-05-13:14:15.000000258"),
            (json{0xE8, 7, 3, 5, 3, 13, 14, 15, 2, 1, 0, 0}));
  EXPECT_EQ(delivered("Date_And_Time", "DT#2024-03-05-13:14:15.258"),
            (json{0xE8, 7, 3, 5, 3, 13, 14, 15, 2, 1}));
}

TEST(DeliveredForm, EverythingElseIsAsShown) {
  EXPECT_EQ(delivered("Int", -5), -5);
  EXPECT_EQ(delivered("S5Time", 1500), 1500);
  EXPECT_EQ(delivered("String[5]", "ab"), "ab");
  EXPECT_EQ(delivered("Array[1..2] of Bool", true), true);
}

TEST(DeliveredForm, WhatDoesNotFitIsNull) {
  EXPECT_EQ(delivered("Int", "x"), nullptr);
}

TEST(DistinctValue, FitsEveryTypeAndDiffers) {
  for (const std::string type :
       {"Byte",  "Word",  "DWord", "LWord", "SInt", "Int",       "DInt",       "LInt",  "USInt", "UInt",
        "UDInt", "ULInt", "Real",  "LReal", "Char", "String[9]", "WString[9]", "Time",  "LTime", "S5Time",
        "Date",  "TOD",   "LTOD",  "DT",    "LDT",  "DTL",       "Counter",    "Timer", "Bool"}) {
    auto program = one(type);
    const auto target = plc::resolve(program.blocks, "D.a").value();
    std::set<json> values;
    for (std::uint64_t seed = 0; seed < 20; ++seed) {
      const auto value = distinct_value(*target.symbol, seed);
      EXPECT_EQ(plc::from_json(target, value, program.initial), std::nullopt) << type << " " << value;
      EXPECT_EQ(plc::to_json(target, program.initial), value) << type;
      values.insert(value);
    }
    EXPECT_GE(values.size(), type == "Bool" ? 2U : 10U) << type;
  }
}

}  // namespace
}  // namespace ostravel::trial
