// SPDX-License-Identifier: MIT
#include "simulator/program/lexer.h"

#include <fmt/format.h>

#include <optional>

#include "simulator/program/source.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}
bool is_letter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}
bool starts_byte_of_character(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

}  // namespace

std::string located(const Position& position, std::string_view message) {
  std::string line = fmt::format("{}:{}:{}: {}", position.file, position.line, position.column, message);
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  return line;
}

void fail(const Position& position, std::string_view message) {
  throw SourceError(located(position, message));
}

std::string quoted_piece(std::string_view text) {
  constexpr std::size_t limit = 60;
  if (text.size() <= limit) return fmt::format("'{}'", text);
  std::size_t end = limit;
  while (end > 0 && !starts_byte_of_character(text[end])) --end;
  return fmt::format("'{}...'", text.substr(0, end));
}

bool Token::is_word(std::string_view keyword) const {
  return kind == TokenKind::Name && equal_names(text, keyword);
}

Lexer::Lexer(std::string_view text, std::string_view file) : text_(text), position_{file, 1, 1} {}

char Lexer::peek(std::size_t ahead) const {
  return offset_ + ahead < text_.size() ? text_[offset_ + ahead] : '\0';
}

void Lexer::advance(std::size_t bytes) {
  for (; bytes > 0 && offset_ < text_.size(); --bytes, ++offset_) {
    if (text_[offset_] == '\n') {
      ++position_.line;
      position_.column = 1;
    } else if (starts_byte_of_character(text_[offset_])) {
      ++position_.column;
    }
  }
}

std::string Lexer::take(std::size_t bytes) {
  std::string piece(text_.substr(offset_, bytes));
  advance(bytes);
  return piece;
}

void Lexer::skip_comment(std::string_view end) {
  const Position start = position_;
  const std::size_t found = text_.find(end, offset_ + 2);
  if (found == std::string_view::npos) {
    fail(start, fmt::format("the comment that starts here has no end; add {}", quoted_piece(end)));
  }
  advance(found + end.size() - offset_);
}

void Lexer::skip_blanks_and_comments() {
  for (;;) {
    if (is_blank(peek()) || at("\xC2\xA0")) {
      advance(1);
      if (!starts_byte_of_character(peek())) advance(1);
    } else if (at("//")) {
      skip_line();
    } else if (at("(/*")) {
      skip_comment("*/)");
    } else if (at("(*")) {
      skip_comment("*)");
    } else if (at("/*")) {
      skip_comment("*/");
    } else {
      return;
    }
  }
}

void Lexer::skip_line() {
  const std::size_t end = text_.find('\n', offset_);
  advance((end == std::string_view::npos ? text_.size() : end) - offset_);
}

void Lexer::skip_header_value() {
  while (is_blank(peek()) && peek() != '\n') advance(1);
  if (peek() == '\'') {
    text_literal();
    return;
  }
  while (offset_ < text_.size() && !is_blank(peek()) && peek() != ';' && peek() != '{' && !at("//"))
    advance(1);
}

std::size_t Lexer::name_length() const {
  std::string_view rest = text_.substr(offset_);
  const std::size_t all = rest.size();
  std::string_view tail = rest;
  std::optional<char32_t> character = take_character(tail);
  if (!character || !starts_identifier(*character)) return 0;
  do {
    rest = tail;
    character = take_character(tail);
  } while (character && continues_identifier(*character));
  return all - rest.size();
}

std::string Lexer::quoted_name() {
  const Position start = position_;
  const std::size_t end = text_.find_first_of("\"\n", offset_ + 1);
  if (end == std::string_view::npos || text_[end] == '\n') {
    fail(start, "the name in double quotes has no end on its line; close it with '\"'");
  }
  std::string name(text_.substr(offset_ + 1, end - offset_ - 1));
  if (name.empty()) fail(start, "a name in double quotes must not be empty");
  if (name.find("{{") != std::string::npos) {
    fail(start, "holds a template mark '{{'; expand the template before loading it");
  }
  advance(end + 1 - offset_);
  return name;
}

std::string Lexer::text_literal() {
  const Position start = position_;
  std::size_t length = 1;
  for (;; ++length) {
    const char c = peek(length);
    if (c == '\n' || offset_ + length >= text_.size()) {
      fail(start, "the text in single quotes has no end on its line; close it with \"'\"");
    }
    if (c == '$' && peek(length + 1) != '\n') {
      ++length;
    } else if (c == '\'') {
      return take(length + 1);
    }
  }
}

