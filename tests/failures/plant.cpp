// SPDX-License-Identifier: MIT
#include "tests/failures/plant.h"

#include <fmt/format.h>

namespace {

// Row names, in the order of the project file.
constexpr const char* kRows[] = {
    "Lamp",
    "Small",
    "Speed",
    "Total",
    "Long",
    "Ratio",
    "Exact",
    "Table",
    "Name",
    "Wide",
    "Moment",
    "Delay",
    "Counted",
    "Stamp",
    "Byte",
    "Word",
    "Double",
    "Huge",
    "Letter",
    "Glyph",
    "Matrix[1,2]",
    "Messages.Of.The.Line[0]",
    "Conveyor.Of.The.Line[INDEX].Speed",
    "Curve",
    "Flags",
    "Recipe",
};

TagBlock tag(int type, DWORD row) {
  return TagBlock(type).row(row);
}

ReadTag one(const char* path, const TagBlock& block, const char* answer) {
  return {path, RequestBuilder::Read(block), answer};
}

WriteTag words(const char* path, const TagBlock& block, const std::vector<WORD>& values,
               std::vector<std::string> stored) {
  return {path, RequestBuilder::WordWrite(block, values), std::move(stored)};
}

std::string value_of(const FakeLibrary::Stored& stored, std::string_view kind) {
  if (kind.starts_with("Float")) return fmt::format("{}", stored.real);
  if (kind == "String8") return '"' + stored.text + '"';
  if (kind == "String16") {
    std::string units;
    for (const char16_t unit : stored.wide) units += fmt::format("{:04X}.", static_cast<unsigned>(unit));
    return units;
  }
  if (kind.ends_with("Parts")) {
    const fake::Parts& parts = stored.parts;
    return fmt::format("{}-{}-{} {} {}:{}:{} {}", parts.year, parts.month, parts.day, parts.weekday,
                       parts.hour, parts.minute, parts.second, parts.fraction);
  }
  return std::to_string(static_cast<std::int64_t>(stored.number));
}

}  // namespace

const std::vector<ReadTag>& read_tags() {
  static const std::vector<ReadTag> tags = {
      one("Lamp", tag(DT_BOOL, 0), "0/5/40 0001"),
      one("Small", tag(DT_SINT, 1), "0/5/40 FFFB"),
      one("Speed", tag(DT_INT, 2), "0/5/40 0005"),
      one("Total", tag(DT_DINT, 3), "0/5/40 5678 1234"),
      one("Long", tag(DT_LINT, 4), "0/5/40 0004 0003 0002 0001"),
      one("Ratio", tag(DT_REAL, 5), "0/5/40 0000 3FC0"),
      one("Exact", tag(DT_LREAL, 6), "0/5/40 0000 0000 0000 3FF8"),
      // Declared from 1 to 4: the runtime's element 0 is a fill.
      one("Table", tag(DT_INT, 7).count(5), "0/5/40 0000 000B 000C 000D 000E"),
      one("Name", tag(DT_STRING, 8).count(5), "0/5/40 0061 0062 0063 0000 0000"),
      // 510 bytes: a wide string.
      one("Wide", tag(DT_STRING, 9).count(4), "0/5/40 0078 0079 0000 0000"),
      one("Moment", tag(DT_BYTE, 10).count(12),
          "0/5/40 00E8 0007 0003 0005 0003 000D 000E 000F 0015 00CD 005B 0007"),
      one("Delay", tag(DT_DWORD, 11), "0/5/40 2710 0000"),
      one("Counted", tag(DT_WORD, 12), "0/5/40 0123"),
      one("Stamp", tag(DT_BYTE, 13).count(10), "0/5/40 00E7 0007 000C 001F 0001 0017 003B 003A 00E7 0003"),
      one("Byte", tag(DT_USINT, 14), "0/5/40 00FB"),
      one("Word", tag(DT_UINT, 15), "0/5/40 FFFE"),
      one("Double", tag(DT_UDINT, 16), "0/5/40 BEEF DEAD"),
      one("Huge", tag(DT_ULINT, 17), "0/5/40 CDEF 89AB 4567 0123"),
      one("Letter", tag(DT_BYTE, 18), "0/5/40 0041"),
      // A 16-bit character reads as a zero.
      one("Glyph", tag(DT_DWORD, 19), "0/5/40 0000 0000"),
      one("Matrix[1,2]", tag(DT_INT, 20), "0/5/40 0006"),
      one("Messages.Of.The.Line[2]", tag(DT_STRING, 21).index(2).count(3), "0/5/40 0074 0077 006F"),
      one("Conveyor.Of.The.Line[3].Speed", tag(DT_INT, 22).index(3), "0/5/40 0021"),
  };
  return tags;
}

std::vector<RequestBuilder> read_requests() {
  std::vector<RequestBuilder> requests;
  for (const ReadTag& one : read_tags()) requests.push_back(one.request);
  return requests;
}

std::vector<std::string> read_answers() {
  std::vector<std::string> answers;
  for (const ReadTag& one : read_tags()) answers.push_back(one.answer);
  return answers;
}

