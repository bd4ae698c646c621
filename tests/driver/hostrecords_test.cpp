// SPDX-License-Identifier: MIT
// The records as bytes: each is filled with a count of its own bytes and read back field by field at literal
// offsets.
#include "driver/hostrecords.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <type_traits>

#include "driver/driver.h"
#include "tests/driver/requestbuilder.h"

namespace {

// A record whose byte at offset n holds n modulo 251, a number that no power-of-two mistake preserves.
template <class Record>
Record counted() {
  std::array<BYTE, sizeof(Record)> bytes;
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<BYTE>(i % 251);
  Record record;
  std::memcpy(&record, bytes.data(), bytes.size());
  return record;
}

// The little-endian number of so many bytes that counted() put at an offset.
std::uint64_t counted_at(std::size_t offset, int width) {
  std::uint64_t value = 0;
  for (int i = 0; i < width; ++i)
    value |= static_cast<std::uint64_t>((offset + static_cast<std::size_t>(i)) % 251) << (8 * i);
  return value;
}

template <class T>
std::uint64_t number_of(const T& value) {
  std::uint64_t number = 0;
  std::memcpy(&number, &value, sizeof value);
  return number;
}

#define EXPECT_AT(record, member, offset, width)                                  \
  EXPECT_EQ(sizeof((record).member), static_cast<std::size_t>(width)) << #member; \
  EXPECT_EQ(number_of((record).member), counted_at(offset, width)) << #member

}  // namespace

TEST(HostRecords, SizesAreThoseOfTheRuntime) {
  EXPECT_EQ(sizeof(MESSAGE_HEADER), 24U);
  EXPECT_EQ(sizeof(CMD_TYPE), 12U);
  EXPECT_EQ(sizeof(READ_COMMAND), 4U);
  EXPECT_EQ(sizeof(WORD_WRITE_COMMAND), 4100U);
  EXPECT_EQ(sizeof(RESPONSE_COMMAND), 4100U);
  EXPECT_EQ(sizeof(BIT_WRITE_COMMAND), 4U);
  EXPECT_EQ(sizeof(DATA_TRANS_COMMAND), 24U);
  EXPECT_EQ(sizeof(GUI_REQUEST), 4200U);
  EXPECT_EQ(sizeof(FRAME_DATA), 2056U);
  EXPECT_EQ(sizeof(INPUT_DATA), 4104U);
  EXPECT_EQ(sizeof(DEVICE_INFO), 24U);
  EXPECT_EQ(sizeof(DRIVER_ATTRIBUTE), 84U);
  EXPECT_EQ(sizeof(stServiceDesc), 16U);
  EXPECT_EQ(sizeof(BOOL), 4U);
}

TEST(HostRecords, MessageHeaderFieldsLieAtTheirOffsets) {
  const auto record = counted<MESSAGE_HEADER>();
  EXPECT_AT(record, wVersionID, 0, 2);
  EXPECT_AT(record, wReserved0, 2, 2);
  EXPECT_AT(record, wTransID, 4, 2);
  EXPECT_AT(record, wDevelopID, 6, 2);
  EXPECT_AT(record, wDriverID, 8, 2);
  EXPECT_AT(record, dwVirtualPort, 12, 4);
  EXPECT_AT(record, Attribute.byPriority, 16, 1);
  EXPECT_AT(record, Attribute.byStatus, 16, 1);
  EXPECT_AT(record, byType, 17, 1);
  EXPECT_AT(record, wLength, 18, 2);
  EXPECT_AT(record, wReserved1, 20, 2);
}

TEST(HostRecords, CommandTypeFieldsLieAtTheirOffsets) {
  const auto record = counted<CMD_TYPE>();
  EXPECT_AT(record, byFunCode, 0, 1);
  EXPECT_AT(record, byHMIStationNo, 1, 1);
  EXPECT_AT(record, byPLCStationNo, 2, 1);
  EXPECT_AT(record, byDeviceType, 3, 1);
  EXPECT_AT(record, byIndex, 4, 1);
  EXPECT_AT(record, dwDeviceAddress, 8, 4);
}

