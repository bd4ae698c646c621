// SPDX-License-Identifier: MIT
#include "common/commandline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <vector>

#include "common/optiontable.h"
#include "tests/host/reference/program.h"

namespace ostravel {
namespace {

using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

struct Outcome {
  std::optional<int> code;
  std::string out;
  std::string error;
};

Outcome parse(CLI::App& app, const char* program, std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), program);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  Outcome outcome;
  outcome.code = parse_command_line(app, program, static_cast<int>(arguments.size()), arguments.data());
  outcome.out = testing::internal::GetCapturedStdout();
  outcome.error = testing::internal::GetCapturedStderr();
  return outcome;
}

constexpr const char* kCodesOfTags =
    "Exit codes:\n"
    "  0  all well\n"
    "  1  a value could not be read, or what was checked or compared is not as it should be\n"
    "  2  wrong command line, or a file, address or port that cannot be used\n";

// A program with a command of its own footer, one without, and one that is hidden.
struct Sample {
  CLI::App app{"does things"};
  std::string file, word;
  std::vector<std::string> names;
  bool loud = false;
  Sample() {
    app.footer("About the program.");
    app.add_option("-f,--file", file, "a file")->type_name("FILE")->required();
    auto* first = app.add_subcommand("first", "the first one");
    first->add_option("NAME", names, "names");
    first->add_option("--word", word, "a word")->check(CLI::IsMember({"red", "green"}))->default_val("red");
    first->footer("Examples:\n  sample first");
    app.add_subcommand("second", "the second one")->add_flag("--loud", loud, "loudly");
    app.add_subcommand("unseen", "hidden")->group("");
  }
};

TEST(CommandLine, EveryHelpEndsWithTheExitCodesOfTheProgram) {
  for (const auto* command : {"", "first", "second"}) {
    Sample sample;
    const auto help = *command == '\0' ? parse(sample.app, "ostravel-tags", {"--help"})
                                       : parse(sample.app, "ostravel-tags", {"-f", "x", command, "--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_THAT(help.out, EndsWith(kCodesOfTags)) << command;
    EXPECT_EQ(help.error, "");
  }
}

TEST(CommandLine, OnlyTheHostHasItsOwnExitCodes) {
  Sample tags;
  EXPECT_THAT(parse(tags.app, "ostravel-tags", {"--help"}).out, Not(HasSubstr("\n  4  ")));
  Sample host;
  EXPECT_THAT(parse(host.app, "ostravel-host", {"--help"}).out,
              EndsWith("\n  4  no answer from the PLC in time\n"));
}

TEST(CommandLine, AFooterIsForItsCommandAlone) {
  Sample sample;
  EXPECT_THAT(parse(sample.app, "ostravel-tags", {"--help"}).out,
              HasSubstr("About the program.\n\nExit codes:"));
  Sample second;
  EXPECT_THAT(parse(second.app, "ostravel-tags", {"-f", "x", "second", "--help"}).out,
              Not(HasSubstr("About the program.")));
}

TEST(CommandLine, CommandsThatTakeTheProgramsOptionsSayWhereTheseAre) {
  Sample sample;
  sample.app.fallthrough();
  EXPECT_THAT(
      parse(sample.app, "ostravel-host", {"-f", "x", "first", "--help"}).out,
      HasSubstr("  sample first\n\nostravel-host --help shows the options that all commands take.\n"));
}

TEST(CommandLine, SaysItsVersion) {
  Sample sample;
  const auto version = parse(sample.app, "ostravel-tags", {"--version"});
  EXPECT_EQ(version.code, 0);
  EXPECT_THAT(version.out, testing::MatchesRegex("ostravel-tags [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(CommandLine, AMistakeIsOneLineThatNamesTheHelp) {
  Sample sample;
  const auto mistake = parse(sample.app, "ostravel-tags", {"first"});
  EXPECT_EQ(mistake.code, 2);
  EXPECT_EQ(mistake.out, "");
  EXPECT_EQ(mistake.error, "ostravel-tags: --file is required; see ostravel-tags --help\n");
}

TEST(CommandLine, GoesOnWhenAllIsWell) {
  Sample sample;
  EXPECT_EQ(parse(sample.app, "ostravel-tags", {"-f", "x", "first", "a", "b"}).code, std::nullopt);
  EXPECT_EQ(sample.names, (std::vector<std::string>{"a", "b"}));
}

TEST(OptionTable, HoldsEveryOptionAsTheHelpShowsIt) {
  Sample sample;
  const auto table = json::parse(parse(sample.app, "ostravel-tags", {"--option-table"}).out);
  EXPECT_EQ(table.at("name"), "ostravel-tags");
  EXPECT_EQ(table.at("help"), "does things");
  EXPECT_EQ(table.at("footer"), "About the program.");
  EXPECT_EQ(table.at("exit_codes").size(), 3U);
  EXPECT_EQ(table.at("exit_codes").at(2).at("code"), 2);
  const auto& options = table.at("options");
  EXPECT_EQ(options.at(0).at("names"), json::parse(R"(["-h", "--help"])"));
  EXPECT_EQ(options.at(1), json::parse(R"({"names": ["-f", "--file"], "positional": "", "value": "FILE",
      "default": "", "choices": [], "help": "a file", "required": true, "repeatable": false})"));
  EXPECT_EQ(options.at(2).at("names"), json::parse(R"(["--version"])"));
}

TEST(OptionTable, HoldsTheCommandsThatAreShown) {
  Sample sample;
  const auto table = json::parse(option_table(sample.app, "ostravel-tags"));
  ASSERT_EQ(table.at("commands").size(), 2U);
  const auto& first = table.at("commands").at(0);
  EXPECT_EQ(first.at("name"), "first");
  EXPECT_EQ(first.at("footer"), "Examples:\n  sample first");
  EXPECT_EQ(first.at("options").at(1).at("positional"), "NAME");
  EXPECT_EQ(first.at("options").at(1).at("names"), json::array());
  EXPECT_EQ(first.at("options").at(1).at("repeatable"), true);
  EXPECT_EQ(first.at("options").at(2).at("choices"), json::parse(R"(["red", "green"])"));
  EXPECT_EQ(first.at("options").at(2).at("default"), "red");
  const auto& second = table.at("commands").at(1);
  EXPECT_EQ(second.at("footer"), "");
  EXPECT_EQ(second.at("options").at(1).at("value"), "");
}

TEST(OptionTable, EveryProgramHasOneWithExamplesForEachCommand) {
  for (const auto& [name, path] :
       {std::pair{"ostravel-host", HOST_PATH}, {"ostravel-tags", TAGS_PATH}, {"ostravel-plc", PLC_PATH}}) {
    const auto table = json::parse(run_program(path, {"--option-table"}).out);
    EXPECT_EQ(table.at("name"), name);
    EXPECT_THAT(table.at("footer").get<std::string>(), HasSubstr("Examples:\n  ")) << name;
    for (const auto& command : table.at("commands")) {
      EXPECT_THAT(command.at("footer").get<std::string>(), HasSubstr("Examples:\n  ")) << command.at("name");
    }
    EXPECT_EQ(run_program(path, {"--version"}).out,
              std::string(name) + " " + table.at("version").get<std::string>() + "\n");
  }
}

}  // namespace
}  // namespace ostravel
