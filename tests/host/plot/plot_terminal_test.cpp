// SPDX-License-Identifier: MIT
// plot on a real pseudo-terminal: what its screen shows in the end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "host/tagscsv.h"
#include "tests/host/scratch.h"

namespace ostravel::host {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// The control sequences that plot uses, on lines without end.
class Screen {
 public:
  void take(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '\n') {
        ++row_;
      } else if (text[i] == '\r') {
        column_ = 0;
      } else if (text[i] == '\033' && i + 1 < text.size() && text[i + 1] == '[') {
        const auto end = text.find_first_of("AJKm", i);
        control(text[end], std::string(text.substr(i + 2, end - i - 2)));
        i = end;
      } else {
        put(text[i]);
      }
    }
  }

  std::vector<std::string> lines() const { return lines_; }

 private:
  void put(char c) {
    lines_.resize(std::max(lines_.size(), row_ + 1));
    auto& line = lines_[row_];
    line.resize(std::max(line.size(), column_ + 1), ' ');
    line[column_++] = c;
  }
  void control(char what, const std::string& number) {
    if (what == 'A') {
      row_ -= std::min<std::size_t>(row_, std::stoul(number));
    } else if (what == 'K' && row_ < lines_.size()) {
      lines_[row_].resize(std::min(lines_[row_].size(), column_));
    } else if (what == 'J') {
      lines_.resize(std::min(lines_.size(), row_));
    } else if (what == 'm') {
      ++colours;
    }
  }
  std::vector<std::string> lines_;
  std::size_t row_ = 0;
  std::size_t column_ = 0;

 public:
  int colours = 0;
};

struct Shown {
  Screen screen;
  int code = -1;
};

// Runs ostravel-host in a terminal of that size until it ends.
Shown run_in_terminal(std::vector<std::string> arguments, unsigned short columns, unsigned short rows) {
  winsize size{rows, columns, 0, 0};
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
  if (child == 0) {
    arguments.insert(arguments.begin(), HOST_PATH);
    std::vector<char*> words;
    for (auto& argument : arguments) {
      words.push_back(argument.data());
    }
    words.push_back(nullptr);
    execv(HOST_PATH, words.data());
    _exit(127);
  }
  Shown shown;
  std::string all;
  std::array<char, 4096> buffer{};
  for (ssize_t got = 0; (got = read(terminal, buffer.data(), buffer.size())) > 0;) {
    all.append(buffer.data(), static_cast<std::size_t>(got));
  }
  int status = 0;
  waitpid(child, &status, 0);
  close(terminal);
  shown.screen.take(all);
  shown.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return shown;
}

constexpr const char* kRecording =
    "time,status,Speed\n2024-03-05T13:14:15.000Z,ok,0\n2024-03-05T13:14:17.000Z,ok,100\n";

struct TerminalWorld : Scratch {
  TerminalWorld() {
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", "C", 1);
    unsetenv("NO_COLOR");
  }
};

TEST(PlotTerminal, FollowsTheSizeOfTheTerminal) {
  const TerminalWorld world;
  const auto file = world.write("a.csv", kRecording);
  for (const unsigned short columns : std::array<unsigned short, 3>{40, 60, 100}) {
    const auto shown = run_in_terminal({"plot", file}, columns, 16);
    EXPECT_EQ(shown.code, 0);
    const auto lines = shown.screen.lines();
    ASSERT_EQ(lines.size(), 15U) << columns;
    EXPECT_EQ(lines[0], "A Speed  100  (0 to 100)");
    EXPECT_THAT(lines[1], StartsWith("100+"));
    EXPECT_EQ(lines[1].size(), columns - 1U) << lines[1];  // a letter may have two places
    EXPECT_EQ(lines.back(), "    time, UTC");
    EXPECT_GT(shown.screen.colours, 0);
  }
}

TEST(PlotTerminal, HasNoColoursWhereTheyAreNotWanted) {
  const TerminalWorld world;
  setenv("NO_COLOR", "1", 1);
  EXPECT_EQ(run_in_terminal({"plot", world.write("a.csv", kRecording)}, 60, 16).screen.colours, 0);
  unsetenv("NO_COLOR");
}

// The driver's own simulation holds zeros.
TEST(PlotTerminal, LiveValuesAreDrawnInOnePlace) {
  const TerminalWorld world;
  const auto project = world.write(
      "a.project", encode_project(project_from_csv(
                       "name,type,count,first,elements,device,id\nLevel,INT,1,,1,1,1\n", "tags")));
  const auto shown = run_in_terminal({"--driver", DRIVER_PATH, "--project", project, "--offline", "plot",
                                      "--live", "Level", "--count", "5", "--interval", "20ms"},
                                     50, 16);
  EXPECT_EQ(shown.code, 0);
  const auto lines = shown.screen.lines();
  ASSERT_EQ(lines.size(), 15U);
  EXPECT_EQ(lines[0], "A Level  0  (0 to 0)");
  EXPECT_EQ(lines.back(), "ok (Ctrl+C ends)");
  const auto row =
      std::find_if(lines.begin(), lines.end(), [](const auto& line) { return line.starts_with(" 0+"); });
  ASSERT_NE(row, lines.end());
  EXPECT_THAT(*row, HasSubstr("****"));
}

}  // namespace
}  // namespace ostravel::host
