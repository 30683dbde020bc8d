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

}  // namespace
}  // namespace demoserver
