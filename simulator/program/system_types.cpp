// SPDX-License-Identifier: MIT
#include "simulator/program/system_types.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <utility>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/parser.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

constexpr std::string_view declarations_text = R"(
TYPE R_TRIG STRUCT CLK : Bool; Q : Bool; Stat_Bit : Bool; END_STRUCT; END_TYPE
TYPE F_TRIG STRUCT CLK : Bool; Q : Bool; Stat_Bit : Bool; END_STRUCT; END_TYPE
TYPE IP_V4 STRUCT ADDR : Array[1..4] of Byte; END_STRUCT; END_TYPE
TYPE TADDR_Param STRUCT
  REM_IP_ADDR : Array[1..4] of USInt; REM_PORT_NR : UInt; RESERVED : Word;
END_STRUCT; END_TYPE
TYPE TCON_IP_v4 STRUCT
  InterfaceId : HW_ANY; ID : CONN_OUC; ConnectionType : Byte := 16#0B; ActiveEstablished : Bool;
  RemoteAddress : IP_V4; RemotePort : UInt; LocalPort : UInt;
END_STRUCT; END_TYPE
TYPE TCON_Param STRUCT
  BLOCK_LENGTH : UInt := 64; ID : CONN_OUC; CONNECTION_TYPE : USInt := 17; ACTIVE_EST : Bool;
  LOCAL_DEVICE_ID : USInt; LOCAL_TSAP_ID_LEN : USInt; REM_SUBNET_ID_LEN : USInt; REM_STADDR_LEN : USInt;
  REM_TSAP_ID_LEN : USInt; NEXT_STADDR_LEN : USInt; LOCAL_TSAP_ID : Array[1..16] of Byte;
  REM_SUBNET_ID : Array[1..6] of USInt; REM_STADDR : Array[1..6] of USInt; REM_TSAP_ID : Array[1..16] of Byte;
  NEXT_STADDR : Array[1..6] of Byte; SPARE : Word;
END_STRUCT; END_TYPE
TYPE CREF STRUCT BLOCK_TYPE : Byte; DB_NUMBER : UInt; OFFSET : UDInt; END_STRUCT; END_TYPE
TYPE NREF STRUCT BLOCK_TYPE : Byte; DB_NUMBER : UInt; OFFSET : UDInt; END_STRUCT; END_TYPE
TYPE ErrorStruct STRUCT
  ERROR_ID : Word; FLAGS : Byte; REACTION : Byte; CODE_ADDRESS : CREF; MODE : Byte; OPERAND_NUMBER : UInt;
  POINTER_NUMBER_LOCATION : UInt; SLOT_NUMBER_SCOPE : UInt; DATA_ADDRESS : NREF;
END_STRUCT; END_TYPE
)";

// Timers and counters come in families that differ in the type of their value only.
std::string families_text() {
  std::string text;
  const auto timer = [&text](std::string_view name, std::string_view time, std::string_view more) {
    text += fmt::format("TYPE {} STRUCT PT : {}; ET : {}; {} IN : Bool; Q : Bool; END_STRUCT; END_TYPE\n",
                        name, time, time, more);
  };
  for (const std::string_view name : {"IEC_TIMER", "TON_TIME", "TOF_TIME", "TP_TIME", "TON", "TOF", "TP"}) {
    timer(name, "Time", "");
  }
  for (const std::string_view name : {"IEC_LTIMER", "TON_LTIME", "TOF_LTIME", "TP_LTIME"})
    timer(name, "LTime", "");
  timer("TONR_TIME", "Time", "R : Bool;");
  timer("TONR", "Time", "R : Bool;");
  timer("TONR_LTIME", "LTime", "R : Bool;");

  const auto counter = [&text](const std::string& name, std::string_view type) {
    text += fmt::format(
        "TYPE {} STRUCT CU : Bool; CD : Bool; R : Bool; LD : Bool; QU : Bool; QD : Bool; PV : {}; CV : {}; "
        "END_STRUCT; END_TYPE\n",
        name, type, type);
  };
  const auto one_way = [&text](const std::string& name, std::string_view input, std::string_view type) {
    text +=
        fmt::format("TYPE {} STRUCT {} : Bool; {} : Bool; Q : Bool; PV : {}; CV : {}; END_STRUCT; END_TYPE\n",
                    name, input, input == "CU" ? "R" : "LD", type, type);
  };
  constexpr std::array<std::pair<std::string_view, std::string_view>, 8> sizes{{{"", "Int"},
                                                                                {"S", "SInt"},
                                                                                {"D", "DInt"},
                                                                                {"L", "LInt"},
                                                                                {"U", "UInt"},
                                                                                {"US", "USInt"},
                                                                                {"UD", "UDInt"},
                                                                                {"UL", "ULInt"}}};
  for (const auto& [prefix, type] : sizes) {
    counter(fmt::format("IEC_{}COUNTER", prefix), type);
    counter(fmt::format("CTUD_{}", type), type);
    one_way(fmt::format("CTU_{}", type), "CU", type);
    one_way(fmt::format("CTD_{}", type), "CD", type);
  }
  counter("CTUD", "Int");
  one_way("CTU", "CU", "Int");
  one_way("CTD", "CD", "Int");
  return text;
}

