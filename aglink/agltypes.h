// SPDX-License-Identifier: MIT
// The communication library's scalar types, result codes and records, as far as the driver knows them. The
// records cross the boundary to a closed library, so their layouts are asserted with literal offsets.
#ifndef OSTRAVEL_AGLINK_AGLTYPES_H_
#define OSTRAVEL_AGLINK_AGLTYPES_H_

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
using agl_bool_t = std::int32_t;
using agl_long32_t = std::int32_t;
using agl_ulong32_t = std::uint32_t;
using agl_long_t = std::int64_t;
using agl_ptrdiff_t = std::int64_t;
using agl_char8_t = char;
using agl_char16_t = std::uint16_t;
using agl_float32_t = float;
using agl_float64_t = double;

static_assert(sizeof(agl_float32_t) == 4 && sizeof(agl_float64_t) == 8);
static_assert(sizeof(void*) == 8, "the library exists for 64-bit processors only");

// What a library handle (a symbol tree's node, an access) looks like to the driver.
using HandleType = agl_ptrdiff_t;

// Every library function with an agl_int32_t result returns AGL40_SUCCESS or a code that AGL_GetErrorMsg
// explains.
constexpr agl_int32_t AGL40_SUCCESS = 0;
// What a forwarding function returns when the library or the function cannot be reached: -1048554.
constexpr agl_int32_t AGL40_LIB_NOT_LOADED = static_cast<agl_int32_t>(0xFFF00016U);

// One symbolic read or write job. AGL_Symbolic_ReadMixEx and AGL_Symbolic_WriteMixEx take an array of them.
//   0 AccessHandle | 8 Buffer | 16 BufferLen | 24 Result | 28 SError
struct SymbolicRW_t {
  HandleType AccessHandle;  // from AGL_Symbolic_CreateAccessByPath; freed with AGL_Symbolic_FreeHandle
  void* Buffer;             // BufferLen bytes, owned by the caller; filled on read, sent on write
  agl_long_t BufferLen;     // bytes, as AGL_Symbolic_GetAccessBufferSize reported
  agl_int32_t Result;       // the library's result for this job; 0 = AGL40_SUCCESS
  agl_int32_t SError;       // the PLC's own error for this job; 0 = none
};
static_assert(sizeof(SymbolicRW_t) == 32);
static_assert(offsetof(SymbolicRW_t, AccessHandle) == 0);
static_assert(offsetof(SymbolicRW_t, Buffer) == 8);
static_assert(offsetof(SymbolicRW_t, BufferLen) == 16);
static_assert(offsetof(SymbolicRW_t, Result) == 24);
static_assert(offsetof(SymbolicRW_t, SError) == 28);

// The library's calendar record.
struct agl_systemtime_t {
  agl_uint16_t wYear;
  agl_uint16_t wMonth;
  agl_uint16_t wDayOfWeek;
  agl_uint16_t wDay;
  agl_uint16_t wHour;
  agl_uint16_t wMinute;
  agl_uint16_t wSecond;
  agl_uint16_t wMilliseconds;
};
static_assert(sizeof(agl_systemtime_t) == 16);
static_assert(offsetof(agl_systemtime_t, wYear) == 0);
static_assert(offsetof(agl_systemtime_t, wMonth) == 2);
static_assert(offsetof(agl_systemtime_t, wDayOfWeek) == 4);
static_assert(offsetof(agl_systemtime_t, wDay) == 6);
static_assert(offsetof(agl_systemtime_t, wHour) == 8);
static_assert(offsetof(agl_systemtime_t, wMinute) == 10);
static_assert(offsetof(agl_systemtime_t, wSecond) == 12);
static_assert(offsetof(agl_systemtime_t, wMilliseconds) == 14);

// The library's result of one job; the driver does not read it.
struct tagRESULT40 {
  agl_long_t State;
  agl_long_t ErrCode;
  agl_systemtime_t SysTime;
  agl_long_t SError;
  agl_ptrdiff_t UserVal;
};
using RESULT40 = tagRESULT40;
static_assert(sizeof(tagRESULT40) == 48);
static_assert(offsetof(tagRESULT40, State) == 0);
static_assert(offsetof(tagRESULT40, ErrCode) == 8);
static_assert(offsetof(tagRESULT40, SysTime) == 16);
static_assert(offsetof(tagRESULT40, SError) == 32);
static_assert(offsetof(tagRESULT40, UserVal) == 40);

