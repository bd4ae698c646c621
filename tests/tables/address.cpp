// SPDX-License-Identifier: MIT
#include "tests/tables/address.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "tests/tables/rows.h"

namespace tables {
namespace {

constexpr std::pair<std::string_view, int> kCodes[] = {
    {"BYTE", 2},   {"WORD", 3},   {"DWORD", 4},  {"UDINT", 6},  {"LWORD", 7},    {"LINT", 8},
    {"ULINT", 9},  {"LREAL", 10}, {"UINT", 11},  {"USINT", 12}, {"LTIME", 13},   {"BOOL", 193},
    {"SINT", 194}, {"INT", 195},  {"DINT", 196}, {"REAL", 202}, {"BITARY", 211}, {"STRING", 212},
};

std::string name_of(const std::string& address) {
  return address.substr(0, address.find(' '));
}

void add_name(std::vector<std::string>& names, const std::string& address) {
  const auto name = name_of(address);
  if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

std::string trimmed(const std::string& text) {
  const auto from = text.find_first_not_of(' ');
  return from == std::string::npos ? "" : text.substr(from, text.find_last_not_of(' ') - from + 1);
}

// Where the words or the bit value of a step begin.
std::size_t value_position(const std::string& step) {
  for (const char* mark : {" = ", " set", " clear"}) {
    if (const auto at = step.find(mark); at != std::string::npos) return at;
  }
  throw std::invalid_argument("no write: " + step);
}

const std::vector<std::string>& tag_names() {
  static const auto all = [] {
    std::vector<std::string> names{kGuard};
    for (const auto& one : read_cases()) add_name(names, one.row.address);
    for (const auto& one : write_cases()) add_name(names, one.row.address);
    for (const auto& one : offline_cases()) {
      add_name(names, one.row.address);
      for (const auto& step : split(one.row.writes, ';')) add_name(names, trimmed(step));
    }
    return names;
  }();
  return all;
}

DWORD row_of(const std::string& name) {
  const auto& names = tag_names();
  return static_cast<DWORD>(std::find(names.begin(), names.end(), name) - names.begin());
}

void set_part(TagBlock& block, const std::string& part, int code) {
  if (part == "~") {
    block.alternate(code);
  } else if (part == "-i") {
    block.index_off(1);
  } else if (part == ".i") {
    block.selector(255);
  } else if (part.starts_with(".#")) {
    block.selector(std::stoi(part.substr(2)));
  } else if (part.starts_with(".")) {
    block.bit(std::stoi(part.substr(1)));
  } else if (part.starts_with("@")) {
    block.index(std::stoi(part.substr(1)));
  } else if (part.starts_with("x")) {
    block.count(std::stoi(part.substr(1)));
  } else {
    throw std::invalid_argument("no part of an address: " + part);
  }
}

}  // namespace

int code_of(const std::string& type) {
  for (const auto& [name, code] : kCodes) {
    if (name == type) return code;
  }
  throw std::invalid_argument("no type: " + type);
}

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(trimmed(part));
  return parts;
}

TagBlock tag_block(const std::string& type, const std::string& address) {
  const int code = code_of(type);
  const auto parts = split(address, ' ');
  const bool alternate = std::find(parts.begin(), parts.end(), "~") != parts.end();
  const int other = code == code_of("LREAL") ? code_of("BYTE") : code_of("LREAL");
  TagBlock block(alternate ? other : code);
  block.row(row_of(name_of(address)));
  for (std::size_t i = 1; i < parts.size(); ++i) set_part(block, parts[i], code);
  return block;
}

std::vector<std::uint64_t> numbers_of(const std::string& text) {
  std::vector<std::uint64_t> list;
  std::istringstream stream(text);
  for (std::string part; stream >> part;) {
    const auto star = part.find('*');
    const std::size_t times = star == std::string::npos ? 1 : std::stoul(part.substr(star + 1));
    list.insert(list.end(), times, std::stoull(part.substr(0, star), nullptr, 16));
  }
  return list;
}

std::vector<WORD> words_of(const std::string& text) {
  std::vector<WORD> list;
  for (const auto number : numbers_of(text)) list.push_back(static_cast<WORD>(number));
  return list;
}

RequestBuilder write_of(const TagBlock& block, const std::string& words) {
  if (words == "clear") return RequestBuilder::BitWrite(block, 0);
  if (words == "set") return RequestBuilder::BitWrite(block, 1);
  if (words.starts_with("set ")) {
    return RequestBuilder::BitWrite(block, static_cast<int>(numbers_of(words.substr(4)).at(0)));
  }
  return RequestBuilder::WordWrite(block, words_of(words));
}

RequestBuilder write_step(const std::string& type, const std::string& step) {
  const auto at = value_position(step);
  const auto value = trimmed(step.substr(at));
  return write_of(tag_block(type, step.substr(0, at)), value.starts_with("=") ? value.substr(1) : value);
}

ProjectFile project(bool paired) {
  ProjectFile file(paired ? 1 : 0);
  std::uint32_t id = 100;
  for (const auto& name : tag_names()) file.tag(name, id++);
  return file;
}

}  // namespace tables
