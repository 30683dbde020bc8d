// What a client may try to pass for an item: each gets an ItemError, which is status 6 of the command.
#include <gtest/gtest.h>

#include "items/CalendarClass.h"
#include "items/ItemFields.h"
#include "items/MailClass.h"
#include "support/Base64.h"
#include "support/Trees.h"

namespace demoserver {
namespace {

using nlohmann::json;

json event(const Element& data) { return CalendarClass().decode(data, json::object(), {}); }
json event(std::string_view tree) { return event(dataOfTree(Page::Calendar, tree)); }

Element exceptions(std::size_t count) {
  Element data(Page::Sync, "ApplicationData");
  Element& list = data.add(Element(Page::Calendar, "Exceptions"));
  for (std::size_t i = 0; i < count; ++i) list.add("Exception").add("ExceptionIsdeleted", "1");
  return data;
}

TEST(DemoHostileItem, OfWrongTypes) {
  for (const char* tree :
       {"ReminderMinsbefore\"soon\"", "ReminderMinsbefore\"1 \"", "ReminderMinsbefore\"2147483648\"",
        "ReminderMinsbefore\"+1\"", "Busystatus\"0x1\"", "Alldayevent\"true\"", "Sensitivity\"1.0\"",
        "Starttime\"2026-11-21T09:00:00Z\"", "Starttime\"20261321T090000Z\"", "Endtime\"now\"",
        "Dtstamp\"20261121T0900 0Z\"", "Recurrence(RecurrenceType\"0\" RecurrenceUntil\"never\")",
        "Recurrence(RecurrenceType\"daily\")", "Exceptions(Exception(Starttime\"x\"))"})
    EXPECT_THROW(event(tree), ItemError) << tree;
}

TEST(DemoHostileItem, WithTextsThatAreNone) {
  for (const char* tree :
       {"Subject\"a\xFF\"", "Subject\"\x01\"", "Categories(Category\"\xC0\x80\")",
        "Attendees(Attendee(AttendeeName\"\x02\"))", "Exceptions(Exception(Body\"\x03\"))"})
    EXPECT_THROW(event(tree), ItemError) << tree;
}

TEST(DemoHostileItem, WithBadTimeZones) {
  for (const std::string& zone :
       {std::string("AAAA"), std::string(232, '='), std::string(232, '*'), base64(std::string(171, 'x')),
        base64(std::string(173, 'x')), base64(std::string(172, 'x')) + "\n", std::string(4'000'000, 'A')})
    EXPECT_THROW(event("Timezone\"" + zone + "\""), ItemError) << zone.substr(0, 240);
}

TEST(DemoHostileItem, WithElementsWhereNoneBelong) {
  for (const char* tree :
       {"Subject(Subject\"x\")", "Subject\"x\"(Body\"y\")", "Exceptions(Subject\"x\")",
        "Attendees(Category\"x\")", "Categories(Category(Category\"x\"))", "Recurrence(Subject\"x\")",
        "Exceptions(Exception(Exceptions(Exception(Subject\"x\"))))", "Exceptions(Exception(Recurrence))",
        "Attendees(Attendee(Attendee(AttendeeName\"x\")))", "Category\"x\"", "RecurrenceType\"1\"",
        "Exception"})
    EXPECT_THROW(event(tree), ItemError) << tree;
}

TEST(DemoHostileItem, WithElementsOfOtherPages) {
  EXPECT_THROW(event(dataOfTree(Page::Contacts, "FirstName\"x\"")), ItemError);
  EXPECT_THROW(event(dataOfTree(Page::Mail, "Subject\"x\"")), ItemError);
  EXPECT_THROW(MailClass().decode(dataOfTree(Page::Calendar, "Subject\"x\""), {{"Read", true}}, {}),
               ItemError);
}

TEST(DemoHostileItem, WithTenThousandExceptions) {
  EXPECT_EQ(event(exceptions(kMaxEntries))["Exceptions"].size(), 1000u);
  EXPECT_THROW(event(exceptions(kMaxEntries + 1)), ItemError);
  EXPECT_THROW(event(exceptions(10'000)), ItemError);
  json many = json::array();
  for (int i = 0; i < 10'000; ++i) many.push_back({{"Deleted", true}});
  EXPECT_THROW(CalendarClass().check({{"Exceptions", many}}), ItemError);
}

TEST(DemoHostileItem, WithBodiesOfMegabytesIsTaken) {
  const std::string body(4'000'000, 'x');
  TransferOptions options;
  options.bodyLimit = 4096;
  const json record = event("Body\"" + body + "\"");
  EXPECT_EQ(record["Body"], body);
  const Element sent = CalendarClass().encode(record, options);
  EXPECT_EQ(sent.child(Page::Calendar, "Body")->text->size(), 4096u);
  EXPECT_EQ(CalendarClass().decode(sent, record, options)["Body"], body);
}

}  // namespace
}  // namespace demoserver
