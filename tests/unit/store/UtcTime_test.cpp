#include "store/UtcTime.h"

#include <gtest/gtest.h>

namespace airsync {
namespace {

TEST(UtcTime, WritesIsoText) {
  const UtcTime time = {.year = 1815, .month = 12, .day = 10, .hour = 1, .minute = 2, .second = 3};
  EXPECT_EQ(time.text(), "1815-12-10T01:02:03Z");
}

TEST(UtcTime, ReadsIsoTextWithAndWithoutFractionAndBareDates) {
  const UtcTime time = {.year = 1815, .month = 12, .day = 10, .hour = 1, .minute = 2, .second = 3};
  EXPECT_EQ(UtcTime::parse("1815-12-10T01:02:03Z"), time);
  EXPECT_EQ(UtcTime::parse("1815-12-10T01:02:03.999Z"), time);
  EXPECT_EQ(UtcTime::parse("1815-12-10"), (UtcTime{.year = 1815, .month = 12, .day = 10}));
}

TEST(UtcTime, RefusesOtherTexts) {
  for (const char* text :
       {"", "1815", "1815-12", "1815-12-10T", "1815-12-10T01:02Z", "1815-12-10T01:02:03",
        "1815-12-10T01:02:03Zx", "x1815-12-10", "1815-12-10 01:02:03", "99999999999-01-01"}) {
    EXPECT_FALSE(UtcTime::parse(text)) << text;
  }
}

TEST(UtcTime, CountsMonthsFromOneAndYearsFromZero) {
  std::tm tm = {};
  tm.tm_year = 104;
  tm.tm_mon = 1;
  tm.tm_mday = 29;
  tm.tm_hour = 23;
  tm.tm_min = 58;
  tm.tm_sec = 59;
  EXPECT_EQ(UtcTime::fromTm(tm).text(), "2004-02-29T23:58:59Z");
  const std::tm back = UtcTime::fromTm(tm).tm();
  EXPECT_EQ(back.tm_year, 104);
  EXPECT_EQ(back.tm_mon, 1);
  EXPECT_EQ(back.tm_mday, 29);
  EXPECT_EQ(back.tm_hour, 23);
  EXPECT_EQ(back.tm_min, 58);
  EXPECT_EQ(back.tm_sec, 59);
}

TEST(UtcTime, KeepsNumbersThatAreNoDate) {
  const UtcTime odd = {.year = -5, .month = -99, .day = 2147483647, .hour = -1, .minute = 100, .second = 0};
  EXPECT_EQ(UtcTime::parse(odd.text()), odd);
}

TEST(UtcTime, DoesNotOverflowOnExtremeYears) {
  std::tm tm = {};
  tm.tm_year = 2147483647;
  tm.tm_mon = 2147483647;
  EXPECT_EQ(UtcTime::fromTm(tm).year, 2147483647);
  EXPECT_EQ((UtcTime{.year = -2147483648}.tm().tm_year), -2147483648);
}

TEST(UtcTime, TellsDatesFromOtherNumbers) {
  struct Row {
    const char* text;
    bool valid;
  };
  for (const Row& row :
       {Row{"2004-02-29", true}, Row{"2005-02-29", false}, Row{"1900-02-29", false}, Row{"2000-02-29", true},
        Row{"2004-04-31", false}, Row{"2004-13-01", false}, Row{"2004-00-01", false},
        Row{"2004-01-00", false}, Row{"2004-01-01T24:00:00Z", false}, Row{"2004-01-01T23:60:00Z", false},
        Row{"2004-12-31T23:59:60Z", true}, Row{"0000-01-01", true}, Row{"10000-01-01", false},
        Row{"-1-01-01", false}}) {
    ASSERT_TRUE(UtcTime::parse(row.text)) << row.text;
    EXPECT_EQ(UtcTime::parse(row.text)->valid(), row.valid) << row.text;
  }
}

}  // namespace
}  // namespace airsync
