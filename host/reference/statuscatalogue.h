// SPDX-License-Identifier: MIT
// Every status code that a person can meet, with its name, its causes and what helps: what the runtime gets
// from the driver, the driver's loader states, how ostravel-host says a device stands, and results of the
// communication library. The table is statuscatalogue.def.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace ostravel::host {

enum class StatusSource : std::uint8_t {
  Input,    // INPUT_DATA, after the input filter
  Output,   // first request, after the output filter
  Loader,   // the driver's symbol loader
  Host,     // LinkState of poller.h
  Library,  // results of the communication library that the driver makes
  StandIn,  // results of the stand-in for it
};
// In words, such as "INPUT_DATA".
std::string_view to_text(StatusSource source);

struct StatusEntry {
  StatusSource source;
  std::string_view written;  // as the tools print the code: "13/5", "0xFFF00016"
  std::uint32_t number;
  std::string_view name;  // the same for all entries of a code
  std::string_view cause;
  std::string_view remedy;
};

// By source, and within a source by code; several entries of one code stand together.
std::span<const StatusEntry> status_catalogue();

// The first entry of a code; null when the catalogue has none.
const StatusEntry* find_status(StatusSource source, std::uint32_t number);

// What a byErrCode is called: "ok", "no data", "not ready", else "unknown".
std::string_view input_status_name(std::uint8_t error);

// A result of the library as it is printed, 0xFFF00016 or fff00016, or as a debugger shows it, -1048554.
std::optional<std::uint32_t> library_result(std::string_view text);

// All entries that a person can mean: 2, 13/5 (or with any other status behind the slash), "loader 3",
// a result of the library, a name or at least three letters of its beginning. Upper and lower case are the
// same. Empty when there is none.
std::vector<StatusEntry> look_up_status(std::string_view text);

}  // namespace ostravel::host
