// SPDX-License-Identifier: MIT
#include "host/plot/terminalchart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/host/plot/seriesof.h"

namespace ostravel::host::plot {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> lines(const std::vector<Series>& series, const TerminalOptions& options,
                               const ChartOptions& chart = {}) {
  return draw(Chart(series, chart), options);
}

std::size_t characters(const std::string& line) {
  return static_cast<std::size_t>(std::count_if(
      line.begin(), line.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

TEST(TerminalChart, DrawsInAscii) {
  ChartOptions chart;
  chart.title = "Ramp";
  chart.unit = "bar";
  EXPECT_THAT(lines({series_of("Line.Up", {0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100})},
                    {40, 6, false, false}, chart),
              ElementsAre("Ramp",                                     //
                          "A Line.Up  100 bar  (0 to 100)",           //
                          "100+                               ** A",  //
                          "   |                         ******",      //
                          "   |                  *******",            //
                          " 50+           *******",                   //
                          "   |     ******",                          //
                          "  0+*****",                                //
                          "   +----------------+----------------",    //
                          "                13:14:20",                 //
                          "    time, UTC"));
}

TEST(TerminalChart, DrawsInBraille) {
  EXPECT_THAT(lines({series_of("A", {0, 1})}, {30, 3, true, false}),
              ElementsAre("A A  1  (0 to 1)",                //
                          "1.0┤               ⢀⣀⡠⠤⠔⠒⠊⠉ A",   //
                          "0.5┤       ⢀⣀⡠⠤⠔⠒⠊⠉⠁",            //
                          "0.0┤⣀⡠⠤⠔⠒⠊⠉⠁",                    //
                          "   └──────────────────────┬",     //
                          "                      13:14:16",  //
                          "    time, UTC"));
}

TEST(TerminalChart, LinesOfOneHeightHaveTheirLettersApart) {
  const auto text =
      lines({series_of("Same", {1, 2, 3}), series_of("Other", {3, 2, 3})}, {40, 6, false, false});
  const auto ends = [&](const char* letter) {
    return std::count_if(text.begin(), text.end(),
                         [&](const std::string& line) { return line.ends_with(letter); });
  };
  EXPECT_EQ(ends(" A"), 1);
  EXPECT_EQ(ends(" B"), 1);
}

TEST(TerminalChart, AGapIsBlank) {
  const auto text = lines({series_of("A", {1, 1, 1, kGap, kGap, 1, 1, 1})}, {40, 3, false, false});
  const auto row = std::find_if(text.begin() + 1, text.end(),
                                [](const std::string& line) { return line.find('*') != std::string::npos; });
  ASSERT_NE(row, text.end());
  EXPECT_THAT(*row, testing::ContainsRegex("\\*{8,} {12,}\\*{8,} A$"));
}

TEST(TerminalChart, ColoursAreBesideTheLetters) {
  const auto text = lines({series_of("One", {1, 2}), series_of("Two", {2, 1})}, {40, 6, false, true});
  EXPECT_EQ(text[0], "\033[36mA\033[0m One  2  (1 to 2)");
  EXPECT_EQ(text[1], "\033[33mB\033[0m Two  1  (1 to 2)");
}

TEST(TerminalChart, KeepsToItsWidth) {
  std::vector<double> values(5000);
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = 1e6 * std::sin(static_cast<double>(i) / 100);
  }
  const std::string name = "Plant.\"A very long name of a tag that fits no line\".Größe";
  for (const int width : {30, 50, 80, 200}) {
    for (const bool stacked : {false, true}) {
      ChartOptions chart;
      chart.stacked = stacked;
      for (const auto& line :
           lines({series_of(name, values), series_of("B", {1, 2})}, {width, 12, true, false}, chart)) {
        EXPECT_LE(characters(line), static_cast<std::size_t>(width)) << line;
      }
    }
  }
}

TEST(TerminalChart, StackedPanelsHaveAnAxisEach) {
  ChartOptions chart;
  chart.stacked = true;
  const auto text =
      lines({series_of("One", {0, 1}), series_of("Two", {0, 100})}, {40, 8, false, false}, chart);
  EXPECT_THAT(text, testing::SizeIs(2 + 8 + 3));
  EXPECT_THAT(text[1], HasSubstr("1.0+"));
  EXPECT_THAT(text[6], HasSubstr("100+"));
}

}  // namespace
}  // namespace ostravel::host::plot
