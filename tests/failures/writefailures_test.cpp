// SPDX-License-Identifier: MIT
// Writes of all kinds of values, with each of their library calls failing in turn. The runtime sees the same
// answer whatever becomes of a write; what differs is what the PLC gets.
#include <gmock/gmock.h>

#include <tuple>

#include "tests/failures/librarycalls.h"
#include "tests/failures/online.h"

namespace {

using injection::Armed;
using injection::Kind;
using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr const char* kAny = "";

struct Outcome {
  enum Stored { All, Nothing, NotThis, BoolAsByte } stored;
  bool accepted = true;
  int handles_kept = 0;  // a write that comes to nothing keeps its access
  const char* aborts = nullptr;
};
constexpr Outcome kDone = {Outcome::All};
constexpr Outcome kNothingStored = {Outcome::Nothing};
// The value is missing; the job goes all the same.
constexpr Outcome kValueMissing = {Outcome::NotThis};
constexpr Outcome kAbort = {
    Outcome::Nothing, false, 0,
    "bufferwriter.cpp:191: void BufferWriter::WriteBufferValue.*Assertion `false' failed"};

struct Rule {
  const char* function;
  const char* path;
  int occurrence;  // 0: each
  Outcome outcome;
};

// The first rule that fits counts.
const Rule kRules[] = {
    {"AGL_Symbolic_CreateAccessByPath", kAny, 0, {Outcome::Nothing, false, 0}},
    {"AGL_Symbolic_GetAccessBufferSize", kAny, 0, {Outcome::Nothing, false, 1}},
    {"AGL_Symbolic_WriteMixEx", kAny, 0, {Outcome::All, false, 1}},
    {"AGL_Symbolic_FreeHandle", kAny, 0, {Outcome::All, true, 1}},
    {"AGL_GetErrorMsg", kAny, 0, kDone},

    // Elements from 2 on of an array that has none.
    {"AGL_Symbolic_GetAccessBufferElementCount", "Curve", 0, kNothingStored},
    {"AGL_Symbolic_GetAccessBufferElementCount", kAny, 0, kDone},

    // A string that is not known for one is element 2 of an access that has one element.
    {"AGL_Symbolic_GetAccessElementValueType", "Messages.Of.The.Line[2]", 1, kNothingStored},
    {"AGL_Symbolic_GetAccessElementValueType", kAny, 1, kDone},
    {"AGL_Symbolic_GetAccessElementValueType", kAny, 0, kAbort},

    // Not known for a Boolean, the second byte is taken for what it is.
    {"AGL_Symbolic_GetAccessElementSystemType", "Lamp", 2, {Outcome::BoolAsByte}},
    {"AGL_Symbolic_GetAccessElementSystemType", "Lamp", 0, kDone},
    {"AGL_Symbolic_GetAccessElementSystemType", "Byte", 0, kDone},
    {"AGL_Symbolic_GetAccessElementSystemType", kAny, 0, kNothingStored},
    {"AGL_Symbolic_GetAccessStringSize", kAny, 0, kNothingStored},

    {"AGL_Symbolic_SetAccessBufferUInt8", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferUInt16", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferUInt32", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferUInt64", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferInt8", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferInt16", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferInt32", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferInt64", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferFloat32", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferFloat64", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferChar8", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferString8", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferString16", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferS7_Counter", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferS7_S5TimeMs", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferS7_DTLParts", kAny, 0, kValueMissing},
    {"AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts", kAny, 0, kValueMissing},
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

std::vector<std::string> expected_stored(const WriteTag& tag, const LibraryCall& call,
                                         const Outcome& outcome) {
  std::vector<std::string> stored = tag.stored;
  switch (outcome.stored) {
    case Outcome::All:
      return stored;
    case Outcome::Nothing:
      return {};
    case Outcome::NotThis:
      stored.erase(stored.begin() + call.occurrence - 1);
      return stored;
    case Outcome::BoolAsByte:
      return {"UInt8 Lamp 0 1", "UInt8 Lamp 1 0"};
  }
  return {};
}

// Of a call that does its work these look at the result; that of a write's job is found out too late.
Outcome outcome_of_work_done(const LibraryCall& call, const Outcome& refused) {
  if (call.function == "AGL_Symbolic_GetAccessBufferSize" || call.function == "AGL_Symbolic_WriteMixEx" ||
      (call.function == "AGL_Symbolic_GetAccessElementValueType" && call.occurrence == 1)) {
    return refused;
  }
  return kDone;
}

class WriteFailures : public Online,
                      public testing::WithParamInterface<std::tuple<std::size_t, injection::Refusal>> {
 protected:
  WriteFailures() { injection::let_calls_fail_by(refusal_); }

  const WriteTag& tag_ = write_tags()[std::get<0>(GetParam())];
  const injection::Refusal refusal_ = std::get<1>(GetParam());

  // What the runtime sees is always the same.
  void write(Runtime& runtime) const {
    EXPECT_EQ(runtime.output({tag_.request}), kFrame);
    EXPECT_THAT(runtime.input(1, false), ElementsAre("0/5/0"));
  }

  void expect(ConnectedPlant& plant, int n, const LibraryCall& call, const Outcome& outcome) const {
    if (outcome.aborts != nullptr) {
      EXPECT_EXIT(
          {
            const Armed armed(Kind::Library, n);
            write(plant.runtime);
          },
          testing::KilledBySignal(SIGABRT), outcome.aborts);
      injection::count_failure(Kind::Library);  // it was another process
      return;
    }
    {
      const Armed armed(Kind::Library, n);
      write(plant.runtime);
      EXPECT_TRUE(armed.hit());
    }
    EXPECT_THAT(stored_texts(plant.library), ElementsAreArray(expected_stored(tag_, call, outcome)));
    const bool job_done = outcome.accepted || (call.function == "AGL_Symbolic_WriteMixEx" &&
                                               refusal_ == injection::Refusal::DoesItsWork);
    EXPECT_EQ(plant.library.writes().size(), job_done ? 1U : 0U);
    EXPECT_EQ(plant.runtime.data().write_device_state, outcome.accepted);
    EXPECT_EQ(plant.runtime.data().device_connect_state, outcome.accepted);
    EXPECT_EQ(plant.library.liveAccesses(), outcome.handles_kept);
    EXPECT_EQ(plant.library.doubleFrees(), 0);
  }
};

}  // namespace

TEST_P(WriteFailures, EachLibraryCallOfAWrite) {
  std::vector<LibraryCall> calls;
  {
    ConnectedPlant plant;
    const Armed none(Kind::Library);
    write(plant.runtime);
    ASSERT_THAT(stored_texts(plant.library), ElementsAreArray(tag_.stored));
    calls = calls_of(plant.library);
  }
  ASSERT_GE(calls.size(), 6U);
  for (std::size_t n = 1; n <= calls.size(); ++n) {
    const LibraryCall& call = calls[n - 1];
    SCOPED_TRACE("write of " + tag_.path + ", library call " + std::to_string(n) + ": " + call.function);
    const Rule* rule = rule_for(call);
    ASSERT_NE(rule, nullptr) << "no answer is expected of this function";
    ConnectedPlant plant;
    expect(plant, static_cast<int>(n), call,
           refusal_ == injection::Refusal::DoesItsWork ? outcome_of_work_done(call, rule->outcome)
                                                       : rule->outcome);
    // The next write, and the next poll.
    plant.library.clearLog();
    write(plant.runtime);
    EXPECT_THAT(stored_texts(plant.library), ElementsAreArray(tag_.stored));
    EXPECT_THAT(poll(plant.runtime), ElementsAreArray(read_answers()));
  }
}

INSTANTIATE_TEST_SUITE_P(
    , WriteFailures, testing::Combine(testing::Range<std::size_t>(0, write_tags().size()), each_refusal()),
    [](const auto& which) {
      return std::to_string(std::get<0>(which.param)) + name_of(std::get<1>(which.param));
    });
