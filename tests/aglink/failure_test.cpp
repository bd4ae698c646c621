// SPDX-License-Identifier: MIT
// With no library anywhere: what every function returns and prints.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "aglink/AGLink40.h"
#include "aglink/binding.h"
#include "tests/aglink/hooks.h"
#include "tests/aglink/rows.h"
#include "tests/aglink/world.h"

namespace {

using Lines = std::vector<std::string>;

// The functions that do not simply return an agl_int32_t of -1048554: result type and text of the failure
// value.
std::map<std::string, std::pair<std::string, std::string>> exceptions() {
  std::map<std::string, std::pair<std::string, std::string>> all{
      {"AGL_ReadS5Time", {"agl_int32_t", "0"}},
      {"AGL_ReadS5TimeW", {"agl_int32_t", "0"}},
      {"AGL_GetBSendAutoResponse", {"agl_bool_t", "-1048554"}},
      {"AGL_GetTickCount", {"agl_ulong32_t", "4293918742"}},
      {"AGL_GetMicroSecs", {"agl_ulong32_t", "4293918742"}},
      {"AGL_ReadDWord", {"agl_ulong32_t", "0"}},
      {"AGL_FloatAsLong", {"agl_long32_t", "-1048554"}},
      {"AGL_ReadInt32", {"agl_long32_t", "0"}},
      {"AGL_ReadInt16", {"agl_int16_t", "0"}},
      {"AGL_ReadWord", {"agl_uint16_t", "0"}},
      {"AGL_ReadReal", {"agl_float32_t", "00000000"}},
      {"AGL_LongAsFloat", {"agl_float32_t", "c97ffea0"}},
      {"AGL_AllocRWBuffs", {"agl_ptrdiff_t", "-1048554"}},
      {"AGL_malloc", {"void*", "at 0"}},
      {"AGL_calloc", {"void*", "at 0"}},
      {"AGL_realloc", {"void*", "at 0"}},
      {"AGL_memcpy", {"void*", "first argument"}},
      {"AGL_memmove", {"void*", "first argument"}},
      {"AGL_GetClientName", {"agl_char8_t*", "first argument"}},
  };
  for (const char* name :
       {"AGL_GetVersion", "AGL_GetVersionEx", "AGL_UseSystemTime", "AGL_ReturnJobNr",
        "AGL_SetBSendAutoResponse", "AGL_free", "AGL_WriteInt16", "AGL_WriteInt32", "AGL_WriteWord",
        "AGL_WriteDWord", "AGL_WriteReal", "AGL_WriteS5Time", "AGL_WriteS5TimeW", "AGL_Byte2Word",
        "AGL_Byte2DWord", "AGL_Byte2Real", "AGL_Word2Byte", "AGL_DWord2Byte", "AGL_Real2Byte"}) {
    all[name] = {"void", "nothing"};
  }
  return all;
}

}  // namespace

TEST_F(NoLibraryTest, EveryFunctionReturnsItsFailureValue) {
  const auto special = exceptions();
  int plain = 0;
  for (const Row& row : rows()) {
    const auto found = special.find(row.name);
    plain += found == special.end() ? 1 : 0;
    auto [type, value] = found == special.end()
                             ? std::pair<std::string, std::string>{"agl_int32_t", "-1048554"}
                             : found->second;
    const FakeArguments arguments = argumentsFor(row);
    if (value == "first argument") value = asText(std::bit_cast<void*>(arguments.integers[0]));
    std::string result;
    linesPrintedBy([&] { result = row.call(arguments); });
    EXPECT_EQ(result, value) << row.name;
    EXPECT_EQ(row.resultType, type) << row.name;
  }
  EXPECT_EQ(plain, 538);
}

TEST_F(NoLibraryTest, EveryCallOfEveryFunctionPrintsTheBanner) {
  const std::map<std::string, Lines> reporting{
      {"AGL_GetParas", {"into AGL_GetParas", kBanner, "load error  AGL_GetParas"}},
      {"AGL_SetDevType", {"into AGL_SetDevType", kBanner, "load error AGL_SetDevType"}},
  };
  for (const Row& row : rows()) {
    const auto found = reporting.find(row.name);
    const Lines expected = found == reporting.end() ? Lines{kBanner} : found->second;
    EXPECT_EQ(row.reporting, found != reporting.end()) << row.name;
    for (int call = 0; call < 2; ++call) {
      EXPECT_EQ(linesPrintedBy([&] { row.call(argumentsFor(row)); }), expected) << row.name;
    }
  }
}

