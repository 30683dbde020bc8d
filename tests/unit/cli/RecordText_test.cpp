#include "cli/output/RecordText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace airsync {
namespace {

using testing::ElementsAre;
using Json = nlohmann::ordered_json;

TEST(RecordText, WritesOneLinePerField) {
  EXPECT_THAT(recordLines(Json::parse(R"({"Subject":"Lunch","Reminder":15,"AllDayEvent":false,)"
                                      R"("Categories":["a","b"],"Timezone":"AAAA"})")),
              ElementsAre("Subject: Lunch", "Reminder: 15", "AllDayEvent: false", "Categories: a, b",
                          "Timezone: (a time zone)"));
}

TEST(RecordText, IndentsFurtherLinesOfATextAndMakesThemDisplayable) {
  EXPECT_THAT(recordLines({{"Body", "one\r\ntwo\x1b[2J\n\nthree"}}),
              ElementsAre("Body: one", "    two\\x1b[2J", "    ", "    three"));
}

TEST(RecordText, GivesAnEmptyTextItsLine) {
  EXPECT_THAT(recordLines({{"Subject", ""}, {"Importance", 1}}), ElementsAre("Subject: ", "Importance: 1"));
}

TEST(RecordText, WritesPeopleWithTheirAddresses) {
  EXPECT_THAT(
      recordLines(Json::parse(R"({"Attendees":[{"Name":"Ann","Email":"a@b"},{"Name":"Bo","Email":""},)"
                              R"({"Name":"","Email":"c@d"}]})")),
      ElementsAre("Attendees: Ann <a@b>, Bo, c@d"));
}

TEST(RecordText, IndentsTheFieldsOfParts) {
  const auto record =
      Json::parse(R"({"Recurrence":{"Type":1,"Interval":2},"Exceptions":[{"Deleted":true},{"Body":"x\ny"}],)"
                  R"("MeetingRequest":{"Location":"here","Recurrence":{"Type":4}}})");
  EXPECT_THAT(recordLines(record),
              ElementsAre("Recurrence:", "    Type: 1 (weekly)", "    Interval: 2",
                          "Exception 1:", "    Deleted: true", "Exception 2:", "    Body: x", "        y",
                          "MeetingRequest:", "    Location: here", "    Recurrence:", "        Type: 4"));
}

TEST(RecordText, NumbersAttachmentsFromOne) {
  EXPECT_THAT(recordLines(Json::parse(R"({"Attachments":[{"DisplayName":"a"},{"DisplayName":"b"}]})")),
              ElementsAre("Attachment 1:", "    DisplayName: a", "Attachment 2:", "    DisplayName: b"));
}

}  // namespace
}  // namespace airsync
