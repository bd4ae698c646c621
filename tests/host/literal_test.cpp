// SPDX-License-Identifier: MIT
// Values as people write them, and the requests that they become.
#include "host/literal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/tagscsv.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

using nlohmann::json;
using testing::ElementsAre;

const Project& project() {
  static const Project project = project_from_csv(
      "name,type,count,first,elements,device,id\n"
      "Flag,BOOL,1,,1,1,1\n"
      "Bits,BitArray,3,0,1,1,2\n"
      "Sint,SINT,1,,1,1,3\n"
      "Int,INT,1,,1,1,4\n"
      "Dint,DINT,1,,1,1,5\n"
      "Lint,LINT,1,,1,1,6\n"
      "Usint,USINT,1,,1,1,7\n"
      "Uint,UINT,1,,1,1,8\n"
      "Udint,UDINT,1,,1,1,9\n"
      "Ulint,ULINT,1,,1,1,10\n"
      "Word,WORD,1,,1,1,11\n"
      "Real,REAL,1,,1,1,12\n"
      "Lreal,LREAL,1,,1,1,13\n"
      "Text,STRING,8,,1,1,14\n"
      "Wide,WSTRING,254,,1,1,15\n"
      "Ints,INT,3,1,1,1,16\n"
      "Times,DINT,2,0,1,1,17\n"
      "Texts,STRING,8,0,3,1,18\n"
      "Bytes12,BYTE,12,0,1,1,19\n"
      "Words6,WORD,6,0,1,1,20\n"
      "Bytes10,BYTE,10,0,1,1,21\n"
      "Words5,WORD,5,,1,1,22\n",
      "t");
  return project;
}

json value(const char* tag, std::string_view text) {
  return parse_value(select(project(), tag), text);
}

std::vector<WriteAccess> writes(const char* tag, std::string_view text, bool offline = false) {
  const auto selection = select(project(), tag);
  return write_accesses(selection, false, offline, parse_value(selection, text));
}

Words words(const char* tag, std::string_view text) {
  return writes(tag, text).front().words;
}

std::string refusal(const char* tag, std::string_view text) {
  try {
    writes(tag, text);
  } catch (const UserError& error) {
    return error.what();
  }
  return "taken";
}

TEST(Literal, BoolIsAWordOrADigitInAnyLetterCase) {
  for (const char* text : {"true", "TRUE", "True", "1", "BOOL#1", " true "}) {
    EXPECT_EQ(value("Flag", text), true) << text;
    EXPECT_TRUE(writes("Flag", text).front().bit) << text;
  }
  for (const char* text : {"false", "FALSE", "0"}) {
    EXPECT_EQ(value("Flag", text), false) << text;
  }
  EXPECT_EQ(refusal("Flag", "2"), "\"2\" does not fit BOOL (true or false)");
  EXPECT_EQ(refusal("Flag", "yes"), "\"yes\" does not fit BOOL (true or false)");
}

TEST(Literal, WholeNumbersAreWrittenAsInPlcPrograms) {
  EXPECT_THAT(words("Int", "-5"), ElementsAre(0xFFFB));
  EXPECT_THAT(words("Int", "+5"), ElementsAre(5));
  EXPECT_THAT(words("Dint", "1_000_000"), ElementsAre(0x4240, 0x000F));
  EXPECT_THAT(words("Word", "16#Ff"), ElementsAre(0xFF));
  EXPECT_THAT(words("Word", "0xFF"), ElementsAre(0xFF));
  EXPECT_THAT(words("Word", "2#1010_0001"), ElementsAre(0xA1));
  EXPECT_THAT(words("Word", "8#17"), ElementsAre(15));
  EXPECT_THAT(words("Word", "W#16#BEEF"), ElementsAre(0xBEEF));
  EXPECT_THAT(words("Int", "INT#7"), ElementsAre(7));
  EXPECT_THAT(words("Ulint", "18446744073709551615"), ElementsAre(0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF));
  EXPECT_THAT(words("Lint", "-9223372036854775808"), ElementsAre(0, 0, 0, 0x8000));
  EXPECT_THAT(words("Usint", "'K'"), ElementsAre('K'));
}

TEST(Literal, NumberWrittenAsBitsFillsASignedTypeUpToItsSign) {
  EXPECT_EQ(value("Int", "16#FFFF"), -1);
  EXPECT_EQ(value("Int", "16#7FFF"), 32767);
  EXPECT_EQ(value("Sint", "2#1000_0000"), -128);
  EXPECT_EQ(value("Lint", "16#FFFF_FFFF_FFFF_FFFF"), -1);
  EXPECT_EQ(refusal("Int", "16#1_0000"), "65536 does not fit INT (-32768 to 32767)");
}

