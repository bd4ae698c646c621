// SPDX-License-Identifier: MIT
// The null library's answers, through its functions as the floor calls them.
#include <gtest/gtest.h>

#include "benchmarks/driver.h"
#include "benchmarks/tags.h"

namespace bench {
namespace {

class NullLibrary : public testing::Test {
 protected:
  HandleType access(const Shape& shape, const std::string& suffix = "") {
    HandleType handle = 0;
    agl_int32_t position = 0;
    EXPECT_EQ(library.CreateAccessByPath(1, (tag_name(40, shape, 0) + suffix).c_str(), &handle, &position),
              0);
    return handle;
  }
  agl_int32_t ask(agl_int32_t (*function)(HandleType, agl_int32_t*), HandleType handle) {
    agl_int32_t value = -1;
    EXPECT_EQ(function(handle, &value), 0);
    return value;
  }

  const Driver driver{DRIVER, NULL_LIBRARY};
  const LibraryFunctions& library = driver.library;
};

TEST_F(NullLibrary, AnArrayHasOneDimensionWithItsBounds) {
  const HandleType node = access({Value::Int16, 2000, 1, true});
  EXPECT_EQ(ask(library.GetArrayDimensionCount, node), 1);
  agl_int32_t lower = -1;
  agl_int32_t upper = -1;
  EXPECT_EQ(library.GetArrayDimension(node, 0, &lower, &upper), 0);
  EXPECT_EQ(lower, 1);
  EXPECT_EQ(upper, 2000);
  EXPECT_EQ(ask(library.GetAccessBufferElementCount, node), 2000);
  EXPECT_EQ(ask(library.GetAccessBufferElementSize, node), 2);
  EXPECT_EQ(ask(library.GetAccessBufferSize, node), 4000);
}

TEST_F(NullLibrary, AScalarHasNone) {
  const HandleType node = access({Value::Float64, 1, 0, false});
  EXPECT_EQ(ask(library.GetArrayDimensionCount, node), 0);
  EXPECT_EQ(ask(library.GetAccessBufferElementCount, node), 1);
  EXPECT_EQ(ask(library.GetAccessBufferSize, node), 8);
}

TEST_F(NullLibrary, TheTypeComesFromTheName) {
  ValueType_t::enum_t type = ValueType_t::vt_UNDEFINED;
  library.GetAccessElementValueType(access({Value::Float32, 1, 0, false}), &type);
  EXPECT_EQ(type, ValueType_t::vt_FLOAT32);
  SystemType_t::enum_t system_type = SystemType_t::st_UNDEFINED;
  library.GetAccessElementSystemType(access({Value::Bool, 1, 0, false}), &system_type);
  EXPECT_EQ(system_type, SystemType_t::st_S7_Bool);
  library.GetAccessElementSystemType(access({Value::UInt8, 1, 0, false}), &system_type);
  EXPECT_NE(system_type, SystemType_t::st_S7_Bool);
}

TEST_F(NullLibrary, ElementsCountUpAndABooleanIsSet) {
  agl_int16_t number = 0;
  library.GetAccessBufferInt16(access({Value::Int16, 200, 0, true}), nullptr, 400, 129, &number);
  EXPECT_EQ(number, 130 % 128);
  agl_uint8_t boolean = 0;
  library.GetAccessBufferUInt8(access({Value::Bool, 200, 0, true}), nullptr, 200, 5, &boolean);
  EXPECT_EQ(boolean, 1);
}

TEST_F(NullLibrary, AStringFillsTheRoomAndEndsInIt) {
  const HandleType text = access({Value::String8, 1, 0, false});
  EXPECT_EQ(ask(library.GetAccessStringSize, text), 254);
  char characters[6] = "ZZZZZ";
  agl_int32_t count = 0;
  EXPECT_EQ(library.GetAccessBufferString8(text, nullptr, 0, 0, characters, 5, &count), 0);
  EXPECT_EQ(count, 4);
  EXPECT_STREQ(characters, "abcd");
}

TEST_F(NullLibrary, AJobGivesEveryAccessAResult) {
  SymbolicRW_t jobs[2] = {{1, nullptr, 0, 77, 77}, {2, nullptr, 0, 77, 77}};
  agl_int32_t error = 77;
  EXPECT_EQ(library.ReadMixEx(1, jobs, 2, &error, 5000, 0), 0);
  EXPECT_EQ(error, 0);
  for (const SymbolicRW_t& job : jobs) {
    EXPECT_EQ(job.Result, 0);
    EXPECT_EQ(job.SError, 0);
  }
}

}  // namespace
}  // namespace bench
