// SPDX-License-Identifier: MIT
// A device's life online, with each allocation failing in turn, for two runtimes: one that repeats the call
// that an exception left, and one that just goes on.
#include <gmock/gmock.h>

#include <functional>

#include "tests/failures/online.h"

namespace {

using injection::Armed;
using injection::Kind;
using testing::ElementsAreArray;

enum class After { Repeats, GoesOn };

// What every record says after an output call that put nothing together.
std::vector<std::string> ask_again(std::size_t count) {
  std::vector<std::string> answers(count, "13/5/-");
  answers[0] = "13/5/0";
  return answers;
}
// The loader has failed: record 0 is preset, no other one is touched.
std::vector<std::string> failed(std::size_t count) {
  std::vector<std::string> answers(count, "-/-/-");
  answers[0] = "0/5/0";
  return answers;
}

class Session {
 public:
  Session(Plant& plant, After after) : library_(plant.library), runtime_(plant.runtime), after_(after) {}

  void run() {
    start();
    step([this] { return runtime_.init(); }, "");
    step([this] { return runtime_.init_command(); }, "");
    first_cycle();
    cycle();
    for (const WriteTag& tag : write_tags()) write(tag);
    cycle();
    lose_connection();
    come_back();
    cycle();
  }

 private:
  // An entry point may be left by std::bad_alloc, and by nothing else.
  template <class Call>
  void step(Call call, const char* expected) {
    const std::string saw = call();
    if (saw == "bad_alloc") {
      if (after_ == After::Repeats) {
        EXPECT_EQ(call(), expected) << "repeated";
      }
      return;
    }
    EXPECT_EQ(saw, expected);
  }

  void start() {
    const std::string saw = runtime_.start();
    if (saw.empty()) return;
    EXPECT_EQ(saw, "bad_alloc");
    if (after_ == After::Repeats || !runtime_.has_device()) {
      EXPECT_EQ(runtime_.start(), "");
    } else {
      EXPECT_EQ(runtime_.data().GTagTable.m_pTagInfo, nullptr);
      EXPECT_EQ(runtime_.data().GTagTable.m_Counts, 0U);
      has_rows_ = false;
    }
  }

  void first_cycle() {
    const std::string saw = runtime_.output(requests_);
    if (saw == "bad_alloc" && after_ == After::Repeats) {
      EXPECT_EQ(runtime_.output(requests_), kFrame);
    }
    if (!injection::run_started_thread()) {
      // Not even the thread came to be: the next output call starts it.
      EXPECT_EQ(saw, "bad_alloc");
      EXPECT_THAT(input(), ElementsAreArray(ask_again(count_)));
      EXPECT_EQ(runtime_.output(requests_), kFrame);
      EXPECT_TRUE(injection::run_started_thread());
    }
    if (runtime_.loader().loader_state == SymbolsLoader::Error) {
      // The thread ran out of memory.
      EXPECT_EQ(runtime_.output(requests_), kFailedFrame);
      EXPECT_THAT(input(), ElementsAreArray(failed(count_)));
      runtime_.reconnect(requests_);
    }
    EXPECT_EQ(runtime_.loader().loader_state, SymbolsLoader::Success);
    runtime_.timeout();
    cycle();
  }

  void cycle() {
    const std::string saw = runtime_.output(requests_);
    if (saw == "bad_alloc") {
      if (after_ == After::GoesOn) {
        EXPECT_THAT(input(), ElementsAreArray(ask_again(count_)));
      }
      EXPECT_EQ(runtime_.output(requests_), kFrame);
    } else {
      EXPECT_EQ(saw, kFrame);
    }
    const std::vector<std::string> records = input();
    if (records != std::vector<std::string>{"bad_alloc"}) {
      EXPECT_THAT(records, ElementsAreArray(good_answers()));
      return;
    }
    // The cycle is over; no record of it is delivered for another.
    if (after_ == After::GoesOn) {
      EXPECT_THAT(input(), ElementsAreArray(ask_again(count_)));
    }
    EXPECT_EQ(runtime_.output({requests_[2]}), kFrame);
    EXPECT_THAT(runtime_.input(1), ElementsAreArray({good_answers()[2]}));
  }

  void write(const WriteTag& tag) {
    library_.clearLog();
    const std::string saw = runtime_.output({tag.request});
    const std::vector<std::string> stored = stored_texts(library_);
    if (saw == "bad_alloc") {
      // Either before the job or after it.
      if (!stored.empty()) {
        EXPECT_THAT(stored, ElementsAreArray(tag.stored));
      }
      if (after_ == After::GoesOn) return;
      library_.clearLog();
      EXPECT_EQ(runtime_.output({tag.request}), kFrame);
      EXPECT_THAT(stored_texts(library_), ElementsAreArray(tag.stored));
    } else {
      EXPECT_EQ(saw, kFrame);
      if (has_rows_) {
        EXPECT_THAT(stored, ElementsAreArray(tag.stored));
      } else {
        EXPECT_TRUE(stored.empty());
      }
    }
    EXPECT_THAT(runtime_.input(1, false), ElementsAreArray({"0/5/0"}));
  }

