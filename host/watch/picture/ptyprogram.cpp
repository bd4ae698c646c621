// SPDX-License-Identifier: MIT
#include "host/watch/picture/ptyprogram.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace ostravel::host::picture {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

winsize size_of(std::size_t lines, std::size_t columns) {
  winsize size{};
  size.ws_row = static_cast<unsigned short>(lines);
  size.ws_col = static_cast<unsigned short>(columns);
  return size;
}

// In the child, so only what is allowed between fork and exec of a program with one thread.
[[noreturn]] void become(const std::vector<std::string>& words, const std::vector<std::string>& environment,
                         int slave) {
  login_tty(slave);
  for (const auto& entry : environment) {
    const auto equals = entry.find('=');
    if (equals == std::string::npos) {
      unsetenv(entry.c_str());
    } else {
      setenv(entry.substr(0, equals).c_str(), entry.substr(equals + 1).c_str(), 1);
    }
  }
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const auto& word : words) {
    arguments.push_back(const_cast<char*>(word.c_str()));
  }
  arguments.push_back(nullptr);
  execvp(arguments.front(), arguments.data());
  _exit(127);
}

}  // namespace

PtyProgram::PtyProgram(const std::vector<std::string>& words, const std::vector<std::string>& environment,
                       std::size_t lines, std::size_t columns)
    : terminal_(lines, columns) {
  auto size = size_of(lines, columns);
  if (openpty(&master_, &slave_, nullptr, nullptr, &size) != 0) {
    throw std::runtime_error("no pseudo-terminal can be had");
  }
  fcntl(master_, F_SETFD, FD_CLOEXEC);
  first_modes_ = modes();
  id_ = fork();
  if (id_ < 0) {
    throw std::runtime_error("no process can be had");
  }
  if (id_ == 0) {
    become(words, environment, slave_);
  }
}

PtyProgram::~PtyProgram() {
  if (!has_ended()) {
    ::kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
  }
  close(master_);
  close(slave_);
}

void PtyProgram::type(std::string_view keys) const {
  while (!keys.empty()) {
    const auto count = ::write(master_, keys.data(), keys.size());
    if (count <= 0) {
      throw std::runtime_error("the pseudo-terminal takes no keys");
    }
    keys.remove_prefix(static_cast<std::size_t>(count));
  }
}

void PtyProgram::resize(std::size_t lines, std::size_t columns) {
  terminal_.resize(lines, columns);
  const auto size = size_of(lines, columns);
  ioctl(master_, TIOCSWINSZ, &size);
}

void PtyProgram::kill(int signal) const {
  ::kill(id_, signal);
}

bool PtyProgram::take(milliseconds timeout) {
  pollfd readable{master_, POLLIN, 0};
  if (poll(&readable, 1, static_cast<int>(timeout.count())) <= 0) {
    return false;
  }
  std::array<char, 65536> chunk{};
  const auto count = read(master_, chunk.data(), chunk.size());
  if (count <= 0) {
    return false;
  }
  const std::string_view bytes(chunk.data(), static_cast<std::size_t>(count));
  written_ += bytes;
  terminal_.write(bytes);
  return true;
}

bool PtyProgram::has_ended() {
  int status = 0;
  if (!ended_ && waitpid(id_, &status, WNOHANG) == id_) {
    ended_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  return ended_.has_value();
}

bool PtyProgram::wait_until(const std::function<bool(const Terminal&)>& wanted, milliseconds timeout) {
  const auto until = Clock::now() + timeout;
  while (!wanted(terminal_)) {
    const bool ended = has_ended();
    if (!take(milliseconds(20)) && (ended || Clock::now() > until)) {
      return false;
    }
  }
  return true;
}

void PtyProgram::run_for(milliseconds time) {
  for (const auto until = Clock::now() + time; Clock::now() < until;) {
    take(milliseconds(20));
  }
}

std::optional<int> PtyProgram::wait(milliseconds timeout) {
  const auto until = Clock::now() + timeout;
  while (!has_ended() && Clock::now() < until) {
    take(milliseconds(20));
  }
  while (ended_ && take(milliseconds(0))) {
  }
  return ended_;
}

termios PtyProgram::modes() const {
  termios modes{};
  // Of the other end, which the end of the program hangs up, the modes are asked for on this one.
  tcgetattr(master_, &modes);
  return modes;
}

}  // namespace ostravel::host::picture
