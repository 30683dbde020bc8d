#include "support/Dates.h"

#include <gtest/gtest.h>

namespace demoserver {
namespace {

TEST(DemoDates, KeepsTheWireFormAndDropsMilliseconds) {
  EXPECT_EQ(normalisedDate("1970-01-01T00:00:00.000Z"), "1970-01-01T00:00:00.000Z");
  EXPECT_EQ(normalisedDate("2004-02-29T23:59:59.999Z"), "2004-02-29T23:59:59.000Z");
  EXPECT_EQ(normalisedDate("2004-02-29T23:59:59Z"), "2004-02-29T23:59:59.000Z");
}

TEST(DemoDates, RefusesWhatIsNoDate) {
  for (const char* text :
       {"", "1970-01-01", "1970-01-01T00:00:00.000", "1970-1-1T00:00:00.000Z", "2003-02-29T00:00:00.000Z",
        "1970-13-01T00:00:00.000Z", "1970-00-10T00:00:00.000Z", "1970-01-32T00:00:00.000Z",
        "1970-01-01T24:00:00.000Z", "1970-01-01T00:60:00.000Z", "1970-01-01T00:00:60.000Z",
        "1970-01-01T00:00:00.000Zx", "-970-01-01T00:00:00.000Z"})
    EXPECT_EQ(normalisedDate(text), "") << text;
}

TEST(DemoDates, ItemTimesHaveNoFraction) {
  EXPECT_EQ(itemTime("2004-02-29T23:59:59.999Z"), "2004-02-29T23:59:59Z");
  EXPECT_EQ(itemTime("2004-02-29T23:59:59Z"), "2004-02-29T23:59:59Z");
  EXPECT_EQ(itemTime("2004-02-30T23:59:59Z"), "");
}

TEST(DemoDates, CompactTimesHaveNoSeparators) {
  EXPECT_EQ(itemTimeOfCompact("20050307T093000Z"), "2005-03-07T09:30:00Z");
  EXPECT_EQ(compactTime("2005-03-07T09:30:00Z"), "20050307T093000Z");
  for (const char* text : {"", "20050307", "20050307T093000", "20050307T0930000Z", "20050230T093000Z",
                           "20050307T240000Z", "2005-03-07T09:30:00Z", "2005030 T093000Z"})
    EXPECT_EQ(itemTimeOfCompact(text), "") << text;
}

TEST(DemoDates, MomentsCountSecondsSince1970) {
  EXPECT_EQ(momentOf("1970-01-02T00:00:01Z")->time_since_epoch().count(), 86401);
  EXPECT_EQ(momentOf("1969-12-31T23:59:59Z")->time_since_epoch().count(), -1);
  EXPECT_EQ(itemTime(Moment(std::chrono::seconds(951'782'400))), "2000-02-29T00:00:00Z");
  EXPECT_EQ(itemTime(Moment(std::chrono::seconds(-1))), "1969-12-31T23:59:59Z");
}

}  // namespace
}  // namespace demoserver
