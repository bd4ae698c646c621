// SPDX-License-Identifier: MIT
#include "host/process.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>

namespace ostravel::host {
namespace {

struct Pipe {
  int read_end = -1;
  int write_end = -1;
};

Pipe make_pipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error(fmt::format("no pipe: {}", std::strerror(errno)));
  }
  return {ends[0], ends[1]};
}

}  // namespace

Process::Process(const std::string& program, const std::vector<std::string>& arguments) {
  std::signal(SIGPIPE, SIG_IGN);  // a child that has ended is seen by the failing write
  const auto to_child = make_pipe();
  const auto from_child = make_pipe();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, to_child.read_end, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, from_child.write_end, STDOUT_FILENO);

  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (auto& word : words) {
    argv.push_back(word.data());
  }
  argv.push_back(nullptr);
  const int error = posix_spawn(&id_, program.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(to_child.read_end);
  close(from_child.write_end);
  input_ = to_child.write_end;
  output_ = from_child.read_end;
  if (error != 0) {
    close(input_);
    close(output_);
    throw std::runtime_error(fmt::format("{}: cannot be started: {}", program, std::strerror(error)));
  }
}

Process::~Process() {
  if (!ended_) {
    kill(SIGKILL);
    wait();
  }
  close_input();
  close(output_);
}

bool Process::write(std::string_view text) {
  while (!text.empty()) {
    const auto written = ::write(input_, text.data(), text.size());
    if (written < 0) {
      if (errno == EINTR) {
        continue;
      }
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool Process::fill(std::chrono::milliseconds timeout) {
  pollfd watched{output_, POLLIN, 0};
  if (poll(&watched, 1, static_cast<int>(timeout.count())) <= 0) {
    return false;
  }
  std::array<char, 65536> chunk{};
  const auto count = read(output_, chunk.data(), chunk.size());
  if (count <= 0) {
    return false;
  }
  pending_.append(chunk.data(), static_cast<std::size_t>(count));
  return true;
}

std::optional<std::string> Process::read_line(std::chrono::milliseconds timeout) {
  const auto until = std::chrono::steady_clock::now() + timeout;
  std::size_t end = 0;
  while ((end = pending_.find('\n')) == std::string::npos) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
    if (left.count() <= 0 || !fill(left)) {
      return std::nullopt;
    }
  }
  auto line = pending_.substr(0, end);
  pending_.erase(0, end + 1);
  return line;
}

std::string Process::read_all() {
  while (fill(std::chrono::milliseconds(-1))) {
  }
  return std::move(pending_);
}

void Process::close_input() {
  if (input_ >= 0) {
    close(input_);
    input_ = -1;
  }
}

void Process::kill(int signal) {
  if (!ended_) {
    ::kill(id_, signal);
  }
}

int Process::wait() {
  while (!ended_) {
    int status = 0;
    if (waitpid(id_, &status, 0) < 0) {
      if (errno == EINTR) {
        continue;
      }
      ended_ = -1;
    } else {
      ended_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
  }
  return *ended_;
}

}  // namespace ostravel::host
