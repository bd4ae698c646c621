// SPDX-License-Identifier: MIT
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/failures/injection.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  using injection::failures;
  using injection::Kind;
  fmt::print(
      "failures: {} library calls, {} allocations, {} file operations and {} threads failed one at a time, "
      "{}\n",
      failures(Kind::Library), failures(Kind::Memory), failures(Kind::File), failures(Kind::Thread),
      result == 0 ? "each with the answer expected" : "some with another answer than expected");
  return result;
}
