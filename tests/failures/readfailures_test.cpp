// SPDX-License-Identifier: MIT
// A poll of all kinds of values, with each of its library calls failing in turn.
#include <gmock/gmock.h>

#include <set>

#include "tests/failures/injection.h"
#include "tests/failures/librarycalls.h"
#include "tests/failures/online.h"

namespace {

using injection::Armed;
using injection::Kind;
using testing::ElementsAreArray;

constexpr const char* kAny = "";

// What the runtime sees of the tag that the failing call was for.
struct Outcome {
  enum Which { Good, Answer, Lost, Abort } which;
  const char* text = "";  // the tag's record, or what the process says when it aborts
};
constexpr Outcome kGood = {Outcome::Good};
constexpr Outcome kNoData = {Outcome::Answer, "2/5/40"};
constexpr Outcome kLost = {Outcome::Lost};

struct Rule {
  const char* function;
  const char* path;
  int occurrence;  // 0: each
  Outcome outcome;
};

// The first rule that fits counts.
const Rule kRules[] = {
    // Without an access the library marks it in the job.
    {"AGL_Symbolic_CreateAccessByPath", kAny, 0, kNoData},
    // The access goes into the job with no buffer; this library's job delivers its value all the same.
    {"AGL_Symbolic_GetAccessBufferSize", kAny, 0, kGood},
    {"AGL_Symbolic_ReadMixEx", kAny, 0, kLost},
    {"AGL_Symbolic_FreeHandle", kAny, 0, kGood},

    // No element, so no byte.
    // The fill of an array is put in front of nothing all the same.
    {"AGL_Symbolic_GetAccessBufferElementCount",
     "Table",
     0,
     {Outcome::Answer, "0/5/40 0000 0000 0000 0000 0000"}},
    {"AGL_Symbolic_GetAccessBufferElementCount", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessElementValueType",
     kAny,
     0,
     {Outcome::Abort, "bufferreader.cpp:172: void BufferReader::GetBufferValue.*Assertion `false' failed"}},
    {"AGL_Symbolic_GetAccessElementSystemType",
     kAny,
     0,
     {Outcome::Abort,
      "bufferreader.cpp:460: void BufferReader::GetSystemSpecificBufferValue.*Assertion `res == "
      "AGL40_SUCCESS' "
      "failed"}},
    {"AGL_Symbolic_GetAccessStringSize",
     "Wide",
     0,
     {Outcome::Abort,
      "bufferreader.cpp:414: void BufferReader::ReadString16.*Assertion `res == AGL40_SUCCESS' failed"}},
    {"AGL_Symbolic_GetAccessStringSize", kAny, 0, kNoData},

    // An element that cannot be fetched has no byte, and those behind it move forward.
    {"AGL_Symbolic_GetAccessBufferInt16", "Table", 1, {Outcome::Answer, "0/5/40 0000 000C 000D 000E 0000"}},
    {"AGL_Symbolic_GetAccessBufferInt16", "Table", 2, {Outcome::Answer, "0/5/40 0000 000B 000D 000E 0000"}},
    {"AGL_Symbolic_GetAccessBufferInt16", "Table", 3, {Outcome::Answer, "0/5/40 0000 000B 000C 000E 0000"}},
    {"AGL_Symbolic_GetAccessBufferInt16", "Table", 4, {Outcome::Answer, "0/5/40 0000 000B 000C 000D 0000"}},
    {"AGL_Symbolic_GetAccessBufferInt16", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferInt8", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferInt32", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferInt64", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferUInt8", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferUInt16", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferUInt32", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferUInt64", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferFloat32", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferFloat64", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferChar8", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferString8", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferString16", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferS7_Counter", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferS7_S5TimeMs", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferS7_DTLParts", kAny, 0, kNoData},
    {"AGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts", kAny, 0, kNoData},

    // Without its bounds an array is not re-based; everything else needs none.
    {"AGL_Symbolic_GetAccessBufferElementSize",
     "Table",
     0,
     {Outcome::Answer, "0/5/40 000B 000C 000D 000E 0000"}},
    {"AGL_Symbolic_GetAccessBufferElementSize", kAny, 0, kGood},
    {"AGL_Symbolic_GetNodeByPath", "Table", 0, {Outcome::Answer, "0/5/40 000B 000C 000D 000E 0000"}},
    {"AGL_Symbolic_GetNodeByPath", kAny, 0, kGood},
    {"AGL_Symbolic_GetArrayDimensionCount", "Table", 0, {Outcome::Answer, "0/5/40 000B 000C 000D 000E 0000"}},
    {"AGL_Symbolic_GetArrayDimensionCount", kAny, 0, kGood},
    {"AGL_Symbolic_GetArrayDimension", "Table", 0, {Outcome::Answer, "0/5/40 000B 000C 000D 000E 0000"}},
    {"AGL_Symbolic_GetArrayDimension", kAny, 0, kGood},
};

const Rule* rule_for(const LibraryCall& call) {
  for (const Rule& rule : kRules) {
    if (call.function == rule.function && (*rule.path == '\0' || call.path == rule.path) &&
        (rule.occurrence == 0 || call.occurrence == rule.occurrence)) {
      return &rule;
    }
  }
  return nullptr;
}

// Record 0 was preset; of the others only the code is written.
std::vector<std::string> lost_answers() {
  std::vector<std::string> answers(read_tags().size(), "2/-/-");
  answers[0] = "2/5/0";
  return answers;
}

std::vector<std::string> expected_answers(const LibraryCall& call, const Outcome& outcome) {
  if (outcome.which == Outcome::Lost) return lost_answers();
  std::vector<std::string> answers = read_answers();
  if (outcome.which != Outcome::Answer) return answers;
  for (std::size_t i = 0; i < answers.size(); ++i) {
    // An element's node is its array's.
    const std::string& path = read_tags()[i].path;
    if (path == call.path) answers[i] = outcome.text;
  }
  return answers;
}

// Of a call that does its work these look at the result.
const std::set<std::string> kLookedAt = {
    "AGL_Symbolic_ReadMixEx",           "AGL_Symbolic_GetAccessElementSystemType",
    "AGL_Symbolic_GetAccessStringSize", "AGL_Symbolic_GetArrayDimensionCount",
    "AGL_Symbolic_GetArrayDimension",
};

bool is_looked_at(const std::string& function) {
  const bool element = function.starts_with("AGL_Symbolic_GetAccessBuffer") &&
                       function != "AGL_Symbolic_GetAccessBufferSize" &&
                       function != "AGL_Symbolic_GetAccessBufferElementCount" &&
                       function != "AGL_Symbolic_GetAccessBufferElementSize";
  return element || kLookedAt.contains(function);
}

class ReadFailures : public Online, public testing::WithParamInterface<injection::Refusal> {
 protected:
  ReadFailures() { injection::let_calls_fail_by(GetParam()); }
};

}  // namespace

TEST_P(ReadFailures, EachLibraryCallOfAPoll) {
  std::vector<LibraryCall> calls;
  {
    ConnectedPlant plant;
    const Armed none(Kind::Library);
    ASSERT_THAT(poll(plant.runtime), ElementsAreArray(read_answers()));
    calls = calls_of(plant.library);
  }
  ASSERT_GT(calls.size(), 150U);
  for (int n = 1; n <= static_cast<int>(calls.size()); ++n) {
    const LibraryCall& call = calls[static_cast<std::size_t>(n) - 1];
    SCOPED_TRACE("poll, library call " + std::to_string(n) + ": " + call.function + " of " + call.path);
    const Rule* rule = rule_for(call);
    ASSERT_NE(rule, nullptr) << "no answer is expected of this function";
    const bool did_its_work = GetParam() == injection::Refusal::DoesItsWork;
    const Outcome outcome = did_its_work && !is_looked_at(call.function) ? kGood : rule->outcome;
    ConnectedPlant plant;
    if (outcome.which == Outcome::Abort) {
      EXPECT_EXIT(
          {
            const Armed armed(Kind::Library, n);
            poll(plant.runtime);
          },
          testing::KilledBySignal(SIGABRT), outcome.text);
      injection::count_failure(Kind::Library);  // it was another process
      continue;
    }
    {
      const Armed armed(Kind::Library, n);
      EXPECT_THAT(poll(plant.runtime), ElementsAreArray(expected_answers(call, outcome)));
      EXPECT_TRUE(armed.hit());
    }
    const bool refused_free = call.function == "AGL_Symbolic_FreeHandle" && !did_its_work;
    EXPECT_EQ(plant.library.liveAccesses(), refused_free ? 1 : 0);
    EXPECT_EQ(plant.library.doubleFrees(), 0);
    const bool lost = outcome.which == Outcome::Lost;
    EXPECT_THAT(injection::take_removed_files(),
                ElementsAreArray(lost ? std::vector<std::string>{"/mnt/project/7_s71500_symbolic.ap"}
                                      : std::vector<std::string>{}));
    if (lost) {
      EXPECT_EQ(plant.runtime.output(read_requests()), kFailedFrame);
      plant.runtime.reconnect(read_requests());
    }
    EXPECT_THAT(poll(plant.runtime), ElementsAreArray(read_answers())) << "the next cycle";
  }
}

INSTANTIATE_TEST_SUITE_P(, ReadFailures, each_refusal(),
                         [](const auto& which) { return name_of(which.param); });
