// SPDX-License-Identifier: MIT
#include "host/demo/plcview.h"

#include <array>
#include <filesystem>

#include "simulator/program/encoding.h"
#include "simulator/program/source.h"

namespace ostravel::host {
namespace {

using nlohmann::json;

plc::Program load(const std::vector<std::string>& sources) {
  const std::vector<std::filesystem::path> files(sources.begin(), sources.end());
  return plc::load_program(files, {}, nullptr);
}

// The bytes that were delivered, whether in words of one byte or of two.
std::vector<std::uint8_t> bytes_of(const TagType& type, const json& values) {
  std::vector<std::uint8_t> bytes;
  for (const auto& value : values) {
    const auto number = value.get<std::uint64_t>();
    for (int bit = 0; bit < type.bits; bit += 8) {
      bytes.push_back(static_cast<std::uint8_t>(number >> bit));
    }
  }
  return bytes;
}

plc::DateTime parts_of(const std::vector<std::uint8_t>& bytes) {
  plc::DateTime time;
  time.year = static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
  time.month = bytes[2];
  time.day = bytes[3];
  time.weekday = bytes[4];
  time.hour = bytes[5];
  time.minute = bytes[6];
  time.second = bytes[7];
  return time;
}

json dtl(const plc::Symbol& symbol, const std::vector<std::uint8_t>& bytes) {
  if (bytes.size() != 12) {
    return nullptr;
  }
  auto time = parts_of(bytes);
  for (std::size_t i = 0; i < 4; ++i) {
    time.nanosecond |= static_cast<std::uint32_t>(bytes[8 + i]) << (8 * i);
  }
  std::array<std::uint8_t, plc::dtl_size> memory{};
  plc::store_dtl(memory, time);
  return plc::element_to_json(symbol, memory);
}

json date_and_time(const plc::Symbol& symbol, const std::vector<std::uint8_t>& bytes) {
  if (bytes.size() != 10) {
    return nullptr;
  }
  auto time = parts_of(bytes);
  time.nanosecond = static_cast<std::uint32_t>(bytes[8] | bytes[9] << 8) * 1'000'000;
  std::array<std::uint8_t, plc::date_and_time_size> memory{};
  if (!plc::store_date_and_time(memory, time)) {
    return nullptr;
  }
  return plc::element_to_json(symbol, memory);
}

bool shown_otherwise(plc::DataType type) {
  using enum plc::DataType;
  return type == Date || type == TimeOfDay || type == LTimeOfDay || type == LDateTime || type == Char;
}

json element(const plc::Symbol& symbol, const json& number) {
  if (!number.is_number_integer()) {
    return nullptr;
  }
  std::vector<std::uint8_t> memory(symbol.element_size);
  plc::store_number(memory, number.get<std::uint64_t>());
  return plc::element_to_json(symbol, memory);
}

}  // namespace

PlcView::PlcView(const std::vector<std::string>& sources) : program_(load(sources)) {}

json PlcView::of(const Selection& selection, const json& delivered) const {
  const auto target = plc::resolve(program_.blocks, selection.text);
  if (!target) {
    return nullptr;
  }
  const auto& symbol = *target->symbol;
  if (symbol.type == plc::DataType::Dtl || symbol.type == plc::DataType::DateAndTime) {
    const auto bytes = bytes_of(*selection.tag.type, delivered);
    return symbol.type == plc::DataType::Dtl ? dtl(symbol, bytes) : date_and_time(symbol, bytes);
  }
  if (!shown_otherwise(symbol.type)) {
    return delivered;
  }
  if (!delivered.is_array()) {
    return element(symbol, delivered);
  }
  json values = json::array();
  for (const auto& value : delivered) {
    values.push_back(element(symbol, value));
  }
  return values;
}

}  // namespace ostravel::host