TEST(Literal, WhatIsOutOfRangeIsRefusedWithTheRange) {
  EXPECT_EQ(refusal("Int", "70000"), "70000 does not fit INT (-32768 to 32767)");
  EXPECT_EQ(refusal("Int", "-32769"), "-32769 does not fit INT (-32768 to 32767)");
  EXPECT_EQ(refusal("Sint", "128"), "128 does not fit SINT (-128 to 127)");
  EXPECT_EQ(refusal("Usint", "-1"), "-1 does not fit USINT (0 to 255)");
  EXPECT_EQ(refusal("Udint", "4294967296"), "4294967296 does not fit UDINT (0 to 4294967295)");
  EXPECT_EQ(refusal("Lint", "9223372036854775808"),
            "9223372036854775808 does not fit LINT (-9223372036854775808 to 9223372036854775807)");
  EXPECT_EQ(refusal("Ulint", "18446744073709551616"),
            "1.8446744073709552e+19 does not fit ULINT (0 to 18446744073709551615)");
  EXPECT_EQ(refusal("Real", "1e39"), "1e+39 does not fit REAL (-3.4028235e+38 to 3.4028235e+38)");
  EXPECT_EQ(refusal("Lreal", "1e400"),
            "\"1e400\" does not fit LREAL (-1.7976931348623157e+308 to 1.7976931348623157e+308)");
}

TEST(Literal, WhatIsOfAnotherTypeIsRefusedWithTheRange) {
  EXPECT_EQ(refusal("Int", "3.25"), "3.25 does not fit INT (-32768 to 32767)");
  EXPECT_EQ(refusal("Int", "fast"), "\"fast\" does not fit INT (-32768 to 32767)");
  EXPECT_EQ(refusal("Int", ""), "\"\" does not fit INT (-32768 to 32767)");
  EXPECT_EQ(refusal("Int", "16#"), "\"16#\" does not fit INT (-32768 to 32767)");
  EXPECT_EQ(refusal("Int", "'K'"), "\"'K'\" does not fit INT (-32768 to 32767)");
  EXPECT_EQ(refusal("Int", "[1, 2]"), "\"[1, 2]\" does not fit INT (-32768 to 32767)");
  EXPECT_EQ(refusal("Real", "[[[[1"), "\"[[[[1\" does not fit REAL (-3.4028235e+38 to 3.4028235e+38)");
}

TEST(Literal, RealsTakeExponentsAndWholeNumbers) {
  EXPECT_THAT(words("Real", "3.25"), ElementsAre(0, 0x4050));
  EXPECT_THAT(words("Real", "REAL#3.25"), ElementsAre(0, 0x4050));
  EXPECT_EQ(value("Lreal", "1e3"), 1000.0);
  EXPECT_EQ(value("Lreal", "-1_000"), -1000.0);
  EXPECT_EQ(value("Lreal", "16#10"), 16);
  EXPECT_THAT(words("Real", "inf"), ElementsAre(0, 0x7F80));
}

TEST(Literal, TextsAreQuotedOrPlain) {
  EXPECT_EQ(value("Text", "plain text"), "plain text");
  EXPECT_EQ(value("Text", "12"), "12");
  EXPECT_EQ(value("Text", "'it$'s'"), "it's");
  EXPECT_EQ(value("Text", "STRING#'a'"), "a");
  EXPECT_EQ(value("Text", "''"), "");
  EXPECT_EQ(value("Text", "'a$$b$N$T$80'"), "a$b\r\n\t\u20ac");
  EXPECT_EQ(value("Wide", "'$65E5$0041'"), "\u65e5A");
  EXPECT_EQ(value("Text", "\"x\\ny\""), "x\ny");
  EXPECT_EQ(value("Text", "[x"), "[x");
  EXPECT_EQ(refusal("Text", "'a'b'"), "'a'b' is no text; write ' inside it as $' and $ as $$");
  EXPECT_EQ(refusal("Text", "'a$'"), "'a$' is no text; write ' inside it as $' and $ as $$");
  EXPECT_EQ(refusal("Text", "nine long"), "the text has 9 characters, and 8 fit");
}