// Digits, and 16#..., 1.5, 2e3; stops before the ".." of an array's bounds.
std::string Lexer::number() {
  std::size_t length = 0;
  const auto digits = [this, &length] {
    while (is_digit(peek(length)) || peek(length) == '_') ++length;
  };
  digits();
  if (peek(length) == '#') {
    ++length;
    while (is_digit(peek(length)) || is_letter(peek(length)) || peek(length) == '_') ++length;
    return take(length);
  }
  if (peek(length) == '.' && is_digit(peek(length + 1))) {
    ++length;
    digits();
  }
  if (peek(length) == 'e' || peek(length) == 'E') {
    const std::size_t sign = peek(length + 1) == '+' || peek(length + 1) == '-' ? 1 : 0;
    if (is_digit(peek(length + 1 + sign))) {
      length += 1 + sign;
      digits();
    }
  }
  return take(length);
}

// The second half of "P#DB5.DBX0.0 BYTE 4", blanks included, if it is there.
std::string Lexer::pointer_tail() {
  std::size_t length = 0;
  const auto blanks = [this, &length] {
    const std::size_t before = length;
    while (peek(length) == ' ' || peek(length) == '\t') ++length;
    return length > before;
  };
  const auto run = [this, &length](bool (*accepted)(char)) {
    const std::size_t before = length;
    while (accepted(peek(length))) ++length;
    return length > before;
  };
  return blanks() && run(is_letter) && blanks() && run(is_digit) ? take(length) : std::string();
}

// What follows TYPE#, which is already taken.
std::string Lexer::typed_literal(const std::string& prefix) {
  if (peek() == '\'') return prefix + text_literal();
  if (peek() == '(') {
    const std::size_t end = text_.find_first_of(")\n", offset_);
    if (end == std::string_view::npos || text_[end] == '\n')
      fail(position_, "the list of bytes has no end; close it with ')'");
    return prefix + take(end + 1 - offset_);
  }
  const bool pointer = equal_names(prefix, "P#");
  std::size_t length = peek() == '-' || peek() == '+' ? 1 : 0;
  for (;; ++length) {
    const char c = peek(length);
    const char after = peek(length + 1);
    const bool joined = is_letter(c) || is_digit(c) || c == '_' || c == '#';
    const bool inner = (c == '.' || c == ':' || c == '-' || c == '+') && is_digit(after);
    const bool member = pointer && c == '.' && is_letter(after);
    if (!joined && !inner && !member) break;
  }
  if (length == 0) fail(position_, fmt::format("a value is missing after {}", quoted_piece(prefix)));
  std::string literal = prefix + take(length);
  if (pointer) literal += pointer_tail();
  return literal;
}

Token Lexer::next() {
  skip_blanks_and_comments();
  Token token{TokenKind::End, {}, position_};
  if (offset_ >= text_.size()) return token;
  if (at("{{") || at("}}")) {
    fail(position_, "holds a template mark '{{' or '}}'; expand the template before loading it");
  }
  const char c = peek();
  if (c == '"') {
    token.kind = TokenKind::Quoted;
    token.text = quoted_name();
  } else if (c == '\'') {
    token.kind = TokenKind::Literal;
    token.text = text_literal();
  } else if (is_digit(c)) {
    token.kind = TokenKind::Literal;
    token.text = number();
  } else if (const std::size_t length = name_length(); length > 0) {
    const bool typed = peek(length) == '#';
    token.kind = typed ? TokenKind::Literal : TokenKind::Name;
    token.text = take(length + (typed ? 1 : 0));
    if (typed) token.text = typed_literal(token.text);
  } else {
    token.kind = TokenKind::Mark;
    token.text = take(at(":=") || at("..") ? 2 : 1);
  }
  return token;
}

// In code, unlike in declarations, a quote without a partner does not harm: it ends with its line.
void Lexer::skip_text_in_code(char quote) {
  advance(1);
  while (offset_ < text_.size() && peek() != quote && peek() != '\n') {
    advance(quote == '\'' && peek() == '$' && peek(1) != '\n' ? 2 : 1);
  }
  if (peek() == quote) advance(1);
}

bool Lexer::first_on_line() const {
  std::size_t start = offset_;
  while (start > 0 && (text_[start - 1] == ' ' || text_[start - 1] == '\t')) --start;
  return start == 0 || text_[start - 1] == '\n';
}

bool Lexer::skip_code(std::string_view end_keyword) {
  for (;;) {
    skip_blanks_and_comments();
    if (offset_ >= text_.size()) return false;
    if (peek() == '"' || peek() == '\'') {
      skip_text_in_code(peek());
    } else if (const std::size_t length = name_length(); length > 0) {
      const bool first = first_on_line();
      const std::string word = take(length);
      if (equal_names(word, end_keyword)) return true;
      // The rest of these lines is free text, in which a quote is no quote.
      if (first && equal_names(word, "REGION")) skip_line();
      if (first && equal_names(word, "TITLE")) {
        while (peek() == ' ' || peek() == '\t') advance(1);
        if (peek() == '=') skip_line();
      }
    } else {
      advance(1);
    }
  }
}

}  // namespace ostravel::plc
