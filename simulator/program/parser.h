// SPDX-License-Identifier: MIT
// Reads declarations out of one source text.
//
//   source      = { TYPE ... END_TYPE | DATA_BLOCK ... END_DATA_BLOCK | FUNCTION_BLOCK ... END_FUNCTION_BLOCK
//                 | FUNCTION ... END_FUNCTION | ORGANIZATION_BLOCK ... END_ORGANIZATION_BLOCK }
//   declaration = keyword name { header line | attributes } content [ BEGIN { path := value ; } ] end
//   content     = STRUCT { member } END_STRUCT | { VAR ... { member } END_VAR } | type
//   member      = name { "," name } [ attributes ] [ AT name ] ":" type [ ":=" value ] ";"
//   type        = [ ARRAY "[" low ".." high { "," ... } "]" OF ] ( name [ "[" length "]" ] | STRUCT ...
//   END_STRUCT )
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/program/lexer.h"
#include "simulator/program/syntax.h"

namespace ostravel::plc {

class Parser {
 public:
  // Text and file must outlive the declarations, which name places in them. Warnings are appended to
  // *warnings.
  Parser(std::string_view text, std::string_view file, std::vector<std::string>* warnings);

  // Throws SourceError at the first thing that cannot be understood.
  std::vector<Declaration> parse();

 private:
  // parser.cpp: declarations
  void parse_declaration(Declaration::Kind kind, std::string_view end_keyword);
  void parse_data_block(Declaration& declaration);
  void parse_function_block(Declaration& declaration);
  void skip_function();
  void skip_region();
  std::string parse_block_name();
  void parse_header(Declaration& declaration);
  bool take_header_line(Declaration& declaration);
  void take_header_value();
  void parse_content(Declaration& declaration);
  void parse_sections(Declaration& declaration);
  void parse_section(Declaration& declaration, std::vector<std::vector<Member>>& groups);
  void parse_constants(Declaration& declaration, std::string_view end_keyword);
  void parse_assignments(Declaration& declaration);
  void parse_assignment(Declaration& declaration);

  // parser_member.cpp: members, types, values
  std::vector<Member> parse_members(std::string_view end_keyword, unsigned depth);
  void parse_member(std::vector<Member>& members, std::string_view end_keyword, unsigned depth);
  TypeUse parse_type(unsigned depth);
  void parse_bounds(TypeUse& type);
  std::string parse_type_name(TypeUse& type);
  void parse_attributes(Member* member);
  Value parse_initial();
  Value parse_value(unsigned depth);
  Value parse_repeat(Value count, unsigned depth);
  void parse_items(std::vector<Value>& items, std::string_view end_mark, unsigned depth);
  Value parse_single();

  Token take();
  bool take_mark(std::string_view mark);
  bool take_word(std::string_view word);
  void expect_mark(std::string_view mark, std::string_view where);
  bool at_any_word(std::initializer_list<std::string_view> words) const;
  [[noreturn]] void unexpected(std::string_view expected) const;
  void warn(const Position& position, std::string_view message);

  Lexer lexer_;
  Token token_;
  std::vector<std::string>* warnings_;
  std::vector<Declaration> declarations_;
};

}  // namespace ostravel::plc
