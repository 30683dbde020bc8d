// The meeting requests of mails.
#include "ItemRig.h"

namespace airsync_test {
namespace {

class ParserMeetingRequest : public ItemRig {
 protected:
  ParserMeetingRequest() : ItemRig(DATATYPE_EMAIL, "Email") {}

  static Node Request(const Nodes& elements) { return {"MeetingRequest", elements}; }

  // The fields of the request in a mail with these elements, without what is there of every mail.
  ItemFields RequestOf(const Nodes& elements) {
    ItemFields fields = Decoded(elements);
    for (const char* const name : {"Importance", "Read", "AttachmentCount"}) fields.erase(name);
    return fields;
  }
  // What is there of every request.
  static ItemFields Expected(const ItemFields& fields) {
    ItemFields all = {{"MeetingRequest.InstanceType", "0"}, {"MeetingRequest.ResponseRequested", "0"}};
    for (const auto& [name, value] : fields) all["MeetingRequest." + name] = value;
    return all;
  }
};

const FieldRow kRows[] = {
    {"StartTime", "2005-03-14T09:30:00.000Z", "StartTime", "2005-03-14 09:30:00"},
    {"EndTime", "2005-03-14T09:30:00.000Z", "EndTime", "2005-03-14 09:30:00"},
    {"DtStamp", "2005-03-14T09:30:00.000Z", "DtStamp", "2005-03-14 09:30:00"},
    {"Location", "x", "Location", "x"},
    {"Reminder", "15", "Reminder", "15"},
    {"AllDayEvent", "2", "AllDayEvent", "1"},
    {"IntdBusyStatus", "3", "BusyStatus", "3"},
    {"Sensitivity", "2", "Sensitivity", "2"},
    {"InstanceType", "1", "InstanceType", "1"},
    {"Organizer", "x", "Organizer", "x"},
    {"RecurrenceID", "2005-03-14T09:30:00.000Z", "RecurrenceId", "2005-03-14 09:30:00"},
    {"ResponseRequested", "1", "ResponseRequested", "1"},
    {"GlobalObjID", "x", "GlobalObjId", "x"},
};

const FieldRow kRuleRows[] = {
    {"RecurrenceType", "5", "Recurrence.Type", "5"},
    {"RecurrenceInterval", "2", "Recurrence.Interval", "2"},
    {"RecurrenceOccurrences", "3", "Recurrence.Occurrences", "3"},
    {"DayOfWeek", "127", "Recurrence.DayOfWeek", "127"},
    {"DayOfMonth", "31", "Recurrence.DayOfMonth", "31"},
    {"WeekOfMonth", "5", "Recurrence.WeekOfMonth", "5"},
    {"MonthOfYear", "12", "Recurrence.MonthOfYear", "12"},
    {"RecurrenceUntil", "20101231T010203Z", "Recurrence.Until", "2010-12-31 01:02:03"},
};

TEST_F(ParserMeetingRequest, IsNullWhereThereIsNone) {
  EXPECT_EQ(RequestOf({{"StartTime", "2005-03-14T09:30:00.000Z"}, {"ThreadTopic", "t"}}),
            (ItemFields{{"ThreadTopic", "t"}}));
}

TEST_F(ParserMeetingRequest, ReadsEachFieldUnderItsOwnTag) {
  for (const FieldRow& row : kRows) {
    EXPECT_EQ(RequestOf({Request({{row.tag, row.text}})}), Expected({{row.name, row.value}})) << row.tag;
  }
}

// The copies look at the reserved fields as well.
TEST_F(ParserMeetingRequest, HasNothingInItForAnEmptyElement) {
  EXPECT_EQ(RequestOf({Request({})}), Expected({}));
  Nodes empty = {{"Timezone"}, {"Categories"}};
  for (const FieldRow& row : kRows) empty.push_back({row.tag});
  EXPECT_EQ(RequestOf({Request(empty)}), Expected({}));
}

TEST_F(ParserMeetingRequest, ScansNoEmptyText) {
  for (const FieldRow& row : kRows) {
    const bool isText = std::string(row.value) == "x";
    EXPECT_EQ(RequestOf({Request({{row.tag, ""}})}), isText ? Expected({{row.name, ""}}) : Expected({}))
        << row.tag;
  }
}

TEST_F(ParserMeetingRequest, DoesNotReadTheTagsOfEvents) {
  EXPECT_EQ(RequestOf({Request({{"Starttime", "2005-03-14T09:30:00.000Z"},
                                {"BusyStatus", "1"},
                                {"ReminderMinsbefore", "1"},
                                {"Alldayevent", "1"},
                                {"RecurrenceId", "x"},
                                {"GlobalObjId", "x"}})}),
            Expected({}));
}

TEST_F(ParserMeetingRequest, ReadsEachFieldOfItsRuleUnderItsOwnTag) {
  for (const FieldRow& row : kRuleRows) {
    ItemFields expected = Expected({{"Recurrence.Type", "0"}});
    expected[std::string("MeetingRequest.") + row.name] = row.value;
    EXPECT_EQ(RequestOf({Request({{"Recurrence", Nodes{{row.tag, row.text}}}})}), expected) << row.tag;
  }
}

TEST_F(ParserMeetingRequest, DoesNotReadTheTagsOfAnEventsRule) {
  EXPECT_EQ(RequestOf({Request({{"Recurrence", Nodes{{"RecurrenceDayofweek", "1"},
                                                     {"RecurrenceDayofmonth", "1"},
                                                     {"RecurrenceWeekofmonth", "1"},
                                                     {"RecurrenceMonthofyear", "1"}}}})}),
            Expected({{"Recurrence.Type", "0"}}));
}

TEST_F(ParserMeetingRequest, FindsItsRuleBelowTheListOfRules) {
  EXPECT_EQ(RequestOf({Request({{"Recurrences", Nodes{{"Recurrence", Nodes{{"RecurrenceType", "1"}}}}}})}),
            Expected({{"Recurrence.Type", "1"}}));
}

TEST_F(ParserMeetingRequest, RoundsItsTimesUpButNotTheEndOfItsRule) {
  EXPECT_EQ(RequestOf({Request({{"StartTime", "2005-03-07T09:30:59.001Z"},
                                {"EndTime", "2004-12-31T23:59:59.999Z"},
                                {"DtStamp", "2005-03-07T09:30:00.5Z"},
                                {"RecurrenceID", "2005-03-07T09:30:00.1Z"},
                                {"Recurrence", Nodes{{"RecurrenceUntil", "20101231T235960Z"}}}})}),
            Expected({{"StartTime", "2005-03-07 09:31:00"},
                      {"EndTime", "2005-01-01 00:00:00"},
                      {"DtStamp", "2005-03-07 09:30:01"},
                      {"RecurrenceId", "2005-03-07 09:30:01"},
                      {"Recurrence.Type", "0"},
                      {"Recurrence.Until", "2010-12-31 23:59:60"}}));
}

TEST_F(ParserMeetingRequest, KeepsThePartsOfTheTimeBefore) {
  ItemFields expected = Expected({{"StartTime", "2001-01-02 03:04:05"},
                                  {"EndTime", "2002-01-02 03:04:05"},
                                  {"DtStamp", "2002-03-02 03:04:05"},
                                  {"Recurrence.Type", "0"},
                                  {"Recurrence.Until", "2004-03-02 03:04:05"},
                                  {"RecurrenceId", "2004-03-02 03:04:05"}});
  expected["DateReceived"] = "2001-01-02 03:04:05";
  EXPECT_EQ(RequestOf({Request({{"RecurrenceID", "x"},
                                {"Recurrence", Nodes{{"RecurrenceUntil", "2004"}}},
                                {"DtStamp", "2002-03"},
                                {"EndTime", "2002"},
                                {"StartTime", "x"}}),
                       {"DateReceived", "2001-01-02T03:04:04.500Z"}}),
            expected)
      << "whatever the document's order; the fraction counts once";
}

TEST_F(ParserMeetingRequest, HasTheZonesBytesCompletedOrCut) {
  const auto zone = [this](const std::string& text) {
    return DecodedField({Request({{"Timezone", text}})}, "MeetingRequest.Timezone");
  };
  EXPECT_EQ(zone(ZoneInBase64()), ZoneInHex());
  EXPECT_EQ(zone("AQID"), "010203" + std::string(169 * 2, '0'));
  EXPECT_EQ(zone(std::string(400, '/')), std::string(172 * 2, 'F'));
  EXPECT_EQ(zone(""), "(null)");
}

TEST_F(ParserMeetingRequest, EndsTheExchangeForAZoneThatIsNoBase64) {
  EXPECT_EQ(SyncTree(TreeOf({{Request({{"Timezone", "AQI"}})}})), 0x80000001U);
  EXPECT_EQ(SyncTree(TreeOf({{Request({{"Timezone", "AQ*="}})}})), 0x80000001U);
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserMeetingRequest, PacksCategoriesWithoutTheEmptyOnes) {
  EXPECT_EQ(
      DecodedField({Request({List("Categories", "Category", {"A", "", "B"})})}, "MeetingRequest.Categories"),
      "A@@B");
  EXPECT_EQ(DecodedField({Request({List("Categories", "Category", {""})})}, "MeetingRequest.Categories"),
            "(null)");
}

TEST_F(ParserMeetingRequest, LosesAListThatCantGrowAndNothingElse) {
  for (const std::size_t k : {5U, 6U}) {
    store.ClearCalls();
    sml_element* const tree =
        TreeOf({{Request({List("Categories", "Category", {"A", "B", "C"}), {"Organizer", "o"}})}});
    FailingMemory::FailAt(k);  // the request and the list's first entry take four
    EXPECT_EQ(SyncTree(tree), 0U);
    const ItemFields& fields = *store.Calls().at(0).mail;
    EXPECT_EQ(fields.count("MeetingRequest.Categories"), 0U) << k;
    EXPECT_EQ(fields.at("MeetingRequest.Organizer"), "o");
  }
}

TEST_F(ParserMeetingRequest, IsReleasedWithItsMail) {
  Nodes rule;
  for (const FieldRow& row : kRuleRows) rule.push_back({row.tag, row.text});
  Nodes request = {{"Recurrence", rule}, {"Timezone", "AQID"}, List("Categories", "Category", {"A", "B"})};
  for (const FieldRow& row : kRows) request.push_back({row.tag, row.text});
  sml_element* const tree = TreeOf(std::vector<Nodes>(20, Nodes{Request(request)}));
  const std::size_t ofTree = FailingMemory::LiveBlocks();
  std::vector<std::size_t> live;
  Look<AS_EMAIL_T>([&live](const AS_EMAIL_T&) { live.push_back(FailingMemory::LiveBlocks()); });
  EXPECT_EQ(SyncTree(tree), 0U);
  // The request, its zone, four times, three numbers, a flag and a list; the rule and its seven. Each with
  // its node.
  EXPECT_EQ(live, std::vector<std::size_t>(20, ofTree + 2 * (11 + 8)));
}

}  // namespace
}  // namespace airsync_test
