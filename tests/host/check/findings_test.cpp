// SPDX-License-Identifier: MIT
#include "host/check/findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

namespace ostravel::host::check {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using V = ValueType_t;
using S = SystemType_t;

Tag tag(const char* type, std::uint16_t count = 1, std::optional<std::int32_t> first = std::nullopt,
        std::uint16_t elements = 1) {
  Tag made;
  made.name = "Plant.Value";
  made.type = find_tag_type(type);
  made.count = count;
  made.first = first;
  made.elements = elements;
  return made;
}

Variable scalar(V::enum_t value, S::enum_t system, std::int32_t size) {
  return {value, system, 1, size, 0, {}, false};
}

Variable array(Variable one, std::vector<Bounds> dimensions) {
  for (const auto& [lower, upper] : dimensions) {
    one.elements *= upper - lower + 1;
  }
  one.dimensions = std::move(dimensions);
  return one;
}

Variable element_of(Variable one, std::vector<Bounds> dimensions) {
  one.dimensions = std::move(dimensions);
  one.element = true;
  return one;
}

Variable text(std::int32_t length) {
  return {V::vt_STRING8, S::st_S7_String, 1, length + 2, length, {}, false};
}
Variable wide(std::int32_t length) {
  return {V::vt_STRING16, S::st_S7_WString, 1, 2 * length + 4, length, {}, false};
}

const Variable kInt = scalar(V::vt_INT16, S::st_S7_Int, 2);
const Variable kByte = scalar(V::vt_UINT8, S::st_S7_Byte, 1);
const Variable kBool = scalar(V::vt_UINT8, S::st_S7_Bool, 1);
const Variable kReal = scalar(V::vt_FLOAT32, S::st_S7_Real, 4);
const Variable kDtl = scalar(V::vt_SYSTEM_SPECIFIC, S::st_S7_DTL, 12);
const Variable kS5Time = scalar(V::vt_SYSTEM_SPECIFIC, S::st_S7_S5Time, 2);

auto finding(Verdict verdict, Reason reason, const char* part) {
  return AllOf(Field(&Finding::verdict, verdict), Field(&Finding::reason, reason),
               Field(&Finding::text, HasSubstr(part)));
}
auto bad(Reason reason, const char* part) {
  return finding(Verdict::Bad, reason, part);
}
auto doubtful(Reason reason, const char* part) {
  return finding(Verdict::Doubtful, reason, part);
}

TEST(Findings, WhatFitsHasNone) {
  EXPECT_THAT(judge(tag("INT"), false, kInt), IsEmpty());
  EXPECT_THAT(judge(tag("BOOL"), false, kBool), IsEmpty());
  EXPECT_THAT(judge(tag("REAL"), false, kReal), IsEmpty());
  EXPECT_THAT(judge(tag("DINT"), false, scalar(V::vt_INT32, S::st_S7_Time, 4)), IsEmpty());
  EXPECT_THAT(judge(tag("UDINT"), false, kS5Time), IsEmpty());
  EXPECT_THAT(judge(tag("WORD"), false, scalar(V::vt_UINT16, S::st_S7_UInt, 2)), IsEmpty());
  EXPECT_THAT(judge(tag("BYTE", 12, 0), false, kDtl), IsEmpty());
  EXPECT_THAT(judge(tag("STRING", 20), false, text(20)), IsEmpty());
}

TEST(Findings, SizeOrKindOfNumbersDiffer) {
  EXPECT_THAT(judge(tag("DINT"), false, kInt),
              ElementsAre(bad(Reason::Type, "the PLC has Int, the project DINT")));
  EXPECT_THAT(judge(tag("DINT"), false, kReal), ElementsAre(bad(Reason::Type, "Real")));
  EXPECT_THAT(judge(tag("LREAL"), false, kReal), ElementsAre(bad(Reason::Type, "LREAL")));
  EXPECT_THAT(judge(tag("WORD"), false, kBool), ElementsAre(bad(Reason::Type, "Bool")));
  EXPECT_THAT(judge(tag("BOOL"), false, kInt), ElementsAre(bad(Reason::Type, "BOOL")));
  EXPECT_THAT(judge(tag("INT"), false, text(8)), ElementsAre(bad(Reason::Type, "String[8]")));
  EXPECT_THAT(judge(tag("STRING", 8), false, kInt), ElementsAre(bad(Reason::Type, "STRING")));
}

TEST(Findings, SameBytesInAnotherMeaningAreDoubtful) {
  EXPECT_THAT(judge(tag("WORD"), false, kInt), ElementsAre(doubtful(Reason::Type, "another sign")));
  EXPECT_THAT(judge(tag("SINT"), false, kByte), ElementsAre(doubtful(Reason::Type, "another sign")));
  EXPECT_THAT(judge(tag("BYTE"), false, kBool), ElementsAre(doubtful(Reason::Type, "a number")));
  EXPECT_THAT(judge(tag("BOOL"), false, kByte), ElementsAre(doubtful(Reason::Type, "anything but 0")));
}

TEST(Findings, CalendarRecordsAreReadAsBytes) {
  EXPECT_THAT(judge(tag("WORD", 6), false, kDtl),
              ElementsAre(bad(Reason::Type, "BYTE with first 0 and count 12")));
  EXPECT_THAT(judge(tag("BYTE", 8, 0), false, kDtl), ElementsAre(doubtful(Reason::Length, "has 12 bytes")));
  EXPECT_THAT(judge(tag("BYTE", 13, 0), false, kDtl),
              ElementsAre(bad(Reason::Index, "index 12 is outside 0..11; the driver ends the runtime")));
}

TEST(Findings, TypesThatTheDriverCannotDeliver) {
  EXPECT_THAT(judge(tag("WORD"), false, scalar(V::vt_CHAR16, S::st_S7_WChar, 2)),
              ElementsAre(bad(Reason::Type, "reads as 0")));
  EXPECT_THAT(judge(tag("WORD"), false, scalar(V::vt_SYSTEM_SPECIFIC, S::st_S7_Any, 10)),
              ElementsAre(bad(Reason::Type, "ends the runtime on a value of Any")));
}

TEST(Findings, ArraysFromZero) {
  const auto ten = array(kInt, {{0, 9}});
  EXPECT_THAT(judge(tag("INT", 10, 0), false, ten), IsEmpty());
  EXPECT_THAT(judge(tag("INT", 3, 7), false, ten), IsEmpty());
  EXPECT_THAT(judge(tag("INT", 11, 0), false, ten),
              ElementsAre(bad(Reason::Index, "index 10 is outside 0..9; what is beyond reads as 0")));
  EXPECT_THAT(judge(tag("INT", 1, 10), false, ten),
              ElementsAre(bad(Reason::Index, "index 10 is outside 0..9; the driver ends the runtime")));
  EXPECT_THAT(judge(tag("BYTE", 11, 0), false, array(kByte, {{0, 9}})),
              ElementsAre(bad(Reason::Index, "the driver ends the runtime")));
  EXPECT_THAT(judge(tag("INT"), false, ten), ElementsAre(doubtful(Reason::Index, "only its first element")));
  EXPECT_THAT(judge(tag("BOOL"), false, array(kBool, {{0, 9}})),
              ElementsAre(doubtful(Reason::Index, "as BitArray")));
  EXPECT_THAT(judge(tag("INT"), false, element_of(kInt, {{0, 9}})), IsEmpty());
}

TEST(Findings, ArraysFromOne) {
  const auto six = array(kInt, {{1, 6}});
  EXPECT_THAT(judge(tag("INT", 6, 1), false, six), IsEmpty());
  EXPECT_THAT(judge(tag("INT", 6, 0), false, six),
              ElementsAre(bad(Reason::Index, "index 0 is outside 1..6")));
  EXPECT_THAT(judge(tag("INT", 7, 1), false, six),
              ElementsAre(bad(Reason::Index, "index 7 is outside 1..6")));
  EXPECT_THAT(judge(tag("INT", 6), false, six), ElementsAre(bad(Reason::ArrayBase, "give first 1")));
  EXPECT_THAT(judge(tag("INT"), false, element_of(kInt, {{1, 6}})),
              ElementsAre(bad(Reason::ArrayBase, "plain name and an index")));
}

TEST(Findings, ArraysFromBelowZero) {
  EXPECT_THAT(judge(tag("INT", 7, -3), false, array(kInt, {{-3, 3}})),
              ElementsAre(bad(Reason::ArrayBase, "an array from -3 on reads as zeros")));
  EXPECT_THAT(judge(tag("INT"), false, element_of(kInt, {{-3, 3}})),
              ElementsAre(bad(Reason::ArrayBase, "reads as zeros")));
}

// The driver fills up by the size in the PLC and then appends values of another size.
TEST(Findings, ElementsThatGrowInTheDriverAreShiftedUnlessTheArrayStartsAtZero) {
  EXPECT_THAT(judge(tag("UDINT", 3, 0), false, array(kS5Time, {{0, 2}})), IsEmpty());
  EXPECT_THAT(judge(tag("UDINT", 2, 2), false, array(kS5Time, {{2, 3}})),
              ElementsAre(bad(Reason::ArrayBase, "4 bytes of each element's 2"), bad(Reason::Index, "")));
}

TEST(Findings, SeveralDimensionsCountFromZeroThroughout) {
  const auto matrix = array(kInt, {{1, 2}, {0, 2}});
  EXPECT_THAT(judge(tag("INT", 6, 0), false, matrix), IsEmpty());
  EXPECT_THAT(judge(tag("INT", 6, 1), false, matrix),
              ElementsAre(bad(Reason::Index, "index 6 is outside 0..5")));
  EXPECT_THAT(judge(tag("INT"), false, element_of(kInt, {{1, 2}, {0, 2}})), IsEmpty());
}

TEST(Findings, AnIndexOfWhatIsNoArray) {
  EXPECT_THAT(judge(tag("INT", 1, 0), false, kInt), ElementsAre(doubtful(Reason::Index, "no array")));
  EXPECT_THAT(judge(tag("INT", 1, 2), false, kInt),
              ElementsAre(bad(Reason::Index, "the variable is one Int")));
  EXPECT_THAT(judge(tag("STRING", 8, 0), false, text(8)), ElementsAre(bad(Reason::Index, "no array")));
}

TEST(Findings, TextsMustFitTheLayout) {
  EXPECT_THAT(judge(tag("STRING", 10), false, text(20)),
              ElementsAre(bad(Reason::Length,
                              "too long for the layout: the PLC's text has up to 20 characters, and "
                              "10 of them are read; pack it with count 20")));
  EXPECT_THAT(judge(tag("STRING", 30), false, text(20)),
              ElementsAre(doubtful(Reason::Length, "what is written is cut")));
}

TEST(Findings, TextsOfArrays) {
  const auto four = array(text(12), {{0, 3}});
  EXPECT_THAT(judge(tag("STRING", 12, 0, 4), false, four), IsEmpty());
  EXPECT_THAT(judge(tag("STRING", 12, 1, 3), false, four), IsEmpty());
  EXPECT_THAT(judge(tag("STRING", 12, 0, 5), false, four),
              ElementsAre(bad(Reason::Index, "index 4 is outside 0..3")));
  EXPECT_THAT(judge(tag("STRING", 12), false, four),
              ElementsAre(bad(Reason::Index, "give first and elements")));
  EXPECT_THAT(judge(tag("STRING", 12, 1, 2), false, array(text(12), {{1, 2}})),
              ElementsAre(bad(Reason::ArrayBase, "an array from 1 on read as empty")));
  EXPECT_THAT(judge(tag("STRING", 12, 0, 4), false, array(text(12), {{0, 1}, {0, 1}})),
              ElementsAre(bad(Reason::Index, "a tag each")));
  EXPECT_THAT(judge(tag("STRING", 12), false, element_of(text(12), {{0, 1}, {0, 1}})), IsEmpty());
  EXPECT_THAT(judge(tag("STRING", 12), false, element_of(text(12), {{1, 2}})),
              ElementsAre(bad(Reason::ArrayBase, "empty")));
}

TEST(Findings, WideTextsAreKnownByTheirLength) {
  EXPECT_THAT(judge(tag("WSTRING", 254), false, wide(254)), IsEmpty());
  EXPECT_THAT(judge(tag("WSTRING", 100), false, wide(100)),
              ElementsAre(doubtful(Reason::WideText, "declare WString[254]")));
  EXPECT_THAT(
      judge(tag("WSTRING", 254), false, wide(100)),
      ElementsAre(doubtful(Reason::Length, "is cut"), bad(Reason::WideText, "100 in the PLC and 254")));
  EXPECT_THAT(judge(tag("WSTRING", 100), true, wide(100)), IsEmpty());
  EXPECT_THAT(judge(tag("WSTRING", 20), false, text(20)), ElementsAre(bad(Reason::Type, "String[20]")));
  EXPECT_THAT(judge(tag("STRING", 254), false, wide(254)), ElementsAre(doubtful(Reason::Type, "as WSTRING")));
  EXPECT_THAT(judge(tag("STRING", 254), true, wide(254)), ElementsAre(bad(Reason::Type, "as WSTRING")));
}

TEST(Findings, NamesThatEndTheRuntime) {
  EXPECT_THAT(judge_name(""), ElementsAre(bad(Reason::Name, "empty")));
  EXPECT_THAT(judge_name("Value]"), ElementsAre(bad(Reason::Name, "ends in ]")));
  EXPECT_THAT(judge_name("ValueINDEX]x"), ElementsAre(bad(Reason::Name, "without a [")));
  EXPECT_THAT(judge_name("Values[INDEX]"), IsEmpty());
  EXPECT_THAT(judge_name("Values[3]"), IsEmpty());
}

TEST(Findings, TheWorstOneIsTheVerdict) {
  EXPECT_EQ(worst({}), Verdict::Good);
  EXPECT_EQ(worst({{Verdict::Doubtful, Reason::Type, ""}}), Verdict::Doubtful);
  EXPECT_EQ(worst({{Verdict::Bad, Reason::Type, ""}, {Verdict::Doubtful, Reason::Type, ""}}), Verdict::Bad);
}

TEST(Findings, TypesAreNamedAsDeclared) {
  EXPECT_EQ(type_text(array(kInt, {{1, 2}, {0, 2}})), "Array[1..2, 0..2] of Int");
  EXPECT_EQ(type_text(element_of(text(20), {{0, 3}})), "String[20]");
}

}  // namespace
}  // namespace ostravel::host::check
