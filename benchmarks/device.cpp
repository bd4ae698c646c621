// SPDX-License-Identifier: MIT
#include "benchmarks/device.h"

#include <sys/stat.h>

#include <chrono>
#include <stdexcept>
#include <thread>

#include "benchmarks/tags.h"
#include "driver/statuscodes.h"

namespace bench {

namespace {

constexpr BYTE kStation = 1;

// Each thread is a folder in this one.
unsigned long threads() {
  struct stat status {};
  return stat("/proc/self/task", &status) == 0 ? status.st_nlink - 2 : 0;
}

void wait_for_connection_threads() {
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (threads() > 1) {
    if (std::chrono::steady_clock::now() > until)
      throw std::runtime_error("a connection thread does not end");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

}  // namespace

Device::Device(const Driver& driver, const std::vector<std::string>& names, Mode mode) {
  TagFile file(names);
  std::string path = file.path();
  driver.StartDeviceEx(mode, &handle_, path.data(), 0);
  if (mode == Simulated) return;

  std::vector<WORD> words(16);
  words[4] = 10;
  words[5] = 1;
  words[6] = 0xA8C0;
  words[10] = kStation;
  driver.InitEx(0, words.data());
  int response_length = 0;
  driver.GetInitCmdEx2(&response_length, 0, kStation, 0, &handle_);
  Batch first(driver, *this, {RequestBuilder::Read(TagBlock(DT_INT))}, true);
  // The first call starts the thread. None is made while it is at work: the same calls in every run, and so
  // the same figures.
  first.call();
  wait_for_connection_threads();
  first.call();
  if (first.records()[0].byErrCode != kOk) {
    throw std::runtime_error("the device does not come online on the null library");
  }
}

Batch::Batch(const Driver& driver, const Device& device, std::vector<RequestBuilder> requests, bool read)
    : output_(driver.OutputFilterEx),
      input_(driver.InputFilterEx),
      records_(requests.size()),
      infos_(requests.size()),
      count_(static_cast<int>(requests.size())) {
  for (RequestBuilder& request : requests) requests_.push_back(request.device(device.handle()).build());
  for (DEVICE_INFO& info : infos_) {
    info.bRead = read ? TRUE : FALSE;
    info.pdwMemAddr = device.handle();
  }
}

}  // namespace bench
