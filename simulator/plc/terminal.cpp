// SPDX-License-Identifier: MIT
#include "simulator/plc/terminal.h"

#include <fmt/format.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

#include "simulator/plc/console.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t kLongestLine = std::size_t{64} << 20;

class Terminal {
 public:
  Terminal(Server& server, const Script& script)
      : server_(server), script_(script.name), runner_(script), person_(isatty(STDIN_FILENO) != 0) {
    if (person_) std::cerr << "type 'help' for the commands, 'quit' to end\n";
  }

  // How long poll may wait.
  int patience() const {
    const auto next = runner_.next();
    if (!next) return -1;
    const auto left = std::chrono::ceil<milliseconds>(*next - (Clock::now() - start_)).count();
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, std::numeric_limits<int>::max()));
  }

  // False when the script ends the PLC.
  bool run_script() {
    const auto now = std::chrono::floor<milliseconds>(Clock::now() - start_);
    return runner_.run_due(now, [this](const ScriptLine& line) {
      if (is_quit(line.command)) return false;
      nlohmann::ordered_json answer{{"script", fmt::format("{}:{}", script_, line.number)},
                                    {"command", line.command}};
      answer.update(nlohmann::ordered_json::parse(server_.command(line.command)));
      std::cout << answer.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
      return true;
    });
  }

  enum class Input { Open, Closed, Quit };

  // Takes what there is on standard input and runs its complete lines.
  Input read_input() {
    std::array<char, 65536> chunk{};
    const auto count = read(STDIN_FILENO, chunk.data(), chunk.size());
    if (count <= 0) return answer(pending_) ? Input::Closed : Input::Quit;
    pending_.append(chunk.data(), static_cast<std::size_t>(count));
    std::size_t start = 0;
    for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n', start)) {
      if (!answer(pending_.substr(start, end - start))) return Input::Quit;
      start = end + 1;
    }
    pending_.erase(0, start);
    return pending_.size() > kLongestLine ? Input::Closed : Input::Open;
  }

 private:
  // False when the line ends the PLC.
  bool answer(const std::string& line) {
    const auto content = trimmed(line);
    if (content.empty()) return true;
    if (is_quit(content)) return false;
    if (person_ && content == "help") {
      std::cout << help_text() << std::flush;
    } else {
      std::cout << server_.command(content) << std::endl;
    }
    return true;
  }

  Server& server_;
  std::string script_;
  ScriptRunner runner_;
  bool person_;
  Clock::time_point start_ = Clock::now();
  std::string pending_;
};

}  // namespace

int signal_descriptor() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return signalfd(-1, &signals, SFD_CLOEXEC);
}

void serve_terminal(Server& server, const Script& script, int signals, const TerminalOptions& options) {
  std::array<pollfd, 2> watched{{{signals, POLLIN, 0}, {options.read_input ? STDIN_FILENO : -1, POLLIN, 0}}};
  Terminal terminal(server, script);
  while (true) {
    if (!terminal.run_script()) return;
    if (poll(watched.data(), watched.size(), terminal.patience()) < 0) {
      if (errno != EINTR) return;
      continue;
    }
    if (watched[0].revents != 0) return;
    if (watched[1].revents == 0) continue;
    const auto state = terminal.read_input();
    if (state == Terminal::Input::Quit) return;
    if (state == Terminal::Input::Closed && options.exit_with_stdin) return;
    if (state == Terminal::Input::Closed) watched[1].fd = -1;
  }
}

}  // namespace ostravel::plc
