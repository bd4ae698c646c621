// SPDX-License-Identifier: MIT
// The reads and texts of symbolic/ that no filter uses, with each of their library calls and allocations
// failing in turn.
#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <stdexcept>

#include "symbolic/arrayhelper.h"
#include "symbolic/symbolsloader.h"
#include "tests/failures/librarycalls.h"
#include "tests/failures/online.h"

namespace {

using injection::Armed;
using injection::Kind;

// What an operation gives, as text.
using Operation = std::function<std::string(SymbolsLoader&, FakeLibrary&)>;

std::string text_of(const std::vector<unsigned char>& bytes) {
  std::string text;
  for (const unsigned char byte : bytes) text += std::to_string(byte) + ' ';
  return text;
}

std::string read_map(SymbolsLoader& loader, FakeLibrary&) {
  int error = 0;
  std::map<std::string, Values> values;
  std::vector<std::string> paths = {"Curve", "Speed"};
  {
    const injection::DriverSide driver;
    values = loader.ReadMapMultiDataFromPlcByPath(paths, error);
  }
  std::string text = "error " + std::to_string(error) + ':';
  for (const auto& [path, value] : values) text += ' ' + path + ": " + text_of(value.datas);
  const injection::DriverSide driver;
  values.clear();
  return text;
}

std::string read_one(SymbolsLoader& loader, FakeLibrary&) {
  const std::string path = "Curve";
  std::vector<unsigned char> value;
  {
    const injection::DriverSide driver;
    value = loader.ReadDataFromPlcByPath(path);
  }
  return text_of(value);
}

std::string read_array_of_element(SymbolsLoader& loader, FakeLibrary&) {
  const std::string path = "Matrix[1,2]";
  unsigned long position = 99;
  std::vector<unsigned char> value;
  {
    const injection::DriverSide driver;
    value = loader.ReadDataFromPlcByPathfor_multi_array_transfer(path, &position);
  }
  return std::to_string(position) + ": " + text_of(value);
}

std::string dimensions(SymbolsLoader&, FakeLibrary& library) {
  const HandleType node = library.node("Wideband");
  std::string text;
  {
    const injection::DriverSide driver;
    text = ArrayHelper::ParseArrayDimensions(node);
  }
  return text;
}

std::string index_of(SymbolsLoader&, FakeLibrary& library) {
  const HandleType node = library.node("Indexed");
  std::string text;
  {
    const injection::DriverSide driver;
    text = ArrayHelper::ParseIndex(node);
  }
  return text;
}

struct Answer {
  const char* function;
  const char* path;  // "" for any
  int occurrence;    // 0: each
  const char* text;  // null: the process aborts
};

struct Case {
  const char* name;
  Operation operation;
  const char* good;
  std::vector<Answer> answers;  // the first that fits counts; a function without one gives what is good
};

constexpr const char* kAborts = nullptr;

// Curve is 21 to 24 from index 1 on.
const std::vector<Case> kCases = {
    {"BatchedRead",
     read_map,
     "error 0: Curve: 0 0 21 0 22 0 23 0 24 0  Speed: 5 0 ",
     {
         {"AGL_Symbolic_CreateAccessByPath", "Curve", 0, "error 1: Curve:  Speed: 5 0 "},
         {"AGL_Symbolic_CreateAccessByPath", "Speed", 0, "error 1: Curve: 0 0 21 0 22 0 23 0 24 0  Speed: "},
         {"AGL_Symbolic_GetAccessBufferSize", "", 0, "error 1: Curve: 0 0 21 0 22 0 23 0 24 0  Speed: 5 0 "},
         {"AGL_Symbolic_ReadMixEx", "", 0, "error -77:"},
         {"AGL_Symbolic_GetAccessElementValueType", "", 0, kAborts},
         {"AGL_Symbolic_GetAccessBufferElementCount", "Curve", 0, "error 0: Curve: 0 0  Speed: 5 0 "},
         {"AGL_Symbolic_GetAccessBufferElementCount", "Speed", 0,
          "error 0: Curve: 0 0 21 0 22 0 23 0 24 0  Speed: "},
         {"AGL_Symbolic_GetAccessBufferInt16", "Curve", 1, "error 0: Curve: 0 0 22 0 23 0 24 0  Speed: 5 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "Curve", 2, "error 0: Curve: 0 0 21 0 23 0 24 0  Speed: 5 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "Curve", 3, "error 0: Curve: 0 0 21 0 22 0 24 0  Speed: 5 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "Curve", 4, "error 0: Curve: 0 0 21 0 22 0 23 0  Speed: 5 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "Speed", 0,
          "error 0: Curve: 0 0 21 0 22 0 23 0 24 0  Speed: "},
         {"AGL_Symbolic_GetAccessBufferElementSize", "Curve", 0,
          "error 0: Curve: 21 0 22 0 23 0 24 0  Speed: 5 0 "},
         {"AGL_Symbolic_GetNodeByPath", "Curve", 0, "error 0: Curve: 21 0 22 0 23 0 24 0  Speed: 5 0 "},
         {"AGL_Symbolic_GetArrayDimensionCount", "Curve", 0,
          "error 0: Curve: 21 0 22 0 23 0 24 0  Speed: 5 0 "},
         {"AGL_Symbolic_GetArrayDimension", "", 0, "error 0: Curve: 21 0 22 0 23 0 24 0  Speed: 5 0 "},
     }},
    {"SingleRead",
     read_one,
     "0 0 21 0 22 0 23 0 24 0 ",
     {
         {"AGL_Symbolic_CreateAccessByPath", "", 0, ""},
         {"AGL_Symbolic_GetAccessBufferSize", "", 0, ""},
         {"AGL_Symbolic_ReadMixEx", "", 0, ""},
         {"AGL_Symbolic_GetAccessElementValueType", "", 0, kAborts},
         {"AGL_Symbolic_GetAccessBufferElementCount", "", 0, "0 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "", 1, "0 0 22 0 23 0 24 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "", 2, "0 0 21 0 23 0 24 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "", 3, "0 0 21 0 22 0 24 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "", 4, "0 0 21 0 22 0 23 0 "},
         {"AGL_Symbolic_GetAccessBufferElementSize", "", 0, "21 0 22 0 23 0 24 0 "},
         {"AGL_Symbolic_GetNodeByPath", "", 0, "21 0 22 0 23 0 24 0 "},
         {"AGL_Symbolic_GetArrayDimensionCount", "", 0, "21 0 22 0 23 0 24 0 "},
         {"AGL_Symbolic_GetArrayDimension", "", 0, "21 0 22 0 23 0 24 0 "},
     }},
    {"ArrayOfAnElement",
     read_array_of_element,
     "5: 1 0 2 0 3 0 4 0 5 0 6 0 ",
     {
         // The first look-up is for the position; the second one for bounds that a matrix needs not.
         {"AGL_Symbolic_GetNodeByPath", "", 1, "99: "},
         {"AGL_Symbolic_GetArrayIndexAsLinearIndex", "", 0, "99: "},
         {"AGL_Symbolic_CreateAccessByPath", "", 0, "5: "},
         {"AGL_Symbolic_GetAccessBufferSize", "", 0, "5: "},
         {"AGL_Symbolic_ReadMixEx", "", 0, "5: "},
         {"AGL_Symbolic_GetAccessElementValueType", "", 0, kAborts},
         {"AGL_Symbolic_GetAccessBufferElementCount", "", 0, "5: "},
         {"AGL_Symbolic_GetAccessBufferInt16", "", 1, "5: 2 0 3 0 4 0 5 0 6 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "", 2, "5: 1 0 3 0 4 0 5 0 6 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "", 3, "5: 1 0 2 0 4 0 5 0 6 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "", 4, "5: 1 0 2 0 3 0 5 0 6 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "", 5, "5: 1 0 2 0 3 0 4 0 6 0 "},
         {"AGL_Symbolic_GetAccessBufferInt16", "", 6, "5: 1 0 2 0 3 0 4 0 5 0 "},
     }},
    {"TextOfDimensions",
     dimensions,
     "{{10000..20000},{1..9}}",
     {
         {"AGL_Symbolic_GetArrayDimensionCount", "", 0, "{}"},
         {"AGL_Symbolic_GetArrayDimension", "", 1, "{{0..0},{1..9}}"},
         {"AGL_Symbolic_GetArrayDimension", "", 2, "{{10000..20000},{0..0}}"},
     }},
    {"TextOfAnIndex",
     index_of,
     "[12345,67890,13579]",
     {
         {"AGL_Symbolic_GetIndexSize", "", 0, "[]"},
         {"AGL_Symbolic_GetIndex", "", 1, "[0,67890,13579]"},
         {"AGL_Symbolic_GetIndex", "", 2, "[12345,0,13579]"},
         {"AGL_Symbolic_GetIndex", "", 3, "[12345,67890,0]"},
     }},
};

const char* expected_answer(const Case& one, const LibraryCall& call) {
  for (const Answer& answer : one.answers) {
    if (call.function == answer.function && (*answer.path == '\0' || call.path == answer.path) &&
        (answer.occurrence == 0 || call.occurrence == answer.occurrence)) {
      return answer.text;
    }
  }
  return one.good;
}

class SymbolicFailures : public Online, public testing::WithParamInterface<Case> {
 protected:
  struct World {
    World() {
      add_plant(library);
      library.add("Wideband", Item::Int16(1).array(10000, 20000).array(1, 9));
      library.add("Indexed", Item::Int16(1).index(12345).index(67890).index(13579));
      injection::guard_library();
      loader.station_id = kStationNumber;
      loader.root_schema_node = FakeLibrary::kRoot;
      loader.loader_state = SymbolsLoader::Success;
    }
    FakeLibrary library;
    SymbolsLoader loader;
  };

