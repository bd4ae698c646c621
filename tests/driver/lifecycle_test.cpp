// SPDX-License-Identifier: MIT
// From the first call of the runtime to the close of a device, without the exchange cycles.
#include <gtest/gtest.h>
#include <time.h>

#include <cstring>
#include <string>

#include "driver/driver.h"
#include "tests/driver/device.h"

namespace {

WORD read_word(int, int) {
  return 0;
}
void write_word(int, int, WORD) {}

std::int64_t raw_microseconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC_RAW, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

FRAME_DATA init_command(Device& device, int index, BYTE station, int* response_length = nullptr) {
  int length = 4711;
  DWORD* handle = device.handle();
  const auto frame = KORVALE_DRV_GetInitCmdEx2(&length, index, station, 99, &handle);
  EXPECT_EQ(handle, device.handle());
  if (response_length != nullptr) *response_length = length;
  return frame;
}

void expect_zero_from(const FRAME_DATA& frame, std::size_t offset) {
  const auto* bytes = reinterpret_cast<const BYTE*>(&frame);
  for (std::size_t i = offset; i < sizeof frame; ++i) ASSERT_EQ(bytes[i], 0) << i;
}

}  // namespace

TEST(Callbacks, AreKept) {
  KORVALE_DRV_LinkSetHMIDataInterface(write_word);
  KORVALE_DRV_LinkGetHMIDataInterface(read_word);
  EXPECT_EQ(gfnSetHMIData, &write_word);
  EXPECT_EQ(gfnGetHMIData, &read_word);
  KORVALE_DRV_LinkSetHMIDataInterface(nullptr);
  KORVALE_DRV_LinkGetHMIDataInterface(nullptr);
  EXPECT_EQ(gfnSetHMIData, nullptr);
  EXPECT_EQ(gfnGetHMIData, nullptr);
}

TEST(Attribute, WritesItsFieldsAndLeavesEveryOtherByte) {
  BYTE expected[84];
  std::memset(expected, kUntouchedByte, sizeof expected);
  const auto word = [&](std::size_t offset, int value) {
    expected[offset] = static_cast<BYTE>(value & 0xFF);
    expected[offset + 1] = static_cast<BYTE>(value >> 8);
  };
  std::memcpy(expected, "Ostravel", 9);
  word(50, 330);
  word(52, 535);
  expected[54] = 0;
  word(56, 200);
  word(58, 0);
  word(60, 0);
  word(68, 0);
  word(70, 1);
  word(72, 1);
  word(74, 287);
  word(76, 0);
  word(78, 165);
  word(80, 0);

  DRIVER_ATTRIBUTE attribute;
  std::memset(&attribute, kUntouchedByte, sizeof attribute);
  KORVALE_DRV_GetAttributeEx(&attribute);
  for (std::size_t i = 0; i < sizeof expected; ++i) EXPECT_EQ(field<BYTE>(attribute, i), expected[i]) << i;
}

TEST(StartDevice, CreatesAnIdleDeviceWithItsTagTable) {
  Device device(ProjectFile().tag("Motor", 5).password(true, "secret"));
  auto& data = device.data();
  ASSERT_NE(device.handle(), nullptr);
  EXPECT_EQ(static_cast<void*>(&data.GsymbolsParser), static_cast<void*>(device.handle()))
      << "a pointer to the device is one to its loader";
  EXPECT_EQ(data.GsymbolsParser.loader_state, SymbolsLoader::Idle);
  EXPECT_EQ(data.GTagTable.m_Counts, 1U);
  EXPECT_STREQ(data.GTagTable.Get(0)->pStringA, "Motor");
  EXPECT_EQ(data.GTagTable.get_device_descriptor().device_password, "secret");
  for (const auto& command : data.GCmdDesc) EXPECT_EQ(command.tag_name, "");
  EXPECT_EQ(data.pGCmdQueue, nullptr);
  EXPECT_EQ(data.GCmdCounts, 0U);
  EXPECT_EQ(data.GTotalStep, 0U);
  EXPECT_EQ(data.GCurrentStep, 0U);
  EXPECT_FALSE(data.device_connect_state);
  EXPECT_EQ(data.DeviceIP, "");
  EXPECT_FALSE(data.read_device_state);
  EXPECT_FALSE(data.write_device_state);
  EXPECT_EQ(data.TagCount, 0);
  EXPECT_EQ(data.TagIndex, 0);
  EXPECT_EQ(data.TagcountMod, 0);
  EXPECT_EQ(data.TagcountDif, 0);
  EXPECT_EQ(data.GOffLineSim, 0);
  for (const DWORD number :
       {data.GCmdIndex, data.GRegisCount, static_cast<DWORD>(data.GCacheBitArray), data.GSessionHandle,
        data.GConnectionID, data.GBitArrayCache, data.GTagConnectionID, data.GTagConnectionID2,
        DWORD{data.GUnitDataSequence}, DWORD{data.ConnectionSerialNo}}) {
    EXPECT_EQ(number, 0U);
  }
  for (const UINT commands : data.GPackSize) EXPECT_EQ(commands, 0U);
  EXPECT_TRUE(data.GMap.empty());
  EXPECT_EQ(data.LOADER_PROJECT, 0U);
  EXPECT_FALSE(data.bIsInitDevice);
}

