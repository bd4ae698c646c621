// SPDX-License-Identifier: MIT
// The loader's data, the symbol tree and its cache file's name, and split. cachefile_test.cpp has the file
// itself.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symbolic/symbolsloader.h"
#include "tests/symbolic/access.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(SymbolsLoader, StartsEmptyAndIdle) {
  const SymbolsLoader loader;
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Idle);
  EXPECT_EQ(loader.RemoteIP, "");
  EXPECT_FALSE(loader.bDisconnect);
  EXPECT_FALSE(loader.read_data_status);
  EXPECT_THAT(loader.read_data_queue, IsEmpty());
  EXPECT_THAT(loader.cache_data, IsEmpty());
  EXPECT_THAT(loader.read_data_queue_filter, IsEmpty());
  EXPECT_THAT(loader.Queue, IsEmpty());
  EXPECT_EQ(loader.root_schema_node, 0);
  EXPECT_EQ(loader.m_password, "");
  EXPECT_FALSE(loader.m_enable_parameter);
  EXPECT_EQ(loader.tia_project_binary_data, "");
}

TEST(SymbolsLoader, NumbersItsStates) {
  EXPECT_EQ(int{SymbolsLoader::Idle}, 0);
  EXPECT_EQ(int{SymbolsLoader::Loading}, 1);
  EXPECT_EQ(int{SymbolsLoader::Success}, 2);
  EXPECT_EQ(int{SymbolsLoader::Error}, 3);
  EXPECT_EQ(int{SymbolsLoader::Disconnect}, 4);
}

TEST(SymbolsLoader, TakesItsSettings) {
  SymbolsLoader loader;
  loader.set_station_id(200);
  loader.set_password("secret");
  loader.set_enable_parameter(true);
  loader.set_tia_project_binary(std::string("a\0b", 3));
  EXPECT_EQ(loader.station_id, 200);
  EXPECT_EQ(loader.m_password, "secret");
  EXPECT_TRUE(loader.m_enable_parameter);
  EXPECT_EQ(loader.tia_project_binary_data, std::string("a\0b", 3));
}

TEST(CacheFile, IsNamedByTheDecimalStation) {
  SymbolsLoader loader;
  const std::pair<unsigned char, const char*> names[] = {{0, "/mnt/project/0_s71500_symbolic.ap"},
                                                         {1, "/mnt/project/1_s71500_symbolic.ap"},
                                                         {5, "/mnt/project/5_s71500_symbolic.ap"},
                                                         {65, "/mnt/project/65_s71500_symbolic.ap"},
                                                         {255, "/mnt/project/255_s71500_symbolic.ap"}};
  for (const auto& [station, name] : names) {
    loader.set_station_id(station);
    EXPECT_EQ(loader.GetSymbolsFilePath(), name);
  }
}

class CacheFileLoad : public ::testing::Test {
 protected:
  CacheFileLoad() { loader.set_station_id(1); }
  int run() {
    int result = -1;
    printed = printed_by([&] { result = loader.doSymbolic_LoadAGLinkSymbolsFromFile(); });
    return result;
  }
  const std::string load =
      "AGL_Symbolic_LoadAGLinkSymbolsFromFile(\"/mnt/project/1_s71500_symbolic.ap\", &0)";
  FakeLibrary library;
  SymbolsLoader loader;
  std::string printed;
};

TEST_F(CacheFileLoad, GivesTheTreeAndSetsSuccess) {
  library.cache_file_loads = true;
  EXPECT_EQ(run(), 0);
  EXPECT_THAT(library.log(), ElementsAre(load));
  EXPECT_EQ(printed, "load file success\n");
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
  EXPECT_EQ(loader.root_schema_node, FakeLibrary::kRoot);
}

TEST_F(CacheFileLoad, SetsSuccessInEveryState) {
  library.cache_file_loads = true;
  for (const auto state : {SymbolsLoader::Idle, SymbolsLoader::Loading, SymbolsLoader::Success,
                           SymbolsLoader::Error, SymbolsLoader::Disconnect}) {
    loader.loader_state = state;
    run();
    EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
  }
}

TEST_F(CacheFileLoad, LeavesTheStateAloneWhenItFails) {
  for (const auto state : {SymbolsLoader::Idle, SymbolsLoader::Loading, SymbolsLoader::Success,
                           SymbolsLoader::Error, SymbolsLoader::Disconnect}) {
    library.clearLog();
    loader.loader_state = state;
    EXPECT_EQ(run(), FakeLibrary::kNoFile);
    EXPECT_EQ(loader.loader_state, state);
    EXPECT_EQ(printed, "load file error.....\n");
    EXPECT_THAT(library.log(), ElementsAre(load, "AGL_GetErrorMsg(-1005, buffer, 256)"));
  }
}

