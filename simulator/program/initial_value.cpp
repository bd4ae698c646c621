// SPDX-License-Identifier: MIT
// Initial values of declarations and assignments into memory.
#include <fmt/format.h>

#include <algorithm>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/image.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

bool keeps_default(const Value& value) {
  return value.kind == Value::Kind::Structure && value.items.empty();
}

[[noreturn]] void too_many(const Symbol& symbol, const Value& value, std::uint64_t room) {
  fail(value.position,
       fmt::format("more values than \"{}\" has elements or members ({}); take some out", symbol.name, room));
}

}  // namespace

void Image::apply(const Symbol& symbol, const Value& value, const Declaration* scope, Memory whole) {
  if (symbol.type == DataType::Opaque) return;
  if (symbol.dimensions.empty()) {
    apply_element(symbol, value, scope, whole);
    return;
  }
  const bool list = value.kind == Value::Kind::List;
  apply_items(symbol, list ? std::span<const Value>(value.items) : std::span<const Value>(&value, 1), scope,
              whole, 0);
}

// Fills elements from number from on; returns the number of the element after the last one.
std::uint64_t Image::apply_items(const Symbol& symbol, std::span<const Value> items, const Declaration* scope,
                                 Memory whole, std::uint64_t from) {
  const std::uint64_t count = element_count(symbol);
  for (const Value& item : items) {
    if (item.kind == Value::Kind::List) {
      from = apply_items(symbol, item.items, scope, whole, from);
    } else if (item.kind == Value::Kind::Repeat) {
      from = apply_repeat(symbol, item, scope, whole, from);
    } else {
      if (from >= count) too_many(symbol, item, count);
      apply_element(symbol, item, scope, whole.subspan(from * symbol.element_size, symbol.element_size));
      ++from;
    }
  }
  return from;
}

// The values are put in place once and copied for the other rounds, which may be millions.
std::uint64_t Image::apply_repeat(const Symbol& symbol, const Value& repeat, const Declaration* scope,
                                  Memory whole, std::uint64_t from) {
  const std::int64_t times = catalogue_.integer(repeat.items.front(), scope);
  if (times < 0) fail(repeat.position, fmt::format("cannot repeat a value {} times", times));
  if (times == 0) return from;
  const std::uint64_t count = element_count(symbol);
  const std::uint64_t next = apply_items(symbol, std::span(repeat.items).subspan(1), scope, whole, from);
  const std::uint64_t group = next - from;
  if (group == 0) return next;
  if (static_cast<std::uint64_t>(times) > (count - from) / group) too_many(symbol, repeat, count);
  const std::uint64_t size = symbol.element_size;
  repeat_pattern(whole.subspan(from * size, group * static_cast<std::uint64_t>(times) * size), group * size);
  return from + group * static_cast<std::uint64_t>(times);
}

void Image::apply_element(const Symbol& symbol, const Value& value, const Declaration* scope,
                          Memory element) {
  if (keeps_default(value) || symbol.type == DataType::Opaque) return;
  if (value.kind == Value::Kind::Structure && !symbol.members.empty()) {
    apply_members(symbol, value, scope, element);
    return;
  }
  apply_single(symbol, value, scope, element);
}

void Image::apply_members(const Symbol& symbol, const Value& value, const Declaration* scope,
                          Memory element) {
  if (value.items.size() > symbol.members.size()) too_many(symbol, value.items.back(), symbol.members.size());
  for (std::size_t i = 0; i < value.items.size(); ++i) {
    if (keeps_default(value.items[i])) continue;
    const Symbol& member = symbol.members[i];
    apply(member, value.items[i], scope, element.subspan(member.offset, byte_count(member)));
  }
}

void Image::apply_single(const Symbol& symbol, const Value& value, const Declaration* scope, Memory element) {
  const bool single = value.kind == Value::Kind::Literal || value.kind == Value::Kind::Constant;
  if (!single || symbol.type == DataType::Struct) {
    fail(value.position,
         fmt::format(
             "\"{}\" of the type {} takes {}", symbol.name,
             symbol.type_name.empty() ? type_row(symbol.type).name : symbol.type_name,
             symbol.type == DataType::Struct ? "its members' values in parentheses: (1, 2)" : "one value"));
  }
  const std::optional<std::string> literal = catalogue_.literal(value, scope);
  if (!literal && !symbol.type_name.empty()) {
    // Hardware and blocks have numbers that only the engineering project knows.
    if (warnings_ != nullptr) {
      warnings_->push_back(
          "warning: " +
          located(value.position, fmt::format("the constant \"{}\" is not known; \"{}\" starts as 0",
                                              value.text, symbol.name)));
    }
    return;
  }
  if (!literal) {
    fail(value.position,
         fmt::format("the constant \"{0}\" is not known; give its value as --constant \"{0}=...\"",
                     value.text));
  }
  if (equal_names(*literal, "NULL")) return;
  if (const auto failure = element_from_literal(symbol, *literal, element)) fail(value.position, *failure);
}

}  // namespace ostravel::plc
