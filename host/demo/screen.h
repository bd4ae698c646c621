// SPDX-License-Identifier: MIT
// What the demo shows: numbered steps, a table that is drawn again in place on a terminal, failed checks.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "host/poller.h"
#include "host/table.h"

namespace ostravel::host {

class Screen {
 public:
  Screen(std::FILE* out, bool terminal) : out_(out), terminal_(terminal), table_(out) {}

  void step(const std::string& title);
  void line(const std::string& text);
  // On a terminal draws the poller's tags over the last table; elsewhere prints the first rows of them, and
  // only when last is true.
  void tags(const Poller& poller, const std::string& heading, bool last, std::size_t rows);
  // Prints a table whose first row is the heading.
  void table(const std::vector<TableRow>& rows);
  bool terminal() const { return terminal_; }

 private:
  std::FILE* out_;
  bool terminal_;
  LiveTable table_;
  int steps_ = 0;
};

// Counts checks and keeps the texts of those that failed.
class Ledger {
 public:
  void check(bool good, const std::string& text);
  std::uint64_t checks() const { return checks_; }
  std::uint64_t failed() const { return failed_; }
  const std::vector<std::string>& texts() const { return texts_; }

 private:
  std::uint64_t checks_ = 0;
  std::uint64_t failed_ = 0;
  std::vector<std::string> texts_;  // the first ones
};

}  // namespace ostravel::host
