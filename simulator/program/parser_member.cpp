// SPDX-License-Identifier: MIT
// Members, types and values of declarations.
#include <fmt/format.h>

#include "simulator/program/parser.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

// Deeper nesting is no program but an attack on the stack.
constexpr unsigned depth_limit = 64;
constexpr std::size_t dimension_limit = 6;

void check_depth(unsigned depth, const Position& position) {
  if (depth > depth_limit) {
    fail(position,
         fmt::format("nested deeper than {} levels; declare inner parts as types of their own", depth_limit));
  }
}

bool is_text_type(std::string_view name) {
  return equal_names(name, "String") || equal_names(name, "WString");
}

}  // namespace

std::vector<Member> Parser::parse_members(std::string_view end_keyword, unsigned depth) {
  std::vector<Member> members;
  while (!token_.is_word(end_keyword)) {
    if (token_.is_mark(";")) {
      take();
    } else {
      parse_member(members, end_keyword, depth);
    }
  }
  take();
  return members;
}

void Parser::parse_member(std::vector<Member>& members, std::string_view end_keyword, unsigned depth) {
  if (token_.is_mark("{")) {
    fail(token_.position,
         "attributes stand in front of the name as in the newer text format (.s7dcl); export the block as "
         "external "
         "source (.db, .udt or .scl)");
  }
  Member member;
  std::vector<std::pair<Position, std::string>> names;
  do {
    if (!token_.is_name()) unexpected(fmt::format("the name of a member or {}", end_keyword));
    names.emplace_back(token_.position, token_.text);
    take();
    if (token_.is_mark("{")) parse_attributes(&member);
  } while (take_mark(","));
  if (take_word("AT")) {
    if (!token_.is_name()) unexpected("the name of the member to look at after AT");
    member.view_of = take().text;
  }
  expect_mark(":", fmt::format("after the member's name {}", quoted_piece(names.back().second)));
  member.type = parse_type(depth);
  if (take_mark(":=")) member.initial = parse_initial();
  const bool end_follows = token_.is_word(end_keyword);
  if (!take_mark(";") && !end_follows && !member.type.structure) {
    unexpected(fmt::format("';' at the end of the member {}", quoted_piece(names.back().second)));
  }
  for (auto& [position, name] : names) {
    member.position = position;
    member.name = std::move(name);
    members.push_back(member);
  }
}

TypeUse Parser::parse_type(unsigned depth) {
  check_depth(depth, token_.position);
  TypeUse type;
  type.position = token_.position;
  if (take_word("ARRAY")) {
    parse_bounds(type);
    if (!take_word("OF")) unexpected("OF after the bounds of the array");
    if (token_.is_word("ARRAY")) {
      fail(token_.position,
           "an array of arrays does not exist; give the array several dimensions: Array[0..1, 0..2]");
    }
  }
  if (take_word("STRUCT")) {
    type.structure = true;
    if (token_.is_mark("{")) parse_attributes(nullptr);
    type.members = parse_members("END_STRUCT", depth + 1);
    return type;
  }
  type.name = parse_type_name(type);
  if (!type.quoted && is_text_type(type.name) && take_mark("[")) {
    type.length = parse_single();
    expect_mark("]", "after the length of the text");
  }
  return type;
}

void Parser::parse_bounds(TypeUse& type) {
  expect_mark("[", "after ARRAY");
  do {
    if (take_mark("*")) {
      type.open_array = true;
      continue;
    }
    Value low = parse_single();
    expect_mark("..", "between the bounds of the array");
    type.bounds.emplace_back(std::move(low), parse_single());
    if (type.bounds.size() > dimension_limit) {
      fail(type.position, fmt::format("an array has at most {} dimensions", dimension_limit));
    }
  } while (take_mark(","));
  expect_mark("]", "after the bounds of the array");
}

// The name of a type; "UDT 7" and "FB 3" become UDT7 and FB3.
std::string Parser::parse_type_name(TypeUse& type) {
  if (!token_.is_name()) unexpected("a type");
  const bool numbered = at_any_word({"UDT", "FB", "SFB", "DB"});
  type.quoted = token_.kind == TokenKind::Quoted;
  std::string name = take().text;
  if (numbered && token_.kind == TokenKind::Literal) name += take().text;
  if (equal_names(name, "REF_TO") && token_.is_name()) take();
  if (name == "_" && token_.is_mark(".")) {
    fail(type.position,
         "a type written as _.Name belongs to the newer text format (.s7dcl); export the block as "
         "external source (.db, .udt or .scl)");
  }
  return name;
}

