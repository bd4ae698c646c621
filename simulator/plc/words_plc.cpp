// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <utility>

#include "simulator/plc/words.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;

constexpr std::chrono::milliseconds kLongestPause{600'000};

json download(Core& core, Arguments& arguments) {
  const auto start = arguments.position();
  const auto names = arguments.files();
  const std::vector<std::filesystem::path> files(names.begin(), names.end());
  std::vector<std::string> warnings;
  Program program;
  try {
    program = load_program(files, core.load, &warnings);
  } catch (const SourceError& error) {
    throw CommandError(error.what(), start);
  }
  core.close_all();
  const auto forgotten = core.plc.download(std::move(program));
  return {{"downloaded", names},
          {"fingerprint", fmt::format("{:016x}", core.plc.program().fingerprint)},
          {"cycle", core.plc.cycle()},
          {"warnings", warnings},
          {"generators_left_out", forgotten}};
}

json password(Core& core, Arguments& arguments) {
  const auto text = arguments.rest();
  core.plc.set_password(std::string(text));
  return {{"protected", !text.empty()}};
}

json restart(Core& core, Arguments& arguments) {
  const auto pause = arguments.empty() ? std::chrono::milliseconds(0) : arguments.duration(kLongestPause);
  arguments.expect_end();
  const auto dropped = core.close_all();
  core.plc.restart();
  if (pause.count() > 0 && core.close_port) core.close_port(pause);
  return {{"restarted", true}, {"pause", pause.count()}, {"cut", dropped}, {"cycle", core.plc.cycle()}};
}

json stats(Core& core, Arguments& arguments) {
  arguments.expect_end();
  const auto& jobs = core.plc.jobs();
  return {{"accepted", core.connections.accepted},
          {"open", core.connections.open},
          {"most_open", core.connections.most_at_once},
          {"waiting", core.waiting},
          {"reads", jobs.reads},
          {"writes", jobs.writes},
          {"others", jobs.others},
          {"cycle", core.plc.cycle()}};
}

constexpr std::array kWords{
    Word{"download", "FILE...",
         "loads another program: connections drop, start values, another layout; cycles count on", download},
    Word{"password", "[TEXT]", "asks new connections for it; without a text for none", password},
    Word{"restart", "[PAUSE]",
         "connections drop, the port is closed for the pause, start values; cycles count on", restart},
    Word{"stats", "", "connections, jobs, and bytes of answers that wait for their clients", stats},
};

}  // namespace

std::span<const Word> plc_words() {
  return kWords;
}

}  // namespace ostravel::plc
