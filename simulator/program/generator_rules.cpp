// SPDX-License-Identifier: MIT
// Which variables the cyclic program drives: rules given as text, and the name Live.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/generators.h"
#include "simulator/program/paths.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

constexpr std::array<std::pair<std::string_view, GeneratorKind>, 5> kinds{
    {{"ramp", GeneratorKind::Ramp},
     {"sine", GeneratorKind::Sine},
     {"counter", GeneratorKind::Counter},
     {"toggle", GeneratorKind::Toggle},
     {"text", GeneratorKind::Text}}};

[[noreturn]] void refuse(std::string_view rule, std::string_view why) {
  throw GeneratorError(fmt::format("generator rule '{}': {}", rule, why));
}

// Where the path ends: the '=' outside of quotes.
std::size_t find_equals(std::string_view rule) {
  bool quoted = false;
  for (std::size_t i = 0; i < rule.size(); ++i) {
    if (rule[i] == '"') quoted = !quoted;
    if (rule[i] == '=' && !quoted) return i;
  }
  return std::string_view::npos;
}

std::vector<double> read_numbers(std::string_view rule, std::string_view list) {
  std::vector<double> numbers;
  for (;;) {
    const std::size_t comma = list.find(',');
    const std::string_view text = trimmed(list.substr(0, comma));
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(number)) {
      refuse(rule, fmt::format("'{}' is no number", text));
    }
    numbers.push_back(number);
    if (comma == std::string_view::npos) return numbers;
    list.remove_prefix(comma + 1);
  }
}

// Reads "sine(0,100,60)"; what is left out is taken from the shape that is natural for the type.
GeneratorShape read_shape(std::string_view rule, std::string_view text, DataType type) {
  const std::size_t bracket = text.find('(');
  const std::string_view word = trimmed(text.substr(0, bracket));
  const auto* const kind = std::find_if(kinds.begin(), kinds.end(),
                                        [word](const auto& entry) { return equal_names(entry.first, word); });
  if (kind == kinds.end())
    refuse(rule, fmt::format("'{}' is none of ramp, sine, counter, toggle, text, none", word));
  GeneratorShape shape{kind->second, 0, kind->second == GeneratorKind::Counter ? 0.0 : 100.0, 60};
  if (kind->second == GeneratorKind::Toggle) shape = {GeneratorKind::Toggle, 0, 1, 1};
  if (!can_drive(shape.kind, type)) {
    refuse(rule, fmt::format("{} cannot drive the type {}", kind->first, type_row(type).name));
  }
  if (bracket == std::string_view::npos) return shape;
  if (!text.ends_with(')')) refuse(rule, "the list of numbers has no end; close it with ')'");
  const std::vector<double> numbers = read_numbers(rule, text.substr(bracket + 1, text.size() - bracket - 2));
  if (numbers.size() < 2 || numbers.size() > 3)
    refuse(rule, "give low and high, or low, high and period in cycles");
  shape.low = numbers[0];
  shape.high = numbers[1];
  if (numbers.size() == 3) {
    if (numbers[2] < 1 || numbers[2] > 4e9 || numbers[2] != std::floor(numbers[2])) {
      refuse(rule, "the period is a whole number of cycles, at least 1");
    }
    shape.period = static_cast<std::uint32_t>(numbers[2]);
  }
  if (std::abs(shape.low) > 1e18 && shape.kind == GeneratorKind::Counter)
    refuse(rule, "a counter starts within 1e18");
  return shape;
}

template <typename Attach>
void visit_live(const std::vector<Symbol>& symbols, std::uint64_t base, bool live, const Attach& attach) {
  for (const Symbol& symbol : symbols) {
    const std::uint64_t start = base + symbol.offset;
    const bool inside = live || equal_names(symbol.name, "Live");
    if (symbol.type != DataType::Struct) {
      if (live && symbol.type != DataType::Opaque) attach(symbol, start);
      continue;
    }
    const std::uint64_t count = symbol.members.empty() ? 0 : element_count(symbol);
    for (std::uint64_t i = 0; i < count; ++i) {
      visit_live(symbol.members, start + i * symbol.element_size, inside, attach);
    }
  }
}

}  // namespace

void Generators::put(const Attached& attached) {
  const auto same = std::find_if(attached_.begin(), attached_.end(), [&attached](const Attached& other) {
    return other.symbol == attached.symbol && other.address == attached.address;
  });
  if (same != attached_.end()) {
    *same = attached;
  } else {
    attached_.push_back(attached);
  }
}

void Generators::attach(const std::vector<Symbol>& blocks, std::string_view rule) {
  const std::size_t equals = find_equals(rule);
  if (equals == std::string_view::npos)
    refuse(rule, "write PATH=KIND, for example Plant.Level=sine(0,100,60)");
  const std::string_view path = trimmed(rule.substr(0, equals));
  const std::string_view kind = trimmed(rule.substr(equals + 1));
  std::size_t position = 0;
  const std::optional<Target> target = resolve(blocks, path, &position);
  if (!target)
    refuse(rule, fmt::format("there is no '{}'; it stops to fit at character {}", path, position + 1));
  if (equal_names(kind, "none")) {
    const std::uint64_t end = target->address + byte_count(*target);
    const std::size_t taken = std::erase_if(attached_, [&](const Attached& other) {
      return other.address >= target->address &&
             other.address + other.elements * other.symbol->element_size <= end;
    });
    if (taken == 0) refuse(rule, "no generator drives this variable as a whole");
    return;
  }
  if (target->symbol->type == DataType::Struct) refuse(rule, "name a variable, not a structure");
  const GeneratorShape shape = read_shape(rule, kind, target->symbol->type);
  put({target->symbol, target->address, target->element ? 1 : element_count(*target->symbol), shape});
}

std::uint64_t Generators::attach_live(const std::vector<Symbol>& blocks, std::uint64_t limit) {
  std::uint64_t left_out = 0;
  std::vector<Attached> found;
  visit_live(blocks, 0, false, [&](const Symbol& symbol, std::uint64_t address) {
    if (found.size() >= limit) {
      ++left_out;
      return;
    }
    found.push_back({&symbol, address, element_count(symbol), natural_shape(symbol.type)});
  });
  // In front, so that rules given before still come last and win.
  attached_.insert(attached_.begin(), found.begin(), found.end());
  return left_out;
}

}  // namespace ostravel::plc
