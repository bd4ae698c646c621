// SPDX-License-Identifier: MIT
#include "simulator/program/literal.h"

#include <gmock/gmock.h>

#include "program_support.h"

namespace ostravel::plc {
namespace {

using testing::Octets;

Symbol symbol_of(std::string_view type) {
  return testing::load(testing::block_of("a : " + std::string(type) + ";")).blocks.at(0).members.at(0);
}

// The bytes a literal gives; none when it is refused.
Octets put(std::string_view type, std::string_view literal) {
  const Symbol symbol = symbol_of(type);
  Octets element(symbol.element_size, 0xEE);
  const Octets before = element;
  if (element_from_literal(symbol, literal, element)) {
    EXPECT_EQ(element, before) << "a refused literal must change nothing: " << literal;
    return {};
  }
  return element;
}

const Octets refused;

TEST(Literal, WholeNumbersInEveryForm) {
  EXPECT_EQ(put("Int", "12_345"), (Octets{0x30, 0x39}));
  EXPECT_EQ(put("Int", "- 7"), (Octets{0xFF, 0xF9}));
  EXPECT_EQ(put("Byte", "2#0101_1111"), (Octets{0x5F}));
  EXPECT_EQ(put("Byte", "8#17"), (Octets{0x0F}));
  EXPECT_EQ(put("DWord", "16#beef_0001"), (Octets{0xBE, 0xEF, 0, 1}));
  EXPECT_EQ(put("Word", "WORD#16#FF"), (Octets{0, 0xFF}));
  EXPECT_EQ(put("Word", "w#16#FF"), (Octets{0, 0xFF}));
  EXPECT_EQ(put("DInt", "L#-5"), (Octets{0xFF, 0xFF, 0xFF, 0xFB}));
  EXPECT_EQ(put("Word", "B#(1, 2)"), (Octets{1, 2}));
  EXPECT_EQ(put("DWord", "DW#(1,2,3,16#FF)"), (Octets{1, 2, 3, 0xFF}));
  EXPECT_EQ(put("ULInt", "18446744073709551615"), Octets(8, 0xFF));
  EXPECT_EQ(put("LInt", "-9223372036854775808"), (Octets{0x80, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(Literal, RangesOfTheTypesHold) {
  EXPECT_EQ(put("SInt", "-128"), (Octets{0x80}));
  EXPECT_EQ(put("SInt", "-129"), refused);
  EXPECT_EQ(put("SInt", "128"), refused);
  EXPECT_EQ(put("USInt", "255"), (Octets{0xFF}));
  EXPECT_EQ(put("USInt", "256"), refused);
  EXPECT_EQ(put("USInt", "-1"), refused);
  EXPECT_EQ(put("LInt", "9223372036854775808"), refused);
  EXPECT_EQ(put("ULInt", "18446744073709551616"), refused);
  EXPECT_EQ(put("Int", "16#1_0000"), refused);
  EXPECT_EQ(put("Int", "5#4"), refused);
  EXPECT_EQ(put("Int", ""), refused);
  EXPECT_EQ(put("Int", "12abc"), refused);
  EXPECT_EQ(put("Word", "B#(1, 256)"), refused);
}

TEST(Literal, BitsMayFillASignedTypeUpToItsSign) {
  // Deliberate: 16#FFFF is a common way to write -1.
  EXPECT_EQ(put("Int", "16#FFFF"), (Octets{0xFF, 0xFF}));
  EXPECT_EQ(put("Word", "-1"), (Octets{0xFF, 0xFF}));
}

TEST(Literal, Bools) {
  EXPECT_EQ(put("Bool", "true"), (Octets{1}));
  EXPECT_EQ(put("Bool", "BOOL#FALSE"), (Octets{0}));
  EXPECT_EQ(put("Bool", "1"), (Octets{1}));
  EXPECT_EQ(put("Bool", "2"), refused);
}

TEST(Literal, Reals) {
  EXPECT_EQ(put("Real", "4e2"), (Octets{0x43, 0xC8, 0, 0}));
  EXPECT_EQ(put("Real", "- 1_000.0"), (Octets{0xC4, 0x7A, 0, 0}));
  EXPECT_EQ(put("Real", "REAL#-3.4E+38"), (Octets{0xFF, 0x7F, 0xC9, 0x9E}));
  EXPECT_EQ(put("Real", "3"), (Octets{0x40, 0x40, 0, 0}));
  EXPECT_EQ(put("LReal", "1.5"), (Octets{0x3F, 0xF8, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(put("LReal", "1e-400"), Octets(8, 0));
  EXPECT_EQ(put("Real", "1e39"), refused);
  EXPECT_EQ(put("LReal", "1e400"), refused);
  EXPECT_EQ(put("Real", "inf"), refused);
  EXPECT_EQ(put("Real", "nan"), refused);
}

TEST(Literal, TextsWithEscapes) {
  EXPECT_EQ(put("String[6]", "'it$'s'"), (Octets{6, 4, 'i', 't', '\'', 's', 0xEE, 0xEE}));
  EXPECT_EQ(put("String[9]", "'$$$L$N$P$R$T$0A'"),
            (Octets{9, 8, '$', '\n', '\r', '\n', '\f', '\r', '\t', '\n', 0xEE}));
  EXPECT_EQ(put("String[1]", "'$FC'"), (Octets{1, 1, 0xFC}));
  EXPECT_EQ(put("String[1]", "STRING#'€'"), (Octets{1, 1, 0x80}));
  EXPECT_EQ(put("WString[2]", "WSTRING#'$D83D$DE00'"), (Octets{0, 2, 0, 2, 0xD8, 0x3D, 0xDE, 0x00}));
  EXPECT_EQ(put("WString[2]", "'$D83D'"), refused);
  EXPECT_EQ(put("WString[1]", "'😀'"), refused);
  EXPECT_EQ(put("String[4]", "'$x'"), refused);
  EXPECT_EQ(put("String[4]", "abc"), refused);
  EXPECT_EQ(put("Char", "CHAR#'c'"), (Octets{'c'}));
  EXPECT_EQ(put("Char", "16#41"), (Octets{'A'}));
  EXPECT_EQ(put("Char", "'ab'"), refused);
  EXPECT_EQ(put("Char", "''"), refused);
  EXPECT_EQ(put("WChar", "WCHAR#'ö'"), (Octets{0, 0xF6}));
}

TEST(Literal, Durations) {
  EXPECT_EQ(put("Time", "T#1d_2h_3m_4s_5ms"), (Octets{0x05, 0x97, 0x07, 0xC5}));
  EXPECT_EQ(put("Time", "t#3s"), (Octets{0, 0, 0x0B, 0xB8}));
  EXPECT_EQ(put("Time", "TIME#1h30m15s"), (Octets{0, 0x52, 0xA0, 0x58}));
  EXPECT_EQ(put("Time", "T#1.5s"), (Octets{0, 0, 0x05, 0xDC}));
  EXPECT_EQ(put("Time", "T#-7M_8S"), (Octets{0xFF, 0xF9, 0x78, 0x20}));
  EXPECT_EQ(put("Time", "T#24d20h31m23s647ms"), (Octets{0x7F, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(put("Time", "T#24d20h31m23s648ms"), refused);
  EXPECT_EQ(put("Time", "T#5"), refused);
  EXPECT_EQ(put("Time", "T#5x"), refused);
  EXPECT_EQ(put("Time", "T#"), refused);
  EXPECT_EQ(put("LTime", "LT#-3H_9US"), (Octets{0xFF, 0xFF, 0xF6, 0x2D, 0x6D, 0xD5, 0xFC, 0xD8}));
  EXPECT_EQ(put("LTime", "LT#5ns"), (Octets{0, 0, 0, 0, 0, 0, 0, 5}));
  EXPECT_EQ(put("LTime", "LT#106752d"), refused);
  EXPECT_EQ(put("S5Time", "S5T#1M_20S"), (Octets{0x18, 0x00}));
  EXPECT_EQ(put("S5Time", "S5T#1h5m"), (Octets{0x33, 0x90}));
  EXPECT_EQ(put("S5Time", "S5T#2h46m31s"), refused);
  EXPECT_EQ(put("S5Time", "W#16#2127"), (Octets{0x21, 0x27}));
  EXPECT_EQ(put("Word", "S5T#10s"), (Octets{0x11, 0x00}));
}

TEST(Literal, DatesAndTimesOfDay) {
  EXPECT_EQ(put("Date", "D#2024-2-9"), (Octets{0x30, 0xA9}));
  EXPECT_EQ(put("Date", "DATE#1990-01-01"), (Octets{0, 0}));
  EXPECT_EQ(put("Date", "D#2169-06-06"), (Octets{0xFF, 0xFF}));
  EXPECT_EQ(put("Date", "D#2169-06-07"), refused);
  EXPECT_EQ(put("Date", "D#1989-12-31"), refused);
  EXPECT_EQ(put("Date", "D#2023-02-29"), refused);
  EXPECT_EQ(put("TOD", "TOD#1:2:3.4"), (Octets{0, 0x38, 0xD0, 0x88}));
  EXPECT_EQ(put("TOD", "TOD#24:00:00"), refused);
  EXPECT_EQ(put("LTOD", "LTOD#6:7:8.000000009"), (Octets{0x00, 0x00, 0x14, 0x08, 0xCB, 0x1D, 0x78, 0x09}));
  EXPECT_EQ(put("DT", "DT#2024-02-09-01:02:03.5"), (Octets{0x24, 0x02, 0x09, 0x01, 0x02, 0x03, 0x50, 0x06}));
  EXPECT_EQ(put("DT", "DATE_AND_TIME#1999-12-31-23:59:59.999"),
            (Octets{0x99, 0x12, 0x31, 0x23, 0x59, 0x59, 0x99, 0x96}));
  EXPECT_EQ(put("DT", "DT#2090-01-01-00:00:00"), refused);
  EXPECT_EQ(put("LDT", "LDT#1970-01-02-00:00:00.000000001"), (Octets{0, 0, 0x4E, 0x94, 0x91, 0x4F, 0, 1}));
  EXPECT_EQ(put("DTL", "DTL#2024-03-05-13:14:15.123456789"),
            (Octets{0x07, 0xE8, 3, 5, 3, 13, 14, 15, 0x07, 0x5B, 0xCD, 0x15}));
  EXPECT_EQ(put("DTL", "DTL#2024-03-05"), refused);
  EXPECT_EQ(put("DTL", "DTL#1969-03-05-0:0:0"), refused);
}

TEST(Literal, CountersAndTimers) {
  EXPECT_EQ(put("Counter", "C#123"), (Octets{0x01, 0x23}));
  EXPECT_EQ(put("Counter", "999"), (Octets{0x09, 0x99}));
  EXPECT_EQ(put("Counter", "1000"), refused);
  EXPECT_EQ(put("Word", "C#7"), (Octets{0, 7}));
}

}  // namespace
}  // namespace ostravel::plc
