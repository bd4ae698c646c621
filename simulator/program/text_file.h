// SPDX-License-Identifier: MIT
// Source files as text: reads them, finds out their encoding and refuses what is no source text at all.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace ostravel::plc {

// A file's text in UTF-8 without byte order mark. Files that are not valid UTF-8 are taken for code page
// 1252. Throws SourceError, whose line starts with the file's name, for what cannot be read or is no text
// source.
std::string read_source(const std::filesystem::path& file);

// The same for bytes already read; name stands for the file.
std::string decode_source(std::string bytes, std::string_view name);

}  // namespace ostravel::plc
