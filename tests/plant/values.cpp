// SPDX-License-Identifier: MIT
#include "tests/plant/values.h"

#include <fmt/format.h>

#include "simulator/program/paths.h"

namespace ostravel::plant {
namespace {

using enum plc::DataType;

constexpr std::uint64_t kMillisecondsOfDay = 86'400'000;
constexpr std::uint64_t kNanosecondsOfDay = kMillisecondsOfDay * 1'000'000;

std::uint64_t mix(std::uint64_t number) {
  number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9ULL;
  number = (number ^ (number >> 27U)) * 0x94D049BB133111EBULL;
  return number ^ (number >> 31U);
}

std::uint64_t number_of(std::string_view path, std::uint64_t element, std::uint64_t moment) {
  std::uint64_t name = 0xCBF29CE484222325ULL;
  for (const char letter : path) name = (name ^ static_cast<unsigned char>(letter)) * 0x100000001B3ULL;
  return mix(mix(name + element) + moment);
}

plc::DateTime date_time(std::uint64_t number) {
  plc::DateTime time;
  const auto take = [&number](std::uint64_t below) {
    const auto part = number % below;
    number /= below;
    return part;
  };
  time.year = static_cast<std::uint16_t>(1990 + take(99));
  time.month = static_cast<std::uint8_t>(1 + take(12));
  time.day = static_cast<std::uint8_t>(1 + take(28));
  time.weekday = plc::weekday_of(time.year, time.month, time.day);
  time.hour = static_cast<std::uint8_t>(take(24));
  time.minute = static_cast<std::uint8_t>(take(60));
  time.second = static_cast<std::uint8_t>(take(60));
  time.nanosecond = static_cast<std::uint32_t>(take(1000) * 1'000'000);
  return time;
}

// Longer or shorter from moment to moment, so that the rest of a longer one would show.
std::string text_of(std::string_view path, std::uint64_t element, std::uint64_t moment, std::size_t most) {
  const auto number = number_of(path, element, moment);
  auto text = fmt::format("{:x} {} {}[{}]", number, moment, path, element);
  return text.substr(0, 1 + number % std::min(most, text.size()));
}

}  // namespace

void put_value(const plc::Symbol& symbol, std::string_view path, std::uint64_t element, std::uint64_t moment,
               plc::MutableBytes memory) {
  const auto number = number_of(path, element, moment);
  switch (symbol.type) {
    case Bool:
      return plc::store_number(memory, number & 1U);
    case Real:  // of as many bits as the type holds exactly, and never one that is no number
      return plc::store_real(memory, static_cast<float>(static_cast<std::int32_t>(number >> 40U)) / 8 - 1e6F);
    case LReal:
      return plc::store_lreal(memory, static_cast<double>(number >> 12U) / 16 - 1e14);
    case Char:
      return plc::store_number(memory, 'A' + number % 26);
    case WChar:
      return plc::store_number(memory, 0x3040 + number % 80);
    case String:
      plc::store_string(memory, text_of(path, element, moment, symbol.string_length));
      return;
    case WString:
      plc::store_wstring(memory, text_of(path, element, moment, symbol.string_length - 1) + "\u6E29");
      return;
    case S5Time:
    case Timer:
      return plc::store_number(
          memory, plc::s5time_from_ms(static_cast<std::uint32_t>(number % 9'990'001), true).value());
    case Counter:
      return plc::store_number(memory,
                               plc::counter_from_number(static_cast<std::uint32_t>(number % 1000)).value());
    case TimeOfDay:
      return plc::store_number(memory, number % kMillisecondsOfDay);
    case LTimeOfDay:
      return plc::store_number(memory, number % kNanosecondsOfDay);
    case LDateTime:
      return plc::store_number(memory, number % (kNanosecondsOfDay * 36'500));
    case Date:
      return plc::store_number(memory, number % 36'500);
    case DateAndTime:
      plc::store_date_and_time(memory, date_time(number));
      return;
    case Dtl:
      return plc::store_dtl(memory, date_time(number));
    case Struct:
    case Opaque:
      return;
    default:
      return plc::store_number(memory, number);
  }
}

Values::Values(const plc::Program& program) {
  plc::for_each_leaf(program.blocks, [this](const plc::Leaf& leaf) {
    if (!leaf.path.starts_with("Simulation."))
      variables_.push_back({leaf.path, leaf.symbol, leaf.address, plc::element_count(*leaf.symbol)});
    return true;
  });
}

void Values::put(std::uint64_t moment, plc::MutableBytes memory) const {
  for (const auto& variable : variables_) {
    const std::size_t size = variable.symbol->element_size;
    for (std::uint64_t i = 0; i < variable.elements; ++i) {
      put_value(*variable.symbol, variable.path, i, moment,
                memory.subspan(variable.address + i * size, size));
    }
  }
}

}  // namespace ostravel::plant
