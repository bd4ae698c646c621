// SPDX-License-Identifier: MIT
// The library as a file: names, loading and unloading, error texts.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <iterator>
#include <set>
#include <string>

#include "tests/simulator/standin_world.h"

namespace ostravel::standin {
namespace {

// Every function that a caller needs, typed out so that one left out is noticed.
constexpr const char* kNames[] = {
    "AGL_SetParas",
    "AGL_GetParas",
    "AGL_SetDevType",
    "AGL_GetErrorMsg",
    "AGL_OpenDevice",
    "AGL_CloseDevice",
    "AGL_DialUp",
    "AGL_HangUp",
    "AGL_InitAdapter",
    "AGL_ExitAdapter",
    "AGL_PLCConnectEx",
    "AGL_PLCDisconnect",
    "AGL_ReadMLFBNr",
    "AGL_SetPassword",
    "AGL_GetVersion",
    "AGL_Symbolic_ReadMixEx",
    "AGL_Symbolic_WriteMixEx",
    "AGL_Symbolic_LoadAGLinkSymbolsFromPLC",
    "AGL_Symbolic_SaveAGLinkSymbolsToFile",
    "AGL_Symbolic_LoadAGLinkSymbolsFromFile",
    "AGL_Symbolic_FreeHandle",
    "AGL_Symbolic_GetArrayDimensionCount",
    "AGL_Symbolic_GetArrayDimension",
    "AGL_Symbolic_GetNodeByPath",
    "AGL_Symbolic_GetIndexSize",
    "AGL_Symbolic_GetIndex",
    "AGL_Symbolic_CreateAccessByPath",
    "AGL_Symbolic_GetAccessBufferSize",
    "AGL_Symbolic_GetAccessBufferElementSize",
    "AGL_Symbolic_GetAccessStringSize",
    "AGL_Symbolic_GetAccessBufferElementCount",
    "AGL_Symbolic_GetAccessElementSystemType",
    "AGL_Symbolic_GetAccessElementValueType",
    "AGL_Symbolic_GetArrayIndexAsLinearIndex",
    "AGL_Symbolic_GetAccessBufferUInt8",
    "AGL_Symbolic_GetAccessBufferUInt16",
    "AGL_Symbolic_GetAccessBufferUInt32",
    "AGL_Symbolic_GetAccessBufferUInt64",
    "AGL_Symbolic_GetAccessBufferInt8",
    "AGL_Symbolic_GetAccessBufferInt16",
    "AGL_Symbolic_GetAccessBufferInt32",
    "AGL_Symbolic_GetAccessBufferInt64",
    "AGL_Symbolic_GetAccessBufferFloat32",
    "AGL_Symbolic_GetAccessBufferFloat64",
    "AGL_Symbolic_GetAccessBufferChar8",
    "AGL_Symbolic_GetAccessBufferChar16",
    "AGL_Symbolic_GetAccessBufferString8",
    "AGL_Symbolic_GetAccessBufferString16",
    "AGL_Symbolic_GetAccessBufferS7_DTLParts",
    "AGL_Symbolic_GetAccessBufferS7_S5TimeMs",
    "AGL_Symbolic_GetAccessBufferS7_Counter",
    "AGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts",
    "AGL_Symbolic_SetAccessBufferUInt8",
    "AGL_Symbolic_SetAccessBufferUInt16",
    "AGL_Symbolic_SetAccessBufferUInt32",
    "AGL_Symbolic_SetAccessBufferUInt64",
    "AGL_Symbolic_SetAccessBufferInt8",
    "AGL_Symbolic_SetAccessBufferInt16",
    "AGL_Symbolic_SetAccessBufferInt32",
    "AGL_Symbolic_SetAccessBufferInt64",
    "AGL_Symbolic_SetAccessBufferFloat32",
    "AGL_Symbolic_SetAccessBufferFloat64",
    "AGL_Symbolic_SetAccessBufferChar8",
    "AGL_Symbolic_SetAccessBufferChar16",
    "AGL_Symbolic_SetAccessBufferString8",
    "AGL_Symbolic_SetAccessBufferString16",
    "AGL_Symbolic_SetAccessBufferS7_DTLParts",
    "AGL_Symbolic_SetAccessBufferS7_S5TimeMs",
    "AGL_Symbolic_SetAccessBufferS7_Counter",
    "AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts",
    "agl_standin_nanoseconds_here",
    "agl_standin_release_nodes",
    "agl_standin_statistics",
};

class Library : public testing::Test {
 protected:
  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer's runtime cannot be loaded twice";
#endif
    library =
        dlmopen(LM_ID_NEWLM, OSTRAVEL_STANDIN, RTLD_NOW);  // a copy of its own, so that it can really go
    ASSERT_NE(library, nullptr) << dlerror();
  }
  ~Library() override {
    if (library != nullptr) dlclose(library);
  }
  void* library = nullptr;
};

TEST_F(Library, ExportsEveryName) {
  for (const auto* name : kNames) EXPECT_NE(dlsym(library, name), nullptr) << name;
}

TEST_F(Library, WorksUnloadsAndLoadsAgain) {
  for (int i = 0; i < 2; ++i) {
    auto* open = reinterpret_cast<decltype(AGL_OpenDevice)*>(dlsym(library, "AGL_OpenDevice"));
    ASSERT_NE(open, nullptr);
    EXPECT_EQ(open(3), 0);
    EXPECT_EQ(open(3), code(Error::DeviceOpen));
    ASSERT_EQ(dlclose(library), 0);
    library = dlmopen(LM_ID_NEWLM, OSTRAVEL_STANDIN, RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
  }
}

TEST(LibraryFile, ExportsNothingElse) {
  const std::set<std::string> expected(std::begin(kNames), std::end(kNames));
  const std::set<std::string> informational{"AGL_GetMaxDevices", "AGL_GetTickCount"};
  FILE* symbols = popen("nm -D --defined-only --format=just-symbols " OSTRAVEL_STANDIN, "r");
  ASSERT_NE(symbols, nullptr);
  std::array<char, 1000> line{};
  std::size_t count = 0;
  while (fgets(line.data(), line.size(), symbols) != nullptr) {
    std::string name(line.data());
    name.erase(name.find_last_not_of('\n') + 1);
    EXPECT_TRUE(expected.contains(name) || informational.contains(name)) << name;
    ++count;
  }
  pclose(symbols);
  EXPECT_EQ(count, expected.size() + informational.size());
}

TEST(ErrorText, EveryErrorHasOneOfItsOwn) {
  std::set<std::string> texts;
  std::size_t errors = 0;
  for (const auto error : {
#define STANDIN_ERROR(name, number, text) Error::name,
#include "simulator/standin/errors.def"
#undef STANDIN_ERROR
       }) {
    std::array<char, 256> text{};
    EXPECT_EQ(AGL_GetErrorMsg(code(error), text.data(), 256), 0);
    EXPECT_NE(text[0], '\0');
    EXPECT_LT(code(error), 0);
    EXPECT_NE(static_cast<unsigned>(code(error)) & 0xFFFF0000U,
              0xFFF00000U);  // where callers have codes of their own
    texts.insert(text.data());
    ++errors;
  }
  EXPECT_EQ(texts.size(), errors);
}

TEST(ErrorText, UnknownCodeIsNamedByItsNumber) {
  std::array<char, 256> text{};
  EXPECT_NE(AGL_GetErrorMsg(-1048554, text.data(), 256), 0);
  EXPECT_STREQ(text.data(), "unknown error 0xFFF00016");
}

TEST(ErrorText, IsCutToTheRoomThereIs) {
  std::array<char, 8> text{};
  text.fill('#');
  EXPECT_EQ(AGL_GetErrorMsg(0, text.data(), 5), 0);
  EXPECT_EQ(std::string(text.data(), 6), std::string("succ\0#", 6));
  EXPECT_EQ(AGL_GetErrorMsg(0, text.data(), 1), 0);
  EXPECT_EQ(text[0], '\0');
  EXPECT_NE(AGL_GetErrorMsg(0, text.data(), 0), 0);
  EXPECT_NE(AGL_GetErrorMsg(0, text.data(), -1), 0);
  EXPECT_NE(AGL_GetErrorMsg(0, nullptr, 5), 0);
}

TEST(Version, IsTold) {
  agl_int32_t major = -1;
  agl_int32_t minor = -1;
  AGL_GetVersion(&major, &minor);
  EXPECT_GE(major, 0);
  EXPECT_GE(minor, 0);
  AGL_GetVersion(nullptr, nullptr);
  agl_standin_statistics(nullptr);
}

}  // namespace
}  // namespace ostravel::standin
