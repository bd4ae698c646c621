// SPDX-License-Identifier: MIT
// A poll of one element of an array that does not begin at 0, with each of its library calls failing in turn.
// The element is picked out of the whole array: what makes that shorter raises std::out_of_range.
#include <gmock/gmock.h>

#include "tests/failures/librarycalls.h"
#include "tests/failures/online.h"

namespace {

using injection::Armed;
using injection::Kind;
using testing::ElementsAre;
using testing::ElementsAreArray;

enum class Outcome { Good, NoData, Lost, Raises, Aborts };

struct Rule {
  const char* function;
  Outcome outcome;
};

const Rule kRules[] = {
    {"AGL_Symbolic_CreateAccessByPath", Outcome::NoData},
    // This library's job delivers the value all the same.
    {"AGL_Symbolic_GetAccessBufferSize", Outcome::Good},
    {"AGL_Symbolic_ReadMixEx", Outcome::Lost},
    {"AGL_Symbolic_FreeHandle", Outcome::Good},
    {"AGL_Symbolic_GetAccessElementValueType", Outcome::Aborts},
    // An element less, or no fill in front of the first.
    {"AGL_Symbolic_GetAccessBufferElementCount", Outcome::Raises},
    {"AGL_Symbolic_GetAccessBufferInt16", Outcome::Raises},
    {"AGL_Symbolic_GetAccessBufferElementSize", Outcome::Raises},
    {"AGL_Symbolic_GetNodeByPath", Outcome::Raises},
    {"AGL_Symbolic_GetArrayDimensionCount", Outcome::Raises},
    {"AGL_Symbolic_GetArrayDimension", Outcome::Raises},
};

const std::vector<RequestBuilder> kElement = {RequestBuilder::Read(TagBlock(DT_INT).row(23).index(4))};
constexpr const char* kValue = "0/5/40 0018";

std::vector<std::string> poll_element(Runtime& runtime) {
  EXPECT_EQ(runtime.output(kElement), kFrame);
  return runtime.input(1);
}

void expect(Runtime& runtime, Outcome outcome) {
  switch (outcome) {
    case Outcome::Good:
      EXPECT_THAT(poll_element(runtime), ElementsAre(kValue));
      return;
    case Outcome::NoData:
      EXPECT_THAT(poll_element(runtime), ElementsAre("2/5/40"));
      return;
    case Outcome::Lost:
      EXPECT_THAT(poll_element(runtime), ElementsAre("2/5/0"));
      return;
    case Outcome::Raises:
      EXPECT_THAT(poll_element(runtime), ElementsAre("out_of_range"));
      return;
    case Outcome::Aborts:
      EXPECT_EXIT(poll_element(runtime), testing::KilledBySignal(SIGABRT), "bufferreader.cpp:172: ");
      injection::count_failure(Kind::Library);  // it was another process
      return;
  }
}

using ElementFailures = Online;

}  // namespace

TEST_F(ElementFailures, EachLibraryCallOfAPoll) {
  std::vector<LibraryCall> calls;
  {
    ConnectedPlant plant;
    const Armed none(Kind::Library);
    ASSERT_THAT(poll_element(plant.runtime), ElementsAre(kValue));
    calls = calls_of(plant.library);
  }
  for (std::size_t n = 1; n <= calls.size(); ++n) {
    const std::string& function = calls[n - 1].function;
    SCOPED_TRACE("element, library call " + std::to_string(n) + ": " + function);
    const Rule* rule = std::find_if(std::begin(kRules), std::end(kRules),
                                    [&](const Rule& one) { return one.function == function; });
    ASSERT_NE(rule, std::end(kRules)) << "no answer is expected of this function";
    ConnectedPlant plant;
    {
      const Armed armed(Kind::Library, static_cast<int>(n));
      expect(plant.runtime, rule->outcome);
    }
    EXPECT_EQ(plant.library.liveAccesses(), function == "AGL_Symbolic_FreeHandle" ? 1 : 0);
    if (rule->outcome == Outcome::Lost) plant.runtime.reconnect(kElement);
    // Of a cycle that an exception ended nothing is answered to another batch.
    if (rule->outcome == Outcome::Raises) {
      EXPECT_THAT(plant.runtime.input(1), ElementsAre("13/5/0"));
    }
    EXPECT_THAT(poll(plant.runtime), ElementsAreArray(read_answers()));
    EXPECT_THAT(poll_element(plant.runtime), ElementsAre(kValue));
  }
  injection::take_removed_files();
}

TEST_F(ElementFailures, BatchAfterAnExceptionIsItsOwn) {
  // The first request's value is read; the second one's raises.
  ConnectedPlant plant;
  const RequestBuilder beyond = RequestBuilder::Read(TagBlock(DT_INT).row(23).index(9));
  EXPECT_EQ(plant.runtime.output({read_requests()[2], beyond}), kFrame);
  EXPECT_THAT(plant.runtime.input(2), ElementsAre("out_of_range"));
  EXPECT_EQ(plant.runtime.output({read_requests()[3], read_requests()[15]}), kFrame);
  EXPECT_THAT(plant.runtime.input(2), ElementsAre(read_answers()[3], read_answers()[15]));
}
