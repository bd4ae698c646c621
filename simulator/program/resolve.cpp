// SPDX-License-Identifier: MIT
// Paths to symbols. A path:  name [index] { "." name [index] }
//   name:  "anything but a quote" or a plain identifier      index:  "[" number { "," number } "]"
// Blanks may stand around every part.
#include <algorithm>
#include <charconv>

#include "simulator/program/paths.h"
#include "simulator/program/program.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

class PathReader {
 public:
  explicit PathReader(std::string_view path) : path_(path) {}

  std::size_t position() const { return position_; }

  bool at_end() {
    skip_blanks();
    return position_ == path_.size();
  }

  bool take(char expected) {
    skip_blanks();
    if (position_ == path_.size() || path_[position_] != expected) return false;
    ++position_;
    return true;
  }

  // A name without its quotes; nothing when there is none here, then the position is where it should start.
  std::optional<std::string_view> name() {
    skip_blanks();
    const std::string_view rest = path_.substr(position_);
    if (rest.starts_with('"')) {
      const std::size_t end = rest.find('"', 1);
      if (end == std::string_view::npos || end == 1) return std::nullopt;
      position_ += end + 1;
      return rest.substr(1, end - 1);
    }
    std::string_view tail = rest;
    std::optional<char32_t> character = take_character(tail);
    if (!character || !starts_identifier(*character)) return std::nullopt;
    std::size_t length = rest.size() - tail.size();
    while ((character = take_character(tail)) && continues_identifier(*character)) {
      length = rest.size() - tail.size();
    }
    position_ += length;
    return rest.substr(0, length);
  }

  std::optional<std::int32_t> number() {
    skip_blanks();
    std::int32_t value = 0;
    const char* const begin = path_.data() + position_;
    const auto [end, error] = std::from_chars(begin, path_.data() + path_.size(), value);
    if (error != std::errc{}) return std::nullopt;
    position_ += static_cast<std::size_t>(end - begin);
    return value;
  }

  void skip_blanks() {
    while (position_ < path_.size() && (path_[position_] == ' ' || path_[position_] == '\t')) ++position_;
  }

 private:
  std::string_view path_;
  std::size_t position_ = 0;
};

const Symbol* find(const std::vector<Symbol>& symbols, std::string_view name) {
  // As a rule a name is written as it was declared, and no two differ in letter case alone: what is spelt the
  // same is looked for first, since thousands of members take long to compare without case.
  const auto same = std::ranges::find(symbols, name, &Symbol::name);
  if (same != symbols.end()) return &*same;
  const auto found = std::find_if(symbols.begin(), symbols.end(),
                                  [name](const Symbol& symbol) { return equal_names(symbol.name, name); });
  return found == symbols.end() ? nullptr : &*found;
}

// Reads "1,2]" into the target. On failure returns the position at which it stops to fit.
std::optional<std::size_t> read_index(PathReader& reader, Target& target) {
  const std::vector<Dimension>& dimensions = target.symbol->dimensions;
  for (std::size_t i = 0; i < dimensions.size(); ++i) {
    reader.skip_blanks();
    const std::size_t start = reader.position();
    const std::optional<std::int32_t> number = reader.number();
    if (!number || *number < dimensions[i].lower || *number > dimensions[i].upper) return start;
    target.index.push_back(*number);
    if (!reader.take(i + 1 == dimensions.size() ? ']' : ',')) return reader.position();
  }
  return std::nullopt;
}

// Goes down one part of the path. On failure returns the position at which it stops to fit.
std::optional<std::size_t> read_part(PathReader& reader, const std::vector<Symbol>& symbols, Target& target) {
  reader.skip_blanks();
  const std::size_t start = reader.position();
  const std::optional<std::string_view> name = reader.name();
  target.symbol = name ? find(symbols, *name) : nullptr;
  if (target.symbol == nullptr) return start;
  target.address += target.symbol->offset;
  target.element = false;
  target.index.clear();
  const bool array = !target.symbol->dimensions.empty();
  reader.skip_blanks();
  const std::size_t bracket = reader.position();
  if (!reader.take('[')) return std::nullopt;
  if (!array) return bracket;
  if (const std::optional<std::size_t> failure = read_index(reader, target)) return failure;
  target.element = true;
  target.address += element_of_index(*target.symbol, target.index).value_or(0) * target.symbol->element_size;
  return std::nullopt;
}

}  // namespace

std::uint64_t element_count(const Symbol& symbol) {
  std::uint64_t count = 1;
  for (const Dimension& dimension : symbol.dimensions) {
    if (dimension.upper < dimension.lower) return 0;
    count *= static_cast<std::uint64_t>(std::int64_t{dimension.upper} - dimension.lower + 1);
  }
  return count;
}

std::uint64_t empty_structures(const Symbol& symbol) {
  if (symbol.type != DataType::Struct) return symbol.element_size == 0 ? 1 : 0;
  if (symbol.members.empty()) return 1;
  std::uint64_t count = 0;
  for (const Symbol& member : symbol.members) count += element_count(member) * empty_structures(member);
  return count;
}

std::optional<Target> resolve(const std::vector<Symbol>& blocks, std::string_view path,
                              std::size_t* error_position) {
  PathReader reader(path);
  Target target;
  const std::vector<Symbol>* symbols = &blocks;
  std::optional<std::size_t> failure;
  for (;;) {
    failure = read_part(reader, *symbols, target);
    if (failure) break;
    if (reader.at_end()) return target;
    const bool whole_array = !target.symbol->dimensions.empty() && !target.element;
    failure = reader.position();
    if (whole_array || target.symbol->members.empty() || !reader.take('.')) break;
    symbols = &target.symbol->members;
  }
  if (error_position != nullptr) *error_position = *failure;
  return std::nullopt;
}

}  // namespace ostravel::plc
