// SPDX-License-Identifier: MIT
// The communication library's enumerations that the driver uses, with the library's own names and values. The
// symbol enumerations are each an enum_t inside a type of their own and 32 bits wide.
#ifndef OSTRAVEL_AGLINK_AGLENUMS_H_
#define OSTRAVEL_AGLINK_AGLENUMS_H_

#include "aglink/agltypes.h"

// How an element's value is held in the access buffer.
struct ValueType_t {
  enum enum_t : agl_int32_t {
    vt_UNDEFINED = -1,
    vt_SYSTEM_SPECIFIC = 0,  // the element's SystemType_t says how
    vt_UINT8 = 1,
    vt_UINT16 = 2,
    vt_UINT32 = 3,
    vt_UINT64 = 4,
    vt_INT8 = 5,
    vt_INT16 = 6,
    vt_INT32 = 7,
    vt_INT64 = 8,
    vt_CHAR8 = 9,
    vt_CHAR16 = 10,
    vt_CHAR32 = 11,
    vt_STRING8 = 12,
    vt_STRING16 = 13,
    vt_STRING32 = 14,
    vt_FLOAT32 = 15,
    vt_FLOAT64 = 16,
  };
};

// The PLC-side data type of a node.
struct SystemType_t {
  enum enum_t : agl_int32_t {
    st_UNDEFINED = -1,
    st_UNKNOWN = 0,
#define AGL_SYSTEM_TYPE(Name, Value) Name = (Value),
#include "aglink/systemtype.def"
    st_NCK840D_UNKNOWN = 2000,
  };
};
static_assert(SystemType_t::st_S7_UNKNOWN == 1000);
static_assert(SystemType_t::st_S7_Bool == 1012);
static_assert(SystemType_t::st_S7_Counter == 1019);
static_assert(SystemType_t::st_S7_Date_And_Time == 1022);
static_assert(SystemType_t::st_S7_DTL == 1027);
static_assert(SystemType_t::st_S7_S5Time == 1085);
static_assert(SystemType_t::st_S7_OPC_UA_LocalizedTextEncodingMask == 1175);

struct HierarchyType_t {
  enum enum_t : agl_int32_t { ht_UNDEFINED = -1, ht_ITEM = 0, ht_STRUCTURE = 1, ht_ARRAY = 2 };
};

struct SegmentType_t {
  enum enum_t : agl_int32_t { se_UNDEFINED = -1, se_ROOT = 0, se_FIELD = 1, se_INDEX = 2 };
};

struct PermissionType_t {
  enum enum_t : agl_int32_t {
    pt_UNDEFINED = -1,
    pt_NONE = 0,
    pt_DISABLED = 1,
    pt_READ = 2,
    pt_WRITE = 3,
    pt_READ_WRITE = 4,
  };
};

struct TypeState_t {
  enum enum_t : agl_int32_t { ts_UNDEFINED = -1, ts_NOT_SUPPORTED = 0, ts_VALID = 1, ts_INVALID = 2 };
};

struct SystemTypeState_t {
  enum enum_t : agl_int32_t {
    sts_UNDEFINED = -1,
    sts_VALID = 0,
    sts_INVALID = 1,
    sts_S7_DATABLOCK_NOT_COMPILED = 2,
    sts_S7_INVALID_TYPE = 3,
    sts_S7_NOT_SUPPORTED_TYPE = 4,
  };
};

struct S7PlcFamily_t {
  enum enum_t : agl_int32_t { spf_UNDEFINED = -1, spf_S7_300_400 = 0, spf_S7_1200 = 1, spf_S7_1500 = 2 };
};

struct DatablockTypes_t {
  enum enum_t : agl_int32_t {
    dt_UNDEFINED = 0,
    dt_IDB_of_SDT = 1,
    dt_IDB_of_FB = 2,
    dt_DB_of_Type = 3,
    dt_Standard_DB = 4,
    dt_Array_DB = 5,
    dt_IDB_of_SFB = 6,
    dt_IDB_of_FBT = 7,
  };
};

struct NodeType_t {
  enum enum_t : agl_int32_t { nt_UNDEFINED = 0, nt_SCHEMA = 1, nt_INSTANCE = 2 };
};

// For tagS7_TCPIP_TIA_1::bPLCClassEx.
enum PLC_ClassEx {
  ePLCEx_300_400 = 0,
  ePLCEx_200 = 1,
  ePLCEx_1200_1500_Classic = 2,
  ePLCEx_Logo7_8 = 3,
  ePLCEx_NCK = 10,
  ePLCEx_Sinamics_MM = 11,
  ePLCEx_Simotion = 12,
  ePLCEx_1200_TIA = 20,
  ePLCEx_1200_GE_V4_TIA = 21,
  ePLCEx_1200_GE_V4_2_TIA = 22,
  ePLCEx_1500_TIA = 30,
  ePLCEx_1500_GE_V2_TIA = 31,
  ePLCEx_AUTO_TIA = 40,
  ePLCEx_Create_MyVirtual_Machine = 41,
};

// For tagS7_TCPIP_TIA_1::bConnTypeEx.
enum ConnTypeEx { eCT_HMI = 0, eCT_ES = 1, eCT_OTHER = 2, eCT_DL = 3 };

#endif  // OSTRAVEL_AGLINK_AGLENUMS_H_