const std::vector<WriteTag>& write_tags() {
  static const std::vector<WriteTag> tags = {
      // A Boolean takes two bytes, and the library refuses the element of the second.
      {"Lamp", RequestBuilder::BitWrite(tag(DT_BOOL, 0), 1), {"UInt8 Lamp 0 1", "UInt8 Lamp 1 1"}},
      words("Small", tag(DT_SINT, 1), {0x00FB}, {"Int8 Small 0 -5"}),
      words("Speed", tag(DT_INT, 2), {7}, {"Int16 Speed 0 7"}),
      words("Total", tag(DT_DINT, 3), {1, 2}, {"Int32 Total 0 131073"}),
      words("Long", tag(DT_LINT, 4), {1, 0, 0, 0}, {"Int64 Long 0 1"}),
      words("Ratio", tag(DT_REAL, 5), {0, 0x4020}, {"Float32 Ratio 0 2.5"}),
      words("Exact", tag(DT_LREAL, 6), {0, 0, 0, 0x4004}, {"Float64 Exact 0 2.5"}),
      words("Name", tag(DT_STRING, 8), {0x4241}, {"String8 Name 0 \"AB\""}),
      words("Wide", tag(DT_STRING, 9), {0x7978}, {"String16 Wide 0 7978.0000."}),
      words("Moment", tag(DT_LWORD, 10), {0x07E8, 0x0503, 0x0D03, 0x0F0E, 0xCD15, 0x075B},
            {"S7_DTLParts Moment 0 2024-3-5 3 13:14:15 123456789"}),
      words("Delay", tag(DT_DWORD, 11), {0x2710, 0}, {"S7_S5TimeMs Delay 0 10000"}),
      words("Counted", tag(DT_WORD, 12), {0x0123}, {"S7_Counter Counted 0 291"}),
      words("Stamp", tag(DT_LWORD, 13), {0x07E7, 0x1F0C, 0x1701, 0x3A3B, 0x03E7},
            {"S7_Date_and_TimeParts Stamp 0 2023-12-31 1 23:59:58 999"}),
      words("Byte", tag(DT_USINT, 14), {251}, {"UInt8 Byte 0 251"}),
      words("Word", tag(DT_UINT, 15), {0xFFFE}, {"UInt16 Word 0 65534"}),
      words("Double", tag(DT_UDINT, 16), {0xBEEF, 0xDEAD}, {"UInt32 Double 0 3735928559"}),
      words("Huge", tag(DT_ULINT, 17), {5, 0, 0, 0}, {"UInt64 Huge 0 5"}),
      words("Letter", tag(DT_BYTE, 18), {0x42}, {"Char8 Letter 0 66"}),
      // A 16-bit character is not written.
      words("Glyph", tag(DT_DWORD, 19), {0x42, 0}, {}),
      words("Matrix[1,2]", tag(DT_INT, 20), {8}, {"Int16 Matrix[1,2] 0 8"}),
      words("Messages.Of.The.Line[2]", tag(DT_STRING, 21).index(2), {0x4241},
            {"String8 Messages.Of.The.Line[2] 0 \"AB\""}),
      words("Conveyor.Of.The.Line[3].Speed", tag(DT_INT, 22).index(3), {9},
            {"Int16 Conveyor.Of.The.Line[3].Speed 0 9"}),
      words("Curve[3]", tag(DT_INT, 23).index(3), {9}, {"Int16 Curve[3] 0 9"}),
      words("Curve", tag(DT_INT, 23).index(2), {5, 6}, {"Int16 Curve 2 5", "Int16 Curve 3 6"}),
  };
  return tags;
}

std::vector<std::string> stored_texts(const FakeLibrary& library) {
  constexpr std::string_view kPrefix = "AGL_Symbolic_SetAccessBuffer";
  std::vector<std::string> texts;
  for (const FakeLibrary::Stored& stored : library.stored()) {
    const std::string kind = stored.function.substr(kPrefix.size());
    texts.push_back(fmt::format("{} {} {} {}", kind, stored.path, stored.element, value_of(stored, kind)));
  }
  return texts;
}

ProjectFile plant_project() {
  ProjectFile project;
  project.position(100);
  DWORD id = 1;
  for (const char* row : kRows) project.tag(row, id++);
  return project.password(true, "a password of some length");
}

void add_plant(FakeLibrary& library) {
  library.add("Lamp", Item::Bool(true));
  library.add("Small", Item::Int8(-5));
  library.add("Speed", Item::Int16(5));
  library.add("Total", Item::Int32(0x12345678));
  library.add("Long", Item::Int64(0x0001000200030004));
  library.add("Ratio", Item::Float32(1.5F));
  library.add("Exact", Item::Float64(1.5));
  library.add("Table", Item::Int16({11, 12, 13, 14}).array(1, 4));
  library.add("Name", Item::String8("abc", 10));
  library.add("Wide", Item::String16(u"xy", 254));
  library.add("Moment", Item::Dtl({2024, 3, 5, 3, 13, 14, 15, 123456789}));
  library.add("Delay", Item::S5Time(10000));
  library.add("Counted", Item::Counter(0x123));
  library.add("Stamp", Item::DateAndTime({2023, 12, 31, 1, 23, 59, 58, 999}));
  library.add("Byte", Item::UInt8(251));
  library.add("Word", Item::UInt16(0xFFFE));
  library.add("Double", Item::UInt32(0xDEADBEEF));
  library.add("Huge", Item::UInt64(0x0123456789ABCDEF));
  library.add("Letter", Item::Char8('A'));
  library.add("Glyph", Item::Char16(0x263A));
  library.add("Matrix", Item::Int16({1, 2, 3, 4, 5, 6}).array(0, 1).array(0, 2));
  library.add("Messages.Of.The.Line", Item::Strings8({"zero", "one", "two", "three"}, 10).array(0, 3));
  library.add("Conveyor.Of.The.Line[3].Speed", Item::Int16(33));
  library.add("Curve", Item::Int16({21, 22, 23, 24}).array(1, 4));
  library.add("Flags", Item::UInt16(8));
  library.add("Recipe", Item::Int16(std::vector<std::int16_t>(300, 7)).array(0, 299));
}
