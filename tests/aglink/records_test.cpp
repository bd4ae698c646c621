// SPDX-License-Identifier: MIT
// The records' bytes, written at an odd address and read back through the structure.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "aglink/AGLink40.h"

namespace {

// Bytes 0, 1, 2, ... at an odd address, as the record that they make.
template <typename Record>
Record fromCountingBytes() {
  std::array<unsigned char, sizeof(Record) + 1> bytes{};
  for (std::size_t i = 0; i < sizeof(Record); ++i) bytes.at(i + 1) = static_cast<unsigned char>(i);
  Record record;
  std::memcpy(&record, &bytes[1], sizeof(Record));
  return record;
}

}  // namespace

TEST(SymbolicJob, FieldsLieWhereTheLibraryPutsThem) {
  const auto job = fromCountingBytes<SymbolicRW_t>();
  EXPECT_EQ(sizeof(job), 32U);
  EXPECT_EQ(job.AccessHandle, 0x0706050403020100);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(job.Buffer), 0x0f0e0d0c0b0a0908U);
  EXPECT_EQ(job.BufferLen, 0x1716151413121110);
  EXPECT_EQ(job.Result, 0x1b1a1918);
  EXPECT_EQ(job.SError, 0x1f1e1d1c);
}

TEST(JobResult, FieldsLieWhereTheLibraryPutsThem) {
  const auto result = fromCountingBytes<tagRESULT40>();
  EXPECT_EQ(sizeof(result), 48U);
  EXPECT_EQ(result.State, 0x0706050403020100);
  EXPECT_EQ(result.ErrCode, 0x0f0e0d0c0b0a0908);
  EXPECT_EQ(result.SysTime.wYear, 0x1110);
  EXPECT_EQ(result.SysTime.wMonth, 0x1312);
  EXPECT_EQ(result.SysTime.wDayOfWeek, 0x1514);
  EXPECT_EQ(result.SysTime.wDay, 0x1716);
  EXPECT_EQ(result.SysTime.wHour, 0x1918);
  EXPECT_EQ(result.SysTime.wMinute, 0x1b1a);
  EXPECT_EQ(result.SysTime.wSecond, 0x1d1c);
  EXPECT_EQ(result.SysTime.wMilliseconds, 0x1f1e);
  EXPECT_EQ(result.SError, 0x2726252423222120);
  EXPECT_EQ(result.UserVal, 0x2f2e2d2c2b2a2928);
}

TEST(AddressJob, FieldsLieWhereTheLibraryPutsThem) {
  const auto job = fromCountingBytes<tagDATA_RW40>();
  EXPECT_EQ(sizeof(job), 24U);
  EXPECT_EQ(job.OpArea, 0x0100);
  EXPECT_EQ(job.OpType, 0x0302);
  EXPECT_EQ(job.OpAnz, 0x0504);
  EXPECT_EQ(job.DBNr, 0x0706);
  EXPECT_EQ(job.Offset, 0x0908);
  EXPECT_EQ(job.BitNr, 0x0b0a);
  EXPECT_EQ(job.Result, 0x0f0e0d0c);
  EXPECT_EQ(sizeof(job.Data), 8U);
  EXPECT_EQ(job.Data.Bytes[0], 0x10);
}

TEST(ConnectionParameters, FieldsLieWhereTheLibraryPutsThem) {
  const auto connection = fromCountingBytes<tagS7_TCPIP_TIA_1>();
  EXPECT_EQ(sizeof(connection), 128U);
  EXPECT_EQ(connection.lTimeOut, 0x03020100);
  EXPECT_EQ(connection.wDummy, 0x0504);
  EXPECT_EQ(connection.wPlcNr, 0x0706);
  EXPECT_EQ(connection.bPLCClassEx, 8);
  EXPECT_EQ(connection.bReserveL5, 9);
  EXPECT_EQ(connection.wReserveL5, 0x0b0a);
  EXPECT_EQ(connection.lReserveL5, 0x0f0e0d0c);
  EXPECT_EQ(connection.bConnTypeEx, 16);
  EXPECT_EQ(connection.bReserveL4[0], 17);
  EXPECT_EQ(connection.bReserveL4[2], 19);
  EXPECT_EQ(connection.lReserveL4[0], 0x17161514);
  EXPECT_EQ(connection.lReserveL4[2], 0x1f1e1d1c);
  EXPECT_EQ(connection.Address[0], 32);
  EXPECT_EQ(connection.Address[63], 95);
  EXPECT_EQ(connection.Flags, 0x63626160);
  EXPECT_EQ(connection.wPortNr, 0x6564);
  EXPECT_EQ(connection.wOwnPortNr, 0x6766);
  EXPECT_EQ(connection.dwOwnAddress, 0x6b6a6968U);
  EXPECT_EQ(connection.GlobalFlags, 0x6f6e6d6cU);
  EXPECT_EQ(connection.lReserve[0], 0x73727170);
  EXPECT_EQ(connection.lReserve[3], 0x7f7e7d7c);
}

TEST(ConnectionParameters, DeviceHasFourConnectionsInARow) {
  const auto device = fromCountingBytes<tagS7_TCPIP_TIA>();
  EXPECT_EQ(sizeof(device), 512U);
  EXPECT_EQ(device.Conn[1].lTimeOut, static_cast<agl_long32_t>(0x83828180));
  EXPECT_EQ(device.Conn[3].lReserve[3], static_cast<agl_long32_t>(0xfffefdfc));
}

TEST(ConnectionParameters, BothSpellingsAreTheSameType) {
  EXPECT_TRUE((std::is_same_v<S7_TCPIP_TIA_1, tagS7_TCPIP_TIA_1>));
  EXPECT_TRUE((std::is_same_v<S7_TCPIP_TIA, tagS7_TCPIP_TIA>));
}

TEST(ScalarTypes, HaveTheLibrarysWidthsAndSigns) {
  EXPECT_TRUE((std::is_same_v<agl_int32_t, std::int32_t>));
  EXPECT_TRUE((std::is_same_v<agl_long32_t, std::int32_t>));
  EXPECT_TRUE((std::is_same_v<agl_bool_t, std::int32_t>));
  EXPECT_TRUE((std::is_same_v<agl_long_t, std::int64_t>));
  EXPECT_TRUE((std::is_same_v<agl_ptrdiff_t, std::int64_t>));
  EXPECT_TRUE((std::is_same_v<HandleType, agl_ptrdiff_t>));
  EXPECT_TRUE((std::is_same_v<agl_uint8_t, std::uint8_t>));
  EXPECT_TRUE((std::is_same_v<agl_uint16_t, std::uint16_t>));
  EXPECT_TRUE((std::is_same_v<agl_uint32_t, std::uint32_t>));
  EXPECT_TRUE((std::is_same_v<agl_ulong32_t, std::uint32_t>));
  EXPECT_EQ(sizeof(agl_char8_t), 1U);
  EXPECT_TRUE((std::is_same_v<agl_char16_t, std::uint16_t>));
  EXPECT_TRUE((std::is_same_v<agl_float32_t, float>));
}

TEST(ResultCodes, AreSuccessZeroAndNotLoadedMinus1048554) {
  EXPECT_EQ(AGL40_SUCCESS, 0);
  EXPECT_EQ(AGL40_LIB_NOT_LOADED, -1048554);
  EXPECT_EQ(static_cast<std::uint32_t>(AGL40_LIB_NOT_LOADED), 0xFFF00016U);
}
