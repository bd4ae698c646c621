// SPDX-License-Identifier: MIT
#include "symbolic/errorhelper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;

TEST(ErrorHelper, FetchesTheLibrarysMessageIntoA256ByteBuffer) {
  FakeLibrary library;
  ErrorHelper::ShowError(-17, "AGL_Symbolic_GetIndex");
  EXPECT_THAT(library.log(), ElementsAre("AGL_GetErrorMsg(-17, buffer, 256)"));
}

// Deliberate: nothing is printed, whatever the code.
TEST(ErrorHelper, PrintsNothing) {
  FakeLibrary library;
  testing::internal::CaptureStderr();
  const auto printed = printed_by([] {
    for (const int code : {-1048575, -17, -1, 0, 1, 2147483647})
      ErrorHelper::ShowError(code, "AGL_OpenDevice");
  });
  EXPECT_EQ(printed, "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

bool all_zero = false;

agl_int32_t note_the_buffer(agl_int32_t, agl_char8_t* message, agl_int32_t length) {
  all_zero = std::all_of(message, message + length, [](char byte) { return byte == 0; });
  return AGL40_SUCCESS;
}

TEST(ErrorHelper, HandsOverAZeroedBuffer) {
  FakeLibrary library;
  pAGL_GetErrorMsg = note_the_buffer;
  ErrorHelper::ShowError(-17, "AGL_OpenDevice");
  EXPECT_TRUE(all_zero);
}

TEST(ErrorHelper, DoesNotLookAtTheName) {
  FakeLibrary library;
  ErrorHelper::ShowError(-17, nullptr);
  EXPECT_EQ(library.count("AGL_GetErrorMsg"), 1);
}

TEST(ErrorHelper, IgnoresThatNoMessageIsToBeHad) {
  FakeLibrary library;
  library.fail("AGL_GetErrorMsg", -99);
  EXPECT_EQ(printed_by([] { ErrorHelper::ShowError(-17, "AGL_OpenDevice"); }), "");
}

TEST(ErrorHelper, IgnoresAnAbsentLibrary) {
  AbsentLibrary absent;
  // The banner is the binding's: it tries to load the library.
  EXPECT_EQ(printed_by([] { ErrorHelper::ShowError(-17, "AGL_OpenDevice"); }),
            "=================================LoadDll()\n");
}

}  // namespace
