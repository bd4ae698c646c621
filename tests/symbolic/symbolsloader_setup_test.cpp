// SPDX-License-Identifier: MIT
// SetupDevice: its call sequence, what it prints and how the state moves.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <future>
#include <mutex>
#include <thread>

#include "symbolic/symbolsloader.h"
#include "tests/symbolic/access.h"
#include "tests/symbolic/connectionrecord.h"

namespace {

using ::testing::ElementsAre;

constexpr char kBindingLines[] =
    "into AGL_GetParas\nloaded AGL_GetParas\ninto AGL_SetDevType\nloaded pAGL_SetDevType\n";
constexpr char kCacheFile[] = "\"/mnt/project/7_s71500_symbolic.ap\"";

// One loader for station 7 with a fake library that hands out connection number 3.
class SetupDevice : public ::testing::Test {
 protected:
  SetupDevice() {
    loader.set_station_id(7);
    library.connection_number = 3;
  }

  // What every run does first.
  Lines connecting() const {
    return {"AGL_GetParas(7, 1, buffer, 512)",
            "AGL_SetParas(7, 21, buffer, 512)",
            "AGL_SetDevType(7, 21)",
            "AGL_PLCDisconnect(0, 1, 0)",
            "AGL_ExitAdapter(7, 1, 0)",
            "AGL_HangUp(7, 1, 0)",
            "AGL_CloseDevice(7)",
            "AGL_OpenDevice(7)",
            "AGL_DialUp(7, 60000, 0)",
            "AGL_InitAdapter(7, 60000, 0)",
            "AGL_PLCConnectEx(7, 0, 0, 0, &0, 60000, 0)"};
  }

  int run(const std::string& address = "192.168.0.10") {
    int result = -1;
    printed = printed_by([&] { result = loader.SetupDevice(address); });
    return result;
  }

  static Lines joined(Lines first, const Lines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
  }

  const std::string load_file = std::string("AGL_Symbolic_LoadAGLinkSymbolsFromFile(") + kCacheFile + ", &0)";
  const std::string save_file = std::string("AGL_Symbolic_SaveAGLinkSymbolsToFile(root, ") + kCacheFile + ")";
  FakeLibrary library;
  SymbolsLoader loader;
  std::string printed;
};

TEST_F(SetupDevice, LoadsTheCacheFileAndNeitherAsksThePlcNorRewritesTheFile) {
  library.cache_file_loads = true;
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(library.log(), joined(connecting(), {"AGL_ReadMLFBNr(3, buffer, 1, 0)", load_file}));
  EXPECT_EQ(printed, std::string(kBindingLines) + "load file success\n");
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
  EXPECT_EQ(loader.root_schema_node, FakeLibrary::kRoot);
}

TEST_F(SetupDevice, LoadsFromThePlcAndSavesWithoutACacheFile) {
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(library.log(), joined(connecting(), {"AGL_ReadMLFBNr(3, buffer, 1, 0)", load_file,
                                                 "AGL_GetErrorMsg(-1005, buffer, 256)",
                                                 "AGL_Symbolic_LoadAGLinkSymbolsFromPLC(3, &0)", save_file}));
  EXPECT_EQ(printed, std::string(kBindingLines) + "load file error.....\n");
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
  EXPECT_EQ(loader.root_schema_node, FakeLibrary::kRoot);
}

TEST_F(SetupDevice, EndsInErrorWhenThePlcGivesNoSymbols) {
  library.fail("AGL_Symbolic_LoadAGLinkSymbolsFromPLC", -77);
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(library.log(),
            joined(connecting(),
                   {"AGL_ReadMLFBNr(3, buffer, 1, 0)", load_file, "AGL_GetErrorMsg(-1005, buffer, 256)",
                    "AGL_Symbolic_LoadAGLinkSymbolsFromPLC(3, &0)", "AGL_GetErrorMsg(-77, buffer, 256)"}));
  EXPECT_EQ(printed, std::string(kBindingLines) + "load file error.....\nerror\n");
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Error);
}

TEST_F(SetupDevice, HandsThePlcsAddressToTheLibrary) {
  run("10.1.2.3");
  Bytes expected = connection_record("10.1.2.3");
  expected.resize(512, 0);
  EXPECT_EQ(library.parametersSet()[0].bytes, expected);
}

TEST_F(SetupDevice, SendsThePasswordBeforeTheOrderNumberIsRead) {
  loader.set_enable_parameter(true);
  loader.set_password("secret");
  library.cache_file_loads = true;
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(library.log(), joined(connecting(), {"AGL_SetPassword(3, \"secret\", 10000, 1)",
                                                 "AGL_ReadMLFBNr(3, buffer, 1, 0)", load_file}));
}

