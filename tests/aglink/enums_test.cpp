// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "aglink/aglenums.h"
#include "tests/aglink/world.h"

TEST(ValueType, HasTheLibrarysValues) {
  using V = ValueType_t;
  EXPECT_EQ(V::vt_UNDEFINED, -1);
  const V::enum_t inOrder[] = {
      V::vt_SYSTEM_SPECIFIC, V::vt_UINT8,    V::vt_UINT16,   V::vt_UINT32,  V::vt_UINT64, V::vt_INT8,
      V::vt_INT16,           V::vt_INT32,    V::vt_INT64,    V::vt_CHAR8,   V::vt_CHAR16, V::vt_CHAR32,
      V::vt_STRING8,         V::vt_STRING16, V::vt_STRING32, V::vt_FLOAT32, V::vt_FLOAT64};
  for (int value = 0; value <= 16; ++value) EXPECT_EQ(inOrder[value], value);
}

TEST(SystemType, Has176ConsecutiveCodesFrom1000) {
  const std::vector<std::pair<std::string, int>> codes{
#define AGL_SYSTEM_TYPE(Name, Value) {#Name, SystemType_t::Name},
#include "aglink/systemtype.def"
  };
  const std::vector<std::string> expected = readList(EXPECTED_SYSTEM_TYPES);
  ASSERT_EQ(expected.size(), 176U);
  ASSERT_EQ(codes.size(), 176U);
  for (std::size_t i = 0; i < codes.size(); ++i) {
    EXPECT_EQ(codes[i].first, expected[i]);
    EXPECT_EQ(codes[i].second, 1000 + static_cast<int>(i)) << codes[i].first;
  }
}

TEST(SystemType, CodesWithATreatmentOfTheirOwnHaveTheirValues) {
  EXPECT_EQ(SystemType_t::st_UNDEFINED, -1);
  EXPECT_EQ(SystemType_t::st_UNKNOWN, 0);
  EXPECT_EQ(SystemType_t::st_S7_Bool, 1012);
  EXPECT_EQ(SystemType_t::st_S7_Counter, 1019);
  EXPECT_EQ(SystemType_t::st_S7_Date_And_Time, 1022);
  EXPECT_EQ(SystemType_t::st_S7_DTL, 1027);
  EXPECT_EQ(SystemType_t::st_S7_S5Time, 1085);
  EXPECT_EQ(SystemType_t::st_S7_OPC_UA_LocalizedTextEncodingMask, 1175);
  EXPECT_EQ(SystemType_t::st_NCK840D_UNKNOWN, 2000);
}

TEST(SymbolEnumerations, AreFourBytesWide) {
  EXPECT_EQ(sizeof(ValueType_t::enum_t), 4U);
  EXPECT_EQ(sizeof(SystemType_t::enum_t), 4U);
  EXPECT_EQ(sizeof(HierarchyType_t::enum_t), 4U);
  EXPECT_EQ(sizeof(SegmentType_t::enum_t), 4U);
  EXPECT_EQ(sizeof(PermissionType_t::enum_t), 4U);
  EXPECT_EQ(sizeof(TypeState_t::enum_t), 4U);
  EXPECT_EQ(sizeof(SystemTypeState_t::enum_t), 4U);
  EXPECT_EQ(sizeof(S7PlcFamily_t::enum_t), 4U);
  EXPECT_EQ(sizeof(DatablockTypes_t::enum_t), 4U);
  EXPECT_EQ(sizeof(NodeType_t::enum_t), 4U);
}

