// SPDX-License-Identifier: MIT
// Counter, S5TIME, DATE_AND_TIME, DTL.
#include <gtest/gtest.h>

#include "simulator/standin/valuetypes.h"
#include "tests/simulator/standin_world.h"

namespace ostravel::standin {
namespace {

class Times : public testing::Test {
 protected:
  ConnectedWorld world;
};

TEST_F(Times, S5TimeUsesTheFinestBaseThatFits) {
  PathAccess access(world.root, "Plant.aS5Time");
  struct Case {
    agl_uint32_t ms;
    agl_int32_t round;
    Data bytes;
    agl_uint32_t back;
  };
  const Case cases[] = {
      {0, 1, {0x00, 0x00}, 0},
      {10, 1, {0x00, 0x01}, 10},
      {9990, 1, {0x09, 0x99}, 9990},
      {10'000, 1, {0x11, 0x00}, 10'000},
      {99'900, 1, {0x19, 0x99}, 99'900},
      {100'000, 1, {0x21, 0x00}, 100'000},
      {1'000'000, 1, {0x31, 0x00}, 1'000'000},
      {9'990'000, 1, {0x39, 0x99}, 9'990'000},
      {15, 1, {0x00, 0x02}, 20},  // rounded
      {15, 0, {0x00, 0x01}, 10},  // cut off
      {14, 1, {0x00, 0x01}, 10},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(
        AGL_Symbolic_SetAccessBufferS7_S5TimeMs(access.handle, access.buffer.data(), 2, 0, one.ms, one.round),
        0);
    EXPECT_EQ(access.buffer, one.bytes) << one.ms;
    agl_uint32_t back = 1;
    EXPECT_EQ(AGL_Symbolic_GetAccessBufferS7_S5TimeMs(access.handle, access.buffer.data(), 2, 0, &back), 0);
    EXPECT_EQ(back, one.back);
  }
  access.buffer = {0xEE, 0xEE};
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_S5TimeMs(access.handle, access.buffer.data(), 2, 0, 9'990'001, 0),
            code(Error::ValueOutOfRange));
  EXPECT_EQ(access.buffer, (Data{0xEE, 0xEE}));
}

TEST_F(Times, DtlHasItsTwelveBytes) {
  PathAccess access(world.root, "Plant.aDtl");
  const Data expected{0x07, 0xE8, 3, 5, 3, 13, 14, 15, 0x07, 0x5B, 0xCD, 0x15};
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_DTLParts(access.handle, access.buffer.data(), 12, 0, 2024, 3, 5, 3,
                                                    13, 14, 15, 123456789),
            0);
  EXPECT_EQ(access.buffer, expected);
  agl_uint16_t year = 0;
  agl_uint8_t month = 0;
  agl_uint8_t day = 0;
  agl_uint8_t weekday = 0;
  agl_uint8_t hour = 0;
  agl_uint8_t minute = 0;
  agl_uint8_t second = 0;
  agl_uint32_t nanoseconds = 0;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferS7_DTLParts(access.handle, access.buffer.data(), 12, 0, &year, &month,
                                                    &day, &weekday, &hour, &minute, &second, &nanoseconds),
            0);
  EXPECT_EQ(year, 2024);
  EXPECT_EQ(month, 3);
  EXPECT_EQ(day, 5);
  EXPECT_EQ(weekday, 3);
  EXPECT_EQ(hour, 13);
  EXPECT_EQ(minute, 14);
  EXPECT_EQ(second, 15);
  EXPECT_EQ(nanoseconds, 123456789U);
  EXPECT_EQ(access.write(world.connection), 0);
  EXPECT_EQ(world.command("read Plant.aDtl")["value"], "DTL#2024-03-05-13:14:15.123456789");
}

TEST_F(Times, DtlWithoutAWeekdayGetsThatOfItsDate) {
  PathAccess access(world.root, "Plant.aDtl");
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_DTLParts(access.handle, access.buffer.data(), 12, 0, 2024, 3, 5, 0,
                                                    0, 0, 0, 0),
            0);
  EXPECT_EQ(access.buffer[4], 3);  // a Tuesday
}

TEST_F(Times, ImpossibleDtlIsRefused) {
  PathAccess access(world.root, "Plant.aDtl");
  auto set = [&](agl_uint16_t year, agl_uint8_t month, agl_uint8_t day, agl_uint8_t hour,
                 agl_uint32_t nanoseconds) {
    return AGL_Symbolic_SetAccessBufferS7_DTLParts(access.handle, access.buffer.data(), 12, 0, year, month,
                                                   day, 1, hour, 0, 0, nanoseconds);
  };
  EXPECT_EQ(set(2023, 2, 29, 0, 0), code(Error::ValueOutOfRange));
  EXPECT_EQ(set(2024, 13, 1, 0, 0), code(Error::ValueOutOfRange));
  EXPECT_EQ(set(2024, 1, 1, 24, 0), code(Error::ValueOutOfRange));
  EXPECT_EQ(set(2024, 1, 1, 0, 1'000'000'000), code(Error::ValueOutOfRange));
  EXPECT_EQ(set(1969, 12, 31, 0, 0), code(Error::ValueOutOfRange));
  EXPECT_EQ(set(2263, 1, 1, 0, 0), code(Error::ValueOutOfRange));
  EXPECT_EQ(set(2024, 2, 29, 23, 999'999'999), 0);
}

TEST_F(Times, DateAndTimeIsBcd) {
  PathAccess access(world.root, "Plant.aDt");
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts(access.handle, access.buffer.data(), 8, 0, 2024,
                                                              3, 5, 3, 13, 14, 15, 678),
            0);
  EXPECT_EQ(access.buffer, (Data{0x24, 0x03, 0x05, 0x13, 0x14, 0x15, 0x67, 0x83}));
  agl_uint16_t year = 0;
  agl_uint8_t month = 0;
  agl_uint8_t day = 0;
  agl_uint8_t weekday = 0;
  agl_uint8_t hour = 0;
  agl_uint8_t minute = 0;
  agl_uint8_t second = 0;
  agl_uint16_t millisecond = 0;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts(access.handle, access.buffer.data(), 8, 0,
                                                              &year, &month, &day, &weekday, &hour, &minute,
                                                              &second, &millisecond),
            0);
  EXPECT_EQ(year, 2024);
  EXPECT_EQ(month, 3);
  EXPECT_EQ(day, 5);
  EXPECT_EQ(weekday, 3);
  EXPECT_EQ(hour, 13);
  EXPECT_EQ(minute, 14);
  EXPECT_EQ(second, 15);
  EXPECT_EQ(millisecond, 678);
}