TEST(StartDevice, HasThirtyOneCommands) {
  Device device(ProjectFile{});
  EXPECT_EQ(std::size(device.data().GCmdDesc), 31U);
  EXPECT_EQ(std::size(device.data().GPackSize), 31U);
}

TEST(StartDevice, KeepsTheSimulationByte) {
  Device simulated(ProjectFile{}, Device::Simulated);
  EXPECT_EQ(simulated.data().GOffLineSim, 1);
  Device other(ProjectFile{}, static_cast<Device::Mode>(200));
  EXPECT_EQ(other.data().GOffLineSim, 200);
}

TEST(StartDevice, ReadsTheTableAtItsPosition) {
  Device device(ProjectFile().tag("Far").position(100));
  EXPECT_STREQ(device.data().GTagTable.Get(0)->pStringA, "Far");
}

TEST(StartDevice, UnreadableTagFileLeavesTheDeviceWithoutTags) {
  TemporaryFolder folder;
  std::string name = (folder.path() / "missing").string();
  DWORD* handle = nullptr;
  KORVALE_DRV_StartDeviceEx(1, &handle, name.data(), 0);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(device_of(handle)->GTagTable.m_Counts, 0U);
  EXPECT_EQ(device_of(handle)->GTagTable.get_index_by_name("Motor"), -1);
  KORVALE_DRV_CloseDevice(1, handle);
}

TEST(StartDevice, EmptiesTheAddresses) {
  auto words = parameter_words(3);
  KORVALE_DRV_InitEx(0, words.data());
  ASSERT_EQ(ip_table.size(), 1U);
  Device device(ProjectFile{});
  EXPECT_TRUE(ip_table.empty());
}

TEST(StartDevice, MakesADeviceOfItsOwnEachTime) {
  Device one(ProjectFile().tag("A"));
  Device other(ProjectFile().tag("B"));
  EXPECT_NE(one.handle(), other.handle());
  EXPECT_STREQ(one.data().GTagTable.Get(0)->pStringA, "A");
  EXPECT_STREQ(other.data().GTagTable.Get(0)->pStringA, "B");
}

TEST(Init, BuildsTheAddressFromTheParameterWords) {
  auto words = parameter_words(3);
  words[4] = 10;
  words[5] = 1;
  words[6] = 0xA8C0;
  KORVALE_DRV_InitEx(1234, words.data());
  EXPECT_EQ(DeviceIP, "192.168.1.10");
  ASSERT_EQ(ip_table.size(), 1U);
  EXPECT_EQ(ip_table.at(3), "192.168.1.10");
}

TEST(Init, WritesTheThirdAndFourthWordWholeAndUnsigned) {
  auto words = parameter_words(3);
  words[4] = 65535;
  words[5] = 32768;
  words[6] = 0xFF00;
  KORVALE_DRV_InitEx(0, words.data());
  EXPECT_EQ(DeviceIP, "0.255.32768.65535");
}

TEST(Init, StationIsTheLowByteOfWordTen) {
  auto words = parameter_words(0);
  words[10] = 0x12FE;
  KORVALE_DRV_InitEx(0, words.data());
  ASSERT_EQ(ip_table.size(), 1U);
  EXPECT_EQ(ip_table.begin()->first, 0xFE);
}