  std::string run(World& world) const {
    try {
      return GetParam().operation(world.loader, world.library);
    } catch (const std::bad_alloc&) {
      return "bad_alloc";
    }
  }
};

}  // namespace

TEST_P(SymbolicFailures, EachLibraryCall) {
  std::vector<LibraryCall> calls;
  {
    World world;
    const Armed none(Kind::Library);
    ASSERT_EQ(run(world), GetParam().good);
    calls = calls_of(world.library);
  }
  ASSERT_FALSE(calls.empty());
  for (std::size_t n = 1; n <= calls.size(); ++n) {
    const LibraryCall& call = calls[n - 1];
    SCOPED_TRACE("library call " + std::to_string(n) + ": " + call.function + " of " + call.path);
    const char* expected = expected_answer(GetParam(), call);
    World world;
    if (expected == kAborts) {
      EXPECT_EXIT(
          {
            const Armed armed(Kind::Library, static_cast<int>(n));
            run(world);
          },
          testing::KilledBySignal(SIGABRT), "bufferreader.cpp:172: ");
      injection::count_failure(Kind::Library);  // it was another process
      continue;
    }
    {
      const Armed armed(Kind::Library, static_cast<int>(n));
      EXPECT_EQ(run(world), expected);
      EXPECT_TRUE(armed.hit());
    }
    EXPECT_EQ(world.library.liveAccesses(), call.function == "AGL_Symbolic_FreeHandle" ? 1 : 0);
    EXPECT_EQ(run(world), GetParam().good) << "the next time";
  }
}

