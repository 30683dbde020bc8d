#include "items/MailClass.h"

#include <gtest/gtest.h>
#include <set>

#include "items/MailFields.h"
#include "support/Base64.h"
#include "support/Bytes.h"
#include "support/Trees.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

using nlohmann::json;

const MailClass kMails;
const std::string kZone = base64(std::string(172, '\x02'));

json decoded(std::string_view tree, const json& previous) {
  return kMails.decode(dataOfTree(Page::Mail, tree), previous, {});
}

// A record with every field, and the same mail as it travels.
json everything() {
  return {{"Body", "Hëllo"},
          {"To", "\"Ann\" <ann@example.org>"},
          {"Cc", "bob@example.org"},
          {"From", "carl@example.org"},
          {"ReplyTo", "office@example.org"},
          {"DateReceived", "2026-11-20T23:59:59Z"},
          {"Subject", "Re: Lunch"},
          {"DisplayTo", "Ann"},
          {"Importance", 2},
          {"Read", true},
          {"MessageClass", "IPM.Schedule.Meeting.Request"},
          {"Attachments",
           {{{"Name", "a b.txt"}, {"Size", 12}, {"OID", "f2:1/0"}, {"Method", 1}, {"DisplayName", "a b"}},
            {{"Size", 0}}}},
          {"MeetingRequest",
           {{"Timezone", kZone},
            {"StartTime", "2026-12-01T09:00:00Z"},
            {"EndTime", "2026-12-01T10:00:00Z"},
            {"DtStamp", "2026-11-20T23:00:00Z"},
            {"Location", "Room 1"},
            {"Reminder", 15},
            {"AllDayEvent", false},
            {"BusyStatus", 2},
            {"Sensitivity", 1},
            {"Categories", {"Work"}},
            {"Recurrence",
             {{"Type", 3},
              {"Interval", 1},
              {"Occurrences", 10},
              {"DayOfWeek", 4},
              {"DayOfMonth", 31},
              {"WeekOfMonth", 5},
              {"MonthOfYear", 12},
              {"Until", "2027-12-01T09:00:00Z"}}},
            {"InstanceType", 1},
            {"Organizer", "Carl"},
            {"RecurrenceId", "2026-12-08T09:00:00Z"},
            {"ResponseRequested", 1},
            {"GlobalObjId", "BAAAAIIA4AB0xbcQ"}}},
          {"ThreadTopic", "Lunch"}};
}

constexpr char kMeetingAsSent[] =
    "\" StartTime\"2026-12-01T09:00:00.000Z\" EndTime\"2026-12-01T10:00:00.000Z\" "
    "DtStamp\"2026-11-20T23:00:00.000Z\" Location\"Room 1\" Reminder\"15\" AllDayEvent\"0\" "
    "IntdBusyStatus\"2\" Sensitivity\"1\" Categories(Category\"Work\") "
    "Recurrence(RecurrenceType\"3\" RecurrenceInterval\"1\" RecurrenceOccurrences\"10\" DayOfWeek\"4\" "
    "DayOfMonth\"31\" WeekOfMonth\"5\" MonthOfYear\"12\" RecurrenceUntil\"20271201T090000Z\") "
    "InstanceType\"1\" Organizer\"Carl\" RecurrenceID\"2026-12-08T09:00:00.000Z\" ResponseRequested\"1\" "
    "GlobalObjID\"BAAAAIIA4AB0xbcQ\"";

TEST(DemoMail, IsWrittenWithEveryFieldUnderItsTag) {
  json record = everything();
  record["To"] = "Ann <ann@example.org>";
  EXPECT_EQ(textOfTree(kMails.encode(record, {})),
            "Body\"Hëllo\" BodySize\"6\" BodyTruncated\"0\" To\"Ann <ann@example.org>\" "
            "Cc\"bob@example.org\" From\"carl@example.org\" Replyto\"office@example.org\" "
            "DateReceived\"2026-11-20T23:59:59.000Z\" Subject\"Re: Lunch\" DisplayTo\"Ann\" "
            "Importance\"2\" Read\"1\" MessageClass\"IPM.Schedule.Meeting.Request\" "
            "Attachments(Attachment(AttName\"a b.txt\" AttSize\"12\" AttOID\"f2:1/0\" AttMethod\"1\" "
            "DisplayName\"a b\") Attachment(AttSize\"0\")) "
            "MeetingRequest(Timezone\"" +
                kZone + kMeetingAsSent + ") ThreadTopic\"Lunch\"");
}

