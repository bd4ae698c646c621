// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>

#include "host/watch/picture/svg.h"

namespace ostravel::host::picture {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string picture_of(std::string_view bytes) {
  Terminal terminal(2, 20);
  terminal.write(bytes);
  return svg_of(terminal, "a <title> & more");
}

// Names of the elements that are open at the end; what does not fit together is left as "!".
std::string unbalanced(const std::string& svg) {
  std::vector<std::string> open;
  const std::regex tag("<(/?)([a-z]+)[^<>]*?(/?)>");
  for (std::sregex_iterator i(svg.begin(), svg.end(), tag), end; i != end; ++i) {
    if ((*i)[1].length() == 0 && (*i)[3].length() == 0) {
      open.push_back((*i)[2]);
    } else if ((*i)[1].length() > 0) {
      if (open.empty() || open.back() != (*i)[2]) {
        return "!";
      }
      open.pop_back();
    }
  }
  return open.empty() ? "" : open.back();
}

TEST(Svg, IsWellFormedWhateverTheScreenShows) {
  const auto svg = picture_of("a<b> & \"c\" \033[7mx\033[0m▁█");
  EXPECT_EQ(unbalanced(svg), "");
  EXPECT_THAT(svg, HasSubstr("a&lt;b&gt;</text>"));
  EXPECT_THAT(svg, HasSubstr(">&amp;</text>"));
  EXPECT_THAT(svg, HasSubstr("<title>a &lt;title&gt; &amp; more</title>"));
}

TEST(Svg, WordsStandWhereTheyAreOnTheScreen) {
  const auto svg = picture_of("one  two");
  EXPECT_THAT(svg, HasSubstr("<text x=\"14.0\" y=\"47.5\" textLength=\"25.2\" fill=\"#1f2328\">one</text>"));
  EXPECT_THAT(svg, HasSubstr("<text x=\"56.0\" y=\"47.5\" textLength=\"25.2\" fill=\"#1f2328\">two</text>"));
}

TEST(Svg, ColoursReverseAndBoldAreKept) {
  EXPECT_THAT(picture_of("\033[32mok"), HasSubstr("fill=\"#116329\">ok"));
  EXPECT_THAT(picture_of("\033[1mok"), HasSubstr("font-weight=\"bold\">ok"));
  const auto reverse = picture_of("\033[7mok");
  EXPECT_THAT(reverse,
              HasSubstr("<rect x=\"14.0\" y=\"34.00\" width=\"16.8\" height=\"18.00\" fill=\"#1f2328\"/>"));
  EXPECT_THAT(reverse, HasSubstr("fill=\"#ffffff\">ok"));
}

TEST(Svg, BlocksAreDrawnSoThatNoFontMatters) {
  const auto svg = picture_of("▁█");
  EXPECT_THAT(svg, Not(HasSubstr("▁")));
  EXPECT_THAT(svg, HasSubstr("height=\"1.80\" fill=\"#1f2328\""));
  EXPECT_THAT(svg, HasSubstr("height=\"14.40\" fill=\"#1f2328\""));
}

TEST(Svg, PictureInTheDocumentsIsOne) {
  std::ifstream in(WATCH_PICTURE_PATH, std::ios::binary);
  const std::string svg{std::istreambuf_iterator<char>(in), {}};
  EXPECT_EQ(unbalanced(svg), "");
  for (const auto* text :
       {">Plant.Live.Position</text>", ">QUALITY</text>", ">online</text>", ">help</text>"}) {
    EXPECT_THAT(svg, HasSubstr(text));
  }
}

TEST(Svg, SameScreenIsTheSamePicture) {
  EXPECT_EQ(picture_of("abc"), picture_of("abc"));
}

}  // namespace
}  // namespace ostravel::host::picture
