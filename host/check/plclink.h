// SPDX-License-Identifier: MIT
// A connection of a check's own to a PLC, beside the driver's, with the PLC's symbols.
#pragma once

#include <chrono>
#include <optional>
#include <set>
#include <string>

#include "host/check/library.h"

namespace ostravel::host::check {

struct PlcLinkSettings {
  std::string address = "127.0.0.1";  // at most 63 characters
  int device = 1;                     // of the library
  std::optional<std::string> password;
  std::chrono::milliseconds timeout{10'000};
};

// The lowest number from 1 on that none of the stations has; the driver uses the library's device of each
// station's number.
int free_device(const std::set<int>& stations);

class PlcLink {
 public:
  // Connects and loads the symbols. Throws LibraryFailure, with everything closed again. The library must
  // outlive the link.
  PlcLink(const Library& library, const PlcLinkSettings& settings);
  PlcLink(const PlcLink&) = delete;
  PlcLink& operator=(const PlcLink&) = delete;
  ~PlcLink();

  const Library& library() const { return library_; }
  int connection() const { return connection_; }
  HandleType symbols() const { return symbols_.get(); }
  agl_int32_t timeout() const { return timeout_; }

 private:
  void connect(const PlcLinkSettings& settings);
  void close();

  const Library& library_;
  int device_;
  agl_int32_t timeout_;
  agl_int32_t connection_ = -1;
  LibraryHandle symbols_;
};

}  // namespace ostravel::host::check
