// SPDX-License-Identifier: MIT
#include "host/plot/svgchart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "host/plot/polylines.h"
#include "tests/host/plot/seriesof.h"
#include "tests/host/plot/xml.h"

namespace ostravel::host::plot {
namespace {

using testing::Contains;
using testing::SizeIs;

std::vector<XmlElement> drawn(const std::vector<Series>& series, const ChartOptions& options = {}) {
  return parse_xml(svg(Chart(series, options)));
}

std::vector<XmlElement> of_class(const std::vector<XmlElement>& elements, const std::string& name) {
  std::vector<XmlElement> found;
  std::copy_if(elements.begin(), elements.end(), std::back_inserter(found), [&](const XmlElement& element) {
    const auto attribute = element.attributes.find("class");
    return attribute != element.attributes.end() && attribute->second == name;
  });
  return found;
}

// "M84 314L504 164" as vertices; each M begins a line.
std::vector<Polyline> lines_of(const std::string& path) {
  std::vector<Polyline> lines;
  std::istringstream in(path);
  for (char command = 0; in >> command;) {
    if (command == 'h') {
      double none = 0;
      in >> none;
      continue;
    }
    if (command == 'M') {
      lines.emplace_back();
    }
    Vertex vertex;
    in >> vertex.x >> vertex.y;
    lines.back().push_back(vertex);
  }
  return lines;
}

// The area of the lines is 840 wide from 84 on; of one series without a title 300 high from 42 on.
TEST(SvgChart, PointsAreWhereTheyBelong) {
  const auto paths = of_class(drawn({series_of("A", {0, 50, 100})}), "series");
  ASSERT_THAT(paths, SizeIs(1));
  EXPECT_EQ(paths[0].attributes.at("d"), "M84 342L504 192L924 42");
}

TEST(SvgChart, GapsAreGaps) {
  const auto elements = drawn({series_of("A", {0, 100, kGap, 100, 0, kGap, 50})});
  const auto paths = of_class(elements, "series");
  ASSERT_THAT(paths, SizeIs(1));
  const auto lines = lines_of(paths[0].attributes.at("d"));
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_EQ(lines[0], (Polyline{{84, 342}, {224, 42}}));
  EXPECT_EQ(lines[1], (Polyline{{504, 42}, {644, 342}}));
  EXPECT_EQ(lines[2], (Polyline{{924, 192}}));
  const auto gaps = of_class(elements, "gap");
  ASSERT_THAT(gaps, SizeIs(2));
  EXPECT_EQ(gaps[0].attributes.at("x"), "224");
  EXPECT_EQ(gaps[0].attributes.at("width"), "280");
  EXPECT_EQ(gaps[0].text, "no data, 2024-03-05T13:14:16.000Z to 2024-03-05T13:14:18.000Z");
}

TEST(SvgChart, AxesHaveTicksAndNames) {
  ChartOptions options;
  options.unit = "bar";
  options.title = "Line 1";
  options.offset = std::chrono::hours(1);
  const auto elements = drawn({series_of("Pressure", {0, 50, 100})}, options);
  std::vector<std::string> texts;
  for (const auto& element : elements) {
    texts.push_back(element.name == "text" ? element.text : "");
  }
  for (const auto* text : {"0", "20", "100", "14:14:15.000", "14:14:16.500", "bar", "time (UTC+01:00)",
                           "Line 1", "A", "A Pressurelast 100 bar, 0 to 100"}) {
    EXPECT_THAT(texts, Contains(text));
  }
}

TEST(SvgChart, SeriesDifferByMoreThanColour) {
  const auto paths = of_class(drawn({series_of("A", {0, 1}), series_of("B", {1, 0})}), "series");
  ASSERT_THAT(paths, SizeIs(2));
  EXPECT_NE(paths[0].attributes.at("stroke"), paths[1].attributes.at("stroke"));
  EXPECT_FALSE(paths[0].attributes.contains("stroke-dasharray"));
  EXPECT_TRUE(paths[1].attributes.contains("stroke-dasharray"));
}

TEST(SvgChart, HasALightGroundAndNoScript) {
  const auto elements = drawn({series_of("A", {0, 1})});
  EXPECT_EQ(elements[0].name, "svg");
  for (const auto& element : elements) {
    EXPECT_NE(element.name, "script");
    for (const auto& [name, value] : element.attributes) {
      EXPECT_FALSE(name.starts_with("on")) << name;
      EXPECT_EQ(value.find("javascript"), std::string::npos);
    }
  }
  const auto ground =
      std::find_if(elements.begin(), elements.end(), [](const auto& e) { return e.name == "rect"; });
  ASSERT_NE(ground, elements.end());
  EXPECT_EQ(ground->attributes.at("fill"), "#ffffff");
}

TEST(SvgChart, IsWellFormedWhateverTheNames) {
  ChartOptions options;
  options.title = "<script>&\"'\x01\xFF";
  options.unit = "<°C>";
  const auto elements = drawn({series_of("a<b>&\"c\"\x02", {0, 1}), series_of("\xC4rger", {1, 2})}, options);
  EXPECT_EQ(elements[1].text, "<script>&\"'\xEF\xBF\xBD\xEF\xBF\xBD");
  const auto paths = of_class(elements, "series");
  EXPECT_EQ(paths[0].text, "a<b>&\"c\"\xEF\xBF\xBD");
  EXPECT_EQ(paths[1].text, "\xEF\xBF\xBDrger");
}

TEST(SvgChart, ManyPointsStaySmall) {
  std::vector<double> values(100'000);
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = static_cast<double>(i % 97);
  }
  const std::vector<Series> series{series_of("A", values)};
  const auto text = svg(Chart(series, {}));
  EXPECT_LT(text.size(), 100'000U);
  const auto paths = of_class(parse_xml(text), "series");
  const auto lines = lines_of(paths.at(0).attributes.at("d"));
  EXPECT_LE(lines.at(0).size(), 4U * 840);
}

TEST(SvgChart, StackedPanelsLieOneBelowTheOther) {
  ChartOptions options;
  options.stacked = true;
  const auto paths = of_class(drawn({series_of("A", {0, 100}), series_of("B", {0, 100})}, options), "series");
  ASSERT_THAT(paths, SizeIs(2));
  const auto upper = lines_of(paths[0].attributes.at("d"))[0];
  const auto lower = lines_of(paths[1].attributes.at("d"))[0];
  EXPECT_GT(lower[1].y, upper[0].y);
}

}  // namespace
}  // namespace ostravel::host::plot