TEST_P(SymbolicFailures, EachAllocation) {
  for (int n = 1;; ++n) {
    SCOPED_TRACE("allocation " + std::to_string(n));
    World world;
    bool hit = false;
    {
      const Armed armed(Kind::Memory, n);
      const std::string result = run(world);
      hit = armed.hit();
      EXPECT_EQ(result, hit ? "bad_alloc" : GetParam().good);
    }
    EXPECT_EQ(world.library.liveAccesses(), 0);
    EXPECT_EQ(run(world), GetParam().good) << "the next time";
    if (!hit) break;
  }
  EXPECT_FALSE(injection::asked().empty());
}

TEST(ReadBatchFailures, APlaceThatWasRefusedTakesNoMemoryOfItsOwn) {
  std::size_t usual = 0;
  for (const int nth : {0, 1, 2}) {
    ReadBatch batch;
    {
      const Armed armed(Kind::Memory, nth);
      const injection::DriverSide driver;
      try {
        batch.Add("Speed");
      } catch (const std::bad_alloc&) {
        batch.Add("Speed");
      }
      EXPECT_EQ(armed.hit(), nth != 0);
    }
    EXPECT_EQ(batch.size(), 1U);
    if (nth == 0) usual = injection::bytes_alive();
    EXPECT_EQ(injection::bytes_alive(), usual) << nth;
  }
}

INSTANTIATE_TEST_SUITE_P(, SymbolicFailures, testing::ValuesIn(kCases),
                         [](const auto& which) { return std::string(which.param.name); });
