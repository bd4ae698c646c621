// SPDX-License-Identifier: MIT
#include "benchmarks/shapes.h"

#include <gtest/gtest.h>

#include "benchmarks/tags.h"

namespace bench {
namespace {

TEST(BenchShapes, TheNameTellsTheShapeWhateverItsLength) {
  for (const int length : kNameLengths) {
    const std::string name = tag_name(length, {Value::Float64, 2000, 1, true}, 17);
    EXPECT_EQ(name.size(), static_cast<std::size_t>(length));
    const Shape shape = shape_of(name.c_str());
    EXPECT_EQ(shape.value, Value::Float64);
    EXPECT_EQ(shape.count, 2000);
    EXPECT_EQ(shape.lower, 1);
    EXPECT_TRUE(shape.array);
  }
}

TEST(BenchShapes, AnElementOfAnArrayIsOneValueWithoutDimensions) {
  const std::string name = tag_name(40, {Value::Int16, 2000, 1, true}, 0);
  const Shape shape = shape_of((name + "[7]").c_str());
  EXPECT_EQ(shape.value, Value::Int16);
  EXPECT_EQ(shape.count, 1);
  EXPECT_EQ(shape.lower, 0);
  EXPECT_FALSE(shape.array);
}

TEST(BenchShapes, AnyOtherPathIsNothing) {
  EXPECT_EQ(shape_of("").value, Value::None);
  EXPECT_EQ(shape_of("x").value, Value::None);
}

TEST(BenchShapes, TheHandleHoldsTheWholeShape) {
  const Shape shape = shape_of(handle_of({Value::String16, 0xABCD, 1, true}));
  EXPECT_EQ(shape.value, Value::String16);
  EXPECT_EQ(shape.count, 0xABCD);
  EXPECT_EQ(shape.lower, 1);
  EXPECT_TRUE(shape.array);
}

}  // namespace
}  // namespace bench
