// SPDX-License-Identifier: MIT
// Whatever happens in the plant, the runtime is never shown a wrong value as good. Each thing that can happen
// has a test of its own; in the last one all happen, in random order.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <thread>

#include "tests/plant/entrypoints.h"
#include "tests/plant/faults.h"
#include "tests/plant/plant.h"
#include "tests/plant/programtext.h"

namespace ostravel::plant {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds kRecovery{1000};
constexpr milliseconds kScheduling{400};  // what a busy machine may add to an entry point's own work

std::uint64_t seed() {
  static const std::uint64_t number = [] {
    const char* text = std::getenv("OSTRAVEL_SEED");
    const auto value = text != nullptr ? std::strtoull(text, nullptr, 10) : std::random_device{}();
    std::printf("OSTRAVEL_SEED=%llu repeats this\n", static_cast<unsigned long long>(value));
    return value;
  }();
  return number;
}

class NeverWrong : public testing::Test {
 protected:
  void TearDown() override {
    EXPECT_EQ(plant.counts().wrong, 0U);
    for (const auto& finding : plant.findings()) ADD_FAILURE() << finding;
    EXPECT_LE(most_connections(), 1U) << "the PLC has seen two connections of one station at once";
    const auto& times = entry_point_times();
    EXPECT_LT(times.longest_own, kScheduling * slowness())
        << times.slowest << " waits for something of its own";
  }

  std::uint64_t most_connections() { return plant.plc().command("stats").at("most_open"); }

  // Lets it happen some times.
  void happens(Fault fault, int times = 1) {
    plant.serve(40);
    for (int i = 0; i < times; ++i) {
      SCOPED_TRACE(testing::Message() << name_of(fault) << ", time " << i + 1);
      const auto recovery = happen(plant, fault, chance);
      if (recovery) {
        EXPECT_LE(*recovery, kRecovery * slowness());
      }
      plant.serve(20);
    }
    EXPECT_GT(plant.counts().right, 1000U);
  }