TEST_F(SetupDevice, GoesOnAfterAWrongPassword) {
  loader.set_enable_parameter(true);
  loader.set_password("secret");
  library.fail("AGL_SetPassword", -55);
  library.cache_file_loads = true;
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(library.log(), joined(connecting(), {"AGL_SetPassword(3, \"secret\", 10000, 1)",
                                                 "AGL_GetErrorMsg(-55, buffer, 256)",
                                                 "AGL_ReadMLFBNr(3, buffer, 1, 0)", load_file}));
  EXPECT_EQ(printed, std::string(kBindingLines) + "load file success\n");
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
}

TEST_F(SetupDevice, SendsNoEmptyPassword) {
  loader.set_enable_parameter(true);
  run();
  EXPECT_EQ(library.count("AGL_SetPassword"), 0);
}

TEST_F(SetupDevice, SendsNoPasswordThatIsNotEnabled) {
  loader.set_password("secret");
  run();
  EXPECT_EQ(library.count("AGL_SetPassword"), 0);
}

TEST_F(SetupDevice, ReadsTheOrderNumberIntoZeroesAndDropsIt) {
  library.failAfterwards("AGL_ReadMLFBNr", -3);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(library.orderNumberBuffer(), Bytes(21, 0));
  EXPECT_EQ(library.log("AGL_GetErrorMsg"), Lines{"AGL_GetErrorMsg(-1005, buffer, 256)"});
}

TEST_F(SetupDevice, ChecksNoStepOfTheConnection) {
  for (const char* function : {"AGL_GetParas", "AGL_SetParas", "AGL_SetDevType", "AGL_PLCDisconnect",
                               "AGL_ExitAdapter", "AGL_HangUp", "AGL_CloseDevice", "AGL_OpenDevice",
                               "AGL_DialUp", "AGL_InitAdapter", "AGL_PLCConnectEx", "AGL_ReadMLFBNr"}) {
    library.fail(function, -3);
  }
  library.cache_file_loads = true;
  EXPECT_EQ(run(), 1);
  // No connection number arrived: 0 is used.
  EXPECT_EQ(library.log(), joined(connecting(), {"AGL_ReadMLFBNr(0, buffer, 1, 0)", load_file}));
}

TEST_F(SetupDevice, SucceedsEvenWhenTheCacheFileCannotBeSaved) {
  library.fail("AGL_Symbolic_SaveAGLinkSymbolsToFile", -33);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(library.log().back(), "AGL_GetErrorMsg(-33, buffer, 256)");
  EXPECT_EQ(printed, std::string(kBindingLines) +
                         "load file error.....\nAGL_Symbolic_SaveAGLinkSymbolsToFile error\n");
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
}

TEST_F(SetupDevice, IsIdleWhileItTriesTheFileAndLoadingUntilTheFileIsSaved) {
  std::vector<int> states;
  const auto note = [&] { states.push_back(loader.loader_state); };
  library.onCall("AGL_PLCConnectEx", note);
  library.onCall("AGL_Symbolic_LoadAGLinkSymbolsFromFile", note);
  library.onCall("AGL_Symbolic_LoadAGLinkSymbolsFromPLC", note);
  library.onCall("AGL_Symbolic_SaveAGLinkSymbolsToFile", note);
  run();
  EXPECT_THAT(states, ElementsAre(SymbolsLoader::Idle, SymbolsLoader::Idle, SymbolsLoader::Loading,
                                  SymbolsLoader::Loading));
}

TEST_F(SetupDevice, UsesTheStationAsDeviceUpTo255) {
  loader.set_station_id(255);
  run();
  EXPECT_EQ(library.log("AGL_OpenDevice"), Lines{"AGL_OpenDevice(255)"});
  EXPECT_EQ(library.log("AGL_Symbolic_LoadAGLinkSymbolsFromFile"),
            Lines{"AGL_Symbolic_LoadAGLinkSymbolsFromFile(\"/mnt/project/255_s71500_symbolic.ap\", &0)"});
}

TEST_F(SetupDevice, FreesTheOldTreeWhenItRunsAgain) {
  library.cache_file_loads = true;
  run();
  library.clearLog();
  loader.loader_state = SymbolsLoader::Idle;
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(library.log(), joined(connecting(), {"AGL_ReadMLFBNr(3, buffer, 1, 0)",
                                                 "AGL_Symbolic_FreeHandle(root)", load_file}));
}

