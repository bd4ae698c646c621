// SPDX-License-Identifier: MIT
#include "host/demo/plcprocess.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <stdexcept>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

constexpr std::chrono::seconds kPatience{20};

}  // namespace

PlcProcess::PlcProcess(PlcOptions options) : options_(std::move(options)) {
  start();
}

void PlcProcess::start() {
  std::vector<std::string> arguments{
      "--listen", options_.listen, "--port",           std::to_string(options_.port),
      "--cycle",  options_.cycle,  "--exit-with-stdin"};
  if (!options_.password.empty()) {
    arguments.insert(arguments.end(), {"--password", options_.password});
  }
  arguments.insert(arguments.end(), options_.sources.begin(), options_.sources.end());
  process_ = std::make_unique<Process>(options_.program, arguments);
  const auto line = process_->read_line(kPatience);
  const auto colon = line ? line->rfind(':') : std::string::npos;
  if (!line || !line->starts_with("listening on ") || colon == std::string::npos) {
    process_.reset();
    throw std::runtime_error(fmt::format("{}: did not start to listen", options_.program));
  }
  std::from_chars(line->data() + colon + 1, line->data() + line->size(), options_.port);
}

nlohmann::json PlcProcess::command(const std::string& line) {
  const auto answer =
      process_ && process_->write(line + "\n") ? process_->read_line(kPatience) : std::nullopt;
  if (!answer) {
    throw std::runtime_error(fmt::format("the simulated PLC does not answer '{}'", line));
  }
  return nlohmann::json::parse(*answer);
}

nlohmann::json PlcProcess::value(const std::string& path, std::optional<std::uint64_t> cycle) {
  const auto answer = command(cycle ? fmt::format("read {} @{}", path, *cycle) : "read " + path);
  return answer.value("value", nlohmann::json());
}

void PlcProcess::take_away() {
  if (process_) {
    process_->kill(SIGKILL);
    process_->wait();
    process_.reset();
  }
}

std::string export_tags(const std::string& program, const std::vector<std::string>& sources) {
  std::vector<std::string> arguments{"--export-tags"};
  arguments.insert(arguments.end(), sources.begin(), sources.end());
  Process process(program, arguments);
  process.close_input();
  auto list = process.read_all();
  if (const int code = process.wait(); code != 0) {
    throw std::runtime_error(fmt::format("{} --export-tags failed with code {}", program, code));
  }
  return list;
}

std::vector<std::string> sources_in(const std::string& folder) {
  std::vector<std::string> sources;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    const auto extension = entry.path().extension();
    if (extension == ".db" || extension == ".udt") {
      sources.push_back(entry.path().string());
    }
  }
  if (sources.empty()) {
    throw UserError(fmt::format("{}: holds no .db or .udt files; name the folder of the samples", folder));
  }
  std::sort(sources.begin(), sources.end());
  return sources;
}

}  // namespace ostravel::host