  std::mt19937_64 chance{seed()};
  Plant plant{{DRIVER_PATH, PLC_PATH, seed()}};
};

TEST_F(NeverWrong, WhenAllIsWell) {
  plant.serve(400);
  EXPECT_EQ(plant.shown().size(), kTags);
  for (std::size_t i = 0; i < kTags; ++i) {
    EXPECT_GT(plant.deliveries()[i], 0U) << plant.shown()[i].selection.text << " was never delivered";
  }
  EXPECT_EQ(plant.counts().no_data, 0U);
  EXPECT_EQ(plant.counts().right_bits, 0U) << "the PLC runs the program that the runtime knows";
}

TEST_F(NeverWrong, WhenThePlcFreezesForAMoment) {
  happens(Fault::Freeze);
}

TEST_F(NeverWrong, WhenThePlcFreezesAndIsReset) {
  happens(Fault::LongFreeze);
}

TEST_F(NeverWrong, WhenConnectionsDrop) {
  happens(Fault::Cut, 5);
}

TEST_F(NeverWrong, WhenThePlcRestarts) {
  happens(Fault::Restart, 5);
}

TEST_F(NeverWrong, WhenThePlcLosesPower) {
  happens(Fault::PowerCut, 5);
}

TEST_F(NeverWrong, WhenThePlcIsSlow) {
  happens(Fault::Slow, 3);
}

TEST_F(NeverWrong, WhenAnAnswerComesTooLate) {
  happens(Fault::Late);
}

TEST_F(NeverWrong, WhenOtherProgramsAreDownloaded) {
  happens(Fault::Download, 10);
  EXPECT_GT(plant.counts().no_data, 0U) << "no variable had another name";
  EXPECT_GT(plant.counts().right_bits, 0U) << "no variable had another type";
}

TEST_F(NeverWrong, WhenAProgramIsDownloadedIntoALostConnection) {
  happens(Fault::CutAndDownload, 5);
}

TEST_F(NeverWrong, WhenTheSymbolFileIsTruncated) {
  happens(Fault::TruncatedFile, 8);
}

TEST_F(NeverWrong, WhenTheSymbolFileIsCorrupted) {
  happens(Fault::CorruptedFile, 8);
}

TEST_F(NeverWrong, WhenTheSymbolFileIsOfAnotherProgram) {
  plant.serve(1);
  plant.collect_symbol_files();
  happens(Fault::ForeignFile, 8);
}

TEST_F(NeverWrong, WhenThePlcRefusesAVariable) {
  happens(Fault::BrokenVariable, 5);
}

TEST_F(NeverWrong, WhenTheDeviceIsInitialisedAgainInTheMidstOfItAll) {
  happens(Fault::Reinitialisation, 10);
}

TEST_F(NeverWrong, WhenTheRuntimeStartsAnew) {
  happens(Fault::RuntimeRestart, 5);
}

TEST_F(NeverWrong, WhenAllOfItHappensInRandomOrder) {
  plant.serve(1);
  plant.collect_symbol_files();
  std::vector<Fault> faults;
  for (std::size_t i = 0; i < kFaults; ++i) {
    const auto fault = static_cast<Fault>(i);
    faults.insert(faults.end(), takes_a_timeout(fault) ? 1 : 2, fault);
  }
  std::shuffle(faults.begin(), faults.end(), chance);
  for (const auto fault : faults) happens(fault);
}

// The library waits five seconds for an answer, and nobody waits longer.
TEST_F(NeverWrong, FrozenPlcHoldsAReadForFiveSecondsAndNoOtherCall) {
  plant.serve(5);
  plant.plc().command("freeze");
  const auto start = now();
  EXPECT_EQ(plant.poll(), host::Outcome::NoData) << "the read runs into its time-out";
  const auto read = nanoseconds(now() - start);
  EXPECT_GE(read, milliseconds(4900));
  EXPECT_LE(read, milliseconds(5000) + kScheduling * slowness());
  EXPECT_FALSE(plant.session().connected());
  EXPECT_FALSE(std::filesystem::exists(kSymbolFile)) << "the symbols are to be loaded anew";
  EXPECT_EQ(plant.poll(), host::Outcome::Failed);
  const auto again = now();
  for (int i = 0; i < 10; ++i) EXPECT_EQ(plant.poll(), host::Outcome::NotReady);
  EXPECT_LE(nanoseconds(now() - again), milliseconds(500) * slowness()) << "connecting holds nobody up";
  plant.expect_loss();
  plant.plc().command("thaw");
  plant.plc().command("cut");  // as the cold start of a real one does
  EXPECT_LE(plant.recover(now()), kRecovery * slowness());
}

// The judge sees what the runtime sees: what is made wrong on the way there is found.
class Tampered : public testing::Test {
 protected:
  Plant plant{{DRIVER_PATH, PLC_PATH, seed()}};
};

TEST_F(Tampered, ExchangedValuesAreFound) {
  plant.tamper([](host::BatchAnswer& answer) {
    if (answer.records.size() > 1) std::swap(answer.records.front(), answer.records.back());
  });
  plant.serve(20);
  EXPECT_GE(plant.counts().wrong, 10U);
}

TEST_F(Tampered, ValuesOfTheLastPollAreFound) {
  const std::vector<std::size_t> batch{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  plant.serve(1);
  std::optional<host::BatchAnswer> last;
  plant.tamper([&last](host::BatchAnswer& answer) {
    const auto now = answer;
    if (last) answer = *last;
    last = now;
  });
  for (int i = 0; i < 10; ++i) {
    plant.poll_these(batch);
    std::this_thread::sleep_for(milliseconds(60 * slowness()));  // the PLC goes on meanwhile
  }
  EXPECT_GE(plant.counts().wrong, 30U);
}

TEST_F(Tampered, ValueThatIsShownAlthoughThereIsNoneIsFound) {
  plant.serve(20);
  plant.tamper([](host::BatchAnswer& answer) {
    for (auto& record : answer.records) {
      record.words.resize(4);
      record.error = 0;
    }
  });
  plant.plc().command("cut");
  plant.poll();
  EXPECT_GE(plant.counts().wrong, 1U);
}

}  // namespace
}  // namespace ostravel::plant
