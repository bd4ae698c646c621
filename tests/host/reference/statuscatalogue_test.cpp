// SPDX-License-Identifier: MIT
#include "host/reference/statuscatalogue.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "driver/statuscodes.h"
#include "host/poller.h"
#include "symbolic/symbolsloader.h"

namespace ostravel::host {
namespace {

using testing::EndsWith;
using testing::Not;

std::string names_of(const std::vector<StatusEntry>& entries) {
  std::set<std::string> names;
  for (const auto& entry : entries) {
    names.insert(fmt::format("{}:{}", to_text(entry.source), entry.name));
  }
  return fmt::format("{}", fmt::join(names, ", "));
}

TEST(StatusCatalogue, EveryEntryHasNameCauseAndRemedyInOneLine) {
  for (const auto& entry : status_catalogue()) {
    for (const auto text : {entry.written, entry.name, entry.cause, entry.remedy}) {
      EXPECT_FALSE(text.empty()) << entry.written;
      EXPECT_EQ(text.find_first_of("\n\t|"), std::string_view::npos) << text;
      EXPECT_THAT(std::string(text), Not(EndsWith("."))) << text;
    }
  }
}

TEST(StatusCatalogue, ACodeHasOneNameAndItsEntriesStandTogether) {
  std::set<std::pair<StatusSource, std::uint32_t>> seen;
  const StatusEntry* before = nullptr;
  for (const auto& entry : status_catalogue()) {
    const bool goes_on =
        before != nullptr && before->source == entry.source && before->number == entry.number;
    if (goes_on) {
      EXPECT_EQ(entry.name, before->name);
      EXPECT_EQ(entry.written, before->written);
      EXPECT_NE(entry.cause, before->cause);
    } else {
      EXPECT_TRUE(seen.emplace(entry.source, entry.number).second) << entry.written << " comes again";
    }
    before = &entry;
  }
}

TEST(StatusCatalogue, KnowsEveryCodeOfTheDriver) {
  EXPECT_EQ(input_status_name(kOk), "ok");
  EXPECT_EQ(input_status_name(kNoData), "no data");
  EXPECT_EQ(input_status_name(kAskAgain), "not ready");
  EXPECT_EQ(input_status_name(77), "unknown");
  EXPECT_EQ(find_status(StatusSource::Input, kOk)->written, fmt::format("{}/{}", kOk, kInputStatus));
  EXPECT_EQ(find_status(StatusSource::Input, kAskAgain)->written,
            fmt::format("{}/{}", kAskAgain, kInputStatus));
  for (const auto& [state, name] : {std::pair{SymbolsLoader::Idle, "idle"},
                                    {SymbolsLoader::Loading, "loading"},
                                    {SymbolsLoader::Success, "success"},
                                    {SymbolsLoader::Error, "error"},
                                    {SymbolsLoader::Disconnect, "disconnect"}}) {
    ASSERT_NE(find_status(StatusSource::Loader, state), nullptr);
    EXPECT_EQ(find_status(StatusSource::Loader, state)->name, name);
  }
  EXPECT_NE(find_status(StatusSource::Library, static_cast<std::uint32_t>(AGL40_LIB_NOT_LOADED)), nullptr);
}

TEST(StatusCatalogue, KnowsEveryLinkState) {
  for (const auto state :
       {LinkState::Connecting, LinkState::Loading, LinkState::Online, LinkState::Lost, LinkState::Failed}) {
    const auto* entry = find_status(StatusSource::Host, static_cast<std::uint32_t>(state));
    ASSERT_NE(entry, nullptr) << to_text(state);
    EXPECT_EQ(entry->name, to_text(state));
  }
}

TEST(StatusCatalogue, NamesTheStandInsResultsAsTheStandInDoes) {
  const auto check = [](std::uint32_t code, std::string_view text) {
    const auto* entry = find_status(StatusSource::StandIn, code);
    ASSERT_NE(entry, nullptr) << text;
    EXPECT_EQ(entry->name, text);
    EXPECT_EQ(entry->written, fmt::format("0x{:08X}", code));
  };
  std::size_t codes = 0;
#define STANDIN_ERROR(name, number, text) \
  check(number, text);                    \
  ++codes;
#include "simulator/standin/errors.def"
#undef STANDIN_ERROR
  std::size_t entries = 0;
  for (const auto& entry : status_catalogue()) {
    entries += entry.source == StatusSource::StandIn ? 1 : 0;
  }
  EXPECT_EQ(entries, codes);
}

TEST(StatusCatalogue, FindsWhatAPersonTypes) {
  for (const auto& [text, names] : std::vector<std::pair<std::string, std::string>>{
           {"0", "INPUT_DATA:ok"},
           {"2", "INPUT_DATA:no data"},
           {"2/5", "INPUT_DATA:no data"},
           {"13/5", "INPUT_DATA:not ready"},
           {"NO DATA", "INPUT_DATA:no data"},
           {"wait 1, length 8", "output filter:failed"},
           {"wait 1", "output filter:failed"},
           {"Loader 3", "symbol loader:error"},
           {"0xFFF00016", "library:library not loaded"},
           {"fff00016", "library:library not loaded"},
           {"-1048554", "library:library not loaded"},
           {"0xffe10041", "stand-in library:path leads to no symbol"},
           {"path leads", "stand-in library:path leads to no symbol"},
           {"connection lost", "ostravel-host:connection lost"},
       }) {
    EXPECT_EQ(names_of(look_up_status(text)), names) << text;
  }
}

TEST(StatusCatalogue, FindsAllCausesOfACode) {
  EXPECT_EQ(look_up_status("2").size(), 3U);
  EXPECT_EQ(look_up_status("13").size(), 2U);
}

TEST(StatusCatalogue, FindsNothingForWhatIsNoStatus) {
  for (const auto* text : {"", "3", "2/", "2/x", "/5", "256", "-", "0x", "0x123456789", "-99999999999",
                           "no data at all", "99999999999999999999"}) {
    EXPECT_TRUE(look_up_status(text).empty()) << text;
  }
}

}  // namespace
}  // namespace ostravel::host
