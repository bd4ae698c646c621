// SPDX-License-Identifier: MIT
#include "symbolic/enumhelper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "tests/symbolic/access.h"

namespace {

using ::testing::HasSubstr;
using ::testing::KilledBySignal;

struct Row {
  int code;
  const char* text;
};

struct Function {
  const char* name;
  const char* argument;
  int line;
  std::string (*text)(int code);
  std::vector<Row> rows;
  std::vector<int> unknown;
};

template <class Enumeration, auto Helper>
std::string text_of(int code) {
  const auto value = static_cast<Enumeration>(code);
  return Helper(value);
}

std::vector<Row> system_types() {
  return {
      {-1, "UNDEFINED"},
      {0, "UNKNOWN"},
      {1000, "S7_UNKNOWN"},
      {1001, "S7_Any"},
      {1002, "S7_AOM_AID"},
      {1003, "S7_AOM_IDENT"},
      {1004, "S7_Array"},
      {1005, "S7_Block_DB"},
      {1006, "S7_Block_FB"},
      {1007, "S7_Block_FC"},
      {1008, "S7_Block_OB"},
      {1009, "S7_Block_SDB"},
      {1010, "S7_Block_SFB"},
      {1011, "S7_Block_SFC"},
      {1012, "S7_Bool"},
      {1013, "S7_Byte"},
      {1014, "S7_Char"},
      {1015, "S7_CONN_ANY"},
      {1016, "S7_CONN_OUC"},
      {1017, "S7_CONN_PRG"},
      {1018, "S7_CONN_R_ID"},
      {1019, "S7_Counter"},
      {1020, "S7_CRef"},
      {1021, "S7_Date"},
      {1022, "S7_Date_And_Time"},
      {1023, "S7_DB_ANY"},
      {1024, "S7_DB_DYN"},
      {1025, "S7_DB_WWW"},
      {1026, "S7_DInt"},
      {1027, "S7_DTL"},
      {1028, "S7_DWord"},
      {1029, "S7_ErrorStruct"},
      {1030, "S7_EVENT_ANY"},
      {1031, "S7_EVENT_ATT"},
      {1032, "S7_EVENT_HWINT"},
      {1033, "S7_EVENT_SWINT"},
      {1034, "S7_FBTRef"},
      {1035, "S7_HW_ANY"},
      {1036, "S7_HW_DEVICE"},
      {1037, "S7_HW_DPMASTER"},
      {1038, "S7_HW_DPSLAVE"},
      {1039, "S7_HW_HSC"},
      {1040, "S7_HW_IEPORT"},
      {1041, "S7_HW_INTERFACE"},
      {1042, "S7_HW_IO"},
      {1043, "S7_HW_IOSYSTEM"},
      {1044, "S7_HW_MODULE"},
      {1045, "S7_HW_NR"},
      {1046, "S7_HW_PTO"},
      {1047, "S7_HW_PWM"},
      {1048, "S7_HW_SUBMODULE"},
      {1049, "S7_IEC_Counter"},
      {1050, "S7_IEC_DCounter"},
      {1051, "S7_IEC_LCounter"},
      {1052, "S7_IEC_LTimer"},
      {1053, "S7_IEC_SCounter"},
      {1054, "S7_IEC_Timer"},
      {1055, "S7_IEC_UCounter"},
      {1056, "S7_IEC_UDCounter"},
      {1057, "S7_IEC_ULCounter"},
      {1058, "S7_IEC_USCounter"},
      {1059, "S7_INSTANCE"},
      {1060, "S7_Int"},
      {1061, "S7_LDT"},
      {1062, "S7_LInt"},
      {1063, "S7_LReal"},
      {1064, "S7_LTime"},
      {1065, "S7_LTOD"},
      {1066, "S7_LWord"},
      {1067, "S7_NRef"},
      {1068, "S7_OB_ANY"},
      {1069, "S7_OB_ATT"},
      {1070, "S7_OB_COMM"},
      {1071, "S7_OB_CYCLIC"},
      {1072, "S7_OB_DELAY"},
      {1073, "S7_OB_DIAG"},
      {1074, "S7_OB_HWINT"},
      {1075, "S7_OB_PCYCLE"},
      {1076, "S7_OB_STARTUP"},
      {1077, "S7_OB_TIMEERROR"},
      {1078, "S7_OB_TOD"},
      {1079, "S7_PIP"},
      {1080, "S7_Pointer"},
      {1081, "S7_PORT"},
      {1082, "S7_Real"},
      {1083, "S7_Remote"},
      {1084, "S7_RTM"},
      {1085, "S7_S5Time"},
      {1086, "S7_SInt"},
      {1087, "S7_String"},
      {1088, "S7_Struct"},
      {1089, "S7_Time"},
      {1090, "S7_Time_Of_Day"},
      {1091, "S7_Timer"},
      {1092, "S7_UDInt"},
      {1093, "S7_UInt"},
      {1094, "S7_ULInt"},
      {1095, "S7_USInt"},
      {1096, "S7_Variant"},
      {1097, "S7_Void"},
      {1098, "S7_VRef"},
      {1099, "S7_WChar"},
      {1100, "S7_Word"},
      {1101, "S7_WString"},
      {1102, "Group"},
      {1103, "S7_Datablock_Group"},
      {1104, "S7_UDT_Group"},
      {1105, "S7_Tag_Group"},
      {1106, "S7_Datablock"},
      {1107, "S7_PLC"},
      {1108, "S7_Tag_Table"},
      {1109, "S7_UDT"},
      {1110, "S7_UDT_INSTANCE"},
      {1111, "S7_Input"},
      {1112, "S7_Output"},
      {1113, "S7_Memory"},
      {1115, "S7_FB_Instance"},
      {2000, "NCK840D_UNKNOWN"},
  };
}

std::vector<Function> functions() {
  return {
      {"get_type_state_str",
       "TypeState_t",
       32,
       text_of<TypeState_t::enum_t, EnumHelper::get_type_state_str>,
       {{-1, "UNDEFINED"}, {0, "NOT_SUPPORTED"}, {1, "VALID"}, {2, "INVALID"}},
       {-2, 3}},
      {"get_segment_type_str",
       "SegmentType_t",
       45,
       text_of<SegmentType_t::enum_t, EnumHelper::get_segment_type_str>,
       {{-1, "UNDEFINED"}, {0, "ROOT"}, {1, "FIELD"}, {2, "INDEX"}},
       {-2, 3}},
      {"get_hierarchy_type_str",
       "HierarchyType_t",
       58,
       text_of<HierarchyType_t::enum_t, EnumHelper::get_hierarchy_type_str>,
       {{-1, "UNDEFINED"}, {0, "ITEM"}, {1, "STRUCTURE"}, {2, "ARRAY"}},
       {-2, 3}},
      {"get_system_type_str",
       "SystemType_t",
       191,
       text_of<SystemType_t::enum_t, EnumHelper::get_system_type_str>,
       system_types(),
       {-2, 1, 999, 1114, 1116, 1117, 1175, 1176, 1999, 2001}},
      {"get_value_type_str",
       "ValueType_t",
       226,
       text_of<ValueType_t::enum_t, EnumHelper::get_value_type_str>,
       {{-1, "UNDEFINED"},
        {0, "SYSTEM_SPECIFIC"},
        {1, "UINT8"},
        {2, "UINT16"},
        {3, "UINT32"},
        {4, "UINT64"},
        {5, "INT8"},
        {6, "INT16"},
        {7, "INT32"},
        {8, "INT64"},
        {9, "CHAR8"},
        {10, "CHAR16"},
        {11, "CHAR32"},
        {12, "STRING8"},
        {13, "STRING16"},
        {14, "STRING32"},
        {15, "FLOAT32"},
        {16, "FLOAT64"}},
       {-2, 17}},
      {"get_access_type_str",
       "PermissionType_t",
       243,
       text_of<PermissionType_t::enum_t, EnumHelper::get_access_type_str>,
       {{-1, "UNDEFINED"}, {0, "NONE"}, {1, "DISABLED"}, {2, "READ"}, {3, "WRITE"}, {4, "READ_WRITE"}},
       {-2, 5}},
      {"get_node_type_str",
       "NodeType_t",
       257,
       text_of<NodeType_t::enum_t, EnumHelper::get_node_type_str>,
       {{0, "UNDEFINED"}, {1, "SCHEMA"}, {2, "INSTANCE"}},
       {-1, 3}},  // this enumeration starts at 0
      {"get_system_type_state_str",
       "SystemTypeState_t",
       274,
       text_of<SystemTypeState_t::enum_t, EnumHelper::get_system_type_state_str>,
       {{-1, "UNDEFINED"},
        {0, "VALID"},
        {1, "INVALID"},
        {2, "S7_DATABLOCK_NOT_COMPILED"},
        {3, "S7_INVALID_TYPE"},
        {4, "S7_NOT_SUPPORTED_TYPE"}},
       {-2, 5}},
  };
}

class EnumTexts : public ::testing::TestWithParam<Function> {};
using EnumTextsDeathTest = EnumTexts;

TEST_P(EnumTexts, NameEveryDefinedValue) {
  for (const Row& row : GetParam().rows) EXPECT_EQ(GetParam().text(row.code), row.text) << row.code;
}

TEST_P(EnumTextsDeathTest, AbortForAnyOtherValueWithAFixedMessage) {
  const Function& function = GetParam();
  const std::string message = std::string(": enumhelper.cpp:") + std::to_string(function.line) +
                              ": const char* const EnumHelper::" + function.name + "(const " +
                              function.argument + "::enum_t&): Assertion `false' failed.";
  for (const int code : function.unknown) {
    EXPECT_EXIT(function.text(code), KilledBySignal(SIGABRT), HasSubstr(message)) << code;
  }
}

INSTANTIATE_TEST_SUITE_P(All, EnumTexts, ::testing::ValuesIn(functions()), case_name<Function>);
INSTANTIATE_TEST_SUITE_P(All, EnumTextsDeathTest, ::testing::ValuesIn(functions()), case_name<Function>);

TEST(SystemTypeTexts, CoverAllBut1114OfTheCodesFrom1000To1115) {
  EXPECT_EQ(system_types().size(), 3U + 115U);
}

// Two oddities kept on purpose: capitals here, and no text at all for the neighbour of 1113 and 1115.
TEST(SystemTypeTexts, WriteTheInstanceOfAUserTypeInCapitals) {
  EXPECT_STREQ(EnumHelper::get_system_type_str(SystemType_t::st_S7_UDT_Instance), "S7_UDT_INSTANCE");
}

TEST(SystemTypeTextsDeathTest, HaveNoneForFunctionBlocks) {
  EXPECT_STREQ(EnumHelper::get_system_type_str(SystemType_t::st_S7_Memory), "S7_Memory");
  EXPECT_STREQ(EnumHelper::get_system_type_str(SystemType_t::st_S7_FB_Instance), "S7_FB_Instance");
  EXPECT_EXIT(EnumHelper::get_system_type_str(SystemType_t::st_S7_FB), KilledBySignal(SIGABRT),
              HasSubstr("get_system_type_str"));
}

}  // namespace
