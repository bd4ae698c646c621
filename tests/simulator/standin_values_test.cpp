// SPDX-License-Identifier: MIT
// Value types and numbers: the expected bytes are those of the PLC's memory, big-endian.
#include <gtest/gtest.h>

#include <limits>

#include "tests/simulator/standin_world.h"

namespace ostravel::standin {
namespace {

using V = ValueType_t;

class Values : public testing::Test {
 protected:
  ConnectedWorld world;
};

struct TypeCase {
  const char* path;
  V::enum_t value;
  agl_int32_t system;
  agl_int32_t size;
};

TEST_F(Values, EveryTypeHasItsCodesAndSize) {
  const TypeCase cases[] = {
      {"Plant.Flag", V::vt_UINT8, 1012, 1},     {"Plant.aByte", V::vt_UINT8, 1013, 1},
      {"Plant.aWord", V::vt_UINT16, 1100, 2},   {"Plant.aDWord", V::vt_UINT32, 1028, 4},
      {"Plant.aLWord", V::vt_UINT64, 1066, 8},  {"Plant.aSInt", V::vt_INT8, 1086, 1},
      {"Plant.aInt", V::vt_INT16, 1060, 2},     {"Plant.aDInt", V::vt_INT32, 1026, 4},
      {"Plant.aLInt", V::vt_INT64, 1062, 8},    {"Plant.aUSInt", V::vt_UINT8, 1095, 1},
      {"Plant.aUInt", V::vt_UINT16, 1093, 2},   {"Plant.aUDInt", V::vt_UINT32, 1092, 4},
      {"Plant.aULInt", V::vt_UINT64, 1094, 8},  {"Plant.aReal", V::vt_FLOAT32, 1082, 4},
      {"Plant.aLReal", V::vt_FLOAT64, 1063, 8}, {"Plant.aChar", V::vt_CHAR8, 1014, 1},
      {"Plant.aWChar", V::vt_CHAR16, 1099, 2},  {"Plant.Text", V::vt_STRING8, 1087, 12},
      {"Plant.Wide", V::vt_STRING16, 1101, 24}, {"Plant.aTime", V::vt_INT32, 1089, 4},
      {"Plant.aLTime", V::vt_INT64, 1064, 8},   {"Plant.aS5Time", V::vt_SYSTEM_SPECIFIC, 1085, 2},
      {"Plant.aDate", V::vt_UINT16, 1021, 2},   {"Plant.aTod", V::vt_UINT32, 1090, 4},
      {"Plant.aLTod", V::vt_UINT64, 1065, 8},   {"Plant.aDt", V::vt_SYSTEM_SPECIFIC, 1022, 8},
      {"Plant.aLdt", V::vt_UINT64, 1061, 8},    {"Plant.aDtl", V::vt_SYSTEM_SPECIFIC, 1027, 12},
      {"Plant.Bits[3]", V::vt_UINT8, 1012, 1},
  };
  for (const auto& one : cases) {
    PathAccess access(world.root, one.path);
    ASSERT_EQ(access.result, 0) << one.path;
    auto value = V::vt_UNDEFINED;
    auto system = SystemType_t::st_UNDEFINED;
    EXPECT_EQ(AGL_Symbolic_GetAccessElementValueType(access.handle, &value), 0);
    EXPECT_EQ(AGL_Symbolic_GetAccessElementSystemType(access.handle, &system), 0);
    EXPECT_EQ(value, one.value) << one.path;
    EXPECT_EQ(system, one.system) << one.path;
    EXPECT_EQ(access.length(), one.size) << one.path;
  }
}

// Sets a number, looks at the bytes, gets it back, writes it and asks the PLC.
#define EXPECT_NUMBER(name, type, path, number, ...)                                                         \
  do {                                                                                                       \
    PathAccess access(world.root, path);                                                                     \
    EXPECT_EQ(                                                                                               \
        AGL_Symbolic_SetAccessBuffer##name(access.handle, access.buffer.data(), access.length(), 0, number), \
        0);                                                                                                  \
    EXPECT_EQ(access.buffer, (Data __VA_ARGS__));                                                            \
    type back{};                                                                                             \
    EXPECT_EQ(                                                                                               \
        AGL_Symbolic_GetAccessBuffer##name(access.handle, access.buffer.data(), access.length(), 0, &back),  \
        0);                                                                                                  \
    EXPECT_EQ(back, type(number));                                                                           \
    EXPECT_EQ(access.write(world.connection), 0);                                                            \
    access.buffer.assign(access.buffer.size(), 0xEE);                                                        \
    EXPECT_EQ(access.read(world.connection), 0);                                                             \
    EXPECT_EQ(access.buffer, (Data __VA_ARGS__));                                                            \
  } while (false)

TEST_F(Values, UnsignedNumbers) {
  EXPECT_NUMBER(UInt8, agl_uint8_t, "Plant.aByte", 0xFE, {0xFE});
  EXPECT_NUMBER(UInt8, agl_uint8_t, "Plant.aUSInt", 7, {7});
  EXPECT_NUMBER(UInt16, agl_uint16_t, "Plant.aWord", 0x1234, {0x12, 0x34});
  EXPECT_NUMBER(UInt16, agl_uint16_t, "Plant.aUInt", 65535, {0xFF, 0xFF});
  EXPECT_NUMBER(UInt16, agl_uint16_t, "Plant.aDate", 1, {0x00, 0x01});
  EXPECT_NUMBER(UInt32, agl_uint32_t, "Plant.aDWord", 0x12345678, {0x12, 0x34, 0x56, 0x78});
  EXPECT_NUMBER(UInt32, agl_uint32_t, "Plant.aUDInt", 0x80000000, {0x80, 0, 0, 0});
  EXPECT_NUMBER(UInt32, agl_uint32_t, "Plant.aTod", 256, {0, 0, 1, 0});
  EXPECT_NUMBER(UInt64, agl_uint64_t, "Plant.aLWord", 0x0102030405060708, {1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_NUMBER(UInt64, agl_uint64_t, "Plant.aULInt", 0xFFFFFFFFFFFFFFFE,
                {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE});
  EXPECT_NUMBER(UInt64, agl_uint64_t, "Plant.aLTod", 2, {0, 0, 0, 0, 0, 0, 0, 2});
  EXPECT_NUMBER(UInt64, agl_uint64_t, "Plant.aLdt", 3, {0, 0, 0, 0, 0, 0, 0, 3});
}

TEST_F(Values, SignedNumbers) {
  EXPECT_NUMBER(Int8, agl_int8_t, "Plant.aSInt", -5, {0xFB});
  EXPECT_NUMBER(Int16, agl_int16_t, "Plant.aInt", -2, {0xFF, 0xFE});
  EXPECT_NUMBER(Int32, agl_int32_t, "Plant.aDInt", -3, {0xFF, 0xFF, 0xFF, 0xFD});
  EXPECT_NUMBER(Int32, agl_int32_t, "Plant.aTime", 1500, {0, 0, 0x05, 0xDC});
  EXPECT_NUMBER(Int64, agl_int64_t, "Plant.aLInt", -4, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFC});
  EXPECT_NUMBER(Int64, agl_int64_t, "Plant.aLTime", 1, {0, 0, 0, 0, 0, 0, 0, 1});
}

TEST_F(Values, RealsAndCharacters) {
  EXPECT_NUMBER(Float32, float, "Plant.aReal", -1.5F, {0xBF, 0xC0, 0, 0});
  EXPECT_NUMBER(Float64, double, "Plant.aLReal", 1.5, {0x3F, 0xF8, 0, 0, 0, 0, 0, 0});
  EXPECT_NUMBER(Char8, agl_char8_t, "Plant.aChar", 'A', {0x41});
  EXPECT_NUMBER(Char16, agl_char16_t, "Plant.aWChar", 0x03A9, {0x03, 0xA9});
}

TEST_F(Values, NotANumberKeepsItsBits) {
  PathAccess access(world.root, "Plant.aReal");
  access.buffer = {0x7F, 0xC0, 0x00, 0x01};
  float value = 0;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferFloat32(access.handle, access.buffer.data(), 4, 0, &value), 0);
  Data copy(4);
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferFloat32(access.handle, copy.data(), 4, 0, value), 0);
  EXPECT_EQ(copy, access.buffer);
}

TEST_F(Values, BoolIsKeptAsZeroOrOne) {
  PathAccess access(world.root, "Plant.Flag");
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferUInt8(access.handle, access.buffer.data(), 1, 0, 0x80), 0);
  EXPECT_EQ(access.buffer, Data{1});
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferUInt8(access.handle, access.buffer.data(), 1, 0, 0), 0);
  EXPECT_EQ(access.buffer, Data{0});
}