// "{ key := 'value' ; key := 'value' }". Access rights go into *member unless it is null; the rest is
// dropped.
void Parser::parse_attributes(Member* member) {
  expect_mark("{", "before the attributes");
  while (!take_mark("}")) {
    if (take_mark(";") || take_mark(",")) continue;
    if (!token_.is_name()) unexpected("the name of an attribute or '}'");
    const Token key = take();
    if (!take_mark(":=") && !take_mark("="))
      unexpected(fmt::format("':=' after the attribute {}", quoted_piece(key.text)));
    if (token_.kind == TokenKind::Quoted) {
      fail(token_.position,
           "an attribute's value in double quotes belongs to the newer text format (.s7dcl); export the "
           "block as external source (.db, .udt or .scl)");
    }
    if (token_.kind != TokenKind::Literal && token_.kind != TokenKind::Name) {
      unexpected(fmt::format("the value of the attribute {}", quoted_piece(key.text)));
    }
    const bool off = equal_names(take().text, "'False'");
    if (member == nullptr || !off) continue;
    if (equal_names(key.text, "ExternalAccessible")) member->accessible = false;
    if (equal_names(key.text, "ExternalWritable")) member->writable = false;
  }
}

// A value after ":="; old sources give the elements of an array without brackets.
Value Parser::parse_initial() {
  Value first = parse_value(0);
  if (!token_.is_mark(",") && first.kind != Value::Kind::Repeat) return first;
  Value list{Value::Kind::List, first.position, {}, {}};
  list.items.push_back(std::move(first));
  while (take_mark(",")) list.items.push_back(parse_value(0));
  return list;
}

Value Parser::parse_value(unsigned depth) {
  check_depth(depth, token_.position);
  Value value;
  value.position = token_.position;
  if (take_mark("[")) {
    value.kind = Value::Kind::List;
    parse_items(value.items, "]", depth + 1);
    return value;
  }
  if (take_mark("(")) {
    value.kind = Value::Kind::Structure;
    parse_items(value.items, ")", depth + 1);
    return value;
  }
  value = parse_single();
  return token_.is_mark("(") ? parse_repeat(std::move(value), depth) : value;
}

Value Parser::parse_repeat(Value count, unsigned depth) {
  Value repeat{Value::Kind::Repeat, count.position, {}, {}};
  repeat.items.push_back(std::move(count));
  expect_mark("(", "after the number of repetitions");
  parse_items(repeat.items, ")", depth + 1);
  return repeat;
}

void Parser::parse_items(std::vector<Value>& items, std::string_view end_mark, unsigned depth) {
  if (take_mark(end_mark)) return;
  do {
    items.push_back(parse_value(depth));
  } while (take_mark(","));
  expect_mark(end_mark, "at the end of the list of values");
}

// A literal with its sign, or the name of a constant.
Value Parser::parse_single() {
  Value value;
  value.position = token_.position;
  if (take_mark("#")) {  // a constant of the same block
    if (!token_.is_name()) unexpected("the name of a constant after '#'");
    value.kind = Value::Kind::Constant;
    value.text = take().text;
    return value;
  }
  if (token_.is_mark("-") || token_.is_mark("+")) {
    const std::string sign = take().text;
    if (token_.kind != TokenKind::Literal) unexpected("a number after the sign");
    value.text = sign + take().text;
    return value;
  }
  if (token_.kind == TokenKind::Literal || at_any_word({"TRUE", "FALSE", "NULL"})) {
    value.text = take().text;
    return value;
  }
  if (!token_.is_name()) unexpected("a value");
  // "T 5" and "C 5" are numbers of timers and counters, not constants.
  const bool numbered = at_any_word({"T", "C", "Z", "DB", "FB", "FC"});
  value.text = take().text;
  if (numbered && token_.kind == TokenKind::Literal) {
    value.text += ' ' + take().text;
    return value;
  }
  value.kind = Value::Kind::Constant;
  return value;
}

}  // namespace ostravel::plc