TEST(Init, SecondCallRemovesTheFirstStation) {
  auto words = parameter_words(3);
  KORVALE_DRV_InitEx(0, words.data());
  words = parameter_words(4);
  words[4] = 11;
  KORVALE_DRV_InitEx(0, words.data());
  ASSERT_EQ(ip_table.size(), 1U);
  EXPECT_EQ(ip_table.at(4), "192.168.1.11");
}

TEST(InitCommand, MovesAddressStationAndPasswordIntoTheDevice) {
  Device device(ProjectFile().password(true, "secret"));
  auto& data = device.data();
  auto& loader = device.loader();
  loader.loader_state = SymbolsLoader::Error;
  loader.bDisconnect = true;
  loader.read_data_queue_filter["Motor"] = {1, 2};
  data.read_device_state = true;
  data.write_device_state = true;
  data.bIsInitDevice = true;
  auto words = parameter_words(9);
  KORVALE_DRV_InitEx(0, words.data());

  int response_length = -1;
  const auto frame = init_command(device, 0, 9, &response_length);
  EXPECT_EQ(response_length, 0);
  EXPECT_EQ(frame.nLength, 0);
  expect_zero_from(frame, 0);
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Idle);
  EXPECT_FALSE(loader.bDisconnect);
  EXPECT_TRUE(loader.read_data_queue_filter.empty());
  EXPECT_EQ(loader.station_id, 9);
  EXPECT_EQ(loader.m_password, "secret");
  EXPECT_TRUE(loader.m_enable_parameter);
  EXPECT_FALSE(data.read_device_state);
  EXPECT_FALSE(data.write_device_state);
  EXPECT_FALSE(data.bIsInitDevice);
  EXPECT_EQ(data.DeviceIP, "192.168.1.10");
  EXPECT_EQ(loader.RemoteIP, "") << "the output filter hands it over";
}

TEST(InitCommand, StationWithoutAnAddressGetsAnEmptyOne) {
  Device device(ProjectFile{});
  device.data().DeviceIP = "10.0.0.1";
  auto words = parameter_words(9);
  KORVALE_DRV_InitEx(0, words.data());
  init_command(device, 0, 8);
  EXPECT_EQ(device.data().DeviceIP, "");
  EXPECT_EQ(device.loader().station_id, 8);
}

TEST(InitCommand, AddressIsLostWhenAnotherDeviceStartsInBetween) {
  Device device(ProjectFile{});
  auto words = parameter_words(9);
  KORVALE_DRV_InitEx(0, words.data());
  Device other(ProjectFile{});
  init_command(device, 0, 9);
  EXPECT_EQ(device.data().DeviceIP, "");
}

TEST(InitCommand, OtherIndexesChangeNoDeviceState) {
  Device device(ProjectFile().password(true, "secret"));
  auto& data = device.data();
  device.loader().loader_state = SymbolsLoader::Error;
  device.loader().bDisconnect = true;
  device.loader().station_id = 77;
  device.loader().read_data_queue_filter["Motor"] = {1};
  data.read_device_state = true;
  data.write_device_state = true;
  data.bIsInitDevice = true;
  data.DeviceIP = "old";
  for (int index : {1, -1, 255}) {
    int response_length = -1;
    const auto frame = init_command(device, index, 9, &response_length);
    EXPECT_EQ(response_length, 0) << index;
    EXPECT_EQ(frame.nLength, 0) << index;
    EXPECT_EQ(device.loader().loader_state, SymbolsLoader::Error);
    EXPECT_TRUE(device.loader().bDisconnect);
    EXPECT_EQ(device.loader().station_id, 77);
    EXPECT_EQ(device.loader().m_password, "");
    EXPECT_EQ(device.loader().read_data_queue_filter.size(), 1U);
    EXPECT_TRUE(data.read_device_state);
    EXPECT_TRUE(data.write_device_state);
    EXPECT_TRUE(data.bIsInitDevice);
    EXPECT_EQ(data.DeviceIP, "old");
  }
}

