// SPDX-License-Identifier: MIT
#include "simulator/program/layout.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <unordered_set>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/system_types.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

constexpr std::uint64_t symbol_limit = 500'000;
constexpr unsigned depth_limit = 64;
constexpr std::uint32_t default_text_length = 254;
constexpr std::int64_t string_limit = 254;
constexpr std::int64_t wstring_limit = 16'382;

void restrict_access(Symbol& symbol, bool readable, bool writable) {
  symbol.readable = symbol.readable && readable;
  symbol.writable = symbol.writable && writable && readable;
  for (Symbol& member : symbol.members) restrict_access(member, readable, writable);
}

bool holds_bool(const Symbol& symbol) {
  return symbol.type == DataType::Bool ||
         std::any_of(symbol.members.begin(), symbol.members.end(), holds_bool);
}

bool holds_opaque(const Symbol& symbol) {
  return symbol.type == DataType::Opaque ||
         std::any_of(symbol.members.begin(), symbol.members.end(), holds_opaque);
}

std::uint64_t symbols_in(const Symbol& symbol) {
  std::uint64_t count = 1;
  for (const Symbol& member : symbol.members) count += symbols_in(member);
  return count;
}

unsigned levels_in(const Symbol& symbol) {
  unsigned levels = 0;
  for (const Symbol& member : symbol.members) levels = std::max(levels, levels_in(member));
  return levels + 1;
}

[[noreturn]] void too_deep(const Position& position) {
  fail(position, fmt::format("structures contain each other over more than {} levels; take some levels out",
                             depth_limit));
}

void make_opaque(Symbol& symbol) {
  symbol.type = DataType::Opaque;
  symbol.dimensions.clear();
  symbol.members.clear();
  symbol.string_length = 0;
  symbol.element_size = 0;
  symbol.readable = false;
  symbol.writable = false;
}

}  // namespace

Layout::Layout(const Catalogue& catalogue, std::uint64_t memory_limit, std::vector<std::string>* warnings)
    : catalogue_(catalogue),
      memory_limit_(std::min<std::uint64_t>(memory_limit, std::numeric_limits<std::uint32_t>::max())),
      warnings_(warnings) {}

Symbol Layout::place(const Declaration& block) {
  Symbol symbol = describe(block.content, &block);
  symbol.name = block.name;
  symbol.offset = static_cast<std::uint32_t>(size_);
  if (block.read_only) restrict_access(symbol, true, false);
  size_ += byte_count(symbol);
  check_size(size_, block.position);
  return symbol;
}

Symbol Layout::describe(const TypeUse& use, const Declaration* scope) {
  Symbol symbol;
  count_symbols(1, use.position);
  describe_element(symbol, use, scope);
  if (use.open_array) {
    make_opaque(symbol);
  } else if (symbol.type != DataType::Opaque) {
    read_bounds(symbol, use, scope);
  }
  return symbol;
}

void Layout::describe_element(Symbol& symbol, const TypeUse& use, const Declaration* scope) {
  if (use.structure) {
    take_structure(symbol, structure_of(use.members, scope), use.position);
    return;
  }
  const Catalogue::Meaning meaning = catalogue_.meaning(use);
  if (meaning.declaration != nullptr) {
    symbol.type_name = meaning.declaration->name;
    take_structure(symbol, declared(*meaning.declaration, use.position), use.position);
    return;
  }
  if (!meaning.elementary) {
    symbol.type_name = use.name;
    make_opaque(symbol);
    if (!meaning.known_opaque) {
      warn(use.position,
           fmt::format("the type {} is not known; the member has a name but cannot be read or written. If "
                       "it is your own type, add the file that declares it",
                       use.name));
    }
    return;
  }
  symbol.type = *meaning.elementary;
  symbol.element_size = type_row(symbol.type).size;
  if (!elementary_type(use.name)) symbol.type_name = use.name;  // another name, such as HW_IO
  if (symbol.type == DataType::String || symbol.type == DataType::WString) describe_text(symbol, use, scope);
  if (symbol.type == DataType::Dtl) symbol.members = dtl_members();
  count_symbols(symbol.members.size(), use.position);
}

void Layout::describe_text(Symbol& symbol, const TypeUse& use, const Declaration* scope) {
  const bool wide = symbol.type == DataType::WString;
  const std::int64_t limit = wide ? wstring_limit : string_limit;
  const std::int64_t length = use.length ? catalogue_.integer(*use.length, scope) : default_text_length;
  if (length < 1 || length > limit) {
    fail(use.length->position, fmt::format("the length {} is outside 1 to {}", length, limit));
  }
  symbol.string_length = static_cast<std::uint32_t>(length);
  symbol.element_size = wide ? static_cast<std::uint32_t>(wstring_header) + 2 * symbol.string_length
                             : static_cast<std::uint32_t>(string_header) + symbol.string_length;
}

void Layout::take_structure(Symbol& symbol, const Structure& structure, const Position& position) {
  count_symbols(structure.symbols, position);
  symbol.type = DataType::Struct;
  symbol.members = structure.members;
  symbol.element_size = static_cast<std::uint32_t>(structure.size);
}

