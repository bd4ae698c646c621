// SPDX-License-Identifier: MIT
// Each result depends on every argument with a weight of its own, so that a lost or swapped one shows.
#include "tests/aglink/fakes/shapes.h"

#include <cstdarg>

#define SHAPE(Type, Name)                                      \
  extern "C" __attribute__((visibility("default"))) Type Name; \
  extern "C"

SHAPE(TwelveIntegers, AGL_Config)
std::int64_t AGL_Config(std::int64_t a, std::int64_t b, std::int64_t c, std::int64_t d, std::int64_t e,
                        std::int64_t f, std::int64_t g, std::int64_t h, std::int64_t i, std::int64_t j,
                        std::int64_t k, std::int64_t l) {
  return a + 3 * b + 5 * c + 7 * d + 11 * e + 13 * f + 17 * g + 19 * h + 23 * i + 29 * j + 31 * k + 37 * l;
}

SHAPE(TenRealsAmongIntegers, AGL_ConfigEx)
double AGL_ConfigEx(double a, int b, double c, int d, double e, int f, double g, int h, double i, int j,
                    double k, int l, double m, int n, double o, int p, double q, double r) {
  return a + 3 * c + 5 * e + 7 * g + 11 * i + 13 * k + 17 * m + 19 * o + 23 * q + 29 * r + 31 * b + 37 * d +
         41 * f + 43 * h + 47 * j + 53 * l + 59 * n + 61 * p;
}

SHAPE(TakesLarge, AGL_ReadParas)
std::int64_t AGL_ReadParas(Large large, std::int32_t i, double r) {
  std::int64_t sum = std::int64_t{i} * 1000 + static_cast<std::int64_t>(r * 4);
  for (int k = 0; k < 6; ++k) sum += (k + 1) * large.values[k];
  return sum;
}

SHAPE(TakesTwoLarge, AGL_WriteParas)
std::int64_t AGL_WriteParas(std::int32_t i, Large a, Large b, double r) {
  return AGL_ReadParas(a, i, r) - 3 * AGL_ReadParas(b, i + 1, r);
}

SHAPE(ReturnsLarge, AGL_ReadDevice)
Large AGL_ReadDevice(std::int64_t i, double r) {
  return {{i, i + 1, i + 2, i + 3, i + 4, static_cast<std::int64_t>(r * 4)}};
}

SHAPE(ReturnsMixed, AGL_WriteDevice)
Mixed AGL_WriteDevice(double r, std::int64_t i) {
  return {r * 2, i * 3};
}

SHAPE(TakesFloats, AGL_ReadReal)
float AGL_ReadReal(float a, float b, double c) {
  return a + 3 * b + static_cast<float>(5 * c);
}

SHAPE(ReturnsDouble, AGL_LongAsFloat)
double AGL_LongAsFloat(double a) {
  return a / 3;
}

SHAPE(ReturnsPointer, AGL_malloc)
void* AGL_malloc(const char* a) {
  return const_cast<char*>(a) + 1;
}

SHAPE(Returns64Bits, AGL_AllocRWBuffs)
std::int64_t AGL_AllocRWBuffs(std::int32_t a) {
  return 0x123456789abcdef0 + a;
}

SHAPE(ReturnsShort, AGL_ReadInt16)
std::int16_t AGL_ReadInt16(std::int16_t a) {
  return static_cast<std::int16_t>(a - 1);
}

SHAPE(TakesSmall, AGL_GetTickCount)
std::uint32_t AGL_GetTickCount(std::uint8_t a, std::int8_t b, std::uint16_t c, std::int16_t d, bool e,
                               char f) {
  return static_cast<std::uint32_t>(a + 3 * b + 5 * c + 7 * d + 11 * (e ? 1 : 0) + 13 * f);
}

SHAPE(EightVectors, AGL_GetPLCType)
Vector AGL_GetPLCType(Vector a, Vector b, Vector c, Vector d, Vector e, Vector f, Vector g, Vector h) {
  return a + 3 * b + 5 * c + 7 * d + 11 * e + 13 * f + 17 * g + 19 * h;
}

SHAPE(TakesLongDouble, AGL_GetDevType)
long double AGL_GetDevType(long double a, std::int32_t b) {
  return a / 3 + b;
}

SHAPE(Variadic, AGL_DataRW2Text)
double AGL_DataRW2Text(int count, ...) {
  va_list list;
  va_start(list, count);
  // The alignment moves the place where the compiler keeps the vector arguments, if al says that there are
  // any. At its usual place the slow path of a forwarding function that loses al leaves the right values by
  // chance.
  alignas(512) volatile char room[512];
  room[0] = 0;
  double sum = room[0];
  for (int i = 1; i <= count; ++i) {
    sum += i * va_arg(list, int);
    sum += i * i * va_arg(list, double);
  }
  va_end(list);
  return sum;
}

SHAPE(Throws, AGL_HasFunc)
int AGL_HasFunc(int a) {
  throw a;
}