TEST_F(Values, ElementsLieOneAfterTheOther) {
  PathAccess access(world.root, "Plant.Numbers");
  for (agl_int32_t i = 0; i < 8; ++i) {
    EXPECT_EQ(AGL_Symbolic_SetAccessBufferInt16(access.handle, access.buffer.data(), 16, i,
                                                static_cast<agl_int16_t>(i)),
              0);
  }
  EXPECT_EQ(access.buffer, (Data{0, 0, 0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0, 7}));
}

TEST_F(Values, ElementOutsideTheAccessIsRefused) {
  PathAccess access(world.root, "Plant.Numbers");
  Data large(1000, 0xEE);
  agl_int16_t value = 5;
  for (const agl_int32_t element : {-1, 8, 0x7FFFFFFF, std::numeric_limits<agl_int32_t>::min()}) {
    EXPECT_EQ(AGL_Symbolic_SetAccessBufferInt16(access.handle, large.data(), 1000, element, 1),
              code(Error::ElementInvalid));
    EXPECT_EQ(AGL_Symbolic_GetAccessBufferInt16(access.handle, large.data(), 1000, element, &value),
              code(Error::ElementInvalid));
  }
  EXPECT_EQ(large, Data(1000, 0xEE));
  EXPECT_EQ(value, 5);
}

