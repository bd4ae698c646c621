// SPDX-License-Identifier: MIT
// Whole files: read, and written whole or not at all.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace ostravel::host {

// Throws UserError.
std::string read_file(const std::filesystem::path& path);

// Writes beside the file and puts the result in its place in one step. Without replace an existing file stays
// as it is and UserError is thrown, as on every other failure; nothing half-written is left behind.
void write_file(const std::filesystem::path& path, std::string_view content, bool replace);

// Flushes; throws UserError when something printed did not arrive, on a full disk for instance.
void finish_output(std::FILE* stream);

}  // namespace ostravel::host
