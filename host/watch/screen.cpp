// SPDX-License-Identifier: MIT
#include "host/watch/screen.h"

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include <langinfo.h>
#include <poll.h>
#include <unistd.h>

#include "host/usererror.h"
#include "host/watch/terminalguard.h"

// Last, since it defines macros with short names.
#define NCURSES_NOMACROS 1
#define NCURSES_WIDECHAR 1
#include <curses.h>
#include <term.h>
#undef lines
#undef columns

namespace ostravel::host::watch {
namespace {

constexpr int kEscapeDelay = 25;  // ms that the rest of a key's sequence may take

enum ColourPair : short { kGreen = 1, kYellow, kRed, kCyan };

// A sequence of the terminal's description, without its delays, which only old hardware needs.
std::string sequence(const char* name) {
  const char* text = tigetstr(name);
  // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how the library says that the name is no text
  if (text == nullptr || text == reinterpret_cast<const char*>(-1)) {
    return {};
  }
  std::string plain = text;
  for (auto from = plain.find("$<"); from != std::string::npos; from = plain.find("$<")) {
    const auto to = plain.find('>', from);
    plain.erase(from, to == std::string::npos ? std::string::npos : to - from + 1);
  }
  return plain;
}

bool wants_colours() {
  const char* refused = std::getenv("NO_COLOR");
  return refused == nullptr || *refused == '\0';
}

Key key_of(wint_t code) {
  switch (code) {
    case KEY_UP:
      return key::kUp;
    case KEY_DOWN:
      return key::kDown;
    case KEY_LEFT:
      return key::kLeft;
    case KEY_RIGHT:
      return key::kRight;
    case KEY_PPAGE:
      return key::kPageUp;
    case KEY_NPAGE:
      return key::kPageDown;
    case KEY_HOME:
      return key::kHome;
    case KEY_END:
      return key::kEnd;
    case KEY_ENTER:
      return key::kEnter;
    case KEY_BACKSPACE:
      return key::kBackspace;
    case KEY_RESIZE:
      return key::kResize;
    default:
      return key::kNone;
  }
}

Key key_of_character(wint_t code) {
  constexpr wint_t kDelete = 0x7F;
  constexpr wint_t kControlH = 0x08;
  constexpr wint_t kReturn = '\r';
  if (code == kDelete || code == kControlH) {
    return key::kBackspace;
  }
  return code == kReturn ? key::kEnter : static_cast<Key>(code);
}

void end_on_hangup(int) {
  std::raise(SIGTERM);
}

}  // namespace

struct Screen::Terminal {
  SCREEN* screen = nullptr;
  std::optional<TerminalGuard> guard;
  bool colours = false;
  Charset charset = Charset::Ascii;

  attr_t attributes(const Span& span) const {
    const auto colour = [&](short pair) {
      // The row under the cursor stands out as one bar.
      return colours && !span.selected ? static_cast<attr_t>(COLOR_PAIR(pair)) : A_NORMAL;
    };
    return look(span.style, colour) | (span.selected ? A_REVERSE : A_NORMAL);
  }

 private:
  template <typename Colour>
  static attr_t look(Style style, const Colour& colour) {
    switch (style) {
      case Style::Title:
        return A_REVERSE | A_BOLD;
      case Style::Heading:
      case Style::KeyName:
        return A_BOLD;
      case Style::Faint:
        return A_DIM;
      case Style::Good:
        return colour(kGreen);
      case Style::Doubtful:
        return colour(kYellow) | A_BOLD;
      case Style::Bad:
        return colour(kRed) | A_BOLD;
      case Style::Trend:
        return colour(kCyan);
      case Style::Plain:
        break;
    }
    return A_NORMAL;
  }
};

bool can_have_screen(std::FILE* terminal) {
  int problem = 0;
  return isatty(fileno(terminal)) == 1 && isatty(STDIN_FILENO) == 1 &&
         setupterm(nullptr, fileno(terminal), &problem) == OK && !sequence("cup").empty();
}

Screen::Screen(std::FILE* terminal) : terminal_(std::make_unique<Terminal>()) {
  // Only characters: numbers of the driver are not to get a decimal comma.
  std::setlocale(LC_CTYPE, "");
  terminal_->charset = std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0 ? Charset::Utf8 : Charset::Ascii;
  use_tioctl(TRUE);
  int problem = 0;
  if (setupterm(nullptr, fileno(terminal), &problem) != OK) {
    throw UserError("the terminal's type is not known; set TERM, or give --plain");
  }
  terminal_->guard.emplace(
      fileno(terminal), sequence("sgr0") + sequence("rmkx") + sequence("cnorm") + sequence("rmcup") + "\r");
  std::signal(SIGHUP, end_on_hangup);
  terminal_->screen = newterm(nullptr, terminal, stdin);
  if (terminal_->screen == nullptr) {
    terminal_->guard.reset();
    throw UserError("the terminal cannot be used for a table; give --plain");
  }
  set_escdelay(kEscapeDelay);
  cbreak();
  noecho();
  nonl();
  keypad(stdscr, TRUE);
  curs_set(0);
  if (wants_colours() && has_colors()) {
    terminal_->colours = true;
    start_color();
    use_default_colors();
    init_pair(kGreen, COLOR_GREEN, -1);
    init_pair(kYellow, COLOR_YELLOW, -1);
    init_pair(kRed, COLOR_RED, -1);
    init_pair(kCyan, COLOR_CYAN, -1);
  }
}

Screen::~Screen() {
  curs_set(1);
  endwin();
  delscreen(terminal_->screen);
  terminal_->guard.reset();
}

Size Screen::size() {
  return {static_cast<std::size_t>(getmaxy(stdscr)), static_cast<std::size_t>(getmaxx(stdscr))};
}

Charset Screen::charset() const {
  return terminal_->charset;
}

void Screen::show(const std::vector<StyledLine>& lines) {
  erase();
  int y = 0;
  for (const auto& line : lines) {
    // Each text where it belongs, also when the terminal takes another character for wide than we do.
    std::size_t x = 0;
    for (const auto& span : line) {
      attrset(static_cast<int>(terminal_->attributes(span)));
      mvaddstr(y, static_cast<int>(x), span.text.c_str());
      x += cells_of(span.text);
    }
    ++y;
  }
  attrset(A_NORMAL);
  refresh();
}

Key Screen::read_key(std::chrono::milliseconds timeout) {
  wtimeout(stdscr, static_cast<int>(timeout.count()));
  wint_t code = 0;
  const int result = wget_wch(stdscr, &code);
  if (result == KEY_CODE_YES) {
    return key_of(code);
  }
  if (result == OK) {
    return key_of_character(code);
  }
  pollfd input{STDIN_FILENO, 0, 0};
  if (poll(&input, 1, 0) > 0) {
    std::raise(SIGTERM);  // the terminal is gone
  }
  return key::kNone;
}

}  // namespace ostravel::host::watch