  // A call that is made again when memory ran out, after a look at what it left behind.
  template <class Call, class Look>
  void insist(Call call, const char* expected, Look look) {
    std::string saw = call();
    if (saw == "bad_alloc") {
      look();
      saw = call();
    }
    EXPECT_EQ(saw, expected);
  }

  void lose_connection() {
    library_.fail("AGL_Symbolic_ReadMixEx", -1);
    const auto nothing = [] {};
    insist([this] { return runtime_.output(requests_); }, kFrame, nothing);
    std::vector<std::string> records = input();
    if (records == std::vector<std::string>{"bad_alloc"}) {
      EXPECT_EQ(runtime_.output(requests_), kFrame);
      records = input();
    }
    // Record 0 was preset.
    std::vector<std::string> lost(count_, "2/-/-");
    lost[0] = "2/5/0";
    EXPECT_THAT(records, ElementsAreArray(lost));
    EXPECT_EQ(injection::take_removed_files().size(), 1U);
    EXPECT_EQ(runtime_.output(requests_), kFailedFrame);
    library_.succeed("AGL_Symbolic_ReadMixEx");
  }

  void come_back() {
    runtime_.timeout();
    const std::string address = runtime_.data().DeviceIP;
    insist([this] { return runtime_.init(); }, "", [] {});
    insist([this] { return runtime_.init_command(); }, "",
           [&] {
             // Nothing is set up anew, so nothing connects with half of the new settings.
             EXPECT_EQ(runtime_.loader().loader_state, SymbolsLoader::Error);
             EXPECT_EQ(runtime_.data().DeviceIP, address);
             EXPECT_EQ(runtime_.output(requests_), kFailedFrame);
             runtime_.timeout();
           });
    insist([this] { return runtime_.output(requests_); }, kFrame, [] {});
    EXPECT_TRUE(injection::run_started_thread());
    if (runtime_.loader().loader_state == SymbolsLoader::Error) runtime_.reconnect(requests_);
    EXPECT_EQ(runtime_.loader().loader_state, SymbolsLoader::Success);
    runtime_.timeout();
  }

  std::vector<std::string> input() { return runtime_.input(static_cast<int>(count_)); }
  // A device without rows knows no variable.
  std::vector<std::string> good_answers() const {
    return has_rows_ ? read_answers() : std::vector<std::string>(count_, "2/5/40");
  }

  FakeLibrary& library_;
  Runtime& runtime_;
  After after_;
  bool has_rows_ = true;
  std::vector<RequestBuilder> requests_ = read_requests();
  std::size_t count_ = requests_.size();
};

class MemoryFailures : public Online, public testing::WithParamInterface<After> {};

}  // namespace

TEST_P(MemoryFailures, EachAllocationOfADevicesLife) {
  for (int n = 1;; ++n) {
    SCOPED_TRACE("a device's life, allocation " + std::to_string(n));
    bool hit = false;
    {
      Plant plant;
      {
        const Armed armed(Kind::Memory, n);
        Session(plant, GetParam()).run();
        hit = armed.hit();
      }
      EXPECT_EQ(plant.library.liveAccesses(), 0) << "an access's handle is left over";
      EXPECT_EQ(plant.library.doubleFrees(), 0);
      // The next cycle, and the next connection.
      if (plant.runtime.data().GTagTable.m_pTagInfo == nullptr) plant.runtime.bring_up();
      plant.runtime.reconnect(read_requests());
      plant.runtime.timeout();
      EXPECT_THAT(poll(plant.runtime), ElementsAreArray(read_answers()));
    }
    forget_globals();
    ASSERT_EQ(injection::blocks_alive(), 0U) << "leaked, " << injection::bytes_alive() << " bytes";
    if (!hit) break;
  }
  EXPECT_GT(injection::asked().size(), 30U);
}

TEST(TagNameFailures, WithoutMemoryTheNameStaysAsItIs) {
  const std::string with_placeholder = "Conveyor[INDEX].Speed.Of.The.Motor";
  const std::vector<std::function<void(TagName&)>> changes = {
      [](TagName& name) { name.NameElement(300); },
      [](TagName& name) { name.AppendIndex(300); },
      [&](TagName& name) { name.SubstituteIndex(with_placeholder, 3); },
  };
  for (const auto& change : changes) {
    TagName name;
    name = "Conveyor.No[12]";
    const Armed armed(Kind::Memory, 1);
    const injection::DriverSide driver;
    EXPECT_THROW(change(name), std::bad_alloc);
    EXPECT_EQ(name.view(), "Conveyor.No[12]");
  }
}

INSTANTIATE_TEST_SUITE_P(, MemoryFailures, testing::Values(After::Repeats, After::GoesOn),
                         [](const auto& which) {
                           return which.param == After::Repeats ? "RuntimeRepeatsTheCall" : "RuntimeGoesOn";
                         });
