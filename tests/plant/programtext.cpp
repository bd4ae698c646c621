// SPDX-License-Identifier: MIT
#include "tests/plant/programtext.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <random>
#include <string_view>

namespace ostravel::plant {
namespace {

struct Variable {
  std::string_view name;
  std::string_view type;
  std::string_view retyped = {};  // empty: keeps its type
};

// Every type that the driver knows, alone and in arrays.
constexpr std::array kVariables{
    Variable{"Flag", "Bool"},
    Variable{"Octet", "Byte", "Word"},
    Variable{"Mask", "Word", "DWord"},
    Variable{"Wide", "DWord", "Byte"},
    Variable{"Widest", "LWord", "LReal"},
    Variable{"Tiny", "SInt", "DInt"},
    Variable{"Small", "Int", "DInt"},
    Variable{"Medium", "DInt", "Real"},
    Variable{"Large", "LInt", "Int"},
    Variable{"TinyCount", "USInt", "UInt"},
    Variable{"SmallCount", "UInt", "UDInt"},
    Variable{"MediumCount", "UDInt", "UInt"},
    Variable{"LargeCount", "ULInt", "UDInt"},
    Variable{"Ratio", "Real", "LReal"},
    Variable{"Exact", "LReal", "Real"},
    Variable{"Letter", "Char"},
    Variable{"Name", "String[20]"},
    Variable{"Note", "WString[30]"},
    Variable{"Span", "Time"},
    Variable{"LongSpan", "LTime"},
    Variable{"OldSpan", "S5Time"},
    Variable{"Day", "Date"},
    Variable{"Clock", "Time_Of_Day"},
    Variable{"LongClock", "LTime_Of_Day"},
    Variable{"OldStamp", "Date_And_Time"},
    Variable{"LongStamp", "LDT"},
    Variable{"Stamp", "DTL"},
    Variable{"Flags", "Array[0..15] of Bool"},
    Variable{"Octets", "Array[0..7] of Byte"},
    Variable{"Levels", "Array[0..9] of Int"},
    Variable{"FromOne", "Array[1..6] of DInt"},
    Variable{"Ratios", "Array[0..4] of Real"},
    Variable{"Counts", "Array[0..3] of UInt"},
    Variable{"Matrix", "Array[0..2, 0..3] of DInt"},
    Variable{"Long", "Array[0..2] of LInt"},
};
constexpr std::array<std::string_view, 5> kGrowing{"Levels", "Ratios", "Counts", "Long", "Octets"};
constexpr std::array<std::string_view, 8> kParts{"Mask.%X3",   "Wide.%X17", "MediumCount.%X31", "Levels[4]",
                                                 "FromOne[5]", "Ratios[0]", "Counts[3]",        "Names[2]"};
constexpr unsigned kBlocks = 11;
constexpr unsigned kWideBlocks = 2;  // that have a wide text of the length that travels a word a character
constexpr unsigned kOneIn = 16;      // variables that are renamed, retyped, gone

class Writer {
 public:
  explicit Writer(unsigned variant) : variant_(variant), chance_(variant) {}

  std::string write() {
    std::vector<std::string> blocks;
    for (unsigned i = 0; i < kBlocks; ++i) blocks.push_back(block(i));
    shuffle(blocks);
    return fmt::format("{}", fmt::join(blocks, ""));
  }

 private:
  bool original() const { return variant_ == 0; }
  unsigned below(unsigned limit) { return static_cast<unsigned>(chance_() % limit); }
  bool now_and_then() { return !original() && below(kOneIn) == 0; }
  void shuffle(std::vector<std::string>& lines) {
    for (std::size_t i = lines.size(); !original() && i > 1; --i) {
      std::swap(lines[i - 1], lines[below(static_cast<unsigned>(i))]);
    }
  }

  std::string declaration(std::string_view name, std::string_view type, std::string_view retyped = {}) {
    std::string declared(type);
    if (now_and_then()) return {};
    if (const auto dots = declared.find("..");
        now_and_then() && dots != std::string::npos &&
        std::find(kGrowing.begin(), kGrowing.end(), name) != kGrowing.end()) {
      declared.insert(dots + 2, "1");
    }
    if (now_and_then() && !retyped.empty()) declared = retyped;
    const char* renamed = now_and_then() ? "2" : "";
    return fmt::format("  {}{} : {};\n", name, renamed, declared);
  }

  std::string block(unsigned number) {
    std::vector<std::string> lines;
    for (const auto& variable : kVariables) {
      lines.push_back(declaration(variable.name, variable.type, variable.retyped));
    }
    lines.push_back(declaration("Names", "Array[0..3] of String[12]"));
    lines.push_back(declaration("Motors", "Array[1..2] of Struct Speed : Real; Running : Bool; End_Struct"));
    if (number < kWideBlocks) lines.push_back(declaration("Title", "WString[254]"));
    for (unsigned i = 0; !original() && i < 4; ++i) {
      lines.push_back(fmt::format("  New{} : {};\n", i, below(2) == 0 ? "DInt" : "String[7]"));
    }
    shuffle(lines);
    return fmt::format("DATA_BLOCK \"Line{}\"\nVAR\n{}END_VAR\nBEGIN\nEND_DATA_BLOCK\n", number,
                       fmt::join(lines, ""));
  }

  unsigned variant_;
  std::mt19937 chance_;
};

}  // namespace

std::string program_text(unsigned variant) {
  return Writer(variant).write();
}

std::vector<std::string> picked_parts() {
  std::vector<std::string> parts;
  for (unsigned i = 0; i < kBlocks; ++i) {
    for (const auto part : kParts) parts.push_back(fmt::format("Line{}.{}", i, part));
  }
  return parts;
}

}  // namespace ostravel::plant
