// SPDX-License-Identifier: MIT
// The records that the HMI runtime and the driver exchange through the KORVALE_DRV_* entry points.
// Runtime and driver are built apart, so these layouts are a wire format: little-endian, 8-byte pointers,
// every field at the offset asserted below. Padding is named neither here nor there; nobody reads it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using BOOL = std::int32_t;  // 0 = false
using USHORT = std::uint16_t;
using UINT = std::uint32_t;
using INT = std::int32_t;
using CHAR = char;

inline constexpr BOOL TRUE = 1;
inline constexpr BOOL FALSE = 0;

// Words that one record carries at most.
inline constexpr int kRecordWords = 2048;

struct MESSAGE_HEADER {
  WORD wVersionID;
  WORD wReserved0;
  WORD wTransID;
  WORD wDevelopID;
  WORD wDriverID;
  DWORD dwVirtualPort;
  union {
    BYTE byPriority;
    BYTE byStatus;
  } Attribute;
  BYTE byType;
  WORD wLength;
  WORD wReserved1;
};
static_assert(sizeof(MESSAGE_HEADER) == 24);
static_assert(offsetof(MESSAGE_HEADER, wVersionID) == 0);
static_assert(offsetof(MESSAGE_HEADER, wReserved0) == 2);
static_assert(offsetof(MESSAGE_HEADER, wTransID) == 4);
static_assert(offsetof(MESSAGE_HEADER, wDevelopID) == 6);
static_assert(offsetof(MESSAGE_HEADER, wDriverID) == 8);
static_assert(offsetof(MESSAGE_HEADER, dwVirtualPort) == 12);
static_assert(offsetof(MESSAGE_HEADER, Attribute) == 16);
static_assert(offsetof(MESSAGE_HEADER, byType) == 17);
static_assert(offsetof(MESSAGE_HEADER, wLength) == 18);
static_assert(offsetof(MESSAGE_HEADER, wReserved1) == 20);

// Values of CMD_TYPE::byFunCode that ask for a write; every other value is a read.
inline constexpr BYTE kFunctionWordWrite = 1;
inline constexpr BYTE kFunctionBitWrite = 2;

struct CMD_TYPE {
  BYTE byFunCode;
  BYTE byHMIStationNo;
  BYTE byPLCStationNo;
  BYTE byDeviceType;
  BYTE byIndex;
  DWORD dwDeviceAddress;
};
static_assert(sizeof(CMD_TYPE) == 12);
static_assert(offsetof(CMD_TYPE, byFunCode) == 0);
static_assert(offsetof(CMD_TYPE, byHMIStationNo) == 1);
static_assert(offsetof(CMD_TYPE, byPLCStationNo) == 2);
static_assert(offsetof(CMD_TYPE, byDeviceType) == 3);
static_assert(offsetof(CMD_TYPE, byIndex) == 4);
static_assert(offsetof(CMD_TYPE, dwDeviceAddress) == 8);

// wCheckSum is part of the layout only, here and below: the driver neither computes nor checks it.
struct READ_COMMAND {
  WORD wDataNo;  // data units asked for
  WORD wCheckSum;
};
static_assert(sizeof(READ_COMMAND) == 4);
static_assert(offsetof(READ_COMMAND, wDataNo) == 0);
static_assert(offsetof(READ_COMMAND, wCheckSum) == 2);

struct WORD_WRITE_COMMAND {
  WORD wDataNo;              // words that follow
  WORD wData[kRecordWords];  // the words to write
  WORD wCheckSum;
};
static_assert(sizeof(WORD_WRITE_COMMAND) == 4100);
static_assert(offsetof(WORD_WRITE_COMMAND, wDataNo) == 0);
static_assert(offsetof(WORD_WRITE_COMMAND, wData) == 2);
static_assert(offsetof(WORD_WRITE_COMMAND, wCheckSum) == 4098);

// A request that carries response data has the layout of a word write.
using RESPONSE_COMMAND = WORD_WRITE_COMMAND;

struct BIT_WRITE_COMMAND {
  BYTE byBitOffset;
  BYTE byData;  // the bit's new value, 0 or 1; what the filters make of another value is theirs
  WORD wCheckSum;
};
static_assert(sizeof(BIT_WRITE_COMMAND) == 4);
static_assert(offsetof(BIT_WRITE_COMMAND, byBitOffset) == 0);
static_assert(offsetof(BIT_WRITE_COMMAND, byData) == 1);
static_assert(offsetof(BIT_WRITE_COMMAND, wCheckSum) == 2);

