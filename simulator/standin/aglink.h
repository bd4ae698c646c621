// SPDX-License-Identifier: MIT
// The functions that the stand-in exports, under the communication library's names. Each returns 0 on
// success, else a code whose text AGL_GetErrorMsg gives; results are written on success only. Time-outs are
// in milliseconds and never below one second in effect.
#pragma once

#include "simulator/standin/agltypes.h"

// Everything else in this library is hidden.
#pragma GCC visibility push(default)
extern "C" {

// --- Information ---
void AGL_GetVersion(agl_int32_t* Major, agl_int32_t* Minor);
agl_int32_t AGL_GetMaxDevices(void);
agl_ulong32_t AGL_GetTickCount(void);
agl_int32_t AGL_GetErrorMsg(agl_int32_t ErrorNr, agl_char8_t* Msg, agl_int32_t Len);

// --- Devices and connections ---
agl_int32_t AGL_SetParas(agl_int32_t DevNr, agl_int32_t ParaType, void* Para, agl_int32_t Len);
agl_int32_t AGL_GetParas(agl_int32_t DevNr, agl_int32_t ParaType, void* Para, agl_int32_t Len);
agl_int32_t AGL_SetDevType(agl_int32_t DevNr, agl_int32_t DevType);
agl_int32_t AGL_OpenDevice(agl_int32_t DevNr);
agl_int32_t AGL_CloseDevice(agl_int32_t DevNr);
agl_int32_t AGL_DialUp(agl_int32_t DevNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal);
agl_int32_t AGL_HangUp(agl_int32_t DevNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal);
agl_int32_t AGL_InitAdapter(agl_int32_t DevNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal);
agl_int32_t AGL_ExitAdapter(agl_int32_t DevNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal);
agl_int32_t AGL_PLCConnectEx(agl_int32_t DevNr, agl_int32_t PlcNr, agl_int32_t RackNr, agl_int32_t SlotNr,
                             agl_int32_t* ConnNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal);
agl_int32_t AGL_PLCDisconnect(agl_int32_t ConnNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal);
// MLFB: room for 20 characters and their terminating zero.
agl_int32_t AGL_ReadMLFBNr(agl_int32_t ConnNr, void* MLFB, agl_int32_t Timeout, agl_ptrdiff_t UserVal);
agl_int32_t AGL_SetPassword(agl_int32_t ConnNr, const agl_char8_t* Password, agl_int32_t Timeout,
                            agl_ptrdiff_t UserVal);

// --- Jobs: every item gets its own Result; the function's result is that of the job as a whole ---
agl_int32_t AGL_Symbolic_ReadMixEx(agl_int32_t ConnNr, SymbolicRW_t* RW, agl_int32_t Num, agl_int32_t* SError,
                                   agl_int32_t Timeout, agl_ptrdiff_t UserVal);
agl_int32_t AGL_Symbolic_WriteMixEx(agl_int32_t ConnNr, SymbolicRW_t* RW, agl_int32_t Num,
                                    agl_int32_t* SError, agl_int32_t Timeout, agl_ptrdiff_t UserVal);

// --- Symbol trees and nodes; every handle handed out is to be freed by the caller ---
agl_int32_t AGL_Symbolic_LoadAGLinkSymbolsFromPLC(agl_int32_t ConnNr, HandleType* RootNodeHandle);
agl_int32_t AGL_Symbolic_SaveAGLinkSymbolsToFile(HandleType RootNodeHandle, const agl_char8_t* FileName);
agl_int32_t AGL_Symbolic_LoadAGLinkSymbolsFromFile(const agl_char8_t* FileName, HandleType* RootNodeHandle);
agl_int32_t AGL_Symbolic_FreeHandle(HandleType Handle);
// ErrorPos (may be null): where in the path it stops to fit; the handle is 0 then.
agl_int32_t AGL_Symbolic_GetNodeByPath(HandleType RootNodeHandle, const agl_char8_t* Path,
                                       HandleType* NodeHandle, agl_int32_t* ErrorPos);
agl_int32_t AGL_Symbolic_CreateAccessByPath(HandleType RootNodeHandle, const agl_char8_t* Path,
                                            HandleType* AccessHandle, agl_int32_t* ErrorPos);
// 0 dimensions for what is no array, an element of an array included.
agl_int32_t AGL_Symbolic_GetArrayDimensionCount(HandleType NodeHandle, agl_int32_t* Count);
agl_int32_t AGL_Symbolic_GetArrayDimension(HandleType NodeHandle, agl_int32_t Dimension, agl_int32_t* Lower,
                                           agl_int32_t* Upper);
agl_int32_t AGL_Symbolic_GetArrayIndexAsLinearIndex(HandleType NodeHandle, const agl_int32_t* Index,
                                                    agl_int32_t IndexCount, agl_int32_t* LinearIndex);
// The index by which the node was reached; none for what is no element.
agl_int32_t AGL_Symbolic_GetIndexSize(HandleType NodeHandle, agl_int32_t* Size);
agl_int32_t AGL_Symbolic_GetIndex(HandleType NodeHandle, agl_int32_t Position, agl_int32_t* Value);

// --- Accesses: sizes in bytes, of a text in characters ---
agl_int32_t AGL_Symbolic_GetAccessBufferSize(HandleType AccessHandle, agl_int32_t* Value);
agl_int32_t AGL_Symbolic_GetAccessBufferElementSize(HandleType AccessHandle, agl_int32_t* Value);
agl_int32_t AGL_Symbolic_GetAccessBufferElementCount(HandleType AccessHandle, agl_int32_t* Value);
agl_int32_t AGL_Symbolic_GetAccessStringSize(HandleType AccessHandle, agl_int32_t* Value);
agl_int32_t AGL_Symbolic_GetAccessElementSystemType(HandleType AccessHandle, SystemType_t::enum_t* Type);
agl_int32_t AGL_Symbolic_GetAccessElementValueType(HandleType AccessHandle, ValueType_t::enum_t* Type);

// --- Values in access buffers: STANDIN_VALUE(name, type, value type) ---
#define STANDIN_VALUES(STANDIN_VALUE)               \
  STANDIN_VALUE(UInt8, agl_uint8_t, vt_UINT8)       \
  STANDIN_VALUE(UInt16, agl_uint16_t, vt_UINT16)    \
  STANDIN_VALUE(UInt32, agl_uint32_t, vt_UINT32)    \
  STANDIN_VALUE(UInt64, agl_uint64_t, vt_UINT64)    \
  STANDIN_VALUE(Int8, agl_int8_t, vt_INT8)          \
  STANDIN_VALUE(Int16, agl_int16_t, vt_INT16)       \
  STANDIN_VALUE(Int32, agl_int32_t, vt_INT32)       \
  STANDIN_VALUE(Int64, agl_int64_t, vt_INT64)       \
  STANDIN_VALUE(Float32, agl_float32_t, vt_FLOAT32) \
  STANDIN_VALUE(Float64, agl_float64_t, vt_FLOAT64) \
  STANDIN_VALUE(Char8, agl_char8_t, vt_CHAR8)       \
  STANDIN_VALUE(Char16, agl_char16_t, vt_CHAR16)

// NOLINTBEGIN(bugprone-macro-parentheses): a type in a declaration takes none
#define STANDIN_DECLARE(name, type, value_type)                                                            \
  agl_int32_t AGL_Symbolic_GetAccessBuffer##name(HandleType AccessHandle, const void* Buffer,              \
                                                 agl_int32_t BufferLen, agl_int32_t Element, type* Value); \
  agl_int32_t AGL_Symbolic_SetAccessBuffer##name(HandleType AccessHandle, void* Buffer,                    \
                                                 agl_int32_t BufferLen, agl_int32_t Element, type Value);
