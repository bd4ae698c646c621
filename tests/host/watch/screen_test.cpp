// SPDX-License-Identifier: MIT
// What a person sees of watch, on a real pseudo-terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/watch/watchonterminal.h"

namespace ostravel::host::watch {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kPageDown = "\033[6~";
constexpr const char* kEnd = "\033OF";

// Foreground colours on the screen, other than the terminal's own.
bool has_colours(const picture::Terminal& terminal) {
  for (std::size_t line = 0; line < terminal.lines(); ++line) {
    for (std::size_t column = 0; column < terminal.columns(); ++column) {
      if (terminal.cell(line, column).look.foreground != picture::kOwnColour) {
        return true;
      }
    }
  }
  return false;
}

TEST(WatchScreen, ShowsTheTable) {
  WatchOnTerminal watch(4, 3);
  watch.start();
  const std::string screen =
      " 127.0.0.1 online  4 tags  recovered 0x  poll # every 500 ms\n"
      "TAG              TYPE  VALUE                QUALITY\n"
      "Line.Tag0        INT   0                    0 ok\n"
      "Line.Tag1        INT   10                   0 ok\n"
      "Line.Tag2        INT   20                   0 ok\n"
      "Line.Tag3        INT   -                    2 no data\n" +
      std::string(16, '\n') +
      " Line.Tag0 = 0\n"
      " ? help  q quit  / filter  < > sort  r reverse  b bad only  p pause    1-4 of 4\n";
  // A screen may be seen while it is being drawn.
  watch.program->wait_until([&](const picture::Terminal&) { return watch.steady_text() == screen; },
                            std::chrono::seconds(20));
  EXPECT_EQ(watch.steady_text(), screen);
  EXPECT_TRUE(watch.program->terminal().alternate());
  EXPECT_FALSE(watch.program->terminal().cursor_shown());
  EXPECT_THAT(watch.program->terminal().unknown(), IsEmpty());
}

TEST(WatchScreen, ColoursComeWithWords) {
  WatchOnTerminal watch(2, 1);
  watch.start();
  ASSERT_TRUE(watch.wait_for("2 no data"));
  EXPECT_TRUE(has_colours(watch.program->terminal()));
  EXPECT_THAT(watch.program->terminal().line(3), HasSubstr("2 no data"));
}

TEST(WatchScreen, NoColorIsHonoured) {
  WatchOnTerminal watch(2, 1);
  watch.environment.emplace_back("NO_COLOR=1");
  watch.start();
  ASSERT_TRUE(watch.wait_for("0 ok"));
  EXPECT_FALSE(has_colours(watch.program->terminal()));
  EXPECT_TRUE(watch.program->terminal().cell(2, 0).look.reverse) << "the cursor is still seen";
}

TEST(WatchScreen, PagesThroughTenThousandTagsAndDrawsOnlyWhatIsSeen) {
  WatchOnTerminal watch(10'000, 40);
  auto& program = watch.start();
  ASSERT_TRUE(watch.wait_for("0 ok"));
  program.type(kPageDown);
  ASSERT_TRUE(watch.wait_for("21-40 of 10,000"));
  ASSERT_TRUE(watch.wait_for("Line.Tag20 = 200"));
  program.type(kEnd);
  ASSERT_TRUE(watch.wait_for("9,981-10,000 of 10,000"));
  EXPECT_THAT(program.terminal().text(), HasSubstr("\nLine.Tag9999 "));
  EXPECT_LT(program.written().size(), 100'000U) << "all tags are four times as much";
}

TEST(WatchScreen, FiltersSortsAndShowsDetails) {
  WatchOnTerminal watch(30, 30);
  auto& program = watch.start();
  ASSERT_TRUE(watch.wait_for("0 ok"));
  program.type("/tag2");
  ASSERT_TRUE(watch.wait_for("1-11 of 11"));
  EXPECT_THAT(program.terminal().text(), HasSubstr("\n /tag2_"));
  program.type("\r<r");
  ASSERT_TRUE(watch.wait_for("CH/S▼"));
  program.type("\r");
  ASSERT_TRUE(watch.wait_for("  Tag             Line.Tag2\n"));
  EXPECT_TRUE(watch.wait_for("  Value           20\n"));
  program.type("x?");
  EXPECT_TRUE(watch.wait_for("reverse the order"));
}

TEST(WatchScreen, EscapeAloneIsAKey) {
  WatchOnTerminal watch(30, 30);
  auto& program = watch.start();
  ASSERT_TRUE(watch.wait_for("0 ok"));
  program.type("/tag29\r");
  ASSERT_TRUE(watch.wait_for("1-1 of 1"));
  program.type("\033");
  EXPECT_TRUE(watch.wait_for("of 30"));
}

TEST(WatchScreen, FollowsTheSizeOfTheTerminal) {
  WatchOnTerminal watch(40, 40);
  auto& program = watch.start();
  ASSERT_TRUE(watch.wait_for("1-20 of 40"));
  program.resize(12, 60);
  ASSERT_TRUE(watch.wait_for("1-8 of 40"));
  EXPECT_THAT(program.terminal().line(1), StartsWith("TAG "));
  EXPECT_THAT(program.terminal().line(1), Not(HasSubstr("LAST MINUTE")));
  EXPECT_THAT(program.terminal().line(11), HasSubstr("? help"));
  program.resize(30, 120);
  ASSERT_TRUE(watch.wait_for("1-26 of 40"));
  EXPECT_THAT(program.terminal().line(1), HasSubstr("LAST MINUTE"));
}

TEST(WatchScreen, LinesOfTheDriverDoNotDisturbIt) {
  WatchOnTerminal watch(2, 2);
  watch.start();
  ASSERT_TRUE(watch.wait_for("0 ok"));
  watch.program->type("q");
  EXPECT_EQ(watch.program->wait(), 0);
  EXPECT_THAT(watch.program->written(), Not(HasSubstr("a line of the driver")));
}

TEST(WatchScreen, RecoveryIsCounted) {
  WatchOnTerminal watch(2, 2);
  watch.environment.emplace_back("FAKE_DRIVER_LOST=3,1");
  watch.start({"--interval", "50"});
  EXPECT_TRUE(watch.wait_for("recovered 1x"));
}

TEST(WatchScreen, TagsOfSeveralDevicesStandInOneTable) {
  WatchOnTerminal watch(2, 1);
  const auto config =
      watch.scratch.write("plant.toml",
                          "[defaults]\nproject = \"a.project\"\n"
                          "[[device]]\nname = \"north\"\naddress = \"10.0.0.1\"\n"
                          "[[device]]\nname = \"south\"\naddress = \"10.0.0.2\"\nstation = 2\n");
  watch.program = std::make_unique<picture::PtyProgram>(
      std::vector<std::string>{HOST_PATH, "--driver", watch.driver, "--config", config, "watch"},
      watch.environment);
  ASSERT_TRUE(watch.wait_for("north online, south online"));
  EXPECT_TRUE(watch.wait_for("\nsouth/Line.Tag0"));
  watch.program->type("/south tag1");
  EXPECT_TRUE(watch.wait_for(" south/Line.Tag1: 2 no data"));
}

TEST(WatchScreen, PauseIsShown) {
  WatchOnTerminal watch(2, 2);
  watch.start();
  ASSERT_TRUE(watch.wait_for("0 ok"));
  watch.program->type("p");
  EXPECT_TRUE(watch.wait_for("PAUSED"));
}

TEST(WatchScreen, TerminalWithoutUtf8OrColours) {
  WatchOnTerminal watch(2, 2);
  watch.environment = {"TERM=vt100", "LC_ALL=C", "FAKE_DRIVER_WORDS=0:5;1:6"};
  watch.start();
  ASSERT_TRUE(watch.wait_for("0 ok"));
  for (const char c : watch.program->written()) {
    ASSERT_LT(static_cast<unsigned char>(c), 0x80);
  }
  EXPECT_FALSE(has_colours(watch.program->terminal()));
}

TEST(WatchScreen, WhereNoTableCanBeDrawnThereAreLines) {
  for (const auto* terminal : {"TERM=dumb", "TERM=no-such-terminal"}) {
    WatchOnTerminal watch(1, 1);
    watch.environment.emplace_back(terminal);
    auto& program = watch.start({"--count", "2", "--interval", "1"});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.terminal().text(), "before\n# online\nLine.Tag0 = 0 (0/5 ok)\n") << terminal;
  }
}

TEST(WatchScreen, LinesOnATerminalWhenTheyAreWanted) {
  const std::vector<std::vector<std::string>> choices{{"--plain"}, {"--csv"}, {"--driver-output", "-"}};
  for (auto options : choices) {
    WatchOnTerminal watch(1, 1);
    options.insert(options.end(), {"--count", "2", "--interval", "1"});
    auto& program = watch.start(options);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.written(), HasSubstr("Line.Tag0"));
    EXPECT_THAT(program.written(), Not(HasSubstr("\033"))) << options.front();
  }
}

}  // namespace
}  // namespace ostravel::host::watch
