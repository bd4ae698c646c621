// SPDX-License-Identifier: MIT
#include "tests/aglink/shapecalls.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>

#include "aglink/AGLink40.h"
#include "tests/aglink/fakes/shapes.h"

namespace {

template <typename Shape, typename Function>
Shape* as(Function* function) {
  return reinterpret_cast<Shape*>(reinterpret_cast<void (*)()>(function));
}

constexpr Large kLarge{{1, -20, 300, -4000, 50000, -600000}};
constexpr Large kOther{{-7, 80, -900, 10000, -110000, 1200000}};

void twelveIntegers() {
  EXPECT_EQ(as<TwelveIntegers>(&AGL_Config)(1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000,
                                            1000000000, 10000000000, 100000000000),
            1 + 30 + 500 + 7000 + 110000 + 1300000 + 17000000 + 190000000 + 2300000000 + 29000000000 +
                310000000000 + 3700000000000);
}

void tenRealsAmongIntegers() {
  EXPECT_EQ(as<TenRealsAmongIntegers>(&AGL_ConfigEx)(0.5, 1, 1.5, -2, 2.5, 3, 3.5, -4, 4.5, 5, 5.5, -6, 6.5,
                                                     7, 7.5, -8, 8.5, 9.5),
            0.5 + 3 * 1.5 + 5 * 2.5 + 7 * 3.5 + 11 * 4.5 + 13 * 5.5 + 17 * 6.5 + 19 * 7.5 + 23 * 8.5 +
                29 * 9.5 + 31 - 37 * 2 + 41 * 3 - 43 * 4 + 47 * 5 - 53 * 6 + 59 * 7 - 61 * 8);
}

void structureByValue() {
  EXPECT_EQ(as<TakesLarge>(&AGL_ReadParas)(kLarge, 8, 0.25),
            8000 + 1 + 1 - 2 * 20 + 3 * 300 - 4 * 4000 + 5 * 50000 - 6 * 600000);
}

void twoStructuresByValue() {
  const auto sum = [](const Large& large) {
    std::int64_t total = 0;
    for (int k = 0; k < 6; ++k) total += (k + 1) * large.values[k];
    return total;
  };
  EXPECT_EQ(as<TakesTwoLarge>(&AGL_WriteParas)(8, kLarge, kOther, 0.5),
            (8000 + 2 + sum(kLarge)) - 3 * (9000 + 2 + sum(kOther)));
}

void structureResultThroughAHiddenAddress() {
  const Large result = as<ReturnsLarge>(&AGL_ReadDevice)(70, 2.25);
  const std::int64_t expected[] = {70, 71, 72, 73, 74, 9};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(result.values[i], expected[i]);
}

void structureResultInRegistersOfBothKinds() {
  const Mixed result = as<ReturnsMixed>(&AGL_WriteDevice)(1.25, 14);
  EXPECT_EQ(result.real, 2.5);
  EXPECT_EQ(result.integer, 42);
}

void floatArgumentsAndResult() {
  EXPECT_EQ(as<TakesFloats>(&AGL_ReadReal)(0.5F, 0.25F, 0.125), 0.5F + 0.75F + 0.625F);
}

void doubleResult() {
  EXPECT_EQ(as<ReturnsDouble>(&AGL_LongAsFloat)(1.0), 1.0 / 3);
}

void pointerResult() {
  const char text[] = "ab";
  EXPECT_EQ(as<ReturnsPointer>(&AGL_malloc)(text), text + 1);
}

void sixtyFourBitResult() {
  EXPECT_EQ(as<Returns64Bits>(&AGL_AllocRWBuffs)(5), 0x123456789abcdef5);
}

void shortResult() {
  EXPECT_EQ(as<ReturnsShort>(&AGL_ReadInt16)(-32767), -32768);
}

void narrowArguments() {
  EXPECT_EQ(as<TakesSmall>(&AGL_GetTickCount)(255, -128, 65535, -32768, true, 'A'),
            static_cast<std::uint32_t>(255 - 3 * 128 + 5 * 65535 - 7 * 32768 + 11 + 13 * 'A'));
}

void wholeVectorRegisters() {
  Vector v[8];
  float expected[4] = {};
  const float weights[] = {1, 3, 5, 7, 11, 13, 17, 19};
  for (int i = 0; i < 8; ++i) {
    for (int lane = 0; lane < 4; ++lane) {
      v[i][lane] = static_cast<float>(i * 10 + lane);
      expected[lane] += weights[i] * v[i][lane];
    }
  }
  const Vector result = as<EightVectors>(&AGL_GetPLCType)(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
  for (int lane = 0; lane < 4; ++lane) EXPECT_EQ(result[lane], expected[lane]);
}

void longDouble() {
  EXPECT_EQ(as<TakesLongDouble>(&AGL_GetDevType)(1.0L, 2), 1.0L / 3 + 2);
}

void variadicArguments() {
  EXPECT_EQ(as<Variadic>(&AGL_DataRW2Text)(10, 1, 0.5, 2, 1.5, 3, 2.5, 4, 3.5, 5, 4.5, 6, 5.5, 7, 6.5, 8, 7.5,
                                           9, 8.5, 10, 9.5),
            385 + 0.5 + 4 * 1.5 + 9 * 2.5 + 16 * 3.5 + 25 * 4.5 + 36 * 5.5 + 49 * 6.5 + 64 * 7.5 + 81 * 8.5 +
                100 * 9.5);
}

void exceptionOfTheLibraryReachesTheCaller() {
  int caught = 0;
  try {
    as<Throws> (&AGL_HasFunc)(17);
  } catch (int thrown) {
    caught = thrown;
  }
  EXPECT_EQ(caught, 17);
}

}  // namespace

void PrintTo(const ShapeCall& shape, std::ostream* out) {
  *out << shape.name;
}

const std::vector<ShapeCall>& shapeCalls() {
  static const std::vector<ShapeCall> all{
      {"TwelveIntegers", twelveIntegers},
      {"TenRealsAmongIntegers", tenRealsAmongIntegers},
      {"StructureByValue", structureByValue},
      {"TwoStructuresByValue", twoStructuresByValue},
      {"StructureResultThroughAHiddenAddress", structureResultThroughAHiddenAddress},
      {"StructureResultInRegistersOfBothKinds", structureResultInRegistersOfBothKinds},
      {"FloatArgumentsAndResult", floatArgumentsAndResult},
      {"DoubleResult", doubleResult},
      {"PointerResult", pointerResult},
      {"SixtyFourBitResult", sixtyFourBitResult},
      {"ShortResult", shortResult},
      {"NarrowArguments", narrowArguments},
      {"WholeVectorRegisters", wholeVectorRegisters},
      {"LongDouble", longDouble},
      {"VariadicArguments", variadicArguments},
      {"ExceptionOfTheLibraryReachesTheCaller", exceptionOfTheLibraryReachesTheCaller},
  };
  return all;
}
