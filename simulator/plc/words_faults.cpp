// SPDX-License-Identifier: MIT
#include <array>

#include "simulator/plc/words.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;

constexpr std::chrono::milliseconds kLongestDelay{600'000};

json cut(Core& core, Arguments& arguments) {
  arguments.expect_end();
  return {{"cut", core.close_all()}};
}

json freeze(Core& core, Arguments& arguments) {
  arguments.expect_end();
  core.faults.frozen = true;
  return {{"frozen", true}};
}

json thaw(Core& core, Arguments& arguments) {
  arguments.expect_end();
  core.faults.frozen = false;
  return {{"frozen", false}};
}

json delay(Core& core, Arguments& arguments) {
  const auto span = arguments.duration(kLongestDelay);
  arguments.expect_end();
  core.faults.delay = span;
  return {{"delay", span.count()}};
}

json late(Core& core, Arguments& arguments) {
  arguments.expect_end();
  core.faults.late = true;
  return {{"late", true}};
}

json fail(Core& core, Arguments& arguments) {
  const auto path = arguments.path();
  const auto target = find_target(core, arguments, path);
  arguments.expect_end();
  core.plc.fail(target);
  return {{"failing", path}};
}

json heal(Core& core, Arguments& arguments) {
  const auto path = arguments.path();
  if (path.empty()) {
    core.plc.heal_all();
  } else {
    const auto target = find_target(core, arguments, path);
    arguments.expect_end();
    core.plc.heal(target);
  }
  return {{"healed", path}};
}

constexpr std::array kWords{
    Word{"cut", "", "drops all connections", cut},
    Word{"freeze", "", "keeps connections, answers nothing and forgets what is asked", freeze},
    Word{"thaw", "", "answers again", thaw},
    Word{"delay", "TIME", "sends every answer so much later, e.g. 500ms or 2s; 0 at once", delay},
    Word{"late", "", "sends the next answer after its client's time is up", late},
    Word{"fail", "PATH", "lets every access to the variable fail", fail},
    Word{"heal", "[PATH]", "takes that back; without a path for all variables", heal},
};

}  // namespace

std::span<const Word> fault_words() {
  return kWords;
}

}  // namespace ostravel::plc
