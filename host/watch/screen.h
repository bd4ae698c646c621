// SPDX-License-Identifier: MIT
// A terminal through ncurses: puts lines, reads keys.
#pragma once

#include <cstdio>
#include <memory>

#include "host/watch/watcher.h"

namespace ostravel::host::watch {

// Whether a screen can be had: a terminal that can be written everywhere, and a keyboard on standard input.
bool can_have_screen(std::FILE* terminal);

class Screen : public Display {
 public:
  // Takes the terminal over, its alternate screen where it has one. Throws UserError when it cannot.
  explicit Screen(std::FILE* terminal);
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  // Gives the terminal back.
  ~Screen() override;

  Size size() override;
  Charset charset() const override;
  void show(const std::vector<StyledLine>& lines) override;
  Key read_key(std::chrono::milliseconds timeout) override;

 private:
  struct Terminal;
  std::unique_ptr<Terminal> terminal_;
};

}  // namespace ostravel::host::watch
