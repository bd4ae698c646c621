// SPDX-License-Identifier: MIT
#include "host/watch/view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/watch/samples.h"

namespace ostravel::host::watch {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::StartsWith;

std::string screen_of(const Model& model, Browser& browser, double second, Charset charset = Charset::Utf8) {
  browser.update(at(second));
  std::string text;
  for (const auto& line : draw(model, browser, at(second), charset)) {
    text += text_of(line) + "\n";
  }
  return text;
}

// A plant of four tags after ten seconds.
struct Plant {
  Model model = model_of({{"Plant.Live.Position", "INT"},
                          {"Plant.Live.Angle", "REAL"},
                          {"Plant.Name", "STRING"},
                          {"Plant.\"Tank.1 (north)\".Pressure", "LREAL"}});
  Browser browser{model, milliseconds(500)};

  Plant() {
    for (int i = 0; i <= 10; ++i) {
      deliver(model, 0, i, i);
      deliver(model, 1, i * 0.5, i);
      deliver(model, 2, "mixer", i);
    }
    model.take({3, 2, 5, {}}, at(10));
    auto state = online();
    state.rounds = 20;
    state.round_time = milliseconds(12);
    state.recoveries = 2;
    model.take_state(0, state);
  }
  std::string screen(Size size, Charset charset = Charset::Utf8) {
    browser.resize(size);
    return screen_of(model, browser, 10, charset);
  }
};

TEST(View, TableOnEightyCells) {
  Plant plant;
  EXPECT_EQ(plant.screen({9, 80}),
            " 127.0.0.1 online                 4 tags  recovered 2x  poll 12 ms every 500 ms\n"
            "TAG                   TYPE   VALUE          QUALITY       AGE  CH/S LAST MINUTE\n"
            "Plant.Live.Position   INT    10             0 ok           0s   1.0          ▁▄█\n"
            "Plant.Live.Angle      REAL   5              0 ok           0s   1.0          ▁▄█\n"
            "Plant.Name            STRING \"mixer\"        0 ok           0s   0.0\n"
            "….1 (north)\".Pressure LREAL  -              2 no data       -     -\n"
            "\n"
            " Plant.Live.Position = 10\n"
            " ? help  q quit  / filter  < > sort  r reverse  b bad only  p pause    1-4 of 4\n");
}

TEST(View, TerminalWithoutUtf8) {
  Plant plant;
  plant.browser.press('>');
  const auto screen = plant.screen({9, 80}, Charset::Ascii);
  EXPECT_THAT(screen, HasSubstr("\nTAG^ "));
  EXPECT_THAT(screen, HasSubstr("_~#"));
  for (const char c : screen) {
    EXPECT_LT(static_cast<unsigned char>(c), 0x80);
  }
}

TEST(View, SortedColumnHasAMark) {
  Plant plant;
  plant.browser.press('<');
  EXPECT_THAT(plant.screen({9, 80}), HasSubstr("CH/S▲"));
  plant.browser.press('r');
  EXPECT_THAT(plant.screen({9, 80}), HasSubstr("CH/S▼"));
}

TEST(View, EachScreenIsFilledExactly) {
  Plant plant;
  for (const Key page : {Key{'g'}, Key{'?'}, Key{'?'}, key::kEnter}) {
    plant.browser.press(page);
    for (std::size_t lines = 1; lines < 40; lines += 3) {
      for (std::size_t columns = 1; columns < 220; columns += 7) {
        plant.browser.resize({lines, columns});
        plant.browser.update(at(10));
        const auto screen = draw(plant.model, plant.browser, at(10), Charset::Utf8);
        ASSERT_EQ(screen.size(), lines);
        for (const auto& line : screen) {
          std::size_t cells = 0;
          for (const auto& span : line) {
            cells += cells_of(span.text);
          }
          ASSERT_LE(cells, columns) << text_of(line);
        }
      }
    }
  }
}

TEST(View, QualityIsToldByWordsAndStyle) {
  Plant plant;
  plant.browser.resize({9, 80});
  plant.browser.update(at(10));
  const auto screen = draw(plant.model, plant.browser, at(10), Charset::Utf8);
  const auto style_of = [](const StyledLine& line, const std::string& text) {
    const auto found = std::find_if(line.begin(), line.end(),
                                    [&text](const Span& span) { return span.text.starts_with(text); });
    return found == line.end() ? Style::Plain : found->style;
  };
  EXPECT_EQ(style_of(screen[2], "0 ok"), Style::Good);
  EXPECT_EQ(style_of(screen[5], "2 no data"), Style::Bad);
}

TEST(View, RowUnderTheCursorIsMarkedOverItsWholeWidth) {
  Plant plant;
  plant.browser.resize({9, 80});
  plant.browser.update(at(10));
  plant.browser.press(key::kDown);
  const auto screen = draw(plant.model, plant.browser, at(10), Charset::Utf8);
  std::size_t cells = 0;
  for (const auto& span : screen[3]) {
    EXPECT_TRUE(span.selected);
    cells += cells_of(span.text);
  }
  EXPECT_EQ(cells, 80U);
  for (const auto& span : screen[2]) {
    EXPECT_FALSE(span.selected);
  }
}

TEST(View, TagWithoutAValueSaysWhyInTheDetailLine) {
  Plant plant;
  plant.browser.resize({9, 120});
  plant.browser.update(at(10));
  plant.browser.press(key::kEnd);
  EXPECT_THAT(plant.screen({9, 120}),
              HasSubstr(" Plant.\"Tank.1 (north)\".Pressure: 2 no data, this tag alone: "));
}

TEST(View, FilterBeingTypedStandsInTheLastLine) {
  Plant plant;
  plant.screen({9, 80});
  for (const Key key : {'/', 'l', 'i', 'v', 'e'}) {
    plant.browser.press(key);
  }
  EXPECT_THAT(plant.screen({9, 80}), HasSubstr("\n /live_"));
  plant.browser.press(key::kEnter);
  const auto screen = plant.screen({9, 80});
  EXPECT_THAT(screen, HasSubstr("/live  1-2 of 2\n"));
  EXPECT_THAT(screen, testing::Not(HasSubstr("Plant.Name")));
}

TEST(View, EmptyTableSaysSo) {
  Plant plant;
  plant.screen({9, 80});
  for (const Key key : {'/', 'x', 'x'}) {
    plant.browser.press(key);
  }
  const auto screen = plant.screen({9, 80});
  EXPECT_THAT(screen, HasSubstr("no tag fits the filter"));
  EXPECT_THAT(screen, HasSubstr("0-0 of 0"));
}

TEST(View, TitleTellsOfEveryDeviceAndOfAPause) {
  Model model({{"north/A", "INT", 0}, {"south/A", "INT", 1}}, {online("north"), online("south")}, kStart);
  auto lost = online("south");
  lost.link = LinkState::Lost;
  model.take_state(1, lost);
  Browser browser(model, milliseconds(500));
  browser.resize({9, 100});
  EXPECT_THAT(screen_of(model, browser, 0), StartsWith(" north online, south connection lost "));
  browser.press('p');
  EXPECT_THAT(screen_of(model, browser, 0), HasSubstr("PAUSED\n"));
}

TEST(View, NamesCannotSteerTheTerminal) {
  auto model = model_of({{"evil\033[2J", "INT"}});
  deliver(model, 0, "\033]0;x\a");
  Browser browser(model, milliseconds(500));
  browser.resize({9, 80});
  for (const auto page : {key::kNone, key::kEnter}) {
    browser.press(page);
    EXPECT_EQ(screen_of(model, browser, 0).find('\033'), std::string::npos);
  }
}

TEST(View, OnlyVisibleRowsAreDrawn) {
  auto model = model_of_many(10'000);
  Browser browser(model, milliseconds(500));
  browser.resize({24, 80});
  browser.update(kStart);
  EXPECT_EQ(draw(model, browser, kStart, Charset::Utf8).size(), 24U);
  EXPECT_THAT(screen_of(model, browser, 0), HasSubstr("1-20 of 10,000"));
}

}  // namespace
}  // namespace ostravel::host::watch
