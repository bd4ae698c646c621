// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <array>

#include "simulator/plc/words.h"
#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/paths.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;

json read(Core& core, Arguments& arguments) {
  const auto path = arguments.path();
  Target target = find_target(core, arguments, path);
  const auto cycle = arguments.empty() ? core.plc.cycle() : arguments.cycle();
  const auto bytes = core.plc.image(target, cycle);
  if (!bytes) {
    throw NotNow(fmt::format("cycle {} is not kept; now is {}", cycle, core.plc.cycle()), arguments.last());
  }
  target.address = 0;  // in the image
  return {{"path", path}, {"cycle", cycle}, {"value", to_json(target, Bytes(*bytes))}};
}

// Takes over a value as JSON or, of a single variable, as a literal of the PLC's languages.
std::optional<std::string> store(Core& core, const Target& target, std::string_view text) {
  // What lies deeper than any variable would cost a stack frame a level later on.
  bool too_deep = false;
  const json value = json::parse(
      text, [&](int depth, json::parse_event_t, const json&) { return !(too_deep = too_deep || depth > 64); },
      false);
  if (too_deep) return "the value is nested too deeply";
  const MutableBytes memory(core.plc.memory());
  if (!value.is_discarded()) return from_json(target, value, memory);
  const bool single = target.element || target.symbol->dimensions.empty();
  if (single && !element_from_literal(*target.symbol, text, bytes_of(target, memory))) return std::nullopt;
  return fmt::format("no JSON value{}: '{}'", single ? " and no literal of the PLC" : "", text);
}

json write(Core& core, Arguments& arguments) {
  const auto path = arguments.path();
  const Target target = find_target(core, arguments, path);
  if (core.plc.is_built_in(target)) arguments.complain("the cycle's number cannot be written");
  if (arguments.empty()) arguments.complain("value expected behind the path");
  if (const auto problem = store(core, target, arguments.rest())) arguments.complain(*problem);
  return {{"path", path}, {"cycle", core.plc.cycle()}};
}

json list(Core& core, Arguments& arguments) {
  arguments.expect_end();
  json variables = json::array();
  for_each_leaf(core.plc.program().blocks, [&](const Leaf& leaf) {
    variables.push_back({{"path", leaf.path},
                         {"type", type_row(leaf.symbol->type).name},
                         {"elements", element_count(*leaf.symbol)}});
    return true;
  });
  return {{"variables", std::move(variables)}};
}

void drive(Core& core, const Arguments& arguments, std::string_view path, std::string_view rule) {
  if (core.plc.is_built_in(find_target(core, arguments, path)))
    arguments.complain("the cycle's number counts by itself");
  try {
    core.plc.generate(path, rule);
  } catch (const GeneratorError& error) {
    arguments.complain(error.what());
  }
}

json generate(Core& core, Arguments& arguments) {
  const auto path = arguments.path();
  find_target(core, arguments, path);
  const auto rule = arguments.rest();
  drive(core, arguments, path, rule);
  return {{"path", path}, {"generator", rule}, {"cycle", core.plc.cycle()}};
}

json constant(Core& core, Arguments& arguments) {
  const auto path = arguments.path();
  arguments.expect_end();
  drive(core, arguments, path, "none");
  return {{"path", path}, {"generator", "none"}, {"cycle", core.plc.cycle()}};
}

json cycle_now(const Core& core) {
  return {{"cycle", core.plc.cycle()}};
}

json cycle(Core& core, Arguments& arguments) {
  arguments.expect_end();
  return cycle_now(core);
}

json hold(Core& core, Arguments& arguments) {
  arguments.expect_end();
  core.held = true;
  return cycle_now(core);
}

json run(Core& core, Arguments& arguments) {
  arguments.expect_end();
  core.held = false;
  return cycle_now(core);
}

json step(Core& core, Arguments& arguments) {
  arguments.expect_end();
  core.plc.step();
  return cycle_now(core);
}

constexpr std::array kWords{
    Word{"list", "", "all variables with their types and numbers of elements", list},
    Word{"read", "PATH [@CYCLE]", "a value, now or at the end of one of the last 1,000 cycles", read},
    Word{"write", "PATH VALUE", "sets a value: JSON as read gives it, or a literal such as 16#FF or T#5s",
         write},
    Word{"generate", "PATH RULE",
         "moves a variable: ramp, sine, counter, toggle or text, or KIND(low,high,period in cycles)",
         generate},
    Word{"constant", "PATH", "takes a variable's generator away; it keeps its value", constant},
    Word{"cycle", "", "the number of the cycle", cycle},
    Word{"hold", "", "stops the cyclic program; clients are still served", hold},
    Word{"run", "", "lets the cyclic program go on", run},
    Word{"step", "", "runs the cyclic program once", step},
};

}  // namespace

std::span<const Word> variable_words() {
  return kWords;
}

Target find_target(const Core& core, const Arguments& arguments, std::string_view path) {
  if (path.empty()) arguments.complain("path of a variable expected");
  std::size_t position = 0;
  const auto target = resolve(core.plc.program().blocks, path, &position);
  if (!target) {
    throw CommandError(fmt::format("no variable '{}', wrong from character {} on", path, position + 1),
                       arguments.last() + position);
  }
  return *target;
}

}  // namespace ostravel::plc
