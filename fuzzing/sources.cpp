// SPDX-License-Identifier: MIT
// Exported PLC sources into the simulator. A source is refused with a message that names its place, or it is
// a program: a sound tree that survives upload and cache file, whose every variable is found by its path, and
// that runs.
//   input = options:byte source
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "fuzzing/support/demand.h"
#include "fuzzing/support/entry.h"
#include "fuzzing/support/input.h"
#include "simulator/plc/plc.h"
#include "simulator/program/encoding.h"
#include "simulator/program/fingerprint.h"
#include "simulator/program/paths.h"
#include "simulator/program/source.h"
#include "simulator/program/tags.h"
#include "simulator/wire/symboltree.h"

using namespace ostravel;

namespace {

constexpr std::string_view kName = "input.scl";
constexpr int kMostVariables = 200;

// The value as JSON is taken back as the same bytes.
void write_back(const plc::Symbol& symbol, std::span<const std::uint8_t> bytes) {
  constexpr std::size_t kMostBytes = 4096;
  if (bytes.size() > kMostBytes) return;
  const auto value = plc::to_json(symbol, bytes);
  std::vector<std::uint8_t> copy(bytes.begin(), bytes.end());
  (void)plc::from_json(symbol, value, copy);
}

void look_at_variables(const plc::Program& program) {
  int left = kMostVariables;
  plc::for_each_variable(program.blocks, [&](const plc::Leaf& leaf) {
    const auto target = plc::resolve(program.blocks, leaf.path);
    FUZZ_DEMAND(target && target->symbol == leaf.symbol && target->address == leaf.address);
    const std::uint64_t size = plc::byte_count(*leaf.symbol);
    FUZZ_DEMAND(leaf.address <= program.initial.size() && size <= program.initial.size() - leaf.address);
    if (leaf.symbol->readable && leaf.symbol->type != plc::DataType::Opaque) {
      write_back(*leaf.symbol, std::span(program.initial).subspan(leaf.address, size));
    }
    return --left > 0;
  });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::uint8_t how = input.byte();
  plc::LoadOptions options;
  options.instances = (how & 1) != 0;
  options.accessible = (how & 2) != 0;
  options.memory_limit = 1 << 16;
  options.constants = {{"LIMIT", "4"}, {"wide", "16#FF"}};
  const auto bytes = input.rest();
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  std::vector<std::string> warnings;
  plc::Program program;
  try {
    program = plc::load_text(text, kName, options, &warnings);
  } catch (const plc::SourceError& error) {
    const std::string_view what = error.what();
    FUZZ_DEMAND(what.starts_with(kName) && what.find('\n') == std::string_view::npos);
    return 0;
  }
  for (const std::string& warning : warnings) FUZZ_DEMAND(warning.find('\n') == std::string::npos);
  FUZZ_DEMAND(program.initial.size() <= options.memory_limit);
  FUZZ_DEMAND(wire::is_sound(program.blocks));
  FUZZ_DEMAND(program.fingerprint == plc::fingerprint(program.blocks));
  const auto uploaded = wire::decode_tree(wire::encode_tree(program.blocks));
  FUZZ_DEMAND(uploaded && *uploaded == program.blocks);
  look_at_variables(program);
  if ((how & 4) != 0) (void)plc::warnings_of(plc::export_tags(program));
  if ((how & 8) != 0) {
    plc::Plc plc(std::move(program));
    plc.step();
    plc.restart();
  }
  return 0;
}
