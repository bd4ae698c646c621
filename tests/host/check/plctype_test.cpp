// SPDX-License-Identifier: MIT
#include "host/check/plctype.h"

#include <gtest/gtest.h>

namespace ostravel::host::check {
namespace {

using V = ValueType_t;
using S = SystemType_t;

void expect_shape(V::enum_t value, S::enum_t system, Shape shape, int bytes) {
  const auto found = shape_of(value, system);
  EXPECT_EQ(found.shape, shape) << value << " " << name_of(system);
  EXPECT_EQ(found.bytes, bytes) << value << " " << name_of(system);
}

TEST(PlcType, ValueTypesHaveTheDriversShapes) {
  expect_shape(V::vt_UINT8, S::st_S7_Bool, Shape::Bool, 1);
  expect_shape(V::vt_UINT8, S::st_S7_Byte, Shape::Unsigned, 1);
  expect_shape(V::vt_INT16, S::st_S7_Int, Shape::Signed, 2);
  expect_shape(V::vt_UINT64, S::st_S7_LDT, Shape::Unsigned, 8);
  expect_shape(V::vt_FLOAT64, S::st_S7_LReal, Shape::Real, 8);
  expect_shape(V::vt_STRING8, S::st_S7_String, Shape::Text, 1);
  expect_shape(V::vt_STRING16, S::st_S7_WString, Shape::WideText, 1);
  expect_shape(V::vt_CHAR16, S::st_S7_WChar, Shape::Zeros, 4);
}

TEST(PlcType, SystemSpecificValuesAreThoseThatTheDriverTakesApart) {
  expect_shape(V::vt_SYSTEM_SPECIFIC, S::st_S7_DTL, Shape::Parts, 12);
  expect_shape(V::vt_SYSTEM_SPECIFIC, S::st_S7_Date_And_Time, Shape::Parts, 10);
  expect_shape(V::vt_SYSTEM_SPECIFIC, S::st_S7_S5Time, Shape::Unsigned, 4);
  expect_shape(V::vt_SYSTEM_SPECIFIC, S::st_S7_Counter, Shape::Unsigned, 2);
}

TEST(PlcType, AllElseEndsTheRuntime) {
  EXPECT_EQ(shape_of(V::vt_SYSTEM_SPECIFIC, S::st_S7_Any).shape, Shape::Deadly);
  EXPECT_EQ(shape_of(V::vt_STRING32, S::st_S7_String).shape, Shape::Deadly);
  EXPECT_EQ(shape_of(V::vt_UNDEFINED, S::st_UNDEFINED).shape, Shape::Deadly);
}

TEST(PlcType, NamesAreThePlcsOwn) {
  EXPECT_EQ(name_of(S::st_S7_DInt), "DInt");
  EXPECT_EQ(name_of(S::st_S7_Date_And_Time), "Date_And_Time");
  EXPECT_EQ(name_of(static_cast<S::enum_t>(1999)), "type 1999");
}

}  // namespace
}  // namespace ostravel::host::check
