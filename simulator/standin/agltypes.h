// SPDX-License-Identifier: MIT
// The communication library's records and enumerations as the stand-in understands them. Written apart from
// the driver's own declarations on purpose: a mistake in one of the two shows when they meet.
#pragma once

#include <cstddef>
#include <cstdint>

using agl_int8_t = std::int8_t;
using agl_int16_t = std::int16_t;
using agl_int32_t = std::int32_t;
using agl_int64_t = std::int64_t;
using agl_uint8_t = std::uint8_t;
using agl_uint16_t = std::uint16_t;
using agl_uint32_t = std::uint32_t;
using agl_uint64_t = std::uint64_t;
using agl_long_t = std::int64_t;
using agl_ulong32_t = std::uint32_t;
using agl_ptrdiff_t = std::int64_t;
using agl_char8_t = char;
using agl_char16_t = std::uint16_t;
using agl_float32_t = float;
using agl_float64_t = double;
using HandleType = agl_ptrdiff_t;

// One item of a symbolic job.
//   0 AccessHandle | 8 Buffer | 16 BufferLen | 24 Result | 28 SError
struct SymbolicRW_t {
  HandleType AccessHandle;
  void* Buffer;
  agl_long_t BufferLen;
  agl_int32_t Result;
  agl_int32_t SError;
};
static_assert(sizeof(SymbolicRW_t) == 32 && offsetof(SymbolicRW_t, AccessHandle) == 0 &&
              offsetof(SymbolicRW_t, Buffer) == 8 && offsetof(SymbolicRW_t, BufferLen) == 16 &&
              offsetof(SymbolicRW_t, Result) == 24 && offsetof(SymbolicRW_t, SError) == 28);

// How an element is held in an access buffer.
struct ValueType_t {
  enum enum_t : agl_int32_t {
    vt_UNDEFINED = -1,
    vt_SYSTEM_SPECIFIC = 0,
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
    vt_STRING8 = 12,
    vt_STRING16 = 13,
    vt_FLOAT32 = 15,
    vt_FLOAT64 = 16,
  };
};

// The PLC's type of an element, as far as the simulated PLC has such a type.
struct SystemType_t {
  enum enum_t : agl_int32_t {
    st_UNDEFINED = -1,
    st_S7_Bool = 1012,
    st_S7_Byte = 1013,
    st_S7_Char = 1014,
    st_S7_Counter = 1019,
    st_S7_Date = 1021,
    st_S7_Date_And_Time = 1022,
    st_S7_DInt = 1026,
    st_S7_DTL = 1027,
    st_S7_DWord = 1028,
    st_S7_Int = 1060,
    st_S7_LDT = 1061,
    st_S7_LInt = 1062,
    st_S7_LReal = 1063,
    st_S7_LTime = 1064,
    st_S7_LTOD = 1065,
    st_S7_LWord = 1066,
    st_S7_Real = 1082,
    st_S7_S5Time = 1085,
    st_S7_SInt = 1086,
    st_S7_String = 1087,
    st_S7_Time = 1089,
    st_S7_Time_Of_Day = 1090,
    st_S7_UDInt = 1092,
    st_S7_UInt = 1093,
    st_S7_ULInt = 1094,
    st_S7_USInt = 1095,
    st_S7_WChar = 1099,
    st_S7_Word = 1100,
    st_S7_WString = 1101,
  };
};