TEST(InitResponse, IsTheConnectState) {
  Device device(ProjectFile{});
  DWORD* handle = device.handle();
  FRAME_DATA frame{};
  EXPECT_EQ(KORVALE_DRV_CheckInitCmdResponseEx2(&frame, 0, &handle), 0);
  device.data().device_connect_state = true;
  EXPECT_EQ(KORVALE_DRV_CheckInitCmdResponseEx2(&frame, 0, &handle), 1);
  EXPECT_EQ(KORVALE_DRV_CheckInitCmdResponseEx2(nullptr, 17, &handle), 1)
      << "frame and index are not looked at";
}

TEST(Timeout, ResetsTheCycleAndTheInitMark) {
  for (BYTE simulate : std::initializer_list<BYTE>{0, 1}) {
    Device device(ProjectFile().tag("Motor"));
    auto& data = device.data();
    data.TagCount = data.TagIndex = data.TagcountMod = data.TagcountDif = 5;
    data.pGCmdQueue = &data.GCmdDesc[2];
    data.GCmdCounts = data.GTotalStep = data.GCurrentStep = 3;
    data.device_connect_state = data.read_device_state = data.write_device_state = data.bIsInitDevice = true;
    data.GCacheBitArray = TRUE;
    data.LOADER_PROJECT = 12;
    data.GCmdDesc[2].tag_name = "Motor";
    data.GMap[stTag{}] = 4;
    data.DeviceIP = "10.0.0.1";
    device.loader().loader_state = SymbolsLoader::Error;
    device.loader().bDisconnect = true;
    device.loader().RemoteIP = "10.0.0.2";

    KORVALE_DRV_Timeout(simulate, device.handle());
    EXPECT_EQ(data.TagCount, 0);
    EXPECT_EQ(data.TagIndex, 0);
    EXPECT_EQ(data.TagcountMod, 0);
    EXPECT_EQ(data.TagcountDif, 0);
    EXPECT_EQ(data.pGCmdQueue, nullptr);
    EXPECT_EQ(data.GCmdCounts, 0U);
    EXPECT_EQ(data.GTotalStep, 0U);
    EXPECT_EQ(data.GCurrentStep, 0U);
    EXPECT_FALSE(data.device_connect_state);
    EXPECT_FALSE(data.read_device_state);
    EXPECT_FALSE(data.write_device_state);
    EXPECT_EQ(data.GCacheBitArray, FALSE);
    EXPECT_EQ(data.LOADER_PROJECT, 0U);
    EXPECT_FALSE(data.bIsInitDevice);

    EXPECT_EQ(data.GCmdDesc[2].tag_name, "Motor");
    EXPECT_EQ(data.GMap.size(), 1U);
    EXPECT_EQ(data.GTagTable.m_Counts, 1U);
    EXPECT_EQ(data.DeviceIP, "10.0.0.1");
    EXPECT_EQ(device.loader().loader_state, SymbolsLoader::Error);
    EXPECT_TRUE(device.loader().bDisconnect);
    EXPECT_EQ(device.loader().RemoteIP, "10.0.0.2");
  }
}

TEST(CloseCommand, IsAnEmptyFrame) {
  for (int index : {0, 1, -1}) {
    int response_length = 4711;
    const auto frame = KORVALE_DRV_GetCloseCmd(&response_length, index);
    expect_zero_from(frame, 0);
    EXPECT_EQ(response_length, 4711) << "not set";
  }
}

TEST(Clock, IsTheRawMonotonicOneInMicroseconds) {
  const auto before = raw_microseconds();
  const auto tick = GetCurSystemUS_Tick();
  const auto after = raw_microseconds();
  EXPECT_LE(before, tick);
  EXPECT_LE(tick, after);
}

TEST(Clock, MillisecondsAreTheSameClockCutTo32Bits) {
  const auto before = raw_microseconds();
  const std::uint32_t tick = GetCurSystemMS_Tick();
  const auto after = raw_microseconds();
  const auto since_before = tick - static_cast<std::uint32_t>(before / 1000);
  EXPECT_LE(since_before, static_cast<std::uint32_t>(after / 1000 - before / 1000));
}

TEST(Globals, UnusedSimulationRecordIsZero) {
  EXPECT_EQ(driver_globle.GOffLineSim, 0);
}