TEST(Literal, ListsHaveAValueForEachElement) {
  EXPECT_EQ(value("Ints", "[1, 16#FF, -3]"), json({1, 255, -3}));
  EXPECT_EQ(value("Texts", "['a,b', \"c]\", plain]"), json({"a,b", "c]", "plain"}));
  EXPECT_EQ(value("Times", "[T#1s, T#-2ms]"), json({1000, -2}));
  EXPECT_EQ(writes("Bits", "[true, 0, TRUE]").size(), 3U);
  EXPECT_EQ(value("Ints", "[]"), json::array());
  EXPECT_EQ(refusal("Ints", "[1, 2]"), "takes an array of 3 values, and 2 are given");
  EXPECT_EQ(refusal("Ints", "1"), "takes an array of 3 values, and one is given");
  EXPECT_EQ(refusal("Ints", "[1, 2, 70000]"), "element 3: 70000 does not fit INT (-32768 to 32767)");
  EXPECT_EQ(refusal("Ints", "[1, , 3]"), "element 2: \"\" does not fit INT (-32768 to 32767)");
}

TEST(Literal, ListInAListIsRefusedHoweverDeep) {
  const std::string nested = std::string(100'000, '[') + std::string(100'000, ']');
  EXPECT_EQ(refusal("Ints", nested), "a list in a list is no value of a tag; give all elements in one list");
}

TEST(Literal, WhateverIsWrittenIsTakenOrRefusedInOneLine) {
  const std::vector<std::string> samples{"16#FFFF_FFFF", "-1.5e300",        "'a$80$N'",
                                         "\"x\\u0041\"", "[1, 'a', \"]\"]", "DTL#2024-03-05-13:14:15.5",
                                         "T#1d_2h_3.5s", "TOD#1:2:3.4",     "D#2024-3-5",
                                         "BOOL#TRUE",    "W#16#BEEF"};
  int refused = 0;
  int taken = 0;
  const auto try_one = [&](const Tag& tag, const std::string& text) {
    try {
      const auto selection = select(project(), tag.name);
      for (const bool offline : {false, true}) {
        const auto requests = write_accesses(selection, false, offline, parse_value(selection, text));
        for (const auto& request : requests) {
          EXPECT_LE(request.words.size(), 2048U);
        }
      }
      ++taken;
    } catch (const UserError& error) {
      EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos) << error.what();
      ++refused;
    }
  };
  for (const auto& tag : project().tags) {
    for (const auto& sample : samples) {
      for (std::size_t i = 0; i <= sample.size(); ++i) {
        try_one(tag, sample.substr(0, i));
        for (const char c : {'\'', '"', '[', ']', '#', '$', '-', '9', '\\', '\xff'}) {
          auto changed = sample;
          changed.insert(i, 1, c);
          try_one(tag, changed);
        }
      }
    }
  }
  EXPECT_GT(taken, 100);
  EXPECT_GT(refused, 1000);
}