struct DATA_TRANS_COMMAND {
  WORD wDataNo;
  BYTE bySourceBitOffset;
  WORD wDriverID;
  DWORD dwCommChannel;
  BYTE byStationNo;
  BYTE byDeviceType;
  BYTE byINDEX;
  DWORD dwDeviceAddress;
  BYTE byDestiBitOffset;
  WORD wCheckSum;
};
static_assert(sizeof(DATA_TRANS_COMMAND) == 24);
static_assert(offsetof(DATA_TRANS_COMMAND, wDataNo) == 0);
static_assert(offsetof(DATA_TRANS_COMMAND, bySourceBitOffset) == 2);
static_assert(offsetof(DATA_TRANS_COMMAND, wDriverID) == 4);
static_assert(offsetof(DATA_TRANS_COMMAND, dwCommChannel) == 8);
static_assert(offsetof(DATA_TRANS_COMMAND, byStationNo) == 12);
static_assert(offsetof(DATA_TRANS_COMMAND, byDeviceType) == 13);
static_assert(offsetof(DATA_TRANS_COMMAND, byINDEX) == 14);
static_assert(offsetof(DATA_TRANS_COMMAND, dwDeviceAddress) == 16);
static_assert(offsetof(DATA_TRANS_COMMAND, byDestiBitOffset) == 20);
static_assert(offsetof(DATA_TRANS_COMMAND, wCheckSum) == 22);

// The tag data block: the 19 bytes of GUI_REQUEST::byDriverData, also the first argument of
// KORVALE_DRV_GetDataType. Numbers are little-endian and unaligned; bytes not named are reserved.
//
//    0        4      5     6      7  8   9      10       11 12   13       15      17 18
//   +--------+------+-----+------+-----+------+--------+-------+--------+-------+-----+
//   | row    | type |     | alt. |     | bit  | index  |       | index  | count |     |
//   | DWORD  |      |     | type |     | sel. | off    |       | WORD   | WORD  |     |
//   +--------+------+-----+------+-----+------+--------+-------+--------+-------+-----+
inline constexpr std::size_t kTagDataBlockSize = 19;
inline constexpr std::size_t kTagRowOffset = 0;            // DWORD: row of the tag in the tag table
inline constexpr std::size_t kTagDataTypeOffset = 4;       // BYTE: DATA_TYPE
inline constexpr std::size_t kTagAlternateTypeOffset = 6;  // BYTE: replaces the data type when not 0
inline constexpr std::size_t kTagBitSelectorOffset = 9;    // BYTE: 0 none, n bit n - 1, 255 see below
inline constexpr std::size_t kTagIndexOffOffset = 10;      // BYTE: not 0: the array index counts as 0
inline constexpr std::size_t kTagArrayIndexOffset = 13;    // WORD: array index, kNoArrayIndex for none
inline constexpr std::size_t kTagElementCountOffset = 15;  // WORD: elements addressed

// The bit number is the low byte of the array index.
inline constexpr BYTE kBitSelectorFromArrayIndex = 255;
inline constexpr WORD kNoArrayIndex = 0xFFFF;

struct GUI_REQUEST {
  INT nSourceSocket;
  INT nResponseLength;  // written back by the output filter
  BYTE byWaitResponse;  // written back by the output filter: 1 when the runtime is to wait for a response
  MESSAGE_HEADER stHeader;
  CMD_TYPE stCmdType;
  WORD wSequenceID;
  alignas(4) union {
    READ_COMMAND stRead;
    WORD_WRITE_COMMAND stWORDWrite;
    BIT_WRITE_COMMAND stBitWrite;
    DATA_TRANS_COMMAND stDataTrans;
    RESPONSE_COMMAND stResponse;
  } stCommand;
  BYTE byReserved[18];
  BYTE byUseTag;  // not read: the tag data block always counts as valid
  BYTE byDriverData[kTagDataBlockSize];
  DWORD* pdwMemAddr;  // the device's state handle, as KORVALE_DRV_StartDeviceEx stored it
};
static_assert(sizeof(GUI_REQUEST) == 4200);
static_assert(offsetof(GUI_REQUEST, nSourceSocket) == 0);
static_assert(offsetof(GUI_REQUEST, nResponseLength) == 4);
static_assert(offsetof(GUI_REQUEST, byWaitResponse) == 8);
static_assert(offsetof(GUI_REQUEST, stHeader) == 12);
static_assert(offsetof(GUI_REQUEST, stCmdType) == 36);
static_assert(offsetof(GUI_REQUEST, wSequenceID) == 48);
static_assert(offsetof(GUI_REQUEST, stCommand) == 52);
static_assert(offsetof(GUI_REQUEST, byReserved) == 4152);
static_assert(offsetof(GUI_REQUEST, byUseTag) == 4170);
static_assert(offsetof(GUI_REQUEST, byDriverData) == 4171);
static_assert(offsetof(GUI_REQUEST, pdwMemAddr) == 4192);

// A frame that a filter, the init or the close command returns by value.
struct FRAME_DATA {
  WORD wSequenceID;
  BYTE byErrCode;
  BYTE byCurSysStatus;
  INT nLength;  // valid bytes in byData; 0: there is no frame to send
  BYTE byData[2048];
};
static_assert(sizeof(FRAME_DATA) == 2056);
static_assert(offsetof(FRAME_DATA, wSequenceID) == 0);
static_assert(offsetof(FRAME_DATA, byErrCode) == 2);
static_assert(offsetof(FRAME_DATA, byCurSysStatus) == 3);
static_assert(offsetof(FRAME_DATA, nLength) == 4);
static_assert(offsetof(FRAME_DATA, byData) == 8);

