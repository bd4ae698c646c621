// SPDX-License-Identifier: MIT
#include "host/watch/listing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/watch/samples.h"

namespace ostravel::host::watch {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::size_t> rows_of(Listing& listing, double second = 0) {
  listing.update(at(second));
  return listing.rows();
}

TEST(Listing, ShowsAllTagsInTheOrderOfTheProject) {
  const auto model = model_of({{"b", "INT"}, {"a", "INT"}, {"c", "INT"}});
  Listing listing(model);
  EXPECT_THAT(rows_of(listing), ElementsAre(0, 1, 2));
  listing.set_descending(true);
  EXPECT_THAT(rows_of(listing), ElementsAre(2, 1, 0));
}

TEST(Listing, FilterWantsEveryWordInAnyCase) {
  const auto model = model_of({{"Plant.Speed", "INT"}, {"Plant.Level", "INT"}, {"Line.Speed", "INT"}});
  Listing listing(model);
  listing.set_filter("SPEED plant");
  EXPECT_THAT(rows_of(listing), ElementsAre(0));
  listing.set_filter("speed !line");
  EXPECT_THAT(rows_of(listing), ElementsAre(0));
  listing.set_filter("!speed");
  EXPECT_THAT(rows_of(listing), ElementsAre(1));
  listing.set_filter("  ");
  EXPECT_THAT(rows_of(listing), ElementsAre(0, 1, 2));
}

TEST(Listing, ExclamationMarkAloneFiltersNothing) {
  const auto model = model_of({{"a", "INT"}});
  Listing listing(model);
  listing.set_filter("!");
  EXPECT_THAT(rows_of(listing), ElementsAre(0));
}

TEST(Listing, OnlyBadLeavesTagsWithoutAGoodValue) {
  auto model = model_of({{"a", "INT"}, {"b", "INT"}});
  deliver(model, 0, 1);
  Listing listing(model);
  listing.set_only_bad(true);
  EXPECT_THAT(rows_of(listing), ElementsAre(1));
}

TEST(Listing, SortsByNameAndType) {
  const auto model = model_of({{"b", "REAL"}, {"a", "INT"}, {"c", "INT"}});
  Listing listing(model);
  listing.set_sort(SortKey::Tag);
  EXPECT_THAT(rows_of(listing), ElementsAre(1, 0, 2));
  listing.set_sort(SortKey::Type);
  EXPECT_THAT(rows_of(listing), ElementsAre(1, 2, 0)) << "equal types stay in the project's order";
  listing.set_descending(true);
  EXPECT_THAT(rows_of(listing), ElementsAre(0, 1, 2));
}

TEST(Listing, SortsNumbersAsNumbersAndTextsBehindThem) {
  auto model = model_of({{"a", "STRING"}, {"b", "INT"}, {"c", "INT"}, {"d", "BOOL"}, {"e", "STRING"}});
  deliver(model, 0, "zz");
  deliver(model, 1, 10);
  deliver(model, 2, 9);
  deliver(model, 3, true);
  deliver(model, 4, "aa");
  Listing listing(model);
  listing.set_sort(SortKey::Value);
  EXPECT_THAT(rows_of(listing), ElementsAre(3, 2, 1, 4, 0));
}

TEST(Listing, SortsByQualityAgeAndRate) {
  auto model = model_of({{"a", "INT"}, {"b", "INT"}, {"c", "INT"}});
  deliver(model, 0, 1, 0);
  deliver(model, 1, 1, 0);
  deliver(model, 1, 2, 2);
  model.take({0, 2, 5, {}}, at(3));
  Listing listing(model);
  listing.set_sort(SortKey::Quality);
  EXPECT_THAT(rows_of(listing, 4), ElementsAre(1, 0, 2));
  listing.set_sort(SortKey::Age);
  EXPECT_THAT(rows_of(listing, 4), ElementsAre(1, 0, 2)) << "what never came is the oldest";
  listing.set_sort(SortKey::Rate);
  listing.set_descending(true);
  EXPECT_THAT(rows_of(listing, 4), ElementsAre(1, 0, 2));
}

TEST(Listing, ValuesMoveRowsOnceASecondAtMost) {
  auto model = model_of({{"a", "INT"}, {"b", "INT"}});
  deliver(model, 0, 1);
  deliver(model, 1, 2);
  Listing listing(model);
  listing.set_sort(SortKey::Value);
  EXPECT_THAT(rows_of(listing, 0), ElementsAre(0, 1));
  deliver(model, 0, 3);
  EXPECT_THAT(rows_of(listing, 0.9), ElementsAre(0, 1));
  EXPECT_THAT(rows_of(listing, 1), ElementsAre(1, 0));
}

TEST(Listing, ChoiceTakesEffectAtOnce) {
  auto model = model_of({{"a", "INT"}, {"b", "INT"}});
  deliver(model, 0, 2);
  deliver(model, 1, 1);
  Listing listing(model);
  rows_of(listing, 0);
  listing.set_sort(SortKey::Value);
  EXPECT_THAT(rows_of(listing, 0), ElementsAre(1, 0));
}

TEST(Listing, TellsWhereARowIs) {
  const auto model = model_of({{"a", "INT"}, {"b", "INT"}});
  Listing listing(model);
  listing.set_filter("b");
  rows_of(listing);
  EXPECT_EQ(listing.place_of(1), 0U);
  EXPECT_EQ(listing.place_of(0), std::nullopt);
  listing.set_filter("none");
  EXPECT_THAT(rows_of(listing), IsEmpty());
}

}  // namespace
}  // namespace ostravel::host::watch
