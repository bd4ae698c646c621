// SPDX-License-Identifier: MIT
// The connection sequence with each of its library calls failing in turn: with a symbol cache file, without
// one, and anew after a loss. Only the load from the PLC decides.
#include <gmock/gmock.h>

#include <set>
#include <tuple>

#include "tests/failures/librarycalls.h"
#include "tests/failures/online.h"

namespace {

using injection::Armed;
using injection::Kind;
using testing::ElementsAre;
using testing::ElementsAreArray;

// Calls whose failure nobody looks at. AGL_Symbolic_LoadAGLinkSymbolsFromFile falls back to the PLC.
const std::set<std::string> kUnseen = {
    "AGL_GetParas",
    "AGL_SetParas",
    "AGL_SetDevType",
    "AGL_PLCDisconnect",
    "AGL_ExitAdapter",
    "AGL_HangUp",
    "AGL_CloseDevice",
    "AGL_OpenDevice",
    "AGL_DialUp",
    "AGL_InitAdapter",
    "AGL_PLCConnectEx",
    "AGL_SetPassword",
    "AGL_ReadMLFBNr",
    "AGL_GetErrorMsg",
    "AGL_Symbolic_FreeHandle",
    "AGL_Symbolic_LoadAGLinkSymbolsFromFile",
    "AGL_Symbolic_SaveAGLinkSymbolsToFile",
};
constexpr const char* kDeciding = "AGL_Symbolic_LoadAGLinkSymbolsFromPLC";

struct Phase {
  const char* name;
  bool cache_file;
  bool anew;  // a tree is loaded already
  std::vector<std::string> calls;
};

// Parameters, clean-up, connection, password, order number.
const std::vector<std::string> kConnection = {
    "AGL_GetParas",     "AGL_SetParas",    "AGL_SetDevType", "AGL_PLCDisconnect", "AGL_ExitAdapter",
    "AGL_HangUp",       "AGL_CloseDevice", "AGL_OpenDevice", "AGL_DialUp",        "AGL_InitAdapter",
    "AGL_PLCConnectEx", "AGL_SetPassword", "AGL_ReadMLFBNr",
};

std::vector<std::string> connection_and(std::initializer_list<const char*> more) {
  std::vector<std::string> calls = kConnection;
  calls.insert(calls.end(), more.begin(), more.end());
  return calls;
}

const Phase kPhases[] = {
    {"SymbolsFromTheFile", true, false, connection_and({"AGL_Symbolic_LoadAGLinkSymbolsFromFile"})},
    {"SymbolsFromThePlc", false, false,
     connection_and({"AGL_Symbolic_LoadAGLinkSymbolsFromFile", "AGL_GetErrorMsg",
                     "AGL_Symbolic_LoadAGLinkSymbolsFromPLC", "AGL_Symbolic_SaveAGLinkSymbolsToFile"})},
    {"AnewFromTheFile", true, true,
     connection_and({"AGL_Symbolic_FreeHandle", "AGL_Symbolic_LoadAGLinkSymbolsFromFile"})},
    {"AnewFromThePlc", false, true,
     connection_and({"AGL_Symbolic_FreeHandle", "AGL_Symbolic_LoadAGLinkSymbolsFromFile", "AGL_GetErrorMsg",
                     "AGL_Symbolic_LoadAGLinkSymbolsFromPLC", "AGL_Symbolic_SaveAGLinkSymbolsToFile"})},
};

class ConnectFailures : public Online,
                        public testing::WithParamInterface<std::tuple<Phase, injection::Refusal>> {
 protected:
  ConnectFailures() { injection::let_calls_fail_by(std::get<1>(GetParam())); }

  // A device whose connection thread is started and has not run.
  struct Started : Plant {
    explicit Started(const Phase& phase) {
      runtime.bring_up();
      if (phase.anew) {
        runtime.connect();
        EXPECT_EQ(runtime.init_command(), "");
      }
      library.cache_file_loads = phase.cache_file;
      library.clearLog();
      EXPECT_EQ(runtime.output(read_requests()), kFrame);
    }
  };
};

}  // namespace

TEST_P(ConnectFailures, EachLibraryCall) {
  const Phase phase = std::get<0>(GetParam());
  std::vector<LibraryCall> calls;
  {
    Started plant(phase);
    const Armed none(Kind::Library);
    ASSERT_TRUE(injection::run_started_thread());
    ASSERT_EQ(injection::asked(), phase.calls);
    calls = calls_of(plant.library);
    ASSERT_THAT(poll(plant.runtime), ElementsAreArray(read_answers()));
  }
  for (std::size_t n = 1; n <= calls.size(); ++n) {
    const std::string& function = calls[n - 1].function;
    SCOPED_TRACE(std::string(phase.name) + ", library call " + std::to_string(n) + ": " + function);
    Started plant(phase);
    {
      const Armed armed(Kind::Library, static_cast<int>(n));
      ASSERT_TRUE(injection::run_started_thread());
      EXPECT_TRUE(armed.hit());
    }
    const std::vector<RequestBuilder> requests = read_requests();
    if (function == kDeciding) {
      EXPECT_EQ(plant.runtime.loader().loader_state, SymbolsLoader::Error);
      EXPECT_EQ(plant.runtime.output(requests), kFailedFrame);
      // Record 0 is preset, and no other one is touched.
      EXPECT_THAT(plant.runtime.input(2), ElementsAre("0/5/0", "-/-/-"));
    } else {
      ASSERT_TRUE(kUnseen.contains(function)) << "no answer is expected of this function";
      EXPECT_EQ(plant.runtime.loader().loader_state, SymbolsLoader::Success);
      EXPECT_EQ(plant.runtime.output(requests), kFrame);
      EXPECT_THAT(plant.runtime.input(static_cast<int>(requests.size())), ElementsAreArray(read_answers()));
    }
    // The next connection.
    plant.runtime.reconnect(requests);
    EXPECT_THAT(poll(plant.runtime), ElementsAreArray(read_answers()));
    EXPECT_EQ(plant.library.liveAccesses(), 0);
    EXPECT_EQ(plant.library.doubleFrees(), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(, ConnectFailures, testing::Combine(testing::ValuesIn(kPhases), each_refusal()),
                         [](const auto& which) {
                           return std::get<0>(which.param).name + name_of(std::get<1>(which.param));
                         });