STANDIN_VALUES(STANDIN_DECLARE)
#undef STANDIN_DECLARE
// NOLINTEND(bugprone-macro-parentheses)

agl_int32_t AGL_Symbolic_GetAccessBufferS7_Counter(HandleType AccessHandle, const void* Buffer,
                                                   agl_int32_t BufferLen, agl_int32_t Element,
                                                   agl_uint16_t* Value);
// 0 to 999.
agl_int32_t AGL_Symbolic_SetAccessBufferS7_Counter(HandleType AccessHandle, void* Buffer,
                                                   agl_int32_t BufferLen, agl_int32_t Element,
                                                   agl_uint16_t Value);
agl_int32_t AGL_Symbolic_GetAccessBufferS7_S5TimeMs(HandleType AccessHandle, const void* Buffer,
                                                    agl_int32_t BufferLen, agl_int32_t Element,
                                                    agl_uint32_t* Value);
// Up to 9,990,000 ms. What the time base cannot express is rounded (Round not 0) or cut off.
agl_int32_t AGL_Symbolic_SetAccessBufferS7_S5TimeMs(HandleType AccessHandle, void* Buffer,
                                                    agl_int32_t BufferLen, agl_int32_t Element,
                                                    agl_uint32_t Milliseconds, agl_int32_t Round);
