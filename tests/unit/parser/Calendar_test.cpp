// Events from the server: fields, times, time zone and attendees. Recurrences and exceptions have a file of
// their own.
#include "ItemRig.h"

namespace airsync_test {
namespace {

class ParserCalendar : public ItemRig {
 protected:
  ParserCalendar() : ItemRig(DATATYPE_CALENDAR, "Calendar") {}

  // What is there of every event.
  static ItemFields Event(ItemFields fields) {
    fields["ExceptionCount"] = "0";
    return fields;
  }

  std::string Zone(const std::string& text) { return DecodedField({{"Timezone", text}}, "Timezone"); }

  static Node Attendee(const std::string& name, const std::string& email) {
    return {"Attendee", Nodes{{"AttendeeEmail", email}, {"AttendeeName", name}}};
  }
  std::string Attendees(const Nodes& children) {
    return DecodedField({{"Attendees", children}}, "Attendees");
  }
};

TEST_F(ParserCalendar, HasAllFieldsWhicheverCommandBringsIt) {
  const Lines golden = {"add", "change", "fetch"};
  const Lines calls = {"AddServerItem 42 id=2:1", "ChangeServerItem 42 id=2:1",
                       "FetchedItem 42 id=2:1 result=0x00000000"};
  for (std::size_t i = 0; i < golden.size(); ++i) {
    store.ClearCalls();
    EXPECT_EQ(SyncGolden("sync-answer-event-all-fields-" + golden[i]), 0U);
    ASSERT_EQ(store.Lines(), (Lines{calls[i], "StoreSyncKey 42 key={7}13"}));
    EXPECT_EQ(store.Calls()[0].event, FullEventFields());
  }
}

TEST_F(ParserCalendar, IsHandedOutAlsoWhenTheServerRefusedToFetchIt) {
  const Node fetch = {"Fetch",
                      Nodes{{"Status", "6"}, {"ServerId", "1"}, {"ApplicationData", Nodes{{"Uid", "u"}}}}};
  EXPECT_EQ(Sync(AnswerOf({Responses({fetch})})), 0U);
  EXPECT_EQ(store.Lines()[0], "FetchedItem 42 id=1 result=0x80010006");
  EXPECT_EQ(store.Calls()[0].event, Event({{"UID", "u"}}));
}

TEST_F(ParserCalendar, IsNullInEachFieldThatDidNotCome) {
  EXPECT_EQ(Decoded({}), Event({}));
  EXPECT_EQ(Decoded({{"StartTime", "20050314T093000Z"}, {"BodySize", "5"}, {"UID", "u"}, {"Unheard", "x"}}),
            Event({}))
      << "other spellings, and a size that events do not have";
}

const FieldRow kRows[] = {
    {"Body", "x", "Body", "x"},
    {"BodyTruncated", "1", "BodyTruncated", "1"},
    {"Starttime", "20050314T093000Z", "StartTime", "2005-03-14 09:30:00"},
    {"Endtime", "20050314T093000Z", "EndTime", "2005-03-14 09:30:00"},
    {"Dtstamp", "20050314T093000Z", "DtStamp", "2005-03-14 09:30:00"},
    {"Location", "x", "Location", "x"},
    {"ReminderMinsbefore", "15", "Reminder", "15"},
    {"Alldayevent", "1", "AllDayEvent", "1"},
    {"Busystatus", "2", "BusyStatus", "2"},
    {"Sensitivity", "3", "Sensitivity", "3"},
    {"OrganizerName", "x", "OrganizerName", "x"},
    {"OrganizerEmail", "x", "OrganizerEmail", "x"},
    {"Subject", "x", "Subject", "x"},
    {"Uid", "x", "UID", "x"},
    {"Meetingstatus", "7", "MeetingStatus", "7"},
};

TEST_F(ParserCalendar, ReadsEachFieldUnderItsOwnTag) {
  for (const FieldRow& row : kRows) {
    EXPECT_EQ(Decoded({{row.tag, row.text}}), Event({{row.name, row.value}})) << row.tag;
  }
}

TEST_F(ParserCalendar, HasNoFieldForAnElementWithoutText) {
  Nodes elements = {{"Timezone"}, {"Categories"}, {"Attendees"}};
  for (const FieldRow& row : kRows) elements.push_back({row.tag});
  EXPECT_EQ(Decoded(elements), Event({}));
}

TEST_F(ParserCalendar, KeepsTheEmptyTextAndScansNone) {
  for (const FieldRow& row : kRows) {
    const bool isText = std::string(row.value) == "x";
    EXPECT_EQ(Decoded({{row.tag, ""}}), isText ? Event({{row.name, ""}}) : Event({})) << row.tag;
  }
  EXPECT_EQ(Zone(""), "(null)");
}

TEST_F(ParserCalendar, ReadsNumbersUpToTheFirstSignThatIsNone) {
  const char* const rows[][2] = {{"0", "0"},    {"-15", "-15"}, {"+7", "7"},  {" 12ab", "12"},
                                 {"many", "0"}, {"0x10", "0"},  {"1.5", "1"}, {"-2147483648", "-2147483648"}};
  for (const auto& row : rows)
    EXPECT_EQ(DecodedField({{"Busystatus", row[0]}}, "BusyStatus"), row[1]) << row[0];
}

TEST_F(ParserCalendar, ReadsAFlagAsOneOrZero) {
  const char* const rows[][2] = {{"0", "0"},   {"1", "1"},  {"2", "1"},
                                 {"256", "1"}, {"-1", "1"}, {"true", "0"}};
  for (const auto& row : rows)
    EXPECT_EQ(DecodedField({{"Alldayevent", row[0]}}, "AllDayEvent"), row[1]) << row[0];
}

// Times.

TEST_F(ParserCalendar, ReadsACompactTimeWithoutAdjustingIt) {
  Look<AS_CALENDAR_T>([](const AS_CALENDAR_T& event) {
    ASSERT_NE(event.StartTime, nullptr);
    EXPECT_EQ(event.StartTime->tm_year, 105);
    EXPECT_EQ(event.StartTime->tm_mon, 2);
    EXPECT_EQ(event.StartTime->tm_mday, 14);
    EXPECT_EQ(event.StartTime->tm_hour, 9);
    EXPECT_EQ(event.StartTime->tm_min, 30);
    EXPECT_EQ(event.StartTime->tm_sec, 0);
  });
  EXPECT_EQ(DecodedField({{"Starttime", "20050314T093000Z"}}, "StartTime"), "2005-03-14 09:30:00");
}

TEST_F(ParserCalendar, CarriesNothingAndReadsNoFraction) {
  EXPECT_EQ(DecodedField({{"Starttime", "20041231T235960Z"}}, "StartTime"), "2004-12-31 23:59:60");
  EXPECT_EQ(DecodedField({{"Starttime", "20041231T235959.500Z"}}, "StartTime"), "2004-12-31 23:59:59");
}

TEST_F(ParserCalendar, ReadsTimesInTheOrderStampEndStartWhateverTheDocuments) {
  EXPECT_EQ(Decoded({{"Starttime", "unknown"}, {"Endtime", "20060202"}, {"Dtstamp", "20050101T010203Z"}}),
            Event({{"DtStamp", "2005-01-01 01:02:03"},
                   {"EndTime", "2006-02-02 01:02:03"},
                   {"StartTime", "2006-02-02 01:02:03"}}));
  EXPECT_EQ(Decoded({{"Starttime", "20050101T010203Z"}, {"Endtime", "unknown"}, {"Dtstamp", "2006"}}),
            Event({{"DtStamp", "2006-00-00 00:00:00"},
                   {"EndTime", "2006-00-00 00:00:00"},
                   {"StartTime", "2005-01-01 01:02:03"}}));
}

TEST_F(ParserCalendar, KeepsThePartsOfTheTimeBeforeInRulesAndExceptions) {
  const Node exception = {
      "Exception",
      Nodes{{"Endtime", "x"}, {"Starttime", "2009"}, {"ExceptionStarttime", "200807"}, {"Dtstamp", "x"}}};
  EXPECT_EQ(Decoded({{"Recurrence", Nodes{{"RecurrenceUntil", "2007"}}},
                     {"Starttime", "20050314T093011Z"},
                     {"Dtstamp", "20040101T000000Z"},
                     {"Endtime", "20040101T000000Z"},
                     {"Exceptions", Nodes{exception, {"Exception", Nodes{{"Dtstamp", "x"}}}}}}),
            (ItemFields{{"DtStamp", "2004-01-01 00:00:00"},
                        {"EndTime", "2004-01-01 00:00:00"},
                        {"StartTime", "2005-03-14 09:30:11"},
                        {"Recurrence.Type", "0"},
                        {"Recurrence.Until", "2007-03-14 09:30:11"},
                        {"Exceptions", ""},
                        {"ExceptionCount", "2"},
                        {"Exceptions[0].DtStamp", "2007-03-14 09:30:11"},
                        {"Exceptions[0].ExceptionStartTime", "2008-07-14 09:30:11"},
                        {"Exceptions[0].StartTime", "2009-07-14 09:30:11"},
                        {"Exceptions[0].EndTime", "2009-07-14 09:30:11"},
                        {"Exceptions[1].DtStamp", "2009-07-14 09:30:11"}}));
}

TEST_F(ParserCalendar, InheritsNoPartsFromThePreviousEvent) {
  EXPECT_EQ(SyncTree(TreeOf({{{"Starttime", "20050314T093000Z"}}, {{"Starttime", "x"}}})), 0U);
  EXPECT_EQ(store.Calls().at(1).event, Event({{"StartTime", "0000-00-00 00:00:00"}}));
}

// The time zone.

TEST_F(ParserCalendar, HasTheZonesBytes) { EXPECT_EQ(Zone(ZoneInBase64()), ZoneInHex()); }

TEST_F(ParserCalendar, CompletesAShortZoneWithZeros) {
  EXPECT_EQ(Zone("AQID"), "010203" + std::string(169 * 2, '0'));
  EXPECT_EQ(Zone("/w=="), "FF" + std::string(171 * 2, '0'));
  EXPECT_EQ(Zone("/w==////"), "FF" + std::string(171 * 2, '0')) << "padding ends it";
  EXPECT_EQ(Zone(ZoneInBase64().substr(0, 228)), ZoneInHex().substr(0, 171 * 2) + "00");
}

TEST_F(ParserCalendar, CutsALongZone) {
  EXPECT_EQ(Zone(std::string(232, '/')), std::string(172 * 2, 'F'));
  EXPECT_EQ(Zone(std::string(236, '/')), std::string(172 * 2, 'F'));
  EXPECT_EQ(Zone(std::string(60000, '/')), std::string(172 * 2, 'F'));
}

TEST_F(ParserCalendar, EndsTheExchangeForAZoneThatIsNoBase64) {
  for (const std::string& text :
       {std::string("AQI"), std::string("AQ*D"), std::string("AQID AQI"), std::string(1, ' '),
        ZoneInBase64() + "A", std::string(231, '/') + "\xFF"}) {
    store.ClearCalls();
    EXPECT_EQ(SyncTree(TreeOf({{{"Subject", "x"}, {"Timezone", text}}})), 0x80000001U) << text;
    EXPECT_TRUE(store.Calls().empty()) << "neither the item nor the key";
  }
}

TEST_F(ParserCalendar, KeepsWhatItStoredBeforeABadZone) {
  EXPECT_EQ(SyncTree(TreeOf({{{"Subject", "first"}}, {{"Timezone", "bad"}}, {{"Subject", "third"}}})),
            0x80000001U);
  EXPECT_EQ(store.Lines(), Lines{"AddServerItem 42 id=1"});
}

// Lists.

TEST_F(ParserCalendar, PacksCategoriesWithoutTheEmptyOnes) {
  const auto categories = [this](const Lines& entries) {
    return DecodedField({List("Categories", "Category", entries)}, "Categories");
  };
  EXPECT_EQ(categories({"A", "", "B"}), "A@@B");
  EXPECT_EQ(categories({"", "A"}), "A");
  EXPECT_EQ(categories({"", ""}), "(null)");
  EXPECT_EQ(categories({}), "(null)");
  EXPECT_EQ(
      DecodedField({{"Categories", Nodes{{"Category"}, {"Other", "x"}, {"Category", "A"}}}}, "Categories"),
      "A");
}

TEST_F(ParserCalendar, JoinsAttendeesByNameAndAddress) {
  EXPECT_EQ(Attendees({Attendee("Ann", "ann@x")}), "Ann##ann@x");
  EXPECT_EQ(Attendees({Attendee("Ann", "ann@x"), Attendee("Bob", "bob@y"), Attendee("C", "c")}),
            "Ann##ann@x@@Bob##bob@y@@C##c");
}

TEST_F(ParserCalendar, LeavesOutAttendeesThatLackOneOfTheTwo) {
  EXPECT_EQ(Attendees({Attendee("Ann", ""), Attendee("", "bob@y"), Attendee("C", "c"), Attendee("", "")}),
            "C##c");
  EXPECT_EQ(Attendees({{"Attendee", Nodes{{"AttendeeName", "Ann"}}},
                       {"Attendee", Nodes{{"AttendeeEmail", "ann@x"}}},
                       {"Attendee", Nodes{{"AttendeeName", "Ann"}, {"AttendeeEmail"}}},
                       {"Attendee", Nodes{{"AttendeeName"}, {"AttendeeEmail", "ann@x"}}},
                       {"Attendee"}}),
            "(null)");
  EXPECT_EQ(Attendees({}), "(null)");
}

TEST_F(ParserCalendar, TakesAttendeesOfThatNameOnlyAndTheirPartsFromAnyDepth) {
  const Node deep = {"Attendee", Nodes{{"x", Nodes{{"AttendeeName", "Ann"}}}, {"AttendeeEmail", "ann@x"}}};
  EXPECT_EQ(Attendees({{"Other", Nodes{{"AttendeeName", "No"}, {"AttendeeEmail", "no@x"}}}, deep}),
            "Ann##ann@x");
}

// Memory.

TEST_F(ParserCalendar, LosesAListThatCantGrowAndNothingElse) {
  const struct {
    Nodes elements;
    const char* list;
  } rows[] = {
      {{List("Categories", "Category", {"A", "B", "C"}), {"Subject", "s"}}, "Categories"},
      {{{"Attendees", Nodes{Attendee("A", "a"), Attendee("B", "b"), Attendee("C", "c")}}, {"Subject", "s"}},
       "Attendees"},
  };
  for (const auto& row : rows) {
    // The first entry is a new block (two allocations), each further one grows it.
    for (const std::size_t k : {3U, 4U}) {
      store.ClearCalls();
      sml_element* const tree = TreeOf({row.elements});
      FailingMemory::FailAt(k);
      EXPECT_EQ(SyncTree(tree), 0U);
      EXPECT_EQ(store.Calls().at(0).event, Event({{"Subject", "s"}})) << row.list << k;
    }
    EXPECT_NE(DecodedField(row.elements, row.list), "(null)");
  }
}

TEST_F(ParserCalendar, LeavesNothingBehindWhicheverAllocationFails) {
  EXPECT_GT(FailEachAllocation("sync-answer-event-all-fields-add"), 60U);
}

TEST_F(ParserCalendar, ReleasesWhatItMadeForAnEventBeforeTheNextOne) {
  const Nodes elements = {{"Timezone", ZoneInBase64()},
                          {"Alldayevent", "1"},
                          {"BodyTruncated", "1"},
                          {"Busystatus", "1"},
                          {"Dtstamp", "20050314T093000Z"},
                          {"Endtime", "20050314T093000Z"},
                          {"Meetingstatus", "1"},
                          {"ReminderMinsbefore", "1"},
                          {"Sensitivity", "1"},
                          {"Starttime", "20050314T093000Z"},
                          List("Categories", "Category", {"A", "B"}),
                          {"Attendees", Nodes{Attendee("Ann", "a"), Attendee("Bob", "b")}}};
  sml_element* const tree = TreeOf(std::vector<Nodes>(20, elements));
  const std::size_t ofTree = FailingMemory::LiveBlocks();
  std::vector<std::size_t> live;
  Look<AS_CALENDAR_T>([&live](const AS_CALENDAR_T&) { live.push_back(FailingMemory::LiveBlocks()); });
  EXPECT_EQ(SyncTree(tree), 0U);
  EXPECT_EQ(live, std::vector<std::size_t>(20, ofTree + 2 * 12)) << "twelve values, each with its node";
}

}  // namespace
}  // namespace airsync_test
