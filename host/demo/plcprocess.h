// SPDX-License-Identifier: MIT
// The simulated PLC as a process: started on a port of its own, asked through its console, taken away.
#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "host/process.h"

namespace ostravel::host {

struct PlcOptions {
  std::string program;               // path of ostravel-plc
  std::vector<std::string> sources;  // .db and .udt files
  std::string listen = "127.0.0.1";
  std::uint16_t port = 0;  // 0: any free one
  std::string cycle = "50ms";
  std::string password;
};

class PlcProcess {
 public:
  // Throws std::runtime_error when the PLC does not come up.
  explicit PlcProcess(PlcOptions options);

  std::uint16_t port() const { return options_.port; }

  // A command of its console and the answer. Throws std::runtime_error when none comes.
  nlohmann::json command(const std::string& line);

  // What a variable held at the end of a cycle, or holds now; null when the PLC does not know.
  nlohmann::json value(const std::string& path, std::optional<std::uint64_t> cycle = std::nullopt);

  // Ends the process as a power cut would; start brings it back on the same port, with its initial values.
  void take_away();
  void start();
  bool running() const { return process_ != nullptr; }

 private:
  PlcOptions options_;
  std::unique_ptr<Process> process_;
};

// The program's variables as a tag list. Throws std::runtime_error.
std::string export_tags(const std::string& program, const std::vector<std::string>& sources);

// The .db and .udt files of a folder, in order. Throws UserError when there are none.
std::vector<std::string> sources_in(const std::string& folder);

}  // namespace ostravel::host
