// SPDX-License-Identifier: MIT
#include "host/driverlibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/fakeworld.h"

namespace ostravel::host {
namespace {

TEST(DriverLibrary, MissingFileIsNamed) {
  try {
    DriverLibrary("/nowhere/libnone.so");
    FAIL();
  } catch (const NoDriver& error) {
    EXPECT_THAT(error.what(), testing::StartsWith("/nowhere/libnone.so: cannot be loaded: "));
  }
}

TEST(DriverLibrary, MissingEntryPointIsNamed) {
  try {
    DriverLibrary(NO_DRIVER_PATH);
    FAIL();
  } catch (const NoDriver& error) {
    EXPECT_THAT(
        error.what(),
        testing::HasSubstr("has no entry point KORVALE_DRV_LinkSetHMIDataInterface; is it the driver?"));
  }
}

TEST(DriverLibrary, DescribesItself) {
  const FakeWorld world;
  const auto description = describe(world.driver);
  EXPECT_EQ(description.name, "Fake");
  EXPECT_EQ(description.attribute.wDriverID, 42);
  EXPECT_THAT(description.device_table,
              testing::ElementsAre(testing::ElementsAre("W", "INT", "195", "D", "W")));
  EXPECT_THAT(description.size_limits, testing::ElementsAre(testing::ElementsAre("195", "256", "1")));
  EXPECT_EQ(runtime_type_number(world.driver, DT_INT), 9);
  EXPECT_EQ(runtime_type_number(world.driver, DT_LTIME), -1);
}

}  // namespace
}  // namespace ostravel::host