// What counts is the state after the file was tried, and a failed file does not change it.
TEST_F(SetupDevice, ReturnsSuccessWithoutATreeWhenItRunsAgainInSuccessAndTheFileIsGone) {
  library.cache_file_loads = true;
  run();
  library.cache_file_loads = false;
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(library.count("AGL_Symbolic_LoadAGLinkSymbolsFromPLC"), 0);
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
  EXPECT_EQ(loader.root_schema_node, 0);
}

TEST_F(SetupDevice, DoesNotTouchTheQueuesAndCachesOfTheFilters) {
  loader.read_data_queue = {"A"};
  loader.cache_data["A"] = {1};
  loader.read_data_queue_filter["A"] = {2};
  loader.Queue = {"B"};
  loader.bDisconnect = true;
  loader.read_data_status = true;
  run();
  EXPECT_THAT(loader.read_data_queue, ElementsAre("A"));
  EXPECT_EQ(loader.cache_data.at("A"), Bytes{1});
  EXPECT_EQ(loader.read_data_queue_filter.at("A"), Bytes{2});
  EXPECT_THAT(loader.Queue, ElementsAre("B"));
  EXPECT_TRUE(loader.bDisconnect);
  EXPECT_TRUE(loader.read_data_status);
}

TEST_F(SetupDevice, ShowsTheTreeToWhoeverSeesSuccess) {
  std::thread connection([&] { loader.SetupDevice("192.168.0.10"); });
  while (loader.loader_state != SymbolsLoader::Success) std::this_thread::yield();
  const HandleType seen = loader.root_schema_node;
  connection.join();
  EXPECT_EQ(seen, FakeLibrary::kRoot);
}

// A time-out of the runtime can start a second connection thread while the first still waits for the PLC.
// This one starts in the middle of the first run, which goes on when the second waits or has ended.
class SecondRun : public SetupDevice {
 protected:
  void runs_during_the_first(const std::string& address) {
    library.onCall("AGL_PLCConnectEx", [this, address] {
      if (started) return;
      started = true;
      second = std::thread([this, address] {
        thread_id.set_value(gettid());
        second_result = loader.SetupDevice(address);
      });
      wait_until_idle(thread_id.get_future().get());
      calls_meanwhile = library.count("AGL_GetParas") - 1;
    });
    EXPECT_EQ(run("192.168.0.10"), 1);
    second.join();
  }

  // Until the kernel says that the thread sleeps, or knows it no more.
  static void wait_until_idle(pid_t thread_id) {
    const std::string path = "/proc/self/task/" + std::to_string(thread_id) + "/stat";
    for (int times_asleep = 0; times_asleep < 100; std::this_thread::yield()) {
      std::ifstream stat(path);
      std::string line;
      if (!std::getline(stat, line)) return;
      const bool asleep = line.substr(line.rfind(')') + 2, 1) == "S";
      times_asleep = asleep ? times_asleep + 1 : 0;
    }
  }

  bool started = false;
  std::promise<pid_t> thread_id;
  std::thread second;
  int second_result = -1;
  int calls_meanwhile = -1;
};

TEST_F(SecondRun, WaitsForTheFirst) {
  runs_during_the_first("192.168.0.11");
  EXPECT_EQ(calls_meanwhile, 0);
  EXPECT_EQ(second_result, 1);
  EXPECT_EQ(library.count("AGL_PLCConnectEx"), 2);
}

TEST_F(SecondRun, HasNothingLeftToDoForTheSameAddress) {
  runs_during_the_first("192.168.0.10");
  EXPECT_EQ(calls_meanwhile, 0);
  EXPECT_EQ(second_result, 1);
  EXPECT_EQ(library.count("AGL_PLCConnectEx"), 1);
}

TEST_F(SecondRun, TriesForItselfWhenTheFirstFailed) {
  library.failCall("AGL_Symbolic_LoadAGLinkSymbolsFromPLC", 1, -77);
  std::thread both[2];
  int results = 0;
  std::mutex mutex;
  for (auto& one : both) {
    one = std::thread([&] {
      const int result = loader.SetupDevice("192.168.0.10");
      const std::lock_guard lock(mutex);
      results += result;
    });
  }
  for (auto& one : both) one.join();
  EXPECT_EQ(results, 1);
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Success);
}

TEST_F(SetupDevice, EndsInErrorWithoutALibrary) {
  const AbsentLibrary absent;
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(loader.loader_state, SymbolsLoader::Error);
  EXPECT_EQ(loader.root_schema_node, 0);
}

}  // namespace
