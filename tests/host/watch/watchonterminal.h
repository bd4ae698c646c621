// SPDX-License-Identifier: MIT
// ostravel-host watch on a pseudo-terminal of its own, on a fake driver.
#pragma once

#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "host/project.h"
#include "host/tagscsv.h"
#include "host/watch/picture/ptyprogram.h"
#include "tests/host/scratch.h"

namespace ostravel::host::watch {

struct WatchOnTerminal {
  Scratch scratch;
  std::string driver = FAKE_DRIVER_PATH;
  std::vector<std::string> environment{"TERM=xterm-256color", "LC_ALL=C.UTF-8", "NO_COLOR", "LINES",
                                       "COLUMNS"};
  std::unique_ptr<picture::PtyProgram> program;

  // INT tags Line.Tag0, Line.Tag1 ...; the first ones have values of ten times their number.
  explicit WatchOnTerminal(std::size_t tags, std::size_t with_value = 0) {
    std::string rows = "name,type,count,first,elements,device,id\n";
    std::string words = "FAKE_DRIVER_WORDS=";
    for (std::size_t i = 0; i < tags; ++i) {
      rows += "Line.Tag" + std::to_string(i) + ",INT,1,,1,1,1\n";
      words += i < with_value ? std::to_string(i) + ":" + std::to_string(i * 10) + ";" : "";
    }
    scratch.write("a.project", encode_project(project_from_csv(rows, "t")));
    environment.push_back(words);
  }

  picture::PtyProgram& start(const std::vector<std::string>& options = {}, std::size_t lines = 24,
                             std::size_t columns = 80) {
    // A line of a shell, to be found again afterwards.
    std::vector<std::string> words{
        "/bin/sh", "-c",        "echo before; exec \"$0\" \"$@\"", HOST_PATH, "--driver",
        driver,    "--project", scratch.path("a.project"),         "watch"};
    words.insert(words.end(), options.begin(), options.end());
    program = std::make_unique<picture::PtyProgram>(words, environment, lines, columns);
    return *program;
  }

  bool wait_for(const std::string& text) const {
    return program->wait_until([&text](const picture::Terminal& terminal) {
      return terminal.text().find(text) != std::string::npos;
    });
  }

  // The screen without what depends on the time: the poll's, and the columns from AGE on.
  std::string steady_text() const {
    const auto& terminal = program->terminal();
    const auto age = terminal.line(1).find("AGE");
    std::string text;
    for (std::size_t i = 0; i < terminal.lines(); ++i) {
      auto line = terminal.line(i);
      const bool in_table = i > 0 && i + 2 < terminal.lines();
      line = in_table && age != std::string::npos ? line.substr(0, age - 1) : line;
      if (i == 0) {  // what it pushes to the left as well
        line = std::regex_replace(line, std::regex("poll .* every"), "poll # every");
        line = std::regex_replace(line, std::regex("  +"), "  ");
      }
      text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
  }

  // Whether a shell finds the terminal as it left it.
  bool is_given_back() const {
    const auto& terminal = program->terminal();
    const auto before = program->first_modes();
    const auto now = program->modes();
    return !terminal.alternate() && terminal.cursor_shown() && !terminal.application_keys() &&
           terminal.line(0) == "before" && before.c_iflag == now.c_iflag && before.c_oflag == now.c_oflag &&
           before.c_cflag == now.c_cflag && before.c_lflag == now.c_lflag;
  }
};

}  // namespace ostravel::host::watch
