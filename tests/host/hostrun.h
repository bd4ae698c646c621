// SPDX-License-Identifier: MIT
// ostravel-host on the fake driver, with a project made from a list of tags.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/project.h"
#include "host/tagscsv.h"
#include "tests/host/runtool.h"

namespace ostravel::host {

inline constexpr const char* kTagColumns = "name,type,count,first,elements,device,id\n";

struct HostRun : Scratch {
  // Rows of the list without the line of the columns.
  explicit HostRun(const std::string& tags) { add_project("a.project", tags); }

  std::string add_project(const std::string& name, const std::string& tags) const {
    return write(name, encode_project(project_from_csv(kTagColumns + tags, "t")));
  }

  // Words and behaviour of the fake driver, as fakedriver.h tells them.
  void set(const std::string& name, const std::string& value) { environment.push_back(name + "=" + value); }

  ToolResult plain(std::vector<std::string> arguments) const {
    auto words = environment;
    words.insert(words.end(), {HOST_PATH, "--driver", FAKE_DRIVER_PATH});
    words.insert(words.end(), arguments.begin(), arguments.end());
    return run_tool("/usr/bin/env", words);
  }

  ToolResult operator()(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--project", path("a.project")});
    return plain(std::move(arguments));
  }

  std::vector<std::string> environment;
};

}  // namespace ostravel::host
