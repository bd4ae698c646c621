// SPDX-License-Identifier: MIT
#include "simulator/program/text_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <optional>

#include "simulator/program/position.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

constexpr std::uintmax_t file_limit = 64U << 20U;

bool starts_like_dump_of_block(std::string_view text) {
  // "DB17" alone on the first line, or an address such as "000.0:" at its start.
  const std::string_view line = trimmed(text.substr(0, text.find('\n')));
  const auto digits = [](std::string_view part) {
    return !part.empty() &&
           std::all_of(part.begin(), part.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
  };
  if (line.starts_with("DB") && digits(line.substr(2))) return true;
  const std::size_t dot = line.find('.');
  const std::size_t colon = line.find(':');
  return dot != std::string_view::npos && colon != std::string_view::npos && dot < colon &&
         digits(line.substr(0, dot)) && digits(line.substr(dot + 1, colon - dot - 1));
}

// Why the bytes are no source, if so: files of other kinds share the extensions.
std::optional<std::string> other_kind(std::string_view bytes) {
  if (bytes.starts_with("SQLite format 3")) {
    return "starts with 'SQLite format 3': a database, not a PLC text source; leave it out";
  }
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    return "is UTF-16 text (it starts with a UTF-16 byte order mark); save it as UTF-8";
  }
  const std::string_view head = bytes.substr(0, 4096);
  if (head.find('\0') != std::string_view::npos) {
    return "holds zero bytes: UTF-16 without a byte order mark or a binary file; save it as UTF-8 text";
  }
  const std::string_view text = trimmed(head.starts_with("\xEF\xBB\xBF") ? head.substr(3) : head);
  if (starts_like_dump_of_block(text)) {
    return "is a dump of a data block's memory, not its source; export the block as source text instead";
  }
  if (text.starts_with("record(") || text.starts_with("record (") || text.starts_with("grecord(")) {
    return "starts with 'record(': an EPICS record file, not a PLC text source; leave it out";
  }
  return std::nullopt;
}

}  // namespace

std::string decode_source(std::string bytes, std::string_view name) {
  if (const auto reason = other_kind(bytes)) fail({name, 1, 1}, *reason);
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
  return is_utf8(bytes) ? bytes : utf8_from_code_page(bytes);
}

std::string read_source(const std::filesystem::path& file) {
  const std::string name = file.string();
  const Position start{name, 1, 1};
  std::error_code error;
  if (!std::filesystem::exists(file, error)) fail(start, "there is no such file; check the name");
  if (!std::filesystem::is_regular_file(file, error))
    fail(start, "is no file; name the source files one by one");
  if (std::filesystem::file_size(file, error) > file_limit)
    fail(start, "is larger than 64 MiB; no source is, leave it out");
  if (equal_names(file.extension().string(), ".s7dcl")) {
    fail(start,
         "the newer text format (.s7dcl) is not read; export the block as external source (.db, .udt or "
         ".scl)");
  }
  std::ifstream stream(file, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (!stream) fail(start, "cannot be read; check its permissions");
  return decode_source(std::move(bytes), name);
}

}  // namespace ostravel::plc