// A read or write job by address instead of by symbol; only passed through.
struct tagDATA_RW40 {
  agl_uint16_t OpArea;
  agl_uint16_t OpType;
  agl_uint16_t OpAnz;
  agl_uint16_t DBNr;
  agl_uint16_t Offset;
  agl_uint16_t BitNr;
  agl_int32_t Result;
  union {
    void* Buff;
    agl_uint8_t Bytes[8];
  } Data;  // addresses the data
};
using DATA_RW40 = tagDATA_RW40;
static_assert(sizeof(tagDATA_RW40) == 24);
static_assert(offsetof(tagDATA_RW40, OpArea) == 0);
static_assert(offsetof(tagDATA_RW40, OpType) == 2);
static_assert(offsetof(tagDATA_RW40, OpAnz) == 4);
static_assert(offsetof(tagDATA_RW40, DBNr) == 6);
static_assert(offsetof(tagDATA_RW40, Offset) == 8);
static_assert(offsetof(tagDATA_RW40, BitNr) == 10);
static_assert(offsetof(tagDATA_RW40, Result) == 12);
static_assert(offsetof(tagDATA_RW40, Data) == 16);

// Parameters of one S7-1200/1500 connection over TCP/IP. Reserved fields are 0.
struct tagS7_TCPIP_TIA_1 {
  agl_long32_t lTimeOut;
  agl_uint16_t wDummy;
  agl_uint16_t wPlcNr;
  agl_uint8_t bPLCClassEx;  // a PLC_ClassEx value
  agl_uint8_t bReserveL5;
  agl_uint16_t wReserveL5;
  agl_long32_t lReserveL5;
  agl_uint8_t bConnTypeEx;  // a ConnTypeEx value
  agl_uint8_t bReserveL4[3];
  agl_long32_t lReserveL4[3];
  agl_char8_t Address[64];  // the PLC's address as zero-terminated text
  agl_long32_t Flags;
  agl_uint16_t wPortNr;
  agl_uint16_t wOwnPortNr;
  agl_ulong32_t dwOwnAddress;
  agl_ulong32_t GlobalFlags;  // for the whole device
  agl_long32_t lReserve[4];
};
using S7_TCPIP_TIA_1 = tagS7_TCPIP_TIA_1;
static_assert(sizeof(tagS7_TCPIP_TIA_1) == 128);
static_assert(offsetof(tagS7_TCPIP_TIA_1, lTimeOut) == 0);
static_assert(offsetof(tagS7_TCPIP_TIA_1, wDummy) == 4);
static_assert(offsetof(tagS7_TCPIP_TIA_1, wPlcNr) == 6);
static_assert(offsetof(tagS7_TCPIP_TIA_1, bPLCClassEx) == 8);
static_assert(offsetof(tagS7_TCPIP_TIA_1, bReserveL5) == 9);
static_assert(offsetof(tagS7_TCPIP_TIA_1, wReserveL5) == 10);
static_assert(offsetof(tagS7_TCPIP_TIA_1, lReserveL5) == 12);
static_assert(offsetof(tagS7_TCPIP_TIA_1, bConnTypeEx) == 16);
static_assert(offsetof(tagS7_TCPIP_TIA_1, bReserveL4) == 17);
static_assert(offsetof(tagS7_TCPIP_TIA_1, lReserveL4) == 20);
static_assert(offsetof(tagS7_TCPIP_TIA_1, Address) == 32);
static_assert(offsetof(tagS7_TCPIP_TIA_1, Flags) == 96);
static_assert(offsetof(tagS7_TCPIP_TIA_1, wPortNr) == 100);
static_assert(offsetof(tagS7_TCPIP_TIA_1, wOwnPortNr) == 102);
static_assert(offsetof(tagS7_TCPIP_TIA_1, dwOwnAddress) == 104);
static_assert(offsetof(tagS7_TCPIP_TIA_1, GlobalFlags) == 108);
static_assert(offsetof(tagS7_TCPIP_TIA_1, lReserve) == 112);

// Parameters of one device: its four connections in a row. AGL_SetParas and AGL_GetParas take it.
struct tagS7_TCPIP_TIA {
  tagS7_TCPIP_TIA_1 Conn[4];
};
using S7_TCPIP_TIA = tagS7_TCPIP_TIA;
static_assert(sizeof(tagS7_TCPIP_TIA) == 512);
static_assert(offsetof(tagS7_TCPIP_TIA, Conn) == 0);

#endif  // OSTRAVEL_AGLINK_AGLTYPES_H_