// The result register is wider than a short result; a float's bits must be in the vector register.
TEST_F(NoLibraryTest, ResultsOfAllWidthsAreReadFromTheirRegisters) {
  linesPrintedBy([&] {
    EXPECT_EQ(reinterpret_cast<agl_float32_t (*)()>(reinterpret_cast<void (*)()>(&AGL_LongAsFloat))(),
              -1048554.0F);
    EXPECT_EQ(reinterpret_cast<agl_float32_t (*)()>(reinterpret_cast<void (*)()>(&AGL_ReadReal))(), 0.0F);
    EXPECT_EQ(AGL_AllocRWBuffs(), agl_ptrdiff_t{-1048554});
    EXPECT_EQ(AGL_GetTickCount(), 0xFFF00016U);
    EXPECT_EQ(AGL_malloc(8), nullptr);
  });
}

TEST_F(NoLibraryTest, CopyingMemoryHandsBackTheDestinationAndCopiesNothing) {
  char destination[4] = "abc";
  linesPrintedBy([&] {
    EXPECT_EQ(AGL_memcpy(destination, "xyz", 3), destination);
    EXPECT_EQ(AGL_memmove(destination, "xyz", 3), destination);
    EXPECT_EQ(AGL_GetClientName(destination), destination);
  });
  EXPECT_STREQ(destination, "abc");
}

TEST_F(NoLibraryTest, LoadDllTriesTheSearchPathThenTheProjectFolderAndReturnsMinusOne) {
  const Recording recording;
  linesPrintedBy([&] { EXPECT_EQ(LoadDll(), -1); });
  EXPECT_EQ(recording.events(),
            (Lines{"puts " + kBanner, "dlopen " + kLibraryName, "dlopen " + kLibraryInProject}));
  EXPECT_EQ(hLib, nullptr);
}

TEST_F(NoLibraryTest, LoadFunctionsReturnsMinusOneAndTouchesNoPointer) {
  void* const mark = &aglPointers;
  aglPointers[0] = mark;
  EXPECT_EQ(linesPrintedBy([&] { EXPECT_EQ(LoadFunctions(), -1); }), Lines{});
  EXPECT_EQ(aglPointers[0], mark);
}

TEST_F(NoLibraryTest, UnloadDynOnlyClearsThePointers) {
  aglPointers[0] = &aglPointers;
  aglPointers[580] = &aglPointers;
  const Recording recording;
  AGL_UnloadDyn();
  EXPECT_EQ(recording.events(), Lines{});
  EXPECT_EQ(aglPointers[0], nullptr);
  EXPECT_EQ(aglPointers[580], nullptr);
}

TEST_F(NoLibraryTest, LoadDllByPathIsSilentAndHasNoFallback) {
  const Recording recording;
  EXPECT_EQ(linesPrintedBy([&] { EXPECT_EQ(LoadDllByPath("/nowhere/library.so"), -1); }), Lines{});
  EXPECT_EQ(recording.events(), Lines{"dlopen /nowhere/library.so"});
  EXPECT_EQ(hLib, nullptr);
}

TEST_F(NoLibraryTest, LoadDllByPathResolvesFromTheFileGiven) {
  EXPECT_EQ(linesPrintedBy([&] { EXPECT_EQ(LoadDllByPath(COMPLETE_LIBRARY), 1); }), Lines{kHalfWay});
  EXPECT_NE(hLib, nullptr);
  EXPECT_NE(pAGL_GetOptions, nullptr);
  const Row& getOptions = rows().at(2);
  ASSERT_EQ(getOptions.name, "AGL_GetOptions");
  EXPECT_EQ(getOptions.call(argumentsFor(getOptions)), getOptions.fakeResult);
}

// Another deliberate oddity: reloading for one missing name loses the handle of the library that is open.
TEST_F(NoLibraryTest, FailedReloadWhileLoadedClearsTheHandleAndLeavesThePointers) {
  linesPrintedBy([&] {
    ASSERT_EQ(LoadDllByPath(COMPLETE_LIBRARY), 1);
    EXPECT_EQ(AGL_GetAdaptersInfo(), AGL40_LIB_NOT_LOADED);
  });
  EXPECT_EQ(hLib, nullptr);
  EXPECT_NE(pAGL_GetOptions, nullptr);
  EXPECT_EQ(linesPrintedBy([&] { EXPECT_EQ(AGL_GetOptions(), AGL40_LIB_NOT_LOADED); }), Lines{kBanner});
  EXPECT_EQ(unloadAll(COMPLETE_LIBRARY), 1);
}
