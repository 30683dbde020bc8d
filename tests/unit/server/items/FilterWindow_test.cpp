#include <gtest/gtest.h>

#include "items/CalendarClass.h"
#include "items/ContactClass.h"
#include "items/MailClass.h"

namespace demoserver {
namespace {

// The start of the window as a text; "all" when there is none.
std::string start(const ItemClass& itemClass, int filter, const char* now) {
  const std::int64_t seconds = itemClass.windowStart(filter, *momentOf(now));
  return seconds == kNoWindow ? "all" : itemTime(Moment(std::chrono::seconds(seconds)));
}

TEST(DemoFilter, OfMailReachesBackOneDayToOneMonth) {
  const std::pair<int, const char*> table[] = {{0, "all"},
                                               {1, "2026-11-20T12:00:00Z"},
                                               {2, "2026-11-18T12:00:00Z"},
                                               {3, "2026-11-14T12:00:00Z"},
                                               {4, "2026-11-07T12:00:00Z"},
                                               {5, "2026-10-21T12:00:00Z"},
                                               {6, "all"},
                                               {-1, "all"}};
  for (const auto& [filter, expected] : table)
    EXPECT_EQ(start(MailClass(), filter, "2026-11-21T12:00:00Z"), expected) << filter;
}

TEST(DemoFilter, OfEventsReachesBackTwoWeeksToSixMonths) {
  const std::pair<int, const char*> table[] = {{0, "all"},
                                               {3, "all"},
                                               {4, "2026-11-07T12:00:00Z"},
                                               {5, "2026-10-21T12:00:00Z"},
                                               {6, "2026-08-21T12:00:00Z"},
                                               {7, "2026-05-21T12:00:00Z"},
                                               {8, "all"}};
  for (const auto& [filter, expected] : table)
    EXPECT_EQ(start(CalendarClass(), filter, "2026-11-21T12:00:00Z"), expected) << filter;
}

TEST(DemoFilter, MonthsEndWithTheirLastDay) {
  EXPECT_EQ(start(MailClass(), 5, "2024-03-31T01:02:03Z"), "2024-02-29T01:02:03Z");
  EXPECT_EQ(start(CalendarClass(), 6, "2027-01-31T00:00:00Z"), "2026-10-31T00:00:00Z");
}

TEST(DemoFilter, ContactsHaveNone) { EXPECT_EQ(start(ContactClass(), 1, "2026-11-21T12:00:00Z"), "all"); }

}  // namespace
}  // namespace demoserver