TEST(DemoMail, IsWrittenOnTheMailPage) {
  EXPECT_EQ(hexOf(encode(kMails.encode({{"Subject", "A"}, {"Importance", 1}, {"Read", false}}, {}))),
            "03 01 6A 00 5D 00 02 54 03 41 00 01 52 03 31 00 01 55 03 30 00 01 01");
}

TEST(DemoMail, IsStoredAndShownAsItWasChecked) {
  EXPECT_EQ(kMails.check(everything()), everything());
  json shown = everything();
  shown["BodySize"] = 6;
  shown["BodyTruncated"] = false;
  EXPECT_EQ(kMails.view(everything()), shown);
  EXPECT_EQ(kMails.check(shown), everything());
}

TEST(DemoMail, AlwaysHasAnImportanceAndARead) {
  EXPECT_EQ(kMails.check(json::object()), json({{"Importance", 1}, {"Read", false}}));
}

TEST(DemoMail, HasATagOfThePageForEveryFieldOfItsTables) {
  const auto check = [](std::span<const ItemField> fields) {
    std::set<std::string_view> names;
    for (const ItemField& field : fields) {
      EXPECT_NE(tokenOf(Page::Mail, field.tag), 0) << field.tag;
      EXPECT_TRUE(names.insert(field.name).second) << field.name;
      EXPECT_EQ(field.entryTag.empty(), tokenOf(Page::Mail, field.entryTag) == 0) << field.entryTag;
    }
  };
  check(kMailFields);
  check(kAttachmentFields);
  check(kMeetingRequestFields);
  check(kMeetingRecurrenceFields);
}

TEST(DemoMail, SendsTheHeadOfALongBodyAndItsWholeSize) {
  TransferOptions options;
  options.bodyLimit = 4;
  EXPECT_EQ(textOfTree(kMails.encode({{"Body", "abc€d"}}, options)),
            "Body\"abc\" BodySize\"7\" BodyTruncated\"1\"");
  options.bodyLimit = 0;
  EXPECT_EQ(textOfTree(kMails.encode({{"Body", "abc"}}, options)), "Body BodySize\"3\" BodyTruncated\"1\"");
}

TEST(DemoMail, AChangeByAClientChangesReadAlone) {
  const json previous = everything();
  json expected = previous;
  expected["Read"] = false;
  EXPECT_EQ(decoded("Read\"0\"", previous), expected);
  EXPECT_EQ(decoded("Read\"1\"", expected), previous);
}

TEST(DemoMail, NothingElseMayBeChangedOrAddedByAClient) {
  EXPECT_THROW(decoded("Subject\"x\"", everything()), ItemError);
  EXPECT_THROW(decoded("Read\"1\" Subject\"x\"", everything()), ItemError);
  EXPECT_THROW(decoded("Read", everything()), ItemError);
  EXPECT_THROW(decoded("Read\"yes\"", everything()), ItemError);
  EXPECT_THROW(decoded("", everything()), ItemError);
  EXPECT_THROW(decoded("Read\"1\"", json::object()), ItemError);
  EXPECT_FALSE(kMails.takesAdds());
}

TEST(DemoMail, ItsStateIsReadAlone) { EXPECT_EQ(textOfTree(*kMails.encodeState(everything())), "Read\"1\""); }

TEST(DemoMail, RefusesWhatIsNoMail) {
  for (const json& bad :
       {json(1), json({{"Location", "x"}}), json({{"Read", 1}}), json({{"Importance", "high"}}),
        json({{"DateReceived", "20261121T090000Z"}}), json({{"Attachments", {{{"Size", "1"}}}}}),
        json({{"MeetingRequest", {{"Recurrence", {{"Type", 4}}}}}}),
        json({{"MeetingRequest", {{"Recurrence", {{"Interval", 1}}}}}}),
        json({{"MeetingRequest", {{"Timezone", "x"}}}})})
    EXPECT_THROW(kMails.check(bad), ItemError) << bad;
}

}  // namespace
}  // namespace demoserver
