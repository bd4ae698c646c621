// SPDX-License-Identifier: MIT
// The devices that all cases of the table share, one for either layout of texts and for either mode, and the
// library behind them. Devices cannot be closed for good, so a case puts its device back to where a start
// ends.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/driver/device.h"
#include "tests/tables/rows.h"

namespace tables {

class Desk : public testing::Test {
 public:
  static void SetUpTestSuite();
  static void TearDownTestSuite();

 protected:
  // A device in the event's loader state, connected unless the event says otherwise.
  static Device& device(Event event);
  // One that has never served: for what depends on what a device held before.
  static Device& new_device(Event event);
  static Device& simulated_device(Event event);
  static FakeLibrary& library() { return *library_; }

  // Error code, status and length of the frame, byWaitResponse, nResponseLength: "0/8/0 0 0". Checks that
  // nothing else in the batch has changed, but for a type that the alternate type has replaced.
  static std::string output(const Device& device, Batch& batch);

  // A record as answers.def has it, its words taken from value.
  static void expect_record(const INPUT_DATA& record, const std::string& expected, int asked,
                            const std::vector<WORD>& value);

 private:
  static Device& in_state(Device& device, Event event);
  static std::unique_ptr<FakeLibrary> library_;
  static Device* online_[2];
  static Device* simulated_[2];
};

// SymbolsLoader's state of the same name.
Loader state_of(const Device& device);

// What an answer that lacks a value has in its place: nothing the runtime could take for one.
inline constexpr int kAsked = 40;

}  // namespace tables