TEST_F(Times, DateAndTimeGoesFrom1990To2089) {
  PathAccess access(world.root, "Plant.aDt");
  auto set = [&](agl_uint16_t year, agl_uint16_t millisecond) {
    return AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts(access.handle, access.buffer.data(), 8, 0, year,
                                                             1, 1, 2, 0, 0, 0, millisecond);
  };
  EXPECT_EQ(set(1990, 0), 0);
  EXPECT_EQ(access.buffer[0], 0x90);
  EXPECT_EQ(set(2089, 999), 0);
  EXPECT_EQ(access.buffer[0], 0x89);
  EXPECT_EQ(set(1989, 0), code(Error::ValueOutOfRange));
  EXPECT_EQ(set(2090, 0), code(Error::ValueOutOfRange));
  EXPECT_EQ(set(2024, 1000), code(Error::ValueOutOfRange));
}

// A counter and a timer, which no data block can declare, in a memory of their own.
plc::Program with_counter_and_timer() {
  auto symbol = [](const char* name, plc::DataType type, std::uint32_t offset, std::uint32_t size) {
    plc::Symbol made;
    made.name = name;
    made.type = type;
    made.offset = offset;
    made.element_size = size;
    return made;
  };
  plc::Program program;
  program.blocks = {symbol("System", plc::DataType::Struct, 0, 4)};
  program.blocks[0].members = {symbol("C5", plc::DataType::Counter, 0, 2),
                               symbol("T5", plc::DataType::Timer, 2, 2)};
  program.initial = {0x01, 0x23, 0x21, 0x00};
  return program;
}

class CounterAndTimer : public testing::Test {
 protected:
  ConnectedWorld world{1, plc::test_options(), with_counter_and_timer()};
};

TEST_F(CounterAndTimer, CounterIsThreeBcdDigits) {
  PathAccess access(world.root, "System.C5");
  ASSERT_EQ(access.read(world.connection), 0);
  agl_uint16_t value = 0;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferS7_Counter(access.handle, access.buffer.data(), 2, 0, &value), 0);
  EXPECT_EQ(value, 123);
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_Counter(access.handle, access.buffer.data(), 2, 0, 987), 0);
  EXPECT_EQ(access.buffer, (Data{0x09, 0x87}));
  EXPECT_EQ(access.write(world.connection), 0);
  EXPECT_EQ(world.command("read System.C5")["value"], 987);
}

TEST_F(CounterAndTimer, CounterStopsAt999) {
  PathAccess access(world.root, "System.C5");
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_Counter(access.handle, access.buffer.data(), 2, 0, 999), 0);
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_Counter(access.handle, access.buffer.data(), 2, 0, 1000),
            code(Error::ValueOutOfRange));
  EXPECT_EQ(access.buffer, (Data{0x09, 0x99}));
}

TEST_F(CounterAndTimer, TimerIsReadAndWrittenAsAnS5Time) {
  PathAccess access(world.root, "System.T5");
  ASSERT_EQ(access.read(world.connection), 0);
  agl_uint32_t ms = 0;
  EXPECT_EQ(AGL_Symbolic_GetAccessBufferS7_S5TimeMs(access.handle, access.buffer.data(), 2, 0, &ms), 0);
  EXPECT_EQ(ms, 100'000U);
  EXPECT_EQ(AGL_Symbolic_SetAccessBufferS7_S5TimeMs(access.handle, access.buffer.data(), 2, 0, 50, 1), 0);
  EXPECT_EQ(access.buffer, (Data{0x00, 0x05}));
}

TEST(SystemTypes, OfCounterAndTimerAreThoseACallerCanConvert) {
  EXPECT_EQ(element_type(plc::DataType::Counter).value, ValueType_t::vt_SYSTEM_SPECIFIC);
  EXPECT_EQ(element_type(plc::DataType::Counter).system, 1019);
  EXPECT_EQ(element_type(plc::DataType::Timer).value, ValueType_t::vt_SYSTEM_SPECIFIC);
  EXPECT_EQ(element_type(plc::DataType::Timer).system, 1085);  // deliberately that of S5TIME
  EXPECT_EQ(element_type(plc::DataType::Struct).value, ValueType_t::vt_UNDEFINED);
  EXPECT_EQ(element_type(plc::DataType::Opaque).value, ValueType_t::vt_UNDEFINED);
}

}  // namespace
}  // namespace ostravel::standin
