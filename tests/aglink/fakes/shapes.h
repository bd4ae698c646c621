// SPDX-License-Identifier: MIT
// Functions whose arguments and results travel in every way that the calling conventions know. The fake
// library of the shapes exports them under names of the table; the test calls them through the forwarding
// functions.
#ifndef OSTRAVEL_TESTS_AGLINK_FAKES_SHAPES_H_
#define OSTRAVEL_TESTS_AGLINK_FAKES_SHAPES_H_

#include <cstdint>

// Too large for registers: passed on the stack or by a hidden address, returned through a hidden address.
struct Large {
  std::int64_t values[6];
};

// Small enough to be returned in registers, one of each kind.
struct Mixed {
  double real;
  std::int64_t integer;
};

// A whole vector register.
using Vector = float __attribute__((vector_size(16)));

using TwelveIntegers = std::int64_t(std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t,
                                    std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t,
                                    std::int64_t, std::int64_t);
using TenRealsAmongIntegers = double(double, int, double, int, double, int, double, int, double, int, double,
                                     int, double, int, double, int, double, double);
using TakesLarge = std::int64_t(Large, std::int32_t, double);
using TakesTwoLarge = std::int64_t(std::int32_t, Large, Large, double);
using ReturnsLarge = Large(std::int64_t, double);
using ReturnsMixed = Mixed(double, std::int64_t);
using TakesFloats = float(float, float, double);
using ReturnsDouble = double(double);
using ReturnsPointer = void*(const char*);
using Returns64Bits = std::int64_t(std::int32_t);
using ReturnsShort = std::int16_t(std::int16_t);
using TakesSmall = std::uint32_t(std::uint8_t, std::int8_t, std::uint16_t, std::int16_t, bool, char);
using EightVectors = Vector(Vector, Vector, Vector, Vector, Vector, Vector, Vector, Vector);
using TakesLongDouble = long double(long double, std::int32_t);
using Variadic = double(int count, ...);  // sum of count pairs (int, double)
using Throws = int(int);                  // throws its argument

#endif  // OSTRAVEL_TESTS_AGLINK_FAKES_SHAPES_H_