// What the input filters give back for one request.
struct INPUT_DATA {
  BYTE byErrCode;
  BYTE byCurSysStatus;
  INT nLength;  // valid words in wData
  WORD wData[kRecordWords];
};
static_assert(sizeof(INPUT_DATA) == 4104);
static_assert(offsetof(INPUT_DATA, byErrCode) == 0);
static_assert(offsetof(INPUT_DATA, byCurSysStatus) == 1);
static_assert(offsetof(INPUT_DATA, nLength) == 4);
static_assert(offsetof(INPUT_DATA, wData) == 8);

struct DEVICE_INFO {
  BOOL bRead;         // true when the frame being answered was a read
  INT nReadWORDSize;  // words that the read asked for
  WORD wCurDeviceType;
  BYTE byHMIStationNo;
  BYTE byPLCStationNo;
  BYTE byCurSysStatus;
  BYTE byExceptStep;
  DWORD* pdwMemAddr;  // the device's state handle, as in GUI_REQUEST
};
static_assert(sizeof(DEVICE_INFO) == 24);
static_assert(offsetof(DEVICE_INFO, bRead) == 0);
static_assert(offsetof(DEVICE_INFO, nReadWORDSize) == 4);
static_assert(offsetof(DEVICE_INFO, wCurDeviceType) == 8);
static_assert(offsetof(DEVICE_INFO, byHMIStationNo) == 10);
static_assert(offsetof(DEVICE_INFO, byPLCStationNo) == 11);
static_assert(offsetof(DEVICE_INFO, byCurSysStatus) == 12);
static_assert(offsetof(DEVICE_INFO, byExceptStep) == 13);
static_assert(offsetof(DEVICE_INFO, pdwMemAddr) == 16);

struct DRIVER_ATTRIBUTE {
  char cName[50];
  WORD wVersion;
  WORD wDriverID;
  BYTE byDataFormat;
  WORD wMinTimeout;  // milliseconds
  WORD wMinSendCmdDelay;
  WORD wMinSendAckDelay;
  INT nInitBaudRate;
  WORD wBaudRateCmdCount;
  WORD wInitCmdCount;   // calls of KORVALE_DRV_GetInitCmdEx2
  WORD wCloseCmdCount;  // calls of KORVALE_DRV_GetCloseCmd
  WORD wReserved[3];
  WORD wIsServer;
};
static_assert(sizeof(DRIVER_ATTRIBUTE) == 84);
static_assert(offsetof(DRIVER_ATTRIBUTE, cName) == 0);
static_assert(offsetof(DRIVER_ATTRIBUTE, wVersion) == 50);
static_assert(offsetof(DRIVER_ATTRIBUTE, wDriverID) == 52);
static_assert(offsetof(DRIVER_ATTRIBUTE, byDataFormat) == 54);
static_assert(offsetof(DRIVER_ATTRIBUTE, wMinTimeout) == 56);
static_assert(offsetof(DRIVER_ATTRIBUTE, wMinSendCmdDelay) == 58);
static_assert(offsetof(DRIVER_ATTRIBUTE, wMinSendAckDelay) == 60);
static_assert(offsetof(DRIVER_ATTRIBUTE, nInitBaudRate) == 64);
static_assert(offsetof(DRIVER_ATTRIBUTE, wBaudRateCmdCount) == 68);
static_assert(offsetof(DRIVER_ATTRIBUTE, wInitCmdCount) == 70);
static_assert(offsetof(DRIVER_ATTRIBUTE, wCloseCmdCount) == 72);
static_assert(offsetof(DRIVER_ATTRIBUTE, wReserved) == 74);
static_assert(offsetof(DRIVER_ATTRIBUTE, wIsServer) == 80);

// Declared with the records; no entry point exchanges it.
struct stServiceDesc {
  USHORT DataSize;
  USHORT ResponseSize;
  BYTE* pData;
};
static_assert(sizeof(stServiceDesc) == 16);
static_assert(offsetof(stServiceDesc, DataSize) == 0);
static_assert(offsetof(stServiceDesc, ResponseSize) == 2);
static_assert(offsetof(stServiceDesc, pData) == 8);

// Data type codes of the tag data block, fixed by the tag file and the runtime.
enum DATA_TYPE : BYTE {
  DT_BYTE = 2,
  DT_WORD = 3,
  DT_DWORD = 4,
  DT_UDINT = 6,
  DT_LWORD = 7,
  DT_LINT = 8,
  DT_ULINT = 9,
  DT_LREAL = 10,
  DT_UINT = 11,
  DT_USINT = 12,
  DT_LTIME = 13,
  DT_BOOL = 193,
  DT_SINT = 194,
  DT_INT = 195,
  DT_DINT = 196,
  DT_REAL = 202,
  DT_BITARY = 211,
  DT_STRING = 212,
};

// How a string lies in host words; the names are spelt so.
enum StringMode {
  truct_string_as_word_aligned = 0,
  truct_string_as_char_paired = 1,
};

// The runtime's own data memory: read one word, write one word. The driver keeps both and calls neither.
using KORVALE_DRV_GET_HMIDATA = WORD (*)(int, int);
using KORVALE_DRV_SET_HMIDATA = void (*)(int, int, WORD);
