// SPDX-License-Identifier: MIT
// Lengths of time as people write them: 500ms, 2s, 1.5m, 1h; a bare number is milliseconds.
#pragma once

#include <CLI/CLI.hpp>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace ostravel::host::record {

std::optional<std::chrono::milliseconds> parse_duration(std::string_view text);

// An option of at least a millisecond and at most a year; to holds its default.
CLI::Option* add_duration(CLI::App& app, const std::string& name, std::chrono::milliseconds& to,
                          const std::string& help);

}  // namespace ostravel::host::record