TEST(HostRecords, CommandBodyFieldsLieAtTheirOffsets) {
  const auto read = counted<READ_COMMAND>();
  EXPECT_AT(read, wDataNo, 0, 2);
  EXPECT_AT(read, wCheckSum, 2, 2);

  const auto write = counted<WORD_WRITE_COMMAND>();
  EXPECT_AT(write, wDataNo, 0, 2);
  EXPECT_AT(write, wData[0], 2, 2);
  EXPECT_AT(write, wData[2047], 4096, 2);
  EXPECT_AT(write, wCheckSum, 4098, 2);
  EXPECT_EQ(sizeof write.wData, 2048U * 2);

  const auto bit = counted<BIT_WRITE_COMMAND>();
  EXPECT_AT(bit, byBitOffset, 0, 1);
  EXPECT_AT(bit, byData, 1, 1);
  EXPECT_AT(bit, wCheckSum, 2, 2);

  const auto transfer = counted<DATA_TRANS_COMMAND>();
  EXPECT_AT(transfer, wDataNo, 0, 2);
  EXPECT_AT(transfer, bySourceBitOffset, 2, 1);
  EXPECT_AT(transfer, wDriverID, 4, 2);
  EXPECT_AT(transfer, dwCommChannel, 8, 4);
  EXPECT_AT(transfer, byStationNo, 12, 1);
  EXPECT_AT(transfer, byDeviceType, 13, 1);
  EXPECT_AT(transfer, byINDEX, 14, 1);
  EXPECT_AT(transfer, dwDeviceAddress, 16, 4);
  EXPECT_AT(transfer, byDestiBitOffset, 20, 1);
  EXPECT_AT(transfer, wCheckSum, 22, 2);
}

TEST(HostRecords, RequestFieldsLieAtTheirOffsets) {
  const auto record = counted<GUI_REQUEST>();
  EXPECT_AT(record, nSourceSocket, 0, 4);
  EXPECT_AT(record, nResponseLength, 4, 4);
  EXPECT_AT(record, byWaitResponse, 8, 1);
  EXPECT_AT(record, stHeader.wVersionID, 12, 2);
  EXPECT_AT(record, stHeader.dwVirtualPort, 24, 4);
  EXPECT_AT(record, stHeader.wReserved1, 32, 2);
  EXPECT_AT(record, stCmdType.byFunCode, 36, 1);
  EXPECT_AT(record, stCmdType.dwDeviceAddress, 44, 4);
  EXPECT_AT(record, wSequenceID, 48, 2);
  EXPECT_AT(record, stCommand.stRead.wDataNo, 52, 2);
  EXPECT_AT(record, stCommand.stWORDWrite.wDataNo, 52, 2);
  EXPECT_AT(record, stCommand.stWORDWrite.wData[0], 54, 2);
  EXPECT_AT(record, stCommand.stWORDWrite.wCheckSum, 4150, 2);
  EXPECT_AT(record, stCommand.stBitWrite.byBitOffset, 52, 1);
  EXPECT_AT(record, stCommand.stBitWrite.byData, 53, 1);
  EXPECT_AT(record, stCommand.stDataTrans.wCheckSum, 74, 2);
  EXPECT_AT(record, stCommand.stResponse.wData[0], 54, 2);
  EXPECT_AT(record, byReserved[0], 4152, 1);
  EXPECT_AT(record, byReserved[17], 4169, 1);
  EXPECT_AT(record, byUseTag, 4170, 1);
  EXPECT_AT(record, byDriverData[0], 4171, 1);
  EXPECT_AT(record, byDriverData[18], 4189, 1);
  EXPECT_EQ(sizeof record.byReserved, 18U);
  EXPECT_EQ(sizeof record.byDriverData, 19U);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(record.pdwMemAddr), counted_at(4192, 8));
}

TEST(HostRecords, FrameFieldsLieAtTheirOffsets) {
  const auto record = counted<FRAME_DATA>();
  EXPECT_AT(record, wSequenceID, 0, 2);
  EXPECT_AT(record, byErrCode, 2, 1);
  EXPECT_AT(record, byCurSysStatus, 3, 1);
  EXPECT_AT(record, nLength, 4, 4);
  EXPECT_AT(record, byData[0], 8, 1);
  EXPECT_AT(record, byData[2047], 2055, 1);
}