// WeekDay is 1 for Sunday to 7; setting with any other number stores the weekday of the date.
agl_int32_t AGL_Symbolic_GetAccessBufferS7_DTLParts(HandleType AccessHandle, const void* Buffer,
                                                    agl_int32_t BufferLen, agl_int32_t Element,
                                                    agl_uint16_t* Year, agl_uint8_t* Month, agl_uint8_t* Day,
                                                    agl_uint8_t* WeekDay, agl_uint8_t* Hour,
                                                    agl_uint8_t* Minute, agl_uint8_t* Second,
                                                    agl_uint32_t* Nanoseconds);
agl_int32_t AGL_Symbolic_SetAccessBufferS7_DTLParts(HandleType AccessHandle, void* Buffer,
                                                    agl_int32_t BufferLen, agl_int32_t Element,
                                                    agl_uint16_t Year, agl_uint8_t Month, agl_uint8_t Day,
                                                    agl_uint8_t WeekDay, agl_uint8_t Hour, agl_uint8_t Minute,
                                                    agl_uint8_t Second, agl_uint32_t Nanoseconds);
agl_int32_t AGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts(HandleType AccessHandle, const void* Buffer,
                                                              agl_int32_t BufferLen, agl_int32_t Element,
                                                              agl_uint16_t* Year, agl_uint8_t* Month,
                                                              agl_uint8_t* Day, agl_uint8_t* WeekDay,
                                                              agl_uint8_t* Hour, agl_uint8_t* Minute,
                                                              agl_uint8_t* Second, agl_uint16_t* Millisecond);
agl_int32_t AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts(HandleType AccessHandle, void* Buffer,
                                                              agl_int32_t BufferLen, agl_int32_t Element,
                                                              agl_uint16_t Year, agl_uint8_t Month,
                                                              agl_uint8_t Day, agl_uint8_t WeekDay,
                                                              agl_uint8_t Hour, agl_uint8_t Minute,
                                                              agl_uint8_t Second, agl_uint16_t Millisecond);

// MaxCharCount: characters that fit at Text, terminator included. CharCount: characters copied, without it.
agl_int32_t AGL_Symbolic_GetAccessBufferString8(HandleType AccessHandle, const void* Buffer,
                                                agl_int32_t BufferLen, agl_int32_t Element, agl_char8_t* Text,
                                                agl_int32_t MaxCharCount, agl_int32_t* CharCount);
agl_int32_t AGL_Symbolic_GetAccessBufferString16(HandleType AccessHandle, const void* Buffer,
                                                 agl_int32_t BufferLen, agl_int32_t Element,
                                                 agl_char16_t* Text, agl_int32_t MaxCharCount,
                                                 agl_int32_t* CharCount);
// CharCount characters, cut at the declared length; a zero is a character like any other.
agl_int32_t AGL_Symbolic_SetAccessBufferString8(HandleType AccessHandle, void* Buffer, agl_int32_t BufferLen,
                                                agl_int32_t Element, const agl_char8_t* Text,
                                                agl_int32_t CharCount);
// CharCount characters, cut at the declared length and at the first zero.
agl_int32_t AGL_Symbolic_SetAccessBufferString16(HandleType AccessHandle, void* Buffer, agl_int32_t BufferLen,
                                                 agl_int32_t Element, const agl_char16_t* Text,
                                                 agl_int32_t CharCount);
}
#pragma GCC visibility pop