TEST_F(Values, ShortBufferHoldsOnlyItsElements) {
  PathAccess access(world.root, "Plant.Numbers");
  agl_int16_t value = 5;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferInt16(access.handle, access.buffer.data(), 4, 1, &value), 0);
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferInt16(access.handle, access.buffer.data(), 4, 2, &value),
            code(Error::BufferTooSmall));
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferInt16(access.handle, access.buffer.data(), 1, 0, &value),
            code(Error::BufferTooSmall));
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferInt16(access.handle, access.buffer.data(), -1, 0, 1),
            code(Error::BufferTooSmall));
}

TEST_F(Values, AnotherTypeIsRefused) {
  PathAccess access(world.root, "Plant.aInt");
  agl_uint16_t number = 0;
  agl_uint32_t ms = 0;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferUInt16(access.handle, access.buffer.data(), 2, 0, &number),
            code(Error::WrongType));
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferInt8(access.handle, access.buffer.data(), 2, 0, 1),
            code(Error::WrongType));
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferS7_S5TimeMs(access.handle, access.buffer.data(), 2, 0, &ms),
            code(Error::WrongType));
  PathAccess s5time(world.root, "Plant.aS5Time");
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferS7_Counter(s5time.handle, s5time.buffer.data(), 2, 0, &number),
            code(Error::WrongType));
}

TEST_F(Values, NullPointersAreRefused) {
  PathAccess access(world.root, "Plant.aInt");
  agl_int16_t value = 0;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferInt16(access.handle, nullptr, 2, 0, &value),
            code(Error::InvalidParameter));
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferInt16(access.handle, access.buffer.data(), 2, 0, nullptr),
            code(Error::InvalidParameter));
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferInt16(access.handle, nullptr, 2, 0, 1),
            code(Error::InvalidParameter));
}

}  // namespace
}  // namespace ostravel::standin
