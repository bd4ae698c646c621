// SPDX-License-Identifier: MIT
// Words of the PLC's text sources: names, names in quotes, literals, punctuation. Comments, in all their
// forms
// // (* *) (/* */) /* */, are left out. Some lines of a block are free text: those are skipped here, too.
#pragma once

#include <string>
#include <string_view>

#include "simulator/program/position.h"

namespace ostravel::plc {

enum class TokenKind : unsigned char {
  End,
  Name,     // without quotes; keywords are names as well
  Quoted,   // text is what stands between the double quotes
  Literal,  // a number, a text in single quotes or TYPE#value, as it stands
  Mark,     // punctuation: one character, or := or ..
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::string text;
  Position position;

  bool is_mark(std::string_view mark) const { return kind == TokenKind::Mark && text == mark; }
  bool is_word(std::string_view keyword) const;  // a name without quotes, any letter case
  bool is_name() const { return kind == TokenKind::Name || kind == TokenKind::Quoted; }
};

class Lexer {
 public:
  // The text is UTF-8 and, like file, must outlive the lexer and its tokens.
  Lexer(std::string_view text, std::string_view file);

  // Throws SourceError for what no source may hold, such as a comment without an end.
  Token next();

  // Skips to the end of the line.
  void skip_line();
  // Skips one value of a header line (AUTHOR, FAMILY, ...): a text in single quotes or all up to the next
  // blank, ';' or '{'.
  void skip_header_value();
  // Skips code up to and including this keyword. False when the text ends before.
  bool skip_code(std::string_view end_keyword);

 private:
  bool at(std::string_view piece) const { return text_.substr(offset_).starts_with(piece); }
  char peek(std::size_t ahead = 0) const;
  void advance(std::size_t bytes);
  void skip_comment(std::string_view end);
  void skip_blanks_and_comments();
  void skip_text_in_code(char quote);
  bool first_on_line() const;
  std::size_t name_length() const;
  std::string take(std::size_t bytes);
  std::string quoted_name();
  std::string text_literal();
  std::string number();
  std::string typed_literal(const std::string& prefix);
  std::string pointer_tail();

  std::string_view text_;
  std::size_t offset_ = 0;
  Position position_;
};

}  // namespace ostravel::plc
