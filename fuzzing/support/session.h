// SPDX-License-Identifier: MIT
// A session: what a runtime calls, as bytes.
//   input     = flags:byte version:byte call*
//   call      = what:byte arguments, see session.cpp
// Records are as long as they must be and no longer, so that a byte too far is noticed.
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "fuzzing/support/device.h"
#include "fuzzing/support/input.h"
#include "fuzzing/support/library.h"

namespace fuzz {

// Demands that a device comes up, reads and writes with an honest library, so that no run is for nothing.
void expect_working_sessions();

// Names of the project's rows.
std::span<const std::string_view> session_names();

class Session {
 public:
  Session(Input& input, Library& library);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Until the input ends, or a failed assertion ends the process that the driver is in.
  void run();

  // A device whose symbol tree is loaded, if the library let it.
  Device& device() { return *devices_[current_]; }

 private:
  bool call();
  void open();
  bool output(bool offline);
  bool input(bool offline);
  bool connect();
  void ask_tables();
  void set_address();
  void initialise();
  void fill(GUI_REQUEST& request, bool raw);

  Input& input_;
  Library& library_;
  std::uint8_t version_;
  std::vector<std::unique_ptr<Device>> devices_;
  std::size_t current_ = 0;
};

}  // namespace fuzz
