// SPDX-License-Identifier: MIT
// What the close of a device frees. A program of its own, since it counts what goes through operator delete.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "driver/driver.h"
#include "tests/driver/device.h"

namespace {

bool g_counting = false;
int g_released = 0;
void* g_last_released = nullptr;

void release(void* block) noexcept {
  if (g_counting && block != nullptr) {
    ++g_released;
    g_last_released = block;
  }
  std::free(block);
}

void close_counted(BYTE simulate, DWORD* handle) {
  g_released = 0;
  g_last_released = nullptr;
  g_counting = true;
  KORVALE_DRV_CloseDevice(simulate, handle);
  g_counting = false;
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void operator delete(void* block) noexcept {
  release(block);
}
void operator delete[](void* block) noexcept {
  release(block);
}
void operator delete(void* block, std::size_t) noexcept {
  release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  release(block);
}

TEST(CloseDevice, ReleasesTheBlockOfASimulatedDeviceAndThatAlone) {
  // Tags, names, strings and the map stay allocated, deliberately: no member is destroyed.
  for (BYTE simulate : std::initializer_list<BYTE>{0, 1}) {
    Device device(ProjectFile().tag("Motor").tag("Valve").password(true, std::string(100, 'p')),
                  Device::Simulated);
    device.data().GMap[stTag{}] = 1;
    device.data().DeviceIP = std::string(100, '1');
    DWORD* handle = device.handle();
    close_counted(simulate, handle);
    EXPECT_EQ(g_released, 1);
    EXPECT_EQ(g_last_released, handle);
  }
}

TEST(CloseDevice, LeavesAnOnlineDeviceAllocated) {
  // Its connection thread may be at work on it.
  for (BYTE simulate : std::initializer_list<BYTE>{0, 1}) {
    Device device(ProjectFile().tag("Motor"));
    device.data().DeviceIP = "10.0.0.1";
    close_counted(simulate, device.handle());
    EXPECT_EQ(g_released, 0);
    EXPECT_EQ(device.data().DeviceIP, "10.0.0.1");
    EXPECT_STREQ(device.data().GTagTable.Get(0)->pStringA, "Motor");
  }
}