struct Table {
  std::string text = std::string(declarations_text) + families_text();
  std::vector<Declaration> declarations = Parser(text, "(system types)", nullptr).parse();
  std::map<std::string, const Declaration*, std::less<>> by_name;

  Table() {
    for (const Declaration& declaration : declarations)
      by_name.emplace(folded(declaration.name), &declaration);
  }
};

struct Alias {
  DataType type;
  std::string_view names;  // one blank between two, and at both ends
};

constexpr std::array aliases{
    Alias{DataType::UInt,
          " DB_ANY DB_WWW DB_DYN PORT RTM PIP HW_ANY HW_DEVICE HW_DPMASTER HW_DPSLAVE HW_HSC HW_IEPORT "
          "HW_INTERFACE HW_IO "
          "HW_IOSYSTEM HW_MODULE HW_NR HW_PTO HW_PWM HW_SUBMODULE "},
    Alias{DataType::Word, " CONN_ANY CONN_OUC CONN_PRG CONN_R_ID "},
    Alias{DataType::Int,
          " OB_ANY OB_ATT OB_CYCLIC OB_DELAY OB_DIAG OB_HWINT OB_PCYCLE OB_STARTUP OB_TIMEERROR OB_TOD "},
    Alias{DataType::DWord, " AOM_IDENT AOM_AID EVENT_ANY EVENT_ATT EVENT_HWINT EVENT_SWINT "},
};

constexpr std::array<std::string_view, 12> opaque_types{"Any",      "Pointer",   "Variant",  "Void",
                                                        "Remote",   "Block_FB",  "Block_FC", "Block_DB",
                                                        "Block_OB", "Block_SDB", "Instance", "REF_TO"};

}  // namespace

const Declaration* system_type(std::string_view name) {
  static const Table table;
  const auto found = table.by_name.find(folded(name));
  return found == table.by_name.end() ? nullptr : found->second;
}

std::optional<DataType> system_type_alias(std::string_view name) {
  std::string wanted = " ";
  for (const char c : name) wanted += c >= 'a' && c <= 'z' ? static_cast<char>(c - 0x20) : c;
  wanted += ' ';
  for (const Alias& alias : aliases) {
    if (wanted.find(' ', 1) == wanted.size() - 1 && alias.names.find(wanted) != std::string_view::npos)
      return alias.type;
  }
  return std::nullopt;
}

bool is_known_opaque_type(std::string_view name) {
  return std::any_of(opaque_types.begin(), opaque_types.end(),
                     [name](std::string_view known) { return equal_names(known, name); });
}

std::vector<Symbol> dtl_members() {
  constexpr std::array<std::pair<std::string_view, DataType>, 8> parts{{{"YEAR", DataType::UInt},
                                                                        {"MONTH", DataType::USInt},
                                                                        {"DAY", DataType::USInt},
                                                                        {"WEEKDAY", DataType::USInt},
                                                                        {"HOUR", DataType::USInt},
                                                                        {"MINUTE", DataType::USInt},
                                                                        {"SECOND", DataType::USInt},
                                                                        {"NANOSECOND", DataType::UDInt}}};
  std::vector<Symbol> members;
  std::uint32_t offset = 0;
  for (const auto& [name, type] : parts) {
    Symbol part;
    part.name = name;
    part.type = type;
    part.offset = offset;
    part.element_size = type_row(type).size;
    offset += part.element_size;
    members.push_back(std::move(part));
  }
  return members;
}

}  // namespace ostravel::plc
