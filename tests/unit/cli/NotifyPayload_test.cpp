#include "cli/NotifyPayload.h"

#include <gtest/gtest.h>

#include "unit/cli/Support.h"

namespace airsync {
namespace {

constexpr char kGuid[] = "{01234567-89ab-cdef-0123-456789abcdef}";

TEST(NotificationGuid, TakesCapitalsAndMissingBraces) {
  EXPECT_STREQ(notificationGuid(kGuid).text, kGuid);
  EXPECT_STREQ(notificationGuid("01234567-89AB-CDEF-0123-456789ABCDEF").text, kGuid);
  EXPECT_STREQ(notificationGuid("{01234567-89AB-CDEF-0123-456789ABCDEF}").text, kGuid);
}

TEST(NotificationGuid, RefusesEverythingElse) {
  for (const char* text : {"", "{}", "01234567-89ab-cdef-0123-456789abcde",
                           "01234567-89ab-cdef-0123-456789abcdef0", "g1234567-89ab-cdef-0123-456789abcdef",
                           "0123456789ab-cdef-0123-456789abcdef-", "{01234567-89ab-cdef-0123-456789abcdef"}) {
    EXPECT_EQ(test::errorOf([&] { notificationGuid(text); }),
              "1 \"" + std::string(text) + "\" is no identifier of a set-up");
  }
}

TEST(NotificationPayload, LosesItsWhiteSpace) {
  EXPECT_EQ(notificationPayload(" QUJD\r\nREVG\n"), "QUJDREVG");
  EXPECT_EQ(notificationPayload(""), "");
}

TEST(NotificationPayload, HasAtMost64Kilobytes) {
  EXPECT_EQ(notificationPayload(std::string(65'536, 'A')).size(), 65'536U);
  EXPECT_EQ(test::errorOf([] { notificationPayload(std::string(65'537, 'A')); }),
            "1 the notification is longer than 64 KiB");
}

}  // namespace
}  // namespace airsync
