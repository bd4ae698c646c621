// SPDX-License-Identifier: MIT
// The fake driver, loaded and fresh, with settings for a device on it.
#pragma once

#include "host/driverlibrary.h"
#include "host/session.h"
#include "tests/host/fakedriver.h"

namespace ostravel::host {

struct FakeWorld {
  DriverLibrary driver{FAKE_DRIVER_PATH};
  DeviceSettings settings{"demo.project", 0, "127.0.0.1", 1, false};

  FakeWorld() { fake() = FakeDriver{}; }
  FakeDriver& fake() const { return *reinterpret_cast<FakeDriver* (*)()>(driver.find("fake_driver"))(); }
};

}  // namespace ostravel::host
