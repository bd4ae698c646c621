// SPDX-License-Identifier: MIT
#include "host/record/timestamp.h"

#include <gtest/gtest.h>

namespace ostravel::host::record {
namespace {

Moment at(std::int64_t milliseconds) {
  return Moment(std::chrono::milliseconds(milliseconds));
}

TEST(Timestamp, IsIsoWithMillisecondsInUtc) {
  EXPECT_EQ(iso_text(at(0)), "1970-01-01T00:00:00.000Z");
  EXPECT_EQ(iso_text(at(1'709'644'455'500)), "2024-03-05T13:14:15.500Z");
  EXPECT_EQ(iso_text(at(-1)), "1969-12-31T23:59:59.999Z");
}

TEST(Timestamp, ReadsWhatItWrites) {
  for (const std::int64_t time : {0LL, 1'709'644'455'500LL, 951'782'399'999LL}) {
    EXPECT_EQ(parse_iso(iso_text(at(time))), at(time));
  }
}

TEST(Timestamp, ReadsOtherFormsOfTheSame) {
  const auto moment = at(1'709'644'455'500);
  EXPECT_EQ(parse_iso("2024-03-05 13:14:15.5"), moment);
  EXPECT_EQ(parse_iso("2024-03-05T14:14:15.5009+01:00"), moment);
  EXPECT_EQ(parse_iso("2024-03-05T11:44:15.500-0130"), moment);
  EXPECT_EQ(parse_iso("2024-03-05T13:14:15Z"), at(1'709'644'455'000));
}

TEST(Timestamp, RefusesWhatIsNone) {
  for (const auto* text : {"", "now", "2024-03-05", "2024-02-30T00:00:00Z", "2024-03-05T24:00:00Z",
                           "2024-03-05T13:14:15.5Zx", "2024-03-05T13:14:15+1", "2024-3-05T13:14:15Z"}) {
    EXPECT_FALSE(parse_iso(text)) << text;
  }
}

}  // namespace
}  // namespace ostravel::host::record
