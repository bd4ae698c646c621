// SPDX-License-Identifier: MIT
// The pages that take the table's place.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/watch/view.h"
#include "tests/host/watch/samples.h"

namespace ostravel::host::watch {
namespace {

using testing::HasSubstr;

std::string page_of(const Model& model, Key key, Size size) {
  Browser browser(model, std::chrono::milliseconds(500));
  browser.resize(size);
  browser.update(at(2));
  browser.press(key);
  std::string text;
  for (const auto& line : draw(model, browser, at(2), Charset::Utf8)) {
    text += text_of(line) + "\n";
  }
  return text;
}

TEST(HelpPage, NamesEveryKey) {
  const auto model = model_of({{"A", "INT"}});
  const auto page = page_of(model, '?', {24, 80});
  for (const auto* text :
       {"Page Up, Down", "sort by the column", "reverse the order", "filter by name", "without a good value",
        "everything about the tag", "poll less often", "pause polling", "q, Ctrl+C", "Any key goes back"}) {
    EXPECT_THAT(page, HasSubstr(text));
  }
}

TEST(DetailsPage, TellsEverythingOfATag) {
  auto model = model_of({{"Plant.Level", "INT"}});
  deliver(model, 0, 10, 0);
  deliver(model, 0, 30, 1);
  deliver(model, 0, 20, 2);
  EXPECT_EQ(page_of(model, key::kEnter, {20, 80}),
            " 127.0.0.1 online                     1 tags  recovered 0x  poll - every 500 ms\n"
            "\n"
            "  Tag             Plant.Level\n"
            "  Type            INT\n"
            "  Device          127.0.0.1 online\n"
            "  Quality         0/5 ok\n"
            "  Cause           the value was delivered; also the answer to every write, a\n"
            "                  failed one too\n"
            "  Remedy          nothing for a read; after a write read the tag back, as\n"
            "                  ostravel-host write does\n"
            "  Age             0s\n"
            "  Changes         0.7 a second\n"
            "  Last minute     10 to 30\n" +
                std::string(75, ' ') +
                "▁█▅\n"
                "  Value           20\n"
                "\n"
                "  Any key goes back to the table.\n"
                "\n"
                " Plant.Level = 20\n"
                " ? help  q quit  / filter  < > sort  r reverse  b bad only  p pause    1-1 of 1\n");
}

TEST(DetailsPage, FailedTagHasCauseAndRemedy) {
  auto model = model_of({{"Plant.Level", "INT"}});
  model.take({0, 2, 5, {}}, kStart);
  const auto page = page_of(model, key::kEnter, {24, 80});
  EXPECT_THAT(page, HasSubstr("  Quality         2/5 no data\n"));
  EXPECT_THAT(page, HasSubstr("  Cause           this tag alone: "));
  EXPECT_THAT(page, HasSubstr("  Remedy          "));
  EXPECT_THAT(page, HasSubstr("  Age             -\n"));
}

TEST(DetailsPage, LongValueGoesOverSeveralLines) {
  auto model = model_of({{"A", "INT"}});
  auto values = nlohmann::json::array();
  for (int i = 0; i < 100; ++i) {
    values.push_back(1000 + i);
  }
  deliver(model, 0, values);
  const auto page = page_of(model, key::kEnter, {30, 80});
  EXPECT_THAT(page, HasSubstr("[1000,1001,"));
  EXPECT_THAT(page, HasSubstr("1099]"));
  EXPECT_GT(page.find("…"), page.find("\n A = ")) << "only the detail line is cut";
  EXPECT_EQ(page.substr(0, page.find("\n A = ")).find("…"), std::string::npos) << "nothing of it is cut off";
}

}  // namespace
}  // namespace ostravel::host::watch
