// SPDX-License-Identifier: MIT
#include "simulator/program/data_type.h"

#include <algorithm>
#include <array>
#include <utility>

#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

using enum DataType;
using Family = TypeFamily;

// In the order of DataType, so that the type is the index.
constexpr std::array rows{
    TypeRow{Bool, "Bool", Family::Bool, 1, "BOOL"},
    TypeRow{Byte, "Byte", Family::BitString, 1, "BYTE"},
    TypeRow{Word, "Word", Family::BitString, 2, "WORD"},
    TypeRow{DWord, "DWord", Family::BitString, 4, "DWORD"},
    TypeRow{LWord, "LWord", Family::BitString, 8, "LWORD"},
    TypeRow{SInt, "SInt", Family::Signed, 1, "SINT"},
    TypeRow{Int, "Int", Family::Signed, 2, "INT"},
    TypeRow{DInt, "DInt", Family::Signed, 4, "DINT"},
    TypeRow{LInt, "LInt", Family::Signed, 8, "LINT"},
    TypeRow{USInt, "USInt", Family::Unsigned, 1, "USINT"},
    TypeRow{UInt, "UInt", Family::Unsigned, 2, "UINT"},
    TypeRow{UDInt, "UDInt", Family::Unsigned, 4, "UDINT"},
    TypeRow{ULInt, "ULInt", Family::Unsigned, 8, "ULINT"},
    TypeRow{Real, "Real", Family::Real, 4, "REAL"},
    TypeRow{LReal, "LReal", Family::Real, 8, "LREAL"},
    TypeRow{Char, "Char", Family::Text, 1, "USINT"},
    TypeRow{WChar, "WChar", Family::Text, 2, ""},
    TypeRow{String, "String", Family::Text, 0, "STRING"},
    TypeRow{WString, "WString", Family::Text, 0, "WSTRING"},
    TypeRow{Time, "Time", Family::Time, 4, "DINT"},
    TypeRow{LTime, "LTime", Family::Time, 8, "LINT"},
    TypeRow{S5Time, "S5Time", Family::Bcd, 2, "UDINT"},
    TypeRow{Date, "Date", Family::Date, 2, "UINT"},
    TypeRow{TimeOfDay, "Time_Of_Day", Family::Date, 4, "UDINT"},
    TypeRow{LTimeOfDay, "LTime_Of_Day", Family::Date, 8, "ULINT"},
    TypeRow{DateAndTime, "Date_And_Time", Family::Date, 8, "BYTE", 10},
    TypeRow{LDateTime, "LDT", Family::Date, 8, "ULINT"},
    TypeRow{Dtl, "DTL", Family::Date, 12, "BYTE", 12},
    TypeRow{Counter, "Counter", Family::Bcd, 2, "UINT"},
    TypeRow{Timer, "Timer", Family::Bcd, 2, "UDINT"},
    TypeRow{Struct, "Struct", Family::Other, 0, ""},
    TypeRow{Opaque, "Opaque", Family::Other, 0, ""},
};

constexpr bool in_order() {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (static_cast<std::size_t>(rows.at(i).type) != i) return false;
  }
  return true;
}
static_assert(in_order() && rows.size() == static_cast<std::size_t>(Opaque) + 1);

constexpr std::array<std::pair<std::string_view, DataType>, 4> aliases{{
    {"TOD", TimeOfDay},
    {"LTOD", LTimeOfDay},
    {"DT", DateAndTime},
    {"Date_And_LTime", LDateTime},
}};

}  // namespace

const TypeRow& type_row(DataType type) {
  return rows.at(std::min(static_cast<std::size_t>(type), rows.size() - 1));
}

std::optional<DataType> elementary_type(std::string_view name) {
  for (const TypeRow& row : rows) {
    if (row.family != Family::Other && equal_names(row.name, name)) return row.type;
  }
  for (const auto& [alias, type] : aliases) {
    if (equal_names(alias, name)) return type;
  }
  return std::nullopt;
}

}  // namespace ostravel::plc