TEST(HostRecords, InputFieldsLieAtTheirOffsets) {
  const auto record = counted<INPUT_DATA>();
  EXPECT_AT(record, byErrCode, 0, 1);
  EXPECT_AT(record, byCurSysStatus, 1, 1);
  EXPECT_AT(record, nLength, 4, 4);
  EXPECT_AT(record, wData[0], 8, 2);
  EXPECT_AT(record, wData[2047], 4102, 2);
}

TEST(HostRecords, DeviceInfoFieldsLieAtTheirOffsets) {
  const auto record = counted<DEVICE_INFO>();
  EXPECT_AT(record, bRead, 0, 4);
  EXPECT_AT(record, nReadWORDSize, 4, 4);
  EXPECT_AT(record, wCurDeviceType, 8, 2);
  EXPECT_AT(record, byHMIStationNo, 10, 1);
  EXPECT_AT(record, byPLCStationNo, 11, 1);
  EXPECT_AT(record, byCurSysStatus, 12, 1);
  EXPECT_AT(record, byExceptStep, 13, 1);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(record.pdwMemAddr), counted_at(16, 8));
}

TEST(HostRecords, AttributeFieldsLieAtTheirOffsets) {
  const auto record = counted<DRIVER_ATTRIBUTE>();
  EXPECT_EQ(sizeof record.cName, 50U);
  EXPECT_EQ(record.cName[0], 0);
  EXPECT_EQ(record.cName[49], 49);
  EXPECT_AT(record, wVersion, 50, 2);
  EXPECT_AT(record, wDriverID, 52, 2);
  EXPECT_AT(record, byDataFormat, 54, 1);
  EXPECT_AT(record, wMinTimeout, 56, 2);
  EXPECT_AT(record, wMinSendCmdDelay, 58, 2);
  EXPECT_AT(record, wMinSendAckDelay, 60, 2);
  EXPECT_AT(record, nInitBaudRate, 64, 4);
  EXPECT_AT(record, wBaudRateCmdCount, 68, 2);
  EXPECT_AT(record, wInitCmdCount, 70, 2);
  EXPECT_AT(record, wCloseCmdCount, 72, 2);
  EXPECT_AT(record, wReserved[0], 74, 2);
  EXPECT_AT(record, wReserved[2], 78, 2);
  EXPECT_AT(record, wIsServer, 80, 2);
}

TEST(HostRecords, ServiceDescriptionFieldsLieAtTheirOffsets) {
  const auto record = counted<stServiceDesc>();
  EXPECT_AT(record, DataSize, 0, 2);
  EXPECT_AT(record, ResponseSize, 2, 2);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(record.pData), counted_at(8, 8));
}

TEST(HostRecords, DataTypeCodesAreThoseOfTheRuntime) {
  EXPECT_EQ(DT_BYTE, 2);
  EXPECT_EQ(DT_WORD, 3);
  EXPECT_EQ(DT_DWORD, 4);
  EXPECT_EQ(DT_UDINT, 6);
  EXPECT_EQ(DT_LWORD, 7);
  EXPECT_EQ(DT_LINT, 8);
  EXPECT_EQ(DT_ULINT, 9);
  EXPECT_EQ(DT_LREAL, 10);
  EXPECT_EQ(DT_UINT, 11);
  EXPECT_EQ(DT_USINT, 12);
  EXPECT_EQ(DT_LTIME, 13);
  EXPECT_EQ(DT_BOOL, 193);
  EXPECT_EQ(DT_SINT, 194);
  EXPECT_EQ(DT_INT, 195);
  EXPECT_EQ(DT_DINT, 196);
  EXPECT_EQ(DT_REAL, 202);
  EXPECT_EQ(DT_BITARY, 211);
  EXPECT_EQ(DT_STRING, 212);
}

TEST(HostRecords, StringModesHaveTheirNumbers) {
  EXPECT_EQ(truct_string_as_word_aligned, 0);
  EXPECT_EQ(truct_string_as_char_paired, 1);
}

TEST(HostRecords, CallbacksHaveTheRuntimesSignatures) {
  static_assert(std::is_same_v<KORVALE_DRV_GET_HMIDATA, WORD (*)(int, int)>);
  static_assert(std::is_same_v<KORVALE_DRV_SET_HMIDATA, void (*)(int, int, WORD)>);
}
