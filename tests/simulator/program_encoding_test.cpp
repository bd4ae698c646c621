// SPDX-License-Identifier: MIT
#include "simulator/program/encoding.h"

#include <gmock/gmock.h>

#include <cmath>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using testing::Octets;

TEST(Encoding, NumbersAreBigEndian) {
  EXPECT_EQ(load_number(Octets{0x12, 0x34}), 0x1234U);
  EXPECT_EQ(load_number(Octets{}), 0U);
  Octets bytes(4);
  store_number(bytes, 0x1122334455U);
  EXPECT_EQ(bytes, (Octets{0x22, 0x33, 0x44, 0x55}));
}

TEST(Encoding, RealsAreIeee) {
  EXPECT_EQ(load_real(Octets{0x41, 0x20, 0, 0}), 10.0F);
  EXPECT_EQ(load_lreal(Octets{0xC0, 0x24, 0, 0, 0, 0, 0, 0}), -10.0);
  Octets bytes(4);
  store_real(bytes, -0.5F);
  EXPECT_EQ(bytes, (Octets{0xBF, 0, 0, 0}));
}

TEST(Encoding, S5TimeTakesTheFinestBase) {
  EXPECT_EQ(s5time_from_ms(0, false), 0x0000);
  EXPECT_EQ(s5time_from_ms(10, false), 0x0001);
  EXPECT_EQ(s5time_from_ms(9990, false), 0x0999);
  EXPECT_EQ(s5time_from_ms(10'000, false), 0x1100);
  EXPECT_EQ(s5time_from_ms(99'900, false), 0x1999);
  EXPECT_EQ(s5time_from_ms(999'000, false), 0x2999);
  EXPECT_EQ(s5time_from_ms(9'990'000, false), 0x3999);
  EXPECT_EQ(s5time_from_ms(9'990'001, false), std::nullopt);
  EXPECT_EQ(ms_from_s5time(0x2127), 127'000U);
  EXPECT_EQ(ms_from_s5time(0x3999), 9'990'000U);
}

TEST(Encoding, S5TimeRoundsOrCutsOff) {
  EXPECT_EQ(s5time_from_ms(14, true), 0x0001);
  EXPECT_EQ(s5time_from_ms(15, true), 0x0002);
  EXPECT_EQ(s5time_from_ms(19, false), 0x0001);
  EXPECT_EQ(s5time_from_ms(9'995, true), 0x1100);
  EXPECT_EQ(s5time_from_ms(9'999, false), 0x0999);
  EXPECT_EQ(s5time_from_ms(10'050, true), 0x1101);
}

TEST(Encoding, CountersAreThreeDigits) {
  EXPECT_EQ(counter_from_number(0), 0x0000);
  EXPECT_EQ(counter_from_number(987), 0x0987);
  EXPECT_EQ(counter_from_number(1000), std::nullopt);
  EXPECT_EQ(number_from_counter(0x0987), 987U);
}

TEST(Encoding, WeekdaysCountFromSunday) {
  EXPECT_EQ(weekday_of(2024, 3, 3), 1);
  EXPECT_EQ(weekday_of(2024, 3, 5), 3);
  EXPECT_EQ(weekday_of(1970, 1, 1), 5);
  EXPECT_EQ(weekday_of(2023, 2, 29), 0);
}

TEST(Encoding, DtlIsStoredAsGiven) {
  Octets bytes(12);
  const DateTime time{2024, 3, 5, 7, 13, 14, 15, 123456789};
  store_dtl(bytes, time);
  EXPECT_EQ(bytes, (Octets{0x07, 0xE8, 3, 5, 7, 13, 14, 15, 0x07, 0x5B, 0xCD, 0x15}));
  EXPECT_EQ(load_dtl(bytes), time);
}

TEST(Encoding, DateAndTimeIsBcdWithTheWeekdayBehind) {
  Octets bytes(8);
  ASSERT_TRUE(store_date_and_time(bytes, {2024, 3, 5, 0, 13, 14, 15, 678'900'000}));
  EXPECT_EQ(bytes, (Octets{0x24, 0x03, 0x05, 0x13, 0x14, 0x15, 0x67, 0x83}));
  EXPECT_EQ(load_date_and_time(bytes), (DateTime{2024, 3, 5, 3, 13, 14, 15, 678'000'000}));
  EXPECT_EQ(load_date_and_time(Octets{0x90, 0x01, 0x01, 0, 0, 0, 0, 0x02}).year, 1990);
  EXPECT_EQ(load_date_and_time(Octets{0x89, 0x01, 0x01, 0, 0, 0, 0, 0x07}).year, 2089);
}

TEST(Encoding, DateAndTimeRefusesWhatItCannotHold) {
  Octets bytes(8, 0xEE);
  EXPECT_FALSE(store_date_and_time(bytes, {1989, 12, 31, 1, 0, 0, 0, 0}));
  EXPECT_FALSE(store_date_and_time(bytes, {2090, 1, 1, 1, 0, 0, 0, 0}));
  EXPECT_FALSE(store_date_and_time(bytes, {2024, 2, 30, 1, 0, 0, 0, 0}));
  EXPECT_FALSE(store_date_and_time(bytes, {2024, 2, 1, 1, 24, 0, 0, 0}));
  EXPECT_EQ(bytes, Octets(8, 0xEE));
}

TEST(Encoding, StringsHaveMaximumAndLengthInFront) {
  Octets bytes(6, 0xEE);
  ASSERT_TRUE(store_string(bytes, "äb"));
  EXPECT_EQ(bytes, (Octets{4, 2, 0xE4, 'b', 0xEE, 0xEE}));
  EXPECT_EQ(load_string(bytes), "äb");
  EXPECT_FALSE(store_string(bytes, "12345"));
  EXPECT_FALSE(store_string(bytes, "\xFF"));
  EXPECT_EQ(load_string(bytes), "äb");
}

TEST(Encoding, StringsWithWrongLengthsStayInsideTheirBytes) {
  EXPECT_EQ(load_string(Octets{255, 255, 'a'}), "a");
  EXPECT_EQ(load_string(Octets{1, 2, 'a', 'b'}), "a");
  EXPECT_EQ(load_string(Octets{1}), "");
  EXPECT_EQ(load_wstring(Octets{0xFF, 0xFF, 0xFF, 0xFF, 0, 'a', 0}), "a");
  EXPECT_EQ(load_wstring(Octets{0, 1, 0}), "");
}

TEST(Encoding, WideStringsAreUtf16) {
  Octets bytes(10, 0xEE);
  ASSERT_TRUE(store_wstring(bytes, "Ω😀"));
  EXPECT_EQ(bytes, (Octets{0, 3, 0, 3, 0x03, 0xA9, 0xD8, 0x3D, 0xDE, 0x00}));
  EXPECT_EQ(load_wstring(bytes), "Ω😀");
  EXPECT_FALSE(store_wstring(bytes, "abcd"));
  EXPECT_EQ(load_wstring(Octets{0, 1, 0, 1, 0xD8, 0x3D}), "\uFFFD");
}

TEST(Encoding, APartOfMemoryNeverLiesOutside) {
  const Program program = testing::load(testing::block_of("a : Array[0..3] of Int;"));
  const Target whole = testing::target(program, "D.a");
  const Octets memory(8);
  EXPECT_EQ(bytes_of(whole, Bytes(memory)).size(), 8U);
  EXPECT_EQ(bytes_of(whole, Bytes(memory).first(7)).size(), 0U);
  EXPECT_EQ(bytes_of(testing::target(program, "D.a[3]"), Bytes(memory)).data(), memory.data() + 6);
  EXPECT_EQ(byte_count(Target{}), 0U);
}

}  // namespace
}  // namespace ostravel::plc