TEST(SmallEnumerations, HaveTheLibrarysValues) {
  EXPECT_EQ(HierarchyType_t::ht_UNDEFINED, -1);
  EXPECT_EQ(HierarchyType_t::ht_ITEM, 0);
  EXPECT_EQ(HierarchyType_t::ht_STRUCTURE, 1);
  EXPECT_EQ(HierarchyType_t::ht_ARRAY, 2);
  EXPECT_EQ(SegmentType_t::se_UNDEFINED, -1);
  EXPECT_EQ(SegmentType_t::se_ROOT, 0);
  EXPECT_EQ(SegmentType_t::se_FIELD, 1);
  EXPECT_EQ(SegmentType_t::se_INDEX, 2);
  EXPECT_EQ(PermissionType_t::pt_UNDEFINED, -1);
  EXPECT_EQ(PermissionType_t::pt_NONE, 0);
  EXPECT_EQ(PermissionType_t::pt_DISABLED, 1);
  EXPECT_EQ(PermissionType_t::pt_READ, 2);
  EXPECT_EQ(PermissionType_t::pt_WRITE, 3);
  EXPECT_EQ(PermissionType_t::pt_READ_WRITE, 4);
  EXPECT_EQ(TypeState_t::ts_UNDEFINED, -1);
  EXPECT_EQ(TypeState_t::ts_NOT_SUPPORTED, 0);
  EXPECT_EQ(TypeState_t::ts_VALID, 1);
  EXPECT_EQ(TypeState_t::ts_INVALID, 2);
  EXPECT_EQ(SystemTypeState_t::sts_UNDEFINED, -1);
  EXPECT_EQ(SystemTypeState_t::sts_VALID, 0);
  EXPECT_EQ(SystemTypeState_t::sts_INVALID, 1);
  EXPECT_EQ(SystemTypeState_t::sts_S7_DATABLOCK_NOT_COMPILED, 2);
  EXPECT_EQ(SystemTypeState_t::sts_S7_INVALID_TYPE, 3);
  EXPECT_EQ(SystemTypeState_t::sts_S7_NOT_SUPPORTED_TYPE, 4);
  EXPECT_EQ(S7PlcFamily_t::spf_UNDEFINED, -1);
  EXPECT_EQ(S7PlcFamily_t::spf_S7_300_400, 0);
  EXPECT_EQ(S7PlcFamily_t::spf_S7_1200, 1);
  EXPECT_EQ(S7PlcFamily_t::spf_S7_1500, 2);
  EXPECT_EQ(NodeType_t::nt_UNDEFINED, 0);
  EXPECT_EQ(NodeType_t::nt_SCHEMA, 1);
  EXPECT_EQ(NodeType_t::nt_INSTANCE, 2);
}

TEST(DatablockTypes, CountFromUndefinedZero) {
  using D = DatablockTypes_t;
  const D::enum_t inOrder[] = {D::dt_UNDEFINED,   D::dt_IDB_of_SDT, D::dt_IDB_of_FB,  D::dt_DB_of_Type,
                               D::dt_Standard_DB, D::dt_Array_DB,   D::dt_IDB_of_SFB, D::dt_IDB_of_FBT};
  for (int value = 0; value <= 7; ++value) EXPECT_EQ(inOrder[value], value);
}

TEST(ConnectionEnumerations, HaveTheLibrarysValues) {
  EXPECT_EQ(ePLCEx_300_400, 0);
  EXPECT_EQ(ePLCEx_200, 1);
  EXPECT_EQ(ePLCEx_1200_1500_Classic, 2);
  EXPECT_EQ(ePLCEx_Logo7_8, 3);
  EXPECT_EQ(ePLCEx_NCK, 10);
  EXPECT_EQ(ePLCEx_Sinamics_MM, 11);
  EXPECT_EQ(ePLCEx_Simotion, 12);
  EXPECT_EQ(ePLCEx_1200_TIA, 20);
  EXPECT_EQ(ePLCEx_1200_GE_V4_TIA, 21);
  EXPECT_EQ(ePLCEx_1200_GE_V4_2_TIA, 22);
  EXPECT_EQ(ePLCEx_1500_TIA, 30);
  EXPECT_EQ(ePLCEx_1500_GE_V2_TIA, 31);
  EXPECT_EQ(ePLCEx_AUTO_TIA, 40);
  EXPECT_EQ(ePLCEx_Create_MyVirtual_Machine, 41);
  EXPECT_EQ(eCT_HMI, 0);
  EXPECT_EQ(eCT_ES, 1);
  EXPECT_EQ(eCT_OTHER, 2);
  EXPECT_EQ(eCT_DL, 3);
}
