// SPDX-License-Identifier: MIT
#include "host/watch/browser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/watch/samples.h"

namespace ostravel::host::watch {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::SizeIs;

// A browser over tags T0, T1 ... on a screen whose table has ten lines.
struct World {
  Model model;
  Browser browser{model, milliseconds(500)};

  explicit World(std::size_t tags = 100) : model(model_of_many(tags)) {
    browser.resize({14, 80});
    browser.update(kStart);
  }
  bool press(std::initializer_list<Key> keys, double second = 0) {
    bool going_on = true;
    for (const auto key : keys) {
      going_on = browser.press(key);
      browser.update(at(second));
    }
    return going_on;
  }
};

TEST(Areas, SmallScreensLeaveOutWhatIsLeastNeeded) {
  EXPECT_EQ(areas_of({24, 80}).body, 20U);
  EXPECT_EQ(areas_of({14, 80}).body, 10U);
  EXPECT_FALSE(areas_of({7, 80}).detail);
  EXPECT_EQ(areas_of({7, 80}).body, 4U);
  EXPECT_FALSE(areas_of({3, 80}).heading);
  EXPECT_FALSE(areas_of({2, 80}).keys);
  EXPECT_EQ(areas_of({2, 80}).body, 1U);
  EXPECT_EQ(areas_of({1, 80}).body, 0U);
  EXPECT_EQ(areas_of({0, 0}).body, 0U);
}

TEST(Browser, CursorMovesWithinTheScreenBeforeTheTableDoes) {
  World world;
  world.press({key::kDown, 'j', key::kDown});
  EXPECT_EQ(world.browser.cursor(), 3U);
  EXPECT_EQ(world.browser.top(), 0U);
  world.press({key::kUp, 'k', 'k', 'k', 'k'});
  EXPECT_EQ(world.browser.cursor(), 0U);
}

TEST(Browser, TableFollowsTheCursorOverTheEdge) {
  World world;
  for (int i = 0; i < 10; ++i) {
    world.press({key::kDown});
  }
  EXPECT_EQ(world.browser.cursor(), 10U);
  EXPECT_EQ(world.browser.top(), 1U);
}

TEST(Browser, PagesAreAsLongAsTheTable) {
  World world;
  world.press({key::kPageDown, ' '});
  EXPECT_EQ(world.browser.top(), 20U);
  EXPECT_EQ(world.browser.cursor(), 20U);
  world.press({key::kPageUp});
  EXPECT_EQ(world.browser.top(), 10U);
}

TEST(Browser, EndShowsTheLastFullPage) {
  World world;
  world.press({key::kEnd});
  EXPECT_EQ(world.browser.cursor(), 99U);
  EXPECT_EQ(world.browser.top(), 90U);
  world.press({key::kPageDown, key::kDown});
  EXPECT_EQ(world.browser.cursor(), 99U);
  world.press({'g'});
  EXPECT_EQ(world.browser.top(), 0U);
  EXPECT_EQ(world.browser.cursor(), 0U);
}

TEST(Browser, VisibleRowsAreThoseOnTheScreen) {
  World world(12);
  EXPECT_THAT(world.browser.visible(), SizeIs(10));
  world.press({key::kEnd});
  EXPECT_THAT(world.browser.visible(), ElementsAre(2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
  world.browser.resize({6, 80});
  EXPECT_THAT(world.browser.visible(), ElementsAre(9, 10, 11)) << "the cursor stays in sight";
  EXPECT_EQ(world.browser.current(), 11U);
}

TEST(Browser, FilterWorksWhileItIsTyped) {
  World world;
  world.press({'/', 't', '9'});
  EXPECT_TRUE(world.browser.typing_filter());
  EXPECT_THAT(world.browser.listing().rows(), SizeIs(11)) << "T9 and T90 to T99";
  world.press({'x'});
  EXPECT_THAT(world.browser.listing().rows(), SizeIs(0));
  EXPECT_EQ(world.browser.current(), std::nullopt);
  world.press({key::kBackspace, key::kEnter});
  EXPECT_FALSE(world.browser.typing_filter());
  EXPECT_EQ(world.browser.listing().filter(), "t9");
}

TEST(Browser, LettersOfCommandsCanBeTypedIntoAFilter) {
  World world;
  EXPECT_TRUE(world.press({'/', 'q', 'r'}));
  EXPECT_EQ(world.browser.listing().filter(), "qr");
}

TEST(Browser, EscapeTakesBackWhatWasTypedAndThenTheFilter) {
  World world;
  world.press({'/', 't', '9', key::kEnter, '/', '9', key::kEscape});
  EXPECT_EQ(world.browser.listing().filter(), "t9");
  world.press({'b', key::kEscape});
  EXPECT_EQ(world.browser.listing().filter(), "");
  EXPECT_FALSE(world.browser.listing().only_bad());
}

TEST(Browser, BackspaceTakesAWholeCharacter) {
  World world;
  world.press({'/', U'ü', U'日', U'😀', key::kBackspace, key::kBackspace});
  EXPECT_EQ(world.browser.listing().filter(), "ü");
  world.press({key::kBackspace, key::kBackspace});
  EXPECT_EQ(world.browser.listing().filter(), "");
}

TEST(Browser, CursorStaysOnItsTagWhenTheListChanges) {
  World world;
  world.press({'/', '5', '7', key::kEnter});
  EXPECT_EQ(world.browser.current(), 57U);
  world.press({key::kEscape});
  EXPECT_EQ(world.browser.current(), 57U);
  world.press({'r'});
  EXPECT_EQ(world.browser.current(), 57U);
  EXPECT_EQ(world.browser.cursor(), 42U);
}

TEST(Browser, CursorKeepsItsPlaceWhenValuesMoveTheRows) {
  World world(2);
  deliver(world.model, 0, 1);
  deliver(world.model, 1, 2);
  world.press({'>', '>', '>'});
  EXPECT_EQ(world.browser.listing().sort(), SortKey::Value);
  EXPECT_EQ(world.browser.current(), 0U);
  deliver(world.model, 0, 3);
  world.browser.update(at(5));
  EXPECT_EQ(world.browser.cursor(), 0U);
  EXPECT_EQ(world.browser.current(), 1U);
}

TEST(Browser, SortGoesThroughTheColumnsAndAround) {
  World world(1);
  world.press({'<'});
  EXPECT_EQ(world.browser.listing().sort(), SortKey::Rate);
  world.press({key::kRight, key::kRight});
  EXPECT_EQ(world.browser.listing().sort(), SortKey::Tag);
  world.press({key::kLeft});
  EXPECT_EQ(world.browser.listing().sort(), SortKey::Project);
}

TEST(Browser, PollTimeGoesThroughRoundNumbers) {
  World world(1);
  world.press({'+'});
  EXPECT_EQ(world.browser.interval(), milliseconds(1000));
  world.press({'-', '-'});
  EXPECT_EQ(world.browser.interval(), milliseconds(200));
  for (int i = 0; i < 20; ++i) {
    world.press({'-'});
  }
  EXPECT_EQ(world.browser.interval(), milliseconds(50));
  for (int i = 0; i < 20; ++i) {
    world.press({'+'});
  }
  EXPECT_EQ(world.browser.interval(), milliseconds(60'000));
}

TEST(Browser, PagesOverTheTableCloseWithAnyKey) {
  World world;
  world.press({'?'});
  EXPECT_EQ(world.browser.page(), Browser::Page::Help);
  EXPECT_TRUE(world.press({key::kDown}));
  EXPECT_EQ(world.browser.page(), Browser::Page::Table);
  EXPECT_EQ(world.browser.cursor(), 0U) << "the key did no more than that";
  world.press({key::kEnter});
  EXPECT_EQ(world.browser.page(), Browser::Page::Details);
}

TEST(Browser, NothingHasDetailsInAnEmptyTable) {
  World world(0);
  world.press({key::kDown, key::kEnd, key::kPageDown, key::kEnter});
  EXPECT_EQ(world.browser.page(), Browser::Page::Table);
}

TEST(Browser, QuitsFromTableAndPages) {
  World world;
  EXPECT_FALSE(world.press({'q'}));
  EXPECT_FALSE(world.press({'?', 'q'}));
}

}  // namespace
}  // namespace ostravel::host::watch
