// SPDX-License-Identifier: MIT
// ostravel-host status as a user has it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "host/reference/statuscatalogue.h"
#include "tests/host/reference/program.h"

namespace ostravel::host {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

ProgramResult status(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "status");
  return run_program(HOST_PATH, arguments);
}

TEST(StatusCommand, ListsEveryCodeOnceWithItsName) {
  const auto result = status({});
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, StartsWith("CODE "));
  for (const auto& entry : status_catalogue()) {
    EXPECT_THAT(result.out, HasSubstr("\n" + std::string(entry.written) + " "));
    EXPECT_THAT(result.out, HasSubstr(" " + std::string(entry.name) + " "));
  }
  EXPECT_EQ(result.out.find("\n2 "), result.out.rfind("\n2 "));
}

TEST(StatusCommand, ShowsCausesAndWhatHelps) {
  const auto result = status({"13/5", "fff00001"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "13/5  not ready (INPUT_DATA)\n"
            "  cause:  the driver is still connecting to the PLC\n"
            "  remedy: ask again; when it stays, check the address and that TCP port 102 of the PLC is "
            "reachable\n"
            "  cause:  the batch needs several jobs, and more are to come\n"
            "  remedy: ask the input filter again with the same batch\n"
            "0xFFF00001  no symbol tree (library)\n"
            "  cause:  the symbols were to be saved before any had been loaded\n"
            "  remedy: connect first; nothing was written\n");
}

TEST(StatusCommand, GivesTheWholeCatalogueAsJsonLines) {
  const auto result = status({"--json"});
  EXPECT_EQ(result.code, 0);
  std::istringstream lines(result.out);
  std::string line;
  for (const auto& entry : status_catalogue()) {
    ASSERT_TRUE(std::getline(lines, line));
    const auto object = nlohmann::json::parse(line);
    EXPECT_EQ(object.at("source"), to_text(entry.source));
    EXPECT_EQ(object.at("code"), entry.written);
    EXPECT_EQ(object.at("name"), entry.name);
    EXPECT_EQ(object.at("cause"), entry.cause);
    EXPECT_EQ(object.at("remedy"), entry.remedy);
  }
  EXPECT_FALSE(std::getline(lines, line));
}

TEST(StatusCommand, GivesOneCodeAsCsv) {
  EXPECT_EQ(status({"--csv", "loader 2"}).out,
            "source,code,name,cause,remedy\n"
            "symbol loader,loader 2,success,the symbols are loaded; requests are worked on,nothing\n");
}

TEST(StatusCommand, AsksTheLibraryForAResultThatOnlyItKnows) {
  const auto result = run_program(HOST_PATH, {"--driver", LIBRARY_WITH_TEXTS_PATH, "status", "0x12345678"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "0x12345678  text of 305419896 (library)\n");
}

TEST(StatusCommand, SaysWhenNobodyKnowsACode) {
  const auto unknown = status({"wrong"});
  EXPECT_EQ(unknown.code, 2);
  EXPECT_EQ(unknown.error,
            "ostravel-host: 'wrong' is no status; ostravel-host status lists all, write one like 13/5, "
            "\"no data\", \"loader 3\" or 0xFFF00016\n");
  const auto unasked = run_program(HOST_PATH, {"--driver", "/nowhere/libnone.so", "status", "0x12345678"});
  EXPECT_EQ(unasked.code, 2);
  EXPECT_EQ(
      unasked.error,
      "ostravel-host: 0x12345678 is a result of the communication library, which cannot be asked for its "
      "text; name it with --library FILE\n");
}

}  // namespace
}  // namespace ostravel::host
