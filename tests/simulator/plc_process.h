// SPDX-License-Identifier: MIT
// The program ostravel-plc as a process, with pipes or a terminal.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/simulator/plc_program.h"

namespace ostravel::plc {

class Process {
 public:
  // With a terminal its standard input is one, as when a person sits there.
  explicit Process(std::vector<std::string> arguments, bool terminal = false) {
    arguments.insert(arguments.begin(), OSTRAVEL_PLC);
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (auto& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    std::array<int, 2> err{};
    if ((terminal ? open_terminal(in) : pipe2(in.data(), O_CLOEXEC)) != 0 ||
        pipe2(out.data(), O_CLOEXEC) != 0 || pipe2(err.data(), O_CLOEXEC) != 0) {
      throw std::runtime_error("pipe");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_adddup2(&actions, err[1], 2);
    const int failed = posix_spawn(&pid_, OSTRAVEL_PLC, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    close(err[1]);
    input_ = in[1];
    output_ = fdopen(out[0], "r");
    error_ = fdopen(err[0], "r");
    if (failed != 0) throw std::runtime_error("cannot start " OSTRAVEL_PLC);
  }
  ~Process() {
    close_input();
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
    fclose(output_);
    fclose(error_);
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  std::string line() { return line_of(output_); }
  std::string error_line() { return line_of(error_); }
  std::string rest_of_errors() {
    std::string all;
    for (auto one = line_of(error_); !one.empty(); one = line_of(error_)) all += one + "\n";
    return all;
  }
  void send(const std::string& text) {
    if (write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
      throw std::runtime_error("the process does not read");
    }
  }
  nlohmann::json command(const std::string& text) {
    const auto sent = text + "\n";
    if (write(input_, sent.data(), sent.size()) != static_cast<ssize_t>(sent.size())) return "cannot write";
    return nlohmann::json::parse(line());
  }
  void close_input() {
    if (input_ >= 0) close(input_);
    input_ = -1;
  }
  void signal(int number) { kill(pid_, number); }
  // The exit code, -1 for a death by signal.
  int wait() {
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  static int open_terminal(std::array<int, 2>& ends) {
    termios settings{};
    cfmakeraw(&settings);
    const int result = openpty(&ends[1], &ends[0], nullptr, &settings, nullptr);
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
    return result;
  }
  static std::string line_of(FILE* file) {
    std::string text;
    for (int c = fgetc(file); c != EOF && c != '\n'; c = fgetc(file)) text += static_cast<char>(c);
    return text;
  }
  pid_t pid_ = -1;
  int input_ = -1;
  FILE* output_ = nullptr;
  FILE* error_ = nullptr;
};

class PlcProcess : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "ostravel-plc-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    source = write_source("plant.db", kTestSource);
  }
  void TearDown() override { std::filesystem::remove_all(folder); }
  std::string write_source(const std::string& name, std::string_view text) {
    const auto path = folder / name;
    std::ofstream(path) << text;
    return path.string();
  }
  std::filesystem::path folder;
  std::string source;
};

}  // namespace ostravel::plc
