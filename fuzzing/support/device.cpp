// SPDX-License-Identifier: MIT
#include "fuzzing/support/device.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include "fuzzing/support/demand.h"

namespace {

std::vector<GData*> waiting_threads;
bool threads_start = true;

}  // namespace

extern "C" {

using ThreadBody = void* (*)(void*);

// The linker sends the calls of these functions here.
int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, ThreadBody body,
                          void* argument);
int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, ThreadBody body,
                          void* argument);
int __wrap_pthread_detach(pthread_t thread);
int __wrap_remove(const char* path);

int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, ThreadBody body,
                          void* argument) {
  if (body != server_listen_thread) return __real_pthread_create(thread, attributes, body, argument);
  if (!threads_start) return EAGAIN;
  waiting_threads.push_back(static_cast<GData*>(argument));
  *thread = 1;
  return 0;
}

int __wrap_pthread_detach(pthread_t) {
  return 0;
}

// Nothing is removed; the driver may want to remove its symbol file and nothing else.
int __wrap_remove(const char* path) {
  const std::string_view name = path;
  FUZZ_DEMAND(name.starts_with("/mnt/project/") && name.ends_with("_s71500_symbolic.ap") && name.size() < 40);
  errno = ENOENT;
  return -1;
}
}

namespace fuzz {

Device::Device(char* project, DWORD position, BYTE simulated) {
  KORVALE_DRV_StartDeviceEx(simulated, &handle_, project, position);
}

Device::~Device() {
  std::erase(waiting_threads, &data());
  // A close keeps what a simulated device's members hold, and an online device as a whole.
  GData* const device = &data();
  if (device->GOffLineSim == FALSE) {
    KORVALE_DRV_CloseDevice(0, handle_);
    delete device;
    return;
  }
  const auto destroy = [](auto& member) { std::destroy_at(&member); };
  for (stCmdDesc& command : device->GCmdDesc) destroy(command.tag_name);
  destroy(device->GsymbolsParser);
  destroy(device->GTagTable);
  destroy(device->DeviceIP);
  destroy(device->GMap);
  destroy(device->read_batch);
  destroy(device->write_name);
  destroy(device->write_bytes);
  destroy(device->rebuilt_names);
  KORVALE_DRV_CloseDevice(0, handle_);
}

void reset_shared_state() {
  waiting_threads.clear();
  threads_start = true;
  ip_table.clear();
  DeviceIP = {};
  write_string_data = {};
}

void run_connection_threads() {
  while (!waiting_threads.empty()) {
    GData* const device = waiting_threads.back();
    waiting_threads.pop_back();
    server_listen_thread(device);
  }
}

void let_threads_start(bool start) {
  threads_start = start;
}

}  // namespace fuzz
