// SPDX-License-Identifier: MIT
// Recording through the fake driver, with a time that moves only when the recorder sleeps.
#include "host/record/recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "host/tagscsv.h"
#include "tests/host/fakedriver.h"
#include "tests/host/scratch.h"

namespace ostravel::host::record {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kTags =
    "name,type,count,first,elements,device,id\nLevel,INT,1,,1,1,1\nSpeed,INT,1,,1,1,2\n";

CommonOptions options_for(const Scratch& scratch) {
  CommonOptions options;
  options.driver = FAKE_DRIVER_PATH;
  options.project = scratch.write("a.project", encode_project(project_from_csv(kTags, "tags")));
  return options;
}

struct World : Scratch {
  Devices devices{options_for(*this)};
  FakeDriver& fake = *reinterpret_cast<FakeDriver* (*)()>(devices.driver().find("fake_driver"))();
  Moment now{std::chrono::seconds(1'709'644'455)};
  std::function<void(int)> between = [](int) {};  // with the number of the sleep, from 1
  int sleeps = 0;
  bool stop = false;
  RecordRows rows{Form::Wide, {"Level", "Speed"}, false};

  World() {
    fake = FakeDriver{};
    fake.words = {{0, {5}}, {1, {7}}};
  }

  Timing timing() {
    return {[this] { return now; },
            [this](std::chrono::milliseconds time) {
              now += time;
              between(++sleeps);
            },
            [this] { return stop; }};
  }

  std::string record(const RecordPlan& plan) {
    TagPoller poller(devices, devices.projects().tags({}));
    RecordFile file(path("out.csv"), Existing::Append, rows.header());
    Recorder(devices, poller, timing()).run(plan, rows, file);
    return read("out.csv");
  }
};

TEST(Recorder, TakesARowAnInterval) {
  World world;
  world.between = [&](int) { world.fake.words[0][0] += 1; };
  EXPECT_EQ(world.record({500ms, 3, {}}),
            "time,status,Level,Speed\n"
            "2024-03-05T13:14:15.000Z,ok,5,7\n"
            "2024-03-05T13:14:15.500Z,ok,6,7\n"
            "2024-03-05T13:14:16.000Z,ok,7,7\n");
  EXPECT_EQ(world.sleeps, 2);
}

TEST(Recorder, EndsAfterItsTime) {
  World world;
  world.record({1s, 0, 3s});
  EXPECT_EQ(world.rows.written(), 3U);
}

TEST(Recorder, EndsWithAWholeRowWhenStopped) {
  World world;
  world.between = [&](int sleeps) { world.stop = sleeps == 2; };
  EXPECT_THAT(world.record({1s, 0, {}}), testing::EndsWith("2024-03-05T13:14:16.000Z,ok,5,7\n"));
}

TEST(Recorder, MissedRowsAreNotMadeUpFor) {
  World world;
  world.between = [&](int sleeps) { world.now += sleeps == 1 ? 5s : 0s; };
  world.record({1s, 3, {}});
  EXPECT_THAT(world.read("out.csv"), HasSubstr("13:14:21.000Z,ok,5,7\n2024-03-05T13:14:21.000Z"));
  EXPECT_EQ(world.rows.written(), 3U);
}

TEST(Recorder, ATagWithoutDataLeavesItsCellEmpty) {
  World world;
  world.fake.words.erase(1);
  EXPECT_THAT(world.record({1s, 1, {}}), HasSubstr("Z,1 without data,5,\n"));
}

TEST(Recorder, ALossIsAGapAndTheRecordingGoesOnByItself) {
  World world;
  const auto give_up = std::chrono::steady_clock::now() + 20s;
  world.between = [&](int sleeps) {
    world.fake.lost = world.fake.lost || sleeps == 2;
    // The device's own pauses between attempts are real ones.
    std::this_thread::sleep_for(2ms);
    const auto text = world.read("out.csv");
    world.stop = (sleeps > 3 && text.ends_with(",ok,5,7\n")) || std::chrono::steady_clock::now() > give_up;
  };
  const auto text = world.record({1s, 0, {}});
  EXPECT_THAT(text, HasSubstr("2024-03-05T13:14:17.000Z,connection lost,,\n"));
  EXPECT_THAT(text, testing::EndsWith(",ok,5,7\n"));
  EXPECT_EQ(world.rows.gaps(), 1U);
}

TEST(Recorder, GoingOnWithAFileBeginsWithAGap) {
  World world;
  world.write("out.csv", "time,status,Level,Speed\n2024-03-05T13:00:00.000Z,ok,1,2\n");
  EXPECT_EQ(world.record({1s, 1, {}}),
            "time,status,Level,Speed\n"
            "2024-03-05T13:00:00.000Z,ok,1,2\n"
            "2024-03-05T13:14:15.000Z,resumed,,\n"
            "2024-03-05T13:14:15.000Z,ok,5,7\n");
}

}  // namespace
}  // namespace ostravel::host::record
