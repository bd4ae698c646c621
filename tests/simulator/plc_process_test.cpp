// SPDX-License-Identifier: MIT
// The program ostravel-plc as a process: options, first line, console, ends.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "simulator/wire/client.h"
#include "tests/simulator/plc_program.h"

namespace ostravel::plc {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

class Process {
 public:
  explicit Process(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), OSTRAVEL_PLC);
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (auto& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    std::array<int, 2> err{};
    if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0 ||
        pipe2(err.data(), O_CLOEXEC) != 0) {
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
  std::string rest_of_errors() {
    std::string all;
    for (auto one = line_of(error_); !one.empty(); one = line_of(error_)) all += one + "\n";
    return all;
  }
  json command(const std::string& text) {
    const auto sent = text + "\n";
    if (write(input_, sent.data(), sent.size()) != static_cast<ssize_t>(sent.size())) return "cannot write";
    return json::parse(line());
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

TEST_F(PlcProcess, SaysFirstWhereItListensAndServesThere) {
  Process plc({"--port", "0", source});
  const auto first = plc.line();
  ASSERT_THAT(first, StartsWith("listening on 127.0.0.1:"));
  const auto port = static_cast<std::uint16_t>(std::stoi(first.substr(first.rfind(':') + 1)));
  wire::Client client("127.0.0.1", port, std::chrono::seconds(10));
  EXPECT_NO_THROW(client.ask(wire::HelloRequest{}, std::chrono::seconds(10)));
}

TEST_F(PlcProcess, AnswersItsConsole) {
  Process plc({"--port", "0", "--cycle", "0", source});
  plc.line();
  EXPECT_EQ(plc.command("write Plant.aInt -7").value("error", ""), "");
  EXPECT_EQ(plc.command("read Plant.aInt")["value"], -7);
  EXPECT_THAT(plc.command("nonsense").value("error", ""), HasSubstr("unknown command"));
}

TEST_F(PlcProcess, QuitEndsIt) {
  Process plc({"--port", "0", source});
  plc.line();
  EXPECT_EQ(plc.command("cycle").count("cycle"), 1U);
  EXPECT_THROW(plc.command("quit"), json::parse_error);  // no answer any more
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcProcess, TerminationSignalEndsItCleanly) {
  Process plc({"--port", "0", source});
  plc.line();
  plc.signal(SIGTERM);
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcProcess, GoesOnWithoutStandardInput) {
  Process plc({"--port", "0", source});
  const auto first = plc.line();
  plc.close_input();
  wire::Client client("127.0.0.1", static_cast<std::uint16_t>(std::stoi(first.substr(first.rfind(':') + 1))),
                      std::chrono::seconds(10));
  EXPECT_NO_THROW(client.ask(wire::HelloRequest{}, std::chrono::seconds(10)));
  plc.signal(SIGTERM);
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcProcess, EndsWithStandardInputWhenAskedTo) {
  Process plc({"--port", "0", "--exit-with-stdin", source});
  plc.line();
  plc.close_input();
  EXPECT_EQ(plc.wait(), 0);
}

TEST_F(PlcProcess, ExportsTagsWithoutListening) {
  Process plc({"--export-tags", source});
  EXPECT_EQ(plc.line(), "name,type,count,first,elements,device,id");
  EXPECT_EQ(plc.line(), "Plant.Flag,BOOL,1,,1,1,1");
  plc.close_input();
}

TEST_F(PlcProcess, TakesConstants) {
  const auto file =
      write_source("constant.db",
                   "DATA_BLOCK \"B\"\nVAR\na : Array[0..\"LAST\"] of Int;\nEND_VAR\nBEGIN\nEND_DATA_BLOCK\n");
  Process plc({"--port", "0", "--constant", "LAST=2", file});
  plc.line();
  EXPECT_EQ(plc.command("read B.a")["value"], (json{0, 0, 0}));
}

TEST_F(PlcProcess, BadSourceIsOneLineWithThePlace) {
  const auto file = write_source("bad.db", "DATA_BLOCK \"B\"\nVAR\n  a : Nonsense_;\nEND_VAR\n");
  Process plc({"--port", "0", file});
  EXPECT_EQ(plc.wait(), 2);
  const auto errors = plc.rest_of_errors();
  EXPECT_THAT(errors, StartsWith(file + ":"));
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1);
}

TEST_F(PlcProcess, MissingFileIsOneLine) {
  Process plc({"--port", "0", (folder / "none.db").string()});
  EXPECT_EQ(plc.wait(), 2);
  const auto errors = plc.rest_of_errors();
  EXPECT_THAT(errors, HasSubstr("none.db"));
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1);
}

TEST_F(PlcProcess, BusyPortIsOneLine) {
  Server other(test_program(), test_options());
  Process plc({"--port", std::to_string(other.port()), source});
  EXPECT_EQ(plc.wait(), 2);
  const auto errors = plc.rest_of_errors();
  EXPECT_THAT(errors, HasSubstr("another program uses this port"));
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1);
}

TEST_F(PlcProcess, BadOptionsAreOneLineAndCodeTwo) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                    {"--port", "70000", source},
                                                    {"--cycle", "soon", source},
                                                    {"--constant", "NOVALUE", source},
                                                    {"--frobnicate", source}}) {
    Process plc(arguments);
    EXPECT_EQ(plc.wait(), 2);
    const auto errors = plc.rest_of_errors();
    EXPECT_THAT(errors, StartsWith("ostravel-plc: "));
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
  }
}

TEST_F(PlcProcess, BadGeneratorRuleIsOneLine) {
  Process plc({"--port", "0", "--generate", "Plant.Nowhere=ramp", source});
  EXPECT_EQ(plc.wait(), 2);
  EXPECT_THAT(plc.rest_of_errors(), HasSubstr("Nowhere"));
}

}  // namespace
}  // namespace ostravel::plc
