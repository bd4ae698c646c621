// SPDX-License-Identifier: MIT
// One device of the driver, opened as the runtime opens it, and the records of one batch on it.
#pragma once

#include <string>
#include <vector>

#include "benchmarks/driver.h"
#include "tests/driver/requestbuilder.h"

namespace bench {

class Device {
 public:
  enum Mode : BYTE { Online = 0, Simulated = 1 };

  // Returns when the device serves and its connection thread has ended. Throws std::runtime_error when it
  // does not serve. Devices stay open: the driver has no way to end an online one.
  Device(const Driver& driver, const std::vector<std::string>& names, Mode mode);

  DWORD* handle() const { return handle_; }

 private:
  DWORD* handle_ = nullptr;
};

// A batch and its answers; call() is the runtime's cycle of output and input filter.
class Batch {
 public:
  Batch(const Driver& driver, const Device& device, std::vector<RequestBuilder> requests, bool read);

  void call() {
    output_(requests_.data(), count_);
    input_(records_.data(), &frame_, infos_.data(), count_);
  }

  const std::vector<INPUT_DATA>& records() const { return records_; }
  const std::vector<GUI_REQUEST>& requests() const { return requests_; }

 private:
  decltype(Driver::OutputFilterEx) output_;
  decltype(Driver::InputFilterEx) input_;
  std::vector<GUI_REQUEST> requests_;
  std::vector<INPUT_DATA> records_;
  std::vector<DEVICE_INFO> infos_;
  FRAME_DATA frame_{};
  int count_;
};

}  // namespace bench
