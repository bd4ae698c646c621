// SPDX-License-Identifier: MIT
// From inside the loader, a debugger or an exception finds its way back through the assembly to the caller.
#include <gtest/gtest.h>
#include <unwind.h>

#include <cstdint>
#include <stdexcept>

#include "aglink/AGLink40.h"
#include "tests/aglink/hooks.h"
#include "tests/aglink/world.h"

namespace {

// Not inlined, so that it has a frame that can be recognised.
[[gnu::noinline]] agl_int32_t callFromAFrameOfItsOwn() {
  const agl_int32_t result = AGL_GetOptions();
  asm volatile("");  // keeps the call above from becoming a jump
  return result;
}

_Unwind_Reason_Code lookForCaller(_Unwind_Context* context, void* found) {
  if (_Unwind_GetRegionStart(context) == reinterpret_cast<std::uintptr_t>(&callFromAFrameOfItsOwn)) {
    *static_cast<bool*>(found) = true;
  }
  return _URC_NO_REASON;
}

}  // namespace

TEST_F(LibraryTest, StackCanBeWalkedFromTheLoaderToTheCaller) {
  bool found = false;
  onOpen([&] { _Unwind_Backtrace(lookForCaller, &found); });
  linesPrintedBy([] { EXPECT_NE(callFromAFrameOfItsOwn(), AGL40_LIB_NOT_LOADED); });
  onOpen(nullptr);
  EXPECT_TRUE(found);
}

TEST_F(LibraryTest, ExceptionOutOfTheLoaderReachesTheCaller) {
  onOpen([] { throw std::runtime_error("out of memory, say"); });
  linesPrintedBy([] { EXPECT_THROW(callFromAFrameOfItsOwn(), std::runtime_error); });
  onOpen(nullptr);
  linesPrintedBy([] { EXPECT_NE(callFromAFrameOfItsOwn(), AGL40_LIB_NOT_LOADED); });
}
