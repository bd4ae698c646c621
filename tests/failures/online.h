// SPDX-License-Identifier: MIT
// What the tests of failures online have in common.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/failures/injection.h"
#include "tests/failures/plant.h"
#include "tests/failures/runtime.h"
#include "tests/fake/fakelibrary.h"

// What every output call tells: nothing is waited for; or, once the loader has failed, a response that does
// not come.
inline constexpr const char* kFrame = "0/8/0 wait 0 length 0";
inline constexpr const char* kFailedFrame = "0/8/0 wait 1 length 8";

// The PLC and a device that does not exist yet.
struct Plant {
  Plant() {
    add_plant(library);
    injection::guard_library();
  }
  FakeLibrary library;
  Runtime runtime{plant_project()};
};

// A connected device that has not read yet.
struct ConnectedPlant : Plant {
  ConnectedPlant() {
    runtime.bring_up();
    runtime.connect();
    library.clearLog();
  }
};

inline std::vector<std::string> poll(Runtime& runtime) {
  const std::vector<RequestBuilder> requests = read_requests();
  EXPECT_EQ(runtime.output(requests), kFrame);
  return runtime.input(static_cast<int>(requests.size()));
}

// Values of a test's parameter, and what they are called.
inline auto each_refusal() {
  return testing::Values(injection::Refusal::DoesNothing, injection::Refusal::DoesItsWork);
}
inline std::string name_of(injection::Refusal refusal) {
  return refusal == injection::Refusal::DoesNothing ? "CallsThatDoNothing" : "CallsThatDoTheirWork";
}

// At its end nothing that the driver took may be left.
class Online : public testing::Test {
 protected:
  ~Online() override {
    injection::let_calls_fail_by(injection::Refusal::DoesNothing);
    forget_globals();
    EXPECT_EQ(injection::blocks_alive(), 0U) << "leaked";
  }
};