void Layout::read_bounds(Symbol& symbol, const TypeUse& use, const Declaration* scope) {
  std::uint64_t count = 1;
  // An empty structure takes no memory, but counts as a byte: programs go through all elements.
  const std::uint64_t each = std::max<std::uint64_t>(symbol.element_size + empty_structures(symbol), 1);
  for (const auto& [low, high] : use.bounds) {
    const std::int64_t lower = catalogue_.integer(low, scope);
    const std::int64_t upper = catalogue_.integer(high, scope);
    constexpr std::int64_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    if (lower < least || lower > most || upper < least || upper > most) {
      fail(low.position, fmt::format("a bound of {}..{} is outside {} to {}", lower, upper, least, most));
    }
    if (upper < lower)
      fail(low.position, fmt::format("the bounds {}..{} are the wrong way round", lower, upper));
    symbol.dimensions.push_back({static_cast<std::int32_t>(lower), static_cast<std::int32_t>(upper)});
    const auto extent = static_cast<std::uint64_t>(upper - lower + 1);
    if (extent > memory_limit_ / each / count) check_size(memory_limit_ + 1, use.position);
    count *= extent;
  }
}

const Layout::Structure& Layout::declared(const Declaration& declaration, const Position& use) {
  if (const auto done = structures_.find(&declaration); done != structures_.end()) return done->second;
  if (std::find(open_.begin(), open_.end(), &declaration) != open_.end()) {
    fail(use,
         fmt::format("the type \"{}\" contains itself; take this member out or declare another type for it",
                     declaration.name));
  }
  if (!declaration.content.structure) {
    fail(declaration.content.position,
         fmt::format("the type \"{}\" is no structure; declare it as STRUCT ... END_STRUCT",
                     declaration.name));
  }
  open_.push_back(&declaration);
  Structure structure = structure_of(declaration.content.members, &declaration);
  open_.pop_back();
  return structures_.emplace(&declaration, std::move(structure)).first->second;
}

Layout::Structure Layout::structure_of(const std::vector<Member>& members, const Declaration* scope) {
  Structure structure;
  std::unordered_set<std::string> names;
  ++depth_;
  for (const Member& member : members) {
    if (depth_ > depth_limit) too_deep(member.position);
    if (!names.insert(folded(member.name)).second) {
      fail(member.position,
           fmt::format("the member \"{}\" is declared twice; rename one of them", member.name));
    }
    Symbol symbol = describe(member.type, scope);
    // A type may have been worked on before, where it stood less deep.
    if (levels_in(symbol) > depth_limit) too_deep(member.position);
    structure.symbols += symbols_in(symbol);
    symbol.name = member.name;
    if (!member.accessible || !member.writable) restrict_access(symbol, member.accessible, member.writable);
    if (!member.view_of.empty()) {
      lay_over(symbol, member, structure);
    } else {
      symbol.offset = static_cast<std::uint32_t>(structure.size);
      structure.size += byte_count(symbol);
      check_size(structure.size, member.position);
    }
    structure.members.push_back(std::move(symbol));
  }
  --depth_;
  return structure;
}

// Puts a view over the member it looks at. Bits cannot be seen that way, since a Bool takes a byte here: such
// a view has a name only.
void Layout::lay_over(Symbol& view, const Member& member, const Structure& structure) {
  const auto base =
      std::find_if(structure.members.begin(), structure.members.end(),
                   [&member](const Symbol& symbol) { return equal_names(symbol.name, member.view_of); });
  if (base == structure.members.end()) {
    fail(member.position, fmt::format("the view \"{}\" lies over \"{}\", which is not declared before it",
                                      member.name, member.view_of));
  }
  const bool same_bits = view.type == base->type && view.members == base->members;
  const bool bits = (holds_bool(view) || holds_bool(*base)) && !same_bits;
  view.offset = base->offset;
  if (bits || holds_opaque(view) || holds_opaque(*base)) {
    make_opaque(view);
    warn(member.position,
         fmt::format("the view \"{}\" cannot be read or written: \"{}\" or the view holds single bits or a "
                     "type without layout, which cannot be laid over other data",
                     member.name, base->name));
  } else if (byte_count(view) > byte_count(*base)) {
    fail(member.position,
         fmt::format("the view \"{}\" is larger than \"{}\"; make it smaller", member.name, base->name));
  }
}

void Layout::count_symbols(std::uint64_t count, const Position& position) {
  symbols_ += count;
  if (symbols_ > symbol_limit) {
    fail(position, fmt::format("the program has more than {} symbols; load fewer blocks", symbol_limit));
  }
}

void Layout::check_size(std::uint64_t size, const Position& position) const {
  if (size > memory_limit_) {
    fail(position,
         fmt::format(
             "the program needs more than {} bytes of memory; make arrays smaller or load fewer blocks",
             memory_limit_));
  }
}

void Layout::warn(const Position& position, std::string_view message) {
  if (warnings_ != nullptr) warnings_->push_back("warning: " + located(position, message));
}

}  // namespace ostravel::plc