TEST_F(CacheFileLoad, FreesTheTreeThatWasLoadedFirst) {
  loader.root_schema_node = FakeLibrary::kRoot;
  run();
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_Symbolic_FreeHandle(root)", load, "AGL_GetErrorMsg(-1005, buffer, 256)"));
  EXPECT_EQ(loader.root_schema_node, 0);
}

TEST_F(CacheFileLoad, ForgetsATreeThatCannotBeFreed) {
  library.fail("AGL_Symbolic_FreeHandle", -44);
  library.cache_file_loads = true;
  loader.root_schema_node = 123;
  EXPECT_EQ(run(), 0);
  EXPECT_THAT(library.log(),
              ElementsAre("AGL_Symbolic_FreeHandle(123)", "AGL_GetErrorMsg(-44, buffer, 256)", load));
  EXPECT_EQ(printed, "load file success\n");
  EXPECT_EQ(loader.root_schema_node, FakeLibrary::kRoot);
}

TEST(CacheFileSave, WritesTheTree) {
  FakeLibrary library;
  SymbolsLoader loader;
  loader.set_station_id(1);
  loader.root_schema_node = FakeLibrary::kRoot;
  int result = -1;
  EXPECT_EQ(printed_by([&] { result = loader.doSymbolic_SaveAGLinkSymbolsToFile(); }), "");
  EXPECT_EQ(result, 0);
  EXPECT_THAT(
      library.log(),
      ElementsAre("AGL_Symbolic_SaveAGLinkSymbolsToFile(root, \"/mnt/project/1_s71500_symbolic.ap\")"));
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Idle);
}

TEST(CacheFileSave, ReturnsItsOwnCodeWithoutATreeAndCallsNothing) {
  FakeLibrary library;
  SymbolsLoader loader;
  loader.set_station_id(1);
  int result = 0;
  EXPECT_EQ(printed_by([&] { result = loader.doSymbolic_SaveAGLinkSymbolsToFile(); }), "");
  EXPECT_EQ(result, -1048575);
  EXPECT_THAT(library.log(), IsEmpty());
}

TEST(CacheFileSave, PrintsALineWhenItFails) {
  FakeLibrary library;
  library.fail("AGL_Symbolic_SaveAGLinkSymbolsToFile", -33);
  SymbolsLoader loader;
  loader.root_schema_node = FakeLibrary::kRoot;
  int result = 0;
  EXPECT_EQ(printed_by([&] { result = loader.doSymbolic_SaveAGLinkSymbolsToFile(); }),
            "AGL_Symbolic_SaveAGLinkSymbolsToFile error\n");
  EXPECT_EQ(result, -33);
  EXPECT_EQ(library.log().back(), "AGL_GetErrorMsg(-33, buffer, 256)");
}

TEST(SymbolsFromPlc, HandOnResultAndTree) {
  FakeLibrary library;
  const SymbolsLoader loader;
  HandleType tree = 0;
  EXPECT_EQ(loader.init_symbols_from_plc(4, tree), 0);
  EXPECT_EQ(tree, FakeLibrary::kRoot);
  EXPECT_THAT(library.log(), ElementsAre("AGL_Symbolic_LoadAGLinkSymbolsFromPLC(4, &0)"));
  library.fail("AGL_Symbolic_LoadAGLinkSymbolsFromPLC", -66);
  EXPECT_EQ(loader.init_symbols_from_plc(4, tree), -66);
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Idle);
}

TEST(SymbolsFromPlc, AreNotToBeHadWithoutALibrary) {
  const AbsentLibrary absent;
  const SymbolsLoader loader;
  HandleType tree = 0;
  EXPECT_EQ(loader.init_symbols_from_plc(4, tree), -1048554);
  EXPECT_EQ(tree, 0);
}

struct SplitCase {
  const char* text;
  char separator;
  Lines pieces;
};

class Split : public ::testing::TestWithParam<SplitCase> {};

TEST_P(Split, KeepsEmptyPieces) {
  EXPECT_EQ(split(GetParam().text, GetParam().separator), GetParam().pieces);
}

INSTANTIATE_TEST_SUITE_P(All, Split,
                         ::testing::Values(SplitCase{"a..b", '.', {"a", "", "b"}}, SplitCase{"", '.', {""}},
                                           SplitCase{"x.", '.', {"x", ""}}, SplitCase{".x", '.', {"", "x"}},
                                           SplitCase{"x", '.', {"x"}}, SplitCase{".", '.', {"", ""}},
                                           SplitCase{"1,2,3", ',', {"1", "2", "3"}},
                                           SplitCase{"1.2,3", ',', {"1.2", "3"}},
                                           SplitCase{",,,", ',', {"", "", "", ""}}));

}  // namespace
