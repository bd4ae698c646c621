// SPDX-License-Identifier: MIT
// States and parameters of devices.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/simulator/standin_world.h"

namespace ostravel::standin {
namespace {

TEST(Device, TakesItsStatesInOrder) {
  constexpr agl_int32_t kDevice = 30;
  EXPECT_EQ(AGL_DialUp(kDevice, 1, 0), code(Error::DeviceClosed));
  EXPECT_EQ(AGL_InitAdapter(kDevice, 1, 0), code(Error::DeviceClosed));
  EXPECT_EQ(AGL_HangUp(kDevice, 1, 0), code(Error::NotDialledUp));
  EXPECT_EQ(AGL_ExitAdapter(kDevice, 1, 0), code(Error::NoAdapter));
  EXPECT_EQ(AGL_CloseDevice(kDevice), code(Error::DeviceClosed));
  EXPECT_EQ(AGL_OpenDevice(kDevice), 0);
  EXPECT_EQ(AGL_OpenDevice(kDevice), code(Error::DeviceOpen));
  EXPECT_EQ(AGL_InitAdapter(kDevice, 1, 0), code(Error::NotDialledUp));
  EXPECT_EQ(AGL_DialUp(kDevice, 1, 0), 0);
  EXPECT_EQ(AGL_InitAdapter(kDevice, 1, 0), 0);
  EXPECT_EQ(AGL_ExitAdapter(kDevice, 1, 0), 0);
  EXPECT_EQ(AGL_ExitAdapter(kDevice, 1, 0), code(Error::NoAdapter));
  EXPECT_EQ(AGL_HangUp(kDevice, 1, 0), 0);
  EXPECT_EQ(AGL_HangUp(kDevice, 1, 0), code(Error::NotDialledUp));
  EXPECT_EQ(AGL_CloseDevice(kDevice), 0);
}

TEST(Device, NumbersGoFromZeroTo255) {
  EXPECT_EQ(AGL_OpenDevice(-1), code(Error::InvalidDevice));
  EXPECT_EQ(AGL_OpenDevice(256), code(Error::InvalidDevice));
  EXPECT_EQ(AGL_OpenDevice(0), 0);
  EXPECT_EQ(AGL_CloseDevice(0), 0);
  EXPECT_EQ(AGL_OpenDevice(255), 0);
  EXPECT_EQ(AGL_CloseDevice(255), 0);
  EXPECT_EQ(AGL_GetMaxDevices(), 256);
}

TEST(Device, GivesBackTheParametersOfAType) {
  constexpr agl_int32_t kDevice = 31;
  auto given = parameters("10.1.2.3", 102);
  Data back(512, 0xEE);
  EXPECT_EQ(AGL_GetParas(kDevice, 1, back.data(), 512), 0);
  EXPECT_EQ(back, Data(512, 0));
  EXPECT_EQ(AGL_SetParas(kDevice, 21, given.data(), 512), 0);
  EXPECT_EQ(AGL_GetParas(kDevice, 21, back.data(), 512), 0);
  EXPECT_EQ(back, given);
  EXPECT_EQ(AGL_GetParas(kDevice, 1, back.data(), 512), 0);  // another type's are another thing
  EXPECT_EQ(back, Data(512, 0));
}

TEST(Device, RefusesOtherTypesAndSizes) {
  Data bytes(513);
  EXPECT_EQ(AGL_SetDevType(1, 21), 0);
  EXPECT_EQ(AGL_SetDevType(1, 20), code(Error::DeviceTypeUnsupported));
  EXPECT_EQ(AGL_SetParas(1, 20, bytes.data(), 512), code(Error::DeviceTypeUnsupported));
  EXPECT_EQ(AGL_GetParas(1, 99, bytes.data(), 512), code(Error::DeviceTypeUnsupported));
  EXPECT_EQ(AGL_SetParas(1, 21, bytes.data(), 513), code(Error::InvalidParameter));
  EXPECT_EQ(AGL_SetParas(1, 21, bytes.data(), -1), code(Error::InvalidParameter));
  EXPECT_EQ(AGL_SetParas(1, 21, nullptr, 512), code(Error::InvalidParameter));
  EXPECT_EQ(AGL_GetParas(1, 21, nullptr, 512), code(Error::InvalidParameter));
}

class DeviceConnects : public testing::Test {
 protected:
  ~DeviceConnects() override {
    unsetenv("OSTRAVEL_STANDIN_PORT");
    AGL_CloseDevice(kDevice);
  }
  agl_int32_t connect(Data bytes, agl_int32_t plc_number = 0) {
    AGL_CloseDevice(kDevice);
    EXPECT_EQ(AGL_SetParas(kDevice, 21, bytes.data(), 512), 0);
    EXPECT_EQ(AGL_OpenDevice(kDevice), 0);
    EXPECT_EQ(AGL_DialUp(kDevice, kTimeout, 0), 0);
    EXPECT_EQ(AGL_InitAdapter(kDevice, kTimeout, 0), 0);
    return AGL_PLCConnectEx(kDevice, plc_number, 0, 0, &connection, kTimeout, 0);
  }
  static constexpr agl_int32_t kDevice = 32;
  agl_int32_t connection = -1;
  plc::Server server{plc::test_program(), plc::test_options()};
};

TEST_F(DeviceConnects, OnlyWhenReady) {
  EXPECT_EQ(AGL_PLCConnectEx(kDevice, 0, 0, 0, &connection, kTimeout, 0), code(Error::DeviceClosed));
  EXPECT_EQ(AGL_OpenDevice(kDevice), 0);
  EXPECT_EQ(AGL_PLCConnectEx(kDevice, 0, 0, 0, &connection, kTimeout, 0), code(Error::NoAdapter));
  EXPECT_EQ(connection, -1);
}

TEST_F(DeviceConnects, ToTheAddressAndPortInItsParameters) {
  EXPECT_EQ(connect(parameters("127.0.0.1", server.port())), 0);
  EXPECT_EQ(connection, kDevice);
}

TEST_F(DeviceConnects, ToAnAddressThatFillsItsWholeField) {
  // 64 characters and no terminating zero: not an address, and nothing is read beyond it.
  EXPECT_EQ(connect(parameters(std::string(64, '1'), server.port())), code(Error::AddressInvalid));
}

TEST_F(DeviceConnects, ToThePlcNumberItIsAskedFor) {
  auto bytes = parameters("127.0.0.1", server.port());
  bytes[6] = 3;
  EXPECT_EQ(connect(bytes), code(Error::ParametersMissing));
  EXPECT_EQ(connect(bytes, 3), 0);
}

TEST_F(DeviceConnects, NotWithoutAnAddress) {
  EXPECT_EQ(connect(Data(512)), code(Error::ParametersMissing));
}

TEST_F(DeviceConnects, NotToAName) {
  EXPECT_EQ(connect(parameters("plc.local", server.port())), code(Error::AddressInvalid));
}

TEST_F(DeviceConnects, NotToAnotherPlcClassOrConnectionType) {
  auto bytes = parameters("127.0.0.1", server.port());
  bytes[8] = 0;
  EXPECT_EQ(connect(bytes), code(Error::ParametersUnsupported));
  bytes[8] = 30;
  EXPECT_EQ(connect(bytes), 0);
  bytes[16] = 4;
  EXPECT_EQ(connect(bytes), code(Error::ParametersUnsupported));
}

TEST_F(DeviceConnects, NotWhereNobodyListens) {
  std::uint16_t port = 0;
  {
    const plc::Server gone(plc::test_program(), plc::test_options());
    port = gone.port();
  }
  EXPECT_EQ(connect(parameters("127.0.0.1", port)), code(Error::NoConnection));
  EXPECT_EQ(connection, -1);
}

TEST_F(DeviceConnects, ToTheEnvironmentsPortInPlaceOf102) {
  setenv("OSTRAVEL_STANDIN_PORT", std::to_string(server.port()).c_str(), 1);
  EXPECT_EQ(connect(parameters("127.0.0.1", 102)), 0);
}

TEST_F(DeviceConnects, ToItsOwnPortWhenThatIsNot102) {
  setenv("OSTRAVEL_STANDIN_PORT", "1", 1);
  EXPECT_EQ(connect(parameters("127.0.0.1", server.port())), 0);
}

TEST_F(DeviceConnects, NotByAnEnvironmentThatNamesNoPort) {
  for (const auto* text : {"", "0", "65536", "-1", "12x", " 12"}) {
    setenv("OSTRAVEL_STANDIN_PORT", text, 1);
    EXPECT_EQ(connect(parameters("127.0.0.1", 102)), code(Error::PortSettingInvalid)) << '"' << text << '"';
  }
}

TEST_F(DeviceConnects, UpToFourTimesWithNumbersOfItsOwn) {
  EXPECT_EQ(connect(parameters("127.0.0.1", server.port())), 0);
  for (agl_int32_t i = 1; i < 4; ++i) {
    EXPECT_EQ(AGL_PLCConnectEx(kDevice, 0, 0, 0, &connection, kTimeout, 0), 0);
    EXPECT_EQ(connection, kDevice + 256 * i);
  }
  EXPECT_EQ(AGL_PLCConnectEx(kDevice, 0, 0, 0, &connection, kTimeout, 0), code(Error::ConnectionsExhausted));
  EXPECT_EQ(AGL_PLCDisconnect(kDevice, 1, 0), 0);
  EXPECT_EQ(AGL_PLCConnectEx(kDevice, 0, 0, 0, &connection, kTimeout, 0), 0);
  EXPECT_EQ(connection, kDevice);
}

TEST_F(DeviceConnects, EndsItsConnectionsWithItsAdapter) {
  EXPECT_EQ(connect(parameters("127.0.0.1", server.port())), 0);
  EXPECT_EQ(statistics().open_connections, 1U);
  EXPECT_EQ(AGL_ExitAdapter(kDevice, 1, 0), 0);
  EXPECT_EQ(statistics().open_connections, 0U);
  EXPECT_EQ(AGL_PLCDisconnect(kDevice, 1, 0), code(Error::InvalidConnection));
}

}  // namespace
}  // namespace ostravel::standin
