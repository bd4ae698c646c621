// SPDX-License-Identifier: MIT
// Values of the cyclic program, computed from the number of the cycle.
#include "simulator/program/generators.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/literal.h"

namespace ostravel::plc {
namespace {

constexpr std::uint64_t second_ns = 1'000'000'000;
// 2024-01-01: where dates begin to count.
constexpr std::uint64_t first_ns = 1'704'067'200 * second_ns;
constexpr double pi = 3.14159265358979323846;

double shaped(const GeneratorShape& shape, std::uint64_t cycle) {
  const std::uint64_t period = std::max<std::uint32_t>(shape.period, 1);
  const double span = shape.high - shape.low;
  const double part = static_cast<double>(cycle % period) / static_cast<double>(period);
  switch (shape.kind) {
    case GeneratorKind::Ramp:
      return period == 1
                 ? shape.high
                 : shape.low + span * static_cast<double>(cycle % period) / static_cast<double>(period - 1);
    case GeneratorKind::Sine:
      return shape.low + span * (0.5 + 0.5 * std::sin(2 * pi * part));
    case GeneratorKind::Toggle:
      return cycle / period % 2 == 0 ? shape.low : shape.high;
    default:
      break;
  }
  if (shape.high <= shape.low) return shape.low + static_cast<double>(cycle);
  return shape.low + std::fmod(static_cast<double>(cycle), std::floor(span) + 1);
}

// Nearest whole number in the range of the type, which a shape must not leave.
void store_nearest(DataType type, double value, MutableBytes element) {
  const unsigned bits = static_cast<unsigned>(element.size()) * 8;
  const TypeFamily family = type_row(type).family;
  const bool is_signed = family == TypeFamily::Signed || family == TypeFamily::Time;
  const double top = std::ldexp(1.0, static_cast<int>(is_signed ? bits - 1 : bits));
  const double rounded = std::round(value);
  IntegerLiteral number;
  number.negative = rounded < 0;
  const double magnitude = std::abs(rounded);
  if (number.negative) {
    const bool outside = !is_signed || magnitude >= top;
    number.magnitude = !is_signed ? 0
                       : outside  ? static_cast<std::uint64_t>(top)
                                  : static_cast<std::uint64_t>(magnitude);
  } else if (magnitude >= top) {
    number.magnitude = bits == 64 && !is_signed ? ~std::uint64_t{0}
                                                : (std::uint64_t{1} << (is_signed ? bits - 1 : bits)) - 1;
  } else {
    number.magnitude = static_cast<std::uint64_t>(magnitude);
  }
  store_number(element, number.negative ? ~number.magnitude + 1 : number.magnitude);
}

// A counter without an end goes through all that the type can hold, exactly, whatever its width.
void store_count(DataType type, std::uint64_t count, MutableBytes element) {
  const std::uint64_t ns = first_ns + count % 1'000'000'000 * second_ns;
  switch (type) {
    case DataType::Counter:
      store_number(element, counter_from_number(static_cast<std::uint32_t>(count % 1000)).value_or(0));
      break;
    case DataType::S5Time:
    case DataType::Timer:
      store_number(element, s5time_from_ms(static_cast<std::uint32_t>(count % 1000) * 10, false).value_or(0));
      break;
    case DataType::TimeOfDay:
      store_number(element, count % 86'400 * 1000);
      break;
    case DataType::LTimeOfDay:
      store_number(element, count % 86'400 * second_ns);
      break;
    case DataType::DateAndTime:
      store_date_and_time(element, date_time_of(ns));
      break;
    case DataType::LDateTime:
      store_number(element, ns);
      break;
    case DataType::Dtl:
      store_dtl(element, date_time_of(ns));
      break;
    default:
      store_number(element, count);
      break;
  }
}

void store_text(const Symbol& symbol, std::uint64_t cycle, MutableBytes element) {
  if (symbol.type == DataType::Char || symbol.type == DataType::WChar) {
    store_number(element, 'A' + cycle % 26);
    return;
  }
  const std::string text = fmt::format("cycle {}", cycle).substr(0, symbol.string_length);
  if (symbol.type == DataType::String) {
    store_string(element, text);
  } else {
    store_wstring(element, text);
  }
}

bool counts_freely(const GeneratorShape& shape) {
  return shape.kind == GeneratorKind::Counter && shape.high <= shape.low;
}

}  // namespace

GeneratorShape natural_shape(DataType type) {
  switch (type_row(type).family) {
    case TypeFamily::Bool:
      return {GeneratorKind::Toggle, 0, 1, 1};
    case TypeFamily::Real:
      return {GeneratorKind::Sine, 0, 100, 60};
    case TypeFamily::Signed:
    case TypeFamily::Time:
      return {GeneratorKind::Ramp, 0, 100, 100};
    case TypeFamily::Text:
      return {GeneratorKind::Text, 0, 0, 1};
    default:
      return {GeneratorKind::Counter, 0, 0, 1};
  }
}

bool can_drive(GeneratorKind kind, DataType type) {
  switch (type_row(type).family) {
    case TypeFamily::Bool:
      return kind == GeneratorKind::Toggle;
    case TypeFamily::Text:
      return kind == GeneratorKind::Text;
    case TypeFamily::Date:
    case TypeFamily::Bcd:
      return kind == GeneratorKind::Counter;
    case TypeFamily::Other:
      return false;
    default:
      return kind != GeneratorKind::Text;
  }
}

void generate(const Symbol& symbol, const GeneratorShape& shape, std::uint64_t cycle,
              std::span<std::uint8_t> element) {
  if (element.size() < symbol.element_size || symbol.element_size == 0 || !can_drive(shape.kind, symbol.type))
    return;
  element = element.first(symbol.element_size);
  switch (type_row(symbol.type).family) {
    case TypeFamily::Bool:
      element[0] = cycle / std::max<std::uint32_t>(shape.period, 1) % 2 == 0 ? 0 : 1;
      return;
    case TypeFamily::Text:
      store_text(symbol, cycle, element);
      return;
    case TypeFamily::Date:
    case TypeFamily::Bcd:
      store_count(symbol.type, cycle, element);
      return;
    case TypeFamily::Real: {
      const double value = shaped(shape, cycle);
      if (symbol.type == DataType::LReal) {
        store_lreal(element, value);
      } else {
        store_real(element, static_cast<float>(value));
      }
      return;
    }
    default:
      break;
  }
  if (counts_freely(shape)) {
    store_count(symbol.type, cycle + static_cast<std::uint64_t>(static_cast<std::int64_t>(shape.low)),
                element);
  } else {
    store_nearest(symbol.type, shaped(shape, cycle), element);
  }
}

void Generators::step(std::span<std::uint8_t> memory, std::uint64_t cycle) const {
  for (const Attached& attached : attached_) {
    const std::uint64_t size = attached.symbol->element_size;
    if (attached.address > memory.size() || attached.elements * size > memory.size() - attached.address)
      continue;
    for (std::uint64_t i = 0; i < attached.elements; ++i) {
      generate(*attached.symbol, attached.shape, cycle + i,
               memory.subspan(attached.address + i * size, size));
    }
  }
}

}  // namespace ostravel::plc
