// SPDX-License-Identifier: MIT
// Declarations: their heads, sections and assignments.
#include "simulator/program/parser.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "simulator/program/text.h"

namespace ostravel::plc {

Parser::Parser(std::string_view text, std::string_view file, std::vector<std::string>* warnings)
    : lexer_(text, file), token_(lexer_.next()), warnings_(warnings) {}

Token Parser::take() {
  Token taken = std::move(token_);
  token_ = lexer_.next();
  return taken;
}

bool Parser::take_mark(std::string_view mark) {
  if (!token_.is_mark(mark)) return false;
  take();
  return true;
}

bool Parser::take_word(std::string_view word) {
  if (!token_.is_word(word)) return false;
  take();
  return true;
}

void Parser::expect_mark(std::string_view mark, std::string_view where) {
  if (!take_mark(mark)) unexpected(fmt::format("{} {}", quoted_piece(mark), where));
}

bool Parser::at_any_word(std::initializer_list<std::string_view> words) const {
  return std::any_of(words.begin(), words.end(),
                     [this](std::string_view word) { return token_.is_word(word); });
}

void Parser::unexpected(std::string_view expected) const {
  const std::string found = token_.kind == TokenKind::End ? "the end of the text" : quoted_piece(token_.text);
  fail(token_.position, fmt::format("found {} where {} is expected", found, expected));
}

void Parser::warn(const Position& position, std::string_view message) {
  if (warnings_ != nullptr) warnings_->push_back("warning: " + located(position, message));
}

std::vector<Declaration> Parser::parse() {
  if (token_.is_mark("{")) {
    fail(token_.position,
         "attributes in front of the block belong to the newer text format (.s7dcl); export the block "
         "as external source (.db, .udt or .scl)");
  }
  bool empty = true;
  while (token_.kind != TokenKind::End) {
    if (token_.is_mark(";")) {
      take();
      continue;
    }
    if (token_.is_word("TYPE")) {
      parse_declaration(Declaration::Kind::Type, "END_TYPE");
    } else if (token_.is_word("DATA_BLOCK")) {
      parse_declaration(Declaration::Kind::DataBlock, "END_DATA_BLOCK");
    } else if (token_.is_word("FUNCTION_BLOCK")) {
      parse_declaration(Declaration::Kind::FunctionBlock, "END_FUNCTION_BLOCK");
    } else if (at_any_word({"FUNCTION", "ORGANIZATION_BLOCK"})) {
      skip_function();
    } else if (token_.is_word("REGION") && !empty) {
      skip_region();
    } else {
      unexpected("DATA_BLOCK, TYPE, FUNCTION_BLOCK, FUNCTION or ORGANIZATION_BLOCK");
    }
    empty = false;
  }
  if (empty) warn(token_.position, "the text declares nothing");
  return std::move(declarations_);
}

void Parser::parse_declaration(Declaration::Kind kind, std::string_view end_keyword) {
  Declaration declaration;
  declaration.kind = kind;
  take();
  declaration.position = token_.position;
  declaration.name = parse_block_name();
  declaration.content.position = declaration.position;
  parse_header(declaration);
  if (kind == Declaration::Kind::FunctionBlock) {
    parse_function_block(declaration);
  } else {
    parse_content(declaration);
    if (kind == Declaration::Kind::DataBlock && take_word("BEGIN")) parse_assignments(declaration);
    if (!take_word(end_keyword)) unexpected(fmt::format("{}", end_keyword));
  }
  declarations_.push_back(std::move(declaration));
}

// A block's name; "DB 12" and "UDT 7" become DB12 and UDT7.
std::string Parser::parse_block_name() {
  if (!token_.is_name()) unexpected("the name of the block or type");
  const bool numbered = at_any_word({"DB", "UDT", "FB", "FC", "OB"});
  std::string name = take().text;
  if (numbered && token_.kind == TokenKind::Literal) name += take().text;
  return name;
}

void Parser::parse_header(Declaration& declaration) {
  while (take_header_line(declaration)) {
  }
}

bool Parser::take_header_line(Declaration& declaration) {
  if (token_.is_mark("{")) {
    parse_attributes(nullptr);
    return true;
  }
  if (token_.is_mark(":") || token_.is_mark(";")) {  // TYPE "x" :
    take();
    return true;
  }
  if (token_.is_word("TITLE")) {
    lexer_.skip_line();
    take();
    return true;
  }
  if (at_any_word({"AUTHOR", "FAMILY", "NAME", "VERSION"})) {
    take_header_value();
    return true;
  }
  if (at_any_word({"NON_RETAIN", "RETAIN", "KNOW_HOW_PROTECT", "KNOW_HOW_PROTECTED", "STANDARD", "UNLINKED",
                   "READ_ONLY"})) {
    if (token_.is_word("READ_ONLY")) declaration.read_only = true;
    take();
    return true;
  }
  return false;
}

// "AUTHOR : any". The value may be several words; other parts of the head may follow on the same line.
void Parser::take_header_value() {
  const bool words = !token_.is_word("VERSION");
  const unsigned line = token_.position.line;
  take();
  if (!token_.is_mark(":") && !token_.is_mark("=")) unexpected("':' in this line of the block's head");
  lexer_.skip_header_value();
  take();
  while (words && token_.kind == TokenKind::Name && token_.position.line == line &&
         !at_any_word({"TITLE", "AUTHOR", "FAMILY", "NAME", "VERSION", "NON_RETAIN", "RETAIN",
                       "KNOW_HOW_PROTECT", "STANDARD", "UNLINKED", "READ_ONLY", "STRUCT", "VAR", "VAR_INPUT",
                       "BEGIN", "FB", "UDT", "ARRAY"})) {
    take();
  }
}

void Parser::parse_content(Declaration& declaration) {
  TypeUse& content = declaration.content;
  if (at_any_word({"VAR", "CONST", "VAR_INPUT", "VAR_OUTPUT", "VAR_IN_OUT"})) {
    parse_sections(declaration);
  } else if (at_any_word({"BEGIN", "END_DATA_BLOCK", "END_TYPE"})) {
    content.structure = true;
  } else {
    content = parse_type(0);
  }
  take_mark(";");
  parse_header(declaration);  // some write DATA_BLOCK "i" FB 3 first and the other lines after it
}

void Parser::parse_sections(Declaration& declaration) {
  declaration.content.structure = true;
  // An instance holds inputs, outputs, in-outs and statics in this order, however the sections are mixed.
  std::vector<std::vector<Member>> groups(4);
  while (at_any_word(
      {"VAR", "VAR_INPUT", "VAR_OUTPUT", "VAR_IN_OUT", "VAR_TEMP", "VAR_EXTERNAL", "CONST", "LABEL"})) {
    parse_section(declaration, groups);
    take_mark(";");
  }
  for (std::vector<Member>& group : groups) {
    std::move(group.begin(), group.end(), std::back_inserter(declaration.content.members));
  }
}

void Parser::parse_section(Declaration& declaration, std::vector<std::vector<Member>>& groups) {
  constexpr std::array<std::string_view, 4> heads{"VAR_INPUT", "VAR_OUTPUT", "VAR_IN_OUT", "VAR"};
  const Token head = take();
  if (head.is_word("CONST")) return parse_constants(declaration, "END_CONST");
  if (head.is_word("LABEL")) {
    while (!take_word("END_LABEL")) {
      if (token_.kind == TokenKind::End) unexpected("END_LABEL");
      take();
    }
    return;
  }
  bool constants = false;
  while (at_any_word({"RETAIN", "NON_RETAIN", "CONSTANT", "DB_SPECIFIC"})) {
    constants = constants || token_.is_word("CONSTANT");
    take();
  }
  if (constants) return parse_constants(declaration, "END_VAR");
  std::vector<Member> members = parse_members("END_VAR", 0);
  for (std::size_t i = 0; i < heads.size(); ++i) {
    if (head.is_word(heads.at(i)))
      std::move(members.begin(), members.end(), std::back_inserter(groups.at(i)));
  }
}

// "name : type := value ;" or, in old sources, "name := value ;".
void Parser::parse_constants(Declaration& declaration, std::string_view end_keyword) {
  while (!take_word(end_keyword)) {
    if (take_mark(";")) continue;
    if (!token_.is_name()) unexpected(fmt::format("the name of a constant or {}", end_keyword));
    Constant constant;
    constant.name = take().text;
    if (token_.is_mark("{")) parse_attributes(nullptr);
    if (take_mark(":")) parse_type(0);
    if (token_.is_mark(";") || token_.is_word(end_keyword)) continue;  // no value: nothing can use it
    expect_mark(":=", fmt::format("after the constant {}", quoted_piece(constant.name)));
    constant.value = parse_initial();
    declaration.constants.push_back(std::move(constant));
  }
}

void Parser::parse_function_block(Declaration& declaration) {
  parse_sections(declaration);
  if (declaration.content.members.empty() && token_.is_name() &&
      !at_any_word({"BEGIN", "END_FUNCTION_BLOCK"})) {
    warn(token_.position,
         "code or an unknown line stands before any declaration; what is declared after it is not seen");
  }
  constexpr std::string_view end = "END_FUNCTION_BLOCK";
  const Position start = token_.position;
  if (!token_.is_word(end) && !lexer_.skip_code(end))
    fail(start, fmt::format("this code has no end; add {}", end));
  take();
}

// Functions and organization blocks declare nothing that lies in memory.
void Parser::skip_function() {
  const std::string end =
      fmt::format("END_{}", token_.is_word("FUNCTION") ? "FUNCTION" : "ORGANIZATION_BLOCK");
  const Position start = token_.position;
  if (!lexer_.skip_code(end)) fail(start, fmt::format("this block has no end; add {}", end));
  take();
}

void Parser::skip_region() {
  const Position start = token_.position;
  warn(start, "a region of code outside of any block is left out");
  if (!lexer_.skip_code("END_REGION")) fail(start, "this region has no end; add END_REGION");
  take();
}

void Parser::parse_assignments(Declaration& declaration) {
  while (!token_.is_word("END_DATA_BLOCK")) {
    if (!take_mark(";")) parse_assignment(declaration);
  }
}

void Parser::parse_assignment(Declaration& declaration) {
  Assignment assignment;
  assignment.position = token_.position;
  do {
    if (!token_.is_name()) unexpected("an assignment such as Name := value; or END_DATA_BLOCK");
    PathPart part;
    part.name = take().text;
    if (take_mark("[")) {
      do {
        part.index.push_back(parse_single());
      } while (take_mark(","));
      expect_mark("]", "after the index");
    }
    assignment.path.push_back(std::move(part));
  } while (take_mark("."));
  if (!take_mark(":=")) {
    if (!token_.is_mark(";")) unexpected("':=' and a value");
    warn(assignment.position, "a path without a value changes nothing; write Name := value;");
    return;
  }
  assignment.value = parse_initial();
  if (!token_.is_word("END_DATA_BLOCK")) expect_mark(";", "after the value");
  declaration.assignments.push_back(std::move(assignment));
}

}  // namespace ostravel::plc