TEST(LiteralTime, DurationsAreMillisecondsIn32BitsAndNanosecondsIn64) {
  EXPECT_EQ(value("Dint", "T#5s"), 5000);
  EXPECT_EQ(value("Dint", "t#1h_2m"), 3'720'000);
  EXPECT_EQ(value("Dint", "TIME#-1d2h3m4s5ms"), -93'784'005);
  EXPECT_EQ(value("Dint", "T#1.5s"), 1500);
  EXPECT_EQ(value("Udint", "S5T#1m20s"), 80'000);
  EXPECT_EQ(value("Lint", "LT#3h_9us"), 10'800'000'009'000);
  EXPECT_EQ(value("Lint", "T#1ns"), 1);
  EXPECT_EQ(value("Dint", "T#24d20h31m23s647ms"), 2147483647);
}

TEST(LiteralTime, DurationsThatDoNotFitAreRefused) {
  EXPECT_EQ(refusal("Dint", "T#25d"), "T#25d does not fit DINT (-2147483648 to 2147483647 ms)");
  EXPECT_EQ(refusal("Dint", "T#5us"), "T#5us is finer than milliseconds, in which it stands in the PLC");
  EXPECT_EQ(refusal("Int", "T#5s"),
            "T#5s does not fit INT; it goes to DINT, in milliseconds, or LINT, in nanoseconds");
  EXPECT_EQ(refusal("Dint", "LT#5s"), "LT#5s does not fit DINT; it goes to LINT, in nanoseconds");
  EXPECT_EQ(refusal("Udint", "S5T#3h"), "S5T#3h does not fit UDINT (0 to 9990000 ms)");
  EXPECT_EQ(refusal("Real", "T#5s"),
            "T#5s does not fit REAL; it goes to DINT, in milliseconds, or LINT, in nanoseconds");
  for (const char* text : {"T#", "T#5", "T#5x", "T#s", "T#1s_", "T#1.s", "T#--1s", "T#106752d"}) {
    EXPECT_EQ(refusal("Lint", text),
              std::string(text) + " is no time; write it like T#1h_2m_3.5s, with d, h, m, s, ms, us or ns");
  }
}

TEST(LiteralTime, TimesOfDayAndDatesAreNumbers) {
  EXPECT_EQ(value("Udint", "TOD#13:14:15.5"), 47'655'500);
  EXPECT_EQ(value("Ulint", "LTOD#6:7:8.000000009"), 22'028'000'000'009);
  EXPECT_EQ(value("Uint", "D#1990-01-01"), 0);
  EXPECT_EQ(value("Uint", "D#2024-02-29"), 12'477);
  EXPECT_EQ(value("Ulint", "LDT#2024-03-05-13:14:15.123456789"), 1'709'644'455'123'456'789);
  EXPECT_EQ(refusal("Uint", "D#2023-02-29"), "D#2023-02-29 is no date; write it like D#2024-03-05");
  EXPECT_EQ(refusal("Uint", "D#1989-12-31"), "D#1989-12-31 is out of range (years 1990 to 2168)");
  EXPECT_EQ(refusal("Int", "D#2168-01-01"), "D#2168-01-01 does not fit INT (0 to 32767 days)");
  EXPECT_EQ(refusal("Udint", "D#2024-03-05"),
            "D#2024-03-05 does not fit UDINT; it goes to UINT, in days since 1990-01-01");
  EXPECT_EQ(refusal("Udint", "TOD#24:00:00"), "TOD#24:00:00 is no time of day; write it like TOD#13:14:15.5");
}

TEST(LiteralTime, DtlTravelsAsTheBytesOfItsPartsTwoAWord) {
  // 2024, month 3 day 5, Tuesday (3) 13 h, 14 min 15 s, 500'000'000 ns
  const Words expected{2024, 0x0503, 0x0D03, 0x0F0E, 0x6500, 0x1DCD};
  for (const char* tag : {"Bytes12", "Words6"}) {
    const auto requests = writes(tag, "DTL#2024-03-05-13:14:15.5");
    ASSERT_EQ(requests.size(), 1U) << tag;
    EXPECT_EQ(requests.front().words, expected) << tag;
  }
}

TEST(LiteralTime, DateAndTimeTravelsAsFiveWords) {
  const Words expected{2024, 0x0503, 0x0D03, 0x0F0E, 678};
  EXPECT_EQ(words("Bytes10", "DT#2024-03-05-13:14:15.678"), expected);
  EXPECT_EQ(words("Words5", "DATE_AND_TIME#2024-03-05-13:14:15.678"), expected);
}

TEST(LiteralTime, OfflineABytesTagHoldsAByteAWord) {
  EXPECT_EQ(writes("Bytes10", "DT#2024-03-05-13:14:15.678", true).front().words,
            (Words{0xE8, 7, 3, 5, 3, 13, 14, 15, 0xA6, 2}));
}

TEST(LiteralTime, DateAndTimeNeedsATagOfItsSize) {
  EXPECT_EQ(refusal("Words5", "DTL#2024-03-05-13:14:15"),
            "DTL#2024-03-05-13:14:15 takes 12 bytes; it goes to a tag of 12 BYTE or 6 WORD");
  EXPECT_EQ(refusal("Ulint", "DT#2024-03-05-13:14:15"),
            "DT#2024-03-05-13:14:15 takes 10 bytes; it goes to a tag of 10 BYTE or 5 WORD");
  EXPECT_EQ(refusal("Bytes12", "DTL#1969-12-31-0:0:0"),
            "DTL#1969-12-31-0:0:0 is out of range (years 1970 to 2262)");
  EXPECT_EQ(refusal("Bytes10", "DT#2090-01-01-0:0:0"),
            "DT#2090-01-01-0:0:0 is out of range (years 1990 to 2089)");
  EXPECT_EQ(refusal("Bytes12", "DTL#2024-03-05"),
            "DTL#2024-03-05 is no date and time; write it like DTL#2024-03-05-13:14:15.5");
  EXPECT_EQ(refusal("Bytes10", "DT#2024-03-05-0:0:0.0001"),
            "DT#2024-03-05-0:0:0.0001 is finer than milliseconds, in which it stands in the PLC");
}

}  // namespace
}  // namespace ostravel::host
