// SPDX-License-Identifier: MIT
#include "simulator/plc/console.h"

#include <array>
#include <charconv>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>

#include "simulator/plc/session.h"
#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/paths.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;

struct CommandError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes a path off the front: up to the first blank that stands neither in quotes nor in brackets.
std::string_view take_path(std::string_view& rest) {
  bool quoted = false;
  bool bracket = false;
  std::size_t end = 0;
  for (; end < rest.size() && (quoted || bracket || (rest[end] != ' ' && rest[end] != '\t')); ++end) {
    if (rest[end] == '"') quoted = !quoted;
    if (!quoted && rest[end] == '[') bracket = true;
    if (!quoted && rest[end] == ']') bracket = false;
  }
  const auto path = rest.substr(0, end);
  rest = trimmed(rest.substr(end));
  return path;
}

std::uint64_t number(std::string_view text, const char* what) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw CommandError(std::string(what) + " expected instead of '" + std::string(text) + "'");
  }
  return value;
}

void expect_end(std::string_view rest) {
  if (!rest.empty()) throw CommandError("nothing more expected: '" + std::string(rest) + "'");
}

Target find(const Core& core, std::string_view path) {
  if (path.empty()) throw CommandError("path of a variable expected");
  std::size_t position = 0;
  const auto target = resolve(core.plc.program().blocks, path, &position);
  if (!target) {
    throw CommandError("no variable '" + std::string(path) + "', wrong from character " +
                       std::to_string(position + 1) + " on");
  }
  return *target;
}

json read(Core& core, std::string_view rest) {
  const auto path = take_path(rest);
  Target target = find(core, path);
  std::uint64_t cycle = core.plc.cycle();
  if (!rest.empty()) {
    if (rest.front() != '@') throw CommandError("@CYCLE expected instead of '" + std::string(rest) + "'");
    cycle = number(rest.substr(1), "number of a cycle");
  }
  const auto bytes = core.plc.image(target, cycle);
  if (!bytes)
    throw CommandError("cycle " + std::to_string(cycle) + " is not kept; now is " +
                       std::to_string(core.plc.cycle()));
  target.address = 0;  // in the image
  return {{"path", path}, {"cycle", cycle}, {"value", to_json(target, Bytes(*bytes))}};
}

json write(Core& core, std::string_view rest) {
  const auto path = take_path(rest);
  const Target target = find(core, path);
  if (core.plc.is_built_in(target)) throw CommandError("the cycle's number cannot be written");
  // What lies deeper than any variable would cost a stack frame a level later on.
  bool too_deep = false;
  const json value = json::parse(
      rest, [&](int depth, json::parse_event_t, const json&) { return !(too_deep = too_deep || depth > 64); },
      false);
  if (too_deep) throw CommandError("the value is nested too deeply");
  if (value.is_discarded()) throw CommandError("no JSON value: '" + std::string(rest) + "'");
  if (const auto problem = from_json(target, value, MutableBytes(core.plc.memory()))) {
    throw CommandError(*problem);
  }
  return {{"path", path}, {"cycle", core.plc.cycle()}};
}

json list(Core& core, std::string_view rest) {
  expect_end(rest);
  json variables = json::array();
  for_each_leaf(core.plc.program().blocks, [&](const Leaf& leaf) {
    variables.push_back({{"path", leaf.path},
                         {"type", type_row(leaf.symbol->type).name},
                         {"elements", element_count(*leaf.symbol)}});
    return true;
  });
  return {{"variables", std::move(variables)}};
}

json cycle_now(const Core& core) {
  return {{"cycle", core.plc.cycle()}};
}

json cycle(Core& core, std::string_view rest) {
  expect_end(rest);
  return cycle_now(core);
}

json hold(Core& core, std::string_view rest) {
  expect_end(rest);
  core.held = true;
  return cycle_now(core);
}

json run(Core& core, std::string_view rest) {
  expect_end(rest);
  core.held = false;
  return cycle_now(core);
}

json step(Core& core, std::string_view rest) {
  expect_end(rest);
  core.plc.step();
  return cycle_now(core);
}

json cut(Core& core, std::string_view rest) {
  expect_end(rest);
  const auto all = core.sessions;
  for (const auto& session : all) session->close();
  return {{"cut", all.size()}};
}

json freeze(Core& core, std::string_view rest) {
  expect_end(rest);
  core.faults.frozen = true;
  return {{"frozen", true}};
}

json thaw(Core& core, std::string_view rest) {
  expect_end(rest);
  core.faults.frozen = false;
  return {{"frozen", false}};
}

json delay(Core& core, std::string_view rest) {
  constexpr std::uint64_t kLongest = 600'000;
  const auto ms = number(rest, "milliseconds");
  if (ms > kLongest) throw CommandError("at most " + std::to_string(kLongest) + " milliseconds");
  core.faults.delay = std::chrono::milliseconds(ms);
  return {{"delay", ms}};
}

json late(Core& core, std::string_view rest) {
  expect_end(rest);
  core.faults.late = true;
  return {{"late", true}};
}

json fail(Core& core, std::string_view rest) {
  const auto path = take_path(rest);
  expect_end(rest);
  core.plc.fail(find(core, path));
  return {{"failing", path}};
}

json heal(Core& core, std::string_view rest) {
  const auto path = take_path(rest);
  expect_end(rest);
  if (path.empty()) {
    core.plc.heal_all();
  } else {
    core.plc.heal(find(core, path));
  }
  return {{"healed", path}};
}

json stats(Core& core, std::string_view rest) {
  expect_end(rest);
  const auto& jobs = core.plc.jobs();
  return {{"accepted", core.connections.accepted},
          {"open", core.connections.open},
          {"most_open", core.connections.most_at_once},
          {"jobs", jobs.reads + jobs.writes + jobs.others},
          {"reads", jobs.reads},
          {"writes", jobs.writes},
          {"cycle", core.plc.cycle()}};
}

struct Command {
  std::string_view word;
  json (*run)(Core& core, std::string_view rest);
};

constexpr std::array kCommands{
    Command{"read", read}, Command{"write", write}, Command{"list", list},     Command{"cycle", cycle},
    Command{"hold", hold}, Command{"run", run},     Command{"step", step},     Command{"cut", cut},
    Command{"thaw", thaw}, Command{"delay", delay}, Command{"freeze", freeze}, Command{"late", late},
    Command{"fail", fail}, Command{"heal", heal},   Command{"stats", stats},
};

json run_word(Core& core, std::string_view word, std::string_view rest) {
  for (const auto& command : kCommands) {
    if (command.word == word) return command.run(core, rest);
  }
  std::string known;
  for (const auto& command : kCommands) known += (known.empty() ? "" : ", ") + std::string(command.word);
  throw CommandError("unknown command '" + std::string(word) + "'; known are " + known + ", quit");
}

}  // namespace

std::string run_command(Core& core, std::string_view line) {
  line = trimmed(line);
  const auto end = std::min(line.find_first_of(" \t"), line.size());
  json answer;
  try {
    answer = run_word(core, line.substr(0, end), trimmed(line.substr(end)));
  } catch (const CommandError& error) {
    answer = {{"error", error.what()}};
  }
  // A path comes from the command line and may hold anything.
  return answer.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace ostravel::plc
