// Recurring events from the server: the rule, and the occurrences that differ.
#include "ItemRig.h"

namespace airsync_test {
namespace {

class ParserExceptions : public ItemRig {
 protected:
  ParserExceptions() : ItemRig(DATATYPE_CALENDAR, "Calendar") {}

  static Node Exception(const Nodes& elements) { return {"Exception", elements}; }
  static Node Exceptions(const Nodes& children) { return {"Exceptions", children}; }
};

const FieldRow kRuleRows[] = {
    {"RecurrenceType", "5", "Recurrence.Type", "5"},
    {"RecurrenceInterval", "2", "Recurrence.Interval", "2"},
    {"RecurrenceOccurrences", "3", "Recurrence.Occurrences", "3"},
    {"RecurrenceDayofweek", "127", "Recurrence.DayOfWeek", "127"},
    {"RecurrenceDayofmonth", "31", "Recurrence.DayOfMonth", "31"},
    {"RecurrenceWeekofmonth", "5", "Recurrence.WeekOfMonth", "5"},
    {"RecurrenceMonthofyear", "12", "Recurrence.MonthOfYear", "12"},
    {"RecurrenceUntil", "20101231T010203Z", "Recurrence.Until", "2010-12-31 01:02:03"},
};

const FieldRow kExceptionRows[] = {
    {"Dtstamp", "20050314T093000Z", "DtStamp", "2005-03-14 09:30:00"},
    {"ExceptionStarttime", "20050314T093000Z", "ExceptionStartTime", "2005-03-14 09:30:00"},
    {"Starttime", "20050314T093000Z", "StartTime", "2005-03-14 09:30:00"},
    {"Endtime", "20050314T093000Z", "EndTime", "2005-03-14 09:30:00"},
    {"Location", "x", "Location", "x"},
    {"Body", "x", "Body", "x"},
    {"Busystatus", "2", "BusyStatus", "2"},
    {"Sensitivity", "3", "Sensitivity", "3"},
    {"ReminderMinsbefore", "15", "Reminder", "15"},
    {"Subject", "x", "Subject", "x"},
    {"Uid", "x", "UID", "x"},
    {"Alldayevent", "1", "AllDayEvent", "1"},
    {"ExceptionIsdeleted", "2", "Deleted", "1"},
};

TEST_F(ParserExceptions, ReadsEachFieldOfARuleUnderItsOwnTag) {
  for (const FieldRow& row : kRuleRows) {
    ItemFields expected = {{"ExceptionCount", "0"}, {"Recurrence.Type", "0"}};
    expected[row.name] = row.value;
    EXPECT_EQ(Decoded({{"Recurrence", Nodes{{row.tag, row.text}}}}), expected) << row.tag;
  }
}

TEST_F(ParserExceptions, ReadsARuleWithoutAnythingInIt) {
  const ItemFields bare = {{"ExceptionCount", "0"}, {"Recurrence.Type", "0"}};
  EXPECT_EQ(Decoded({{"Recurrence"}}), bare);
  Nodes empty;
  Nodes emptyTexts;
  for (const FieldRow& row : kRuleRows) {
    empty.push_back({row.tag});
    emptyTexts.push_back({row.tag, ""});
  }
  EXPECT_EQ(Decoded({{"Recurrence", empty}}), bare);
  EXPECT_EQ(Decoded({{"Recurrence", emptyTexts}}), bare);
}

TEST_F(ParserExceptions, ReadsARuleBelowItsElementOnly) {
  EXPECT_EQ(Decoded({{"RecurrenceInterval", "9"}, {"Recurrence", Nodes{{"RecurrenceType", "1"}}}}),
            (ItemFields{{"ExceptionCount", "0"}, {"Recurrence.Type", "1"}}));
  EXPECT_EQ(Decoded({{"RecurrenceType", "1"}}), (ItemFields{{"ExceptionCount", "0"}}));
  EXPECT_EQ(Decoded({{"Recurrence", Nodes{{"DayOfWeek", "1"}, {"RecurrenceDayOfWeek", "1"}}}}),
            (ItemFields{{"ExceptionCount", "0"}, {"Recurrence.Type", "0"}}))
      << "the tags of meeting requests";
}

TEST_F(ParserExceptions, HaveEachFieldUnderItsOwnTag) {
  for (const FieldRow& row : kExceptionRows) {
    // The event has the field as well, and earlier in the document.
    const ItemFields fields = Decoded({{row.tag, row.text}, Exceptions({Exception({{row.tag, row.text}})})});
    ItemFields ofExceptions;
    for (const auto& [name, value] : fields) {
      if (name.rfind("Exceptions[", 0) == 0) ofExceptions[name] = value;
    }
    EXPECT_EQ(ofExceptions, (ItemFields{{std::string("Exceptions[0].") + row.name, row.value}})) << row.tag;
    EXPECT_EQ(fields.at("ExceptionCount"), "1");
  }
}

TEST_F(ParserExceptions, HaveNoFieldForAnElementWithoutText) {
  Nodes empty = {{"Categories"}};
  for (const FieldRow& row : kExceptionRows) empty.push_back({row.tag});
  EXPECT_EQ(Decoded({Exceptions({Exception(empty), Exception({})})}),
            (ItemFields{
                {"ExceptionCount", "2"}, {"Exceptions", ""}, {"Exceptions[0]", ""}, {"Exceptions[1]", ""}}));
}

TEST_F(ParserExceptions, HaveTheirOwnCategoriesWithoutTheEmptyOnes) {
  const ItemFields fields = Decoded({List("Categories", "Category", {"Series"}),
                                     Exceptions({Exception({List("Categories", "Category", {"A", "", "B"})}),
                                                 Exception({List("Categories", "Category", {""})})})});
  EXPECT_EQ(fields, (ItemFields{{"Categories", "Series"},
                                {"ExceptionCount", "2"},
                                {"Exceptions", ""},
                                {"Exceptions[0].Categories", "A@@B"},
                                {"Exceptions[1]", ""}}));
}

TEST_F(ParserExceptions, AreCountedAndFilledInTheDocumentsOrder) {
  const ItemFields fields = Decoded({{"Subject", "series"},
                                     Exceptions({Exception({{"Subject", "1"}}), Exception({{"Subject", "2"}}),
                                                 Exception({{"Subject", "3"}})})});
  EXPECT_EQ(fields, (ItemFields{{"Subject", "series"},
                                {"ExceptionCount", "3"},
                                {"Exceptions", ""},
                                {"Exceptions[0].Subject", "1"},
                                {"Exceptions[1].Subject", "2"},
                                {"Exceptions[2].Subject", "3"}}));
}

TEST_F(ParserExceptions, AreAnEmptyArrayForAnEmptyElement) {
  EXPECT_EQ(Decoded({Exceptions({})}), (ItemFields{{"ExceptionCount", "0"}, {"Exceptions", ""}}));
  EXPECT_EQ(Decoded({{"Exceptions", "text"}}), (ItemFields{{"ExceptionCount", "0"}, {"Exceptions", ""}}));
}

// A field is the first descendant's in the document's order: a series without one takes an exception's.
TEST_F(ParserExceptions, LendTheirFieldsToASeriesThatLacksThem) {
  const Node exceptions = Exceptions({Exception({{"ExceptionIsdeleted", "1"}}),
                                      Exception({{"ReminderMinsbefore", "30"}, {"Subject", "moved"}}),
                                      Exception({{"ReminderMinsbefore", "60"}})});
  ItemFields fields = Decoded({{"Subject", "series"}, exceptions});
  EXPECT_EQ(fields.at("Subject"), "series");
  EXPECT_EQ(fields.at("Reminder"), "30");
  fields = Decoded({exceptions, {"Subject", "series"}});
  EXPECT_EQ(fields.at("Subject"), "moved") << "also one that has them, behind the exceptions";
}

TEST_F(ParserExceptions, LendTheirCategoriesToASeriesThatLacksThem) {
  const Node exceptions = Exceptions({Exception({List("Categories", "Category", {"A"})})});
  EXPECT_EQ(Decoded({exceptions}).at("Categories"), "A");
  EXPECT_EQ(Decoded({List("Categories", "Category", {""}), exceptions}).count("Categories"), 0U)
      << "the first element is taken, whatever it holds";
}

// Entries stand at their children's places; the count is of exceptions only.
TEST_F(ParserExceptions, StandAtThePlacesOfTheirElements) {
  int looked = 0;
  Look<AS_CALENDAR_T>([&looked](const AS_CALENDAR_T& event) {
    ++looked;
    ASSERT_EQ(event.ExceptionCount, 2);
    EXPECT_EQ(event.Exceptions[0].Subject, nullptr);
    EXPECT_EQ(event.Exceptions[0].Deleted, nullptr);
    EXPECT_STREQ(event.Exceptions[1].Subject, "one");
    EXPECT_EQ(event.Exceptions[2].Subject, nullptr);
    EXPECT_STREQ(event.Exceptions[3].Subject, "two");
    ASSERT_NE(event.Exceptions[3].Deleted, nullptr);
    EXPECT_EQ(*event.Exceptions[3].Deleted, 1);
  });
  const Node foreign = {"Other", Nodes{{"Subject", "none"}, {"ExceptionIsdeleted", "1"}}};
  const ItemFields fields = Decoded({{"Subject", "series"},
                                     Exceptions({foreign, Exception({{"Subject", "one"}}), foreign,
                                                 Exception({{"Subject", "two"},
                                                            {"ExceptionIsdeleted", "1"},
                                                            {"Dtstamp", "20050314T093000Z"},
                                                            List("Categories", "Category", {"A"})})})});
  EXPECT_EQ(looked, 1);
  EXPECT_EQ(fields.at("Exceptions[0]"), "");
  EXPECT_EQ(fields.at("Exceptions[1].Subject"), "one");
}

TEST_F(ParserExceptions, AreNoneWhereAllChildrenAreForeign) {
  EXPECT_EQ(Decoded({Exceptions({{"Other"}, {"exception"}})}),
            (ItemFields{{"ExceptionCount", "0"}, {"Exceptions", ""}}));
}

// The surplus entry, behind the count, goes with its event like the others.
TEST_F(ParserExceptions, AreReleasedWithTheirEvent) {
  Nodes all = {List("Categories", "Category", {"A", "B"})};
  for (const FieldRow& row : kExceptionRows) all.push_back({row.tag, row.text});
  Nodes rule;
  for (const FieldRow& row : kRuleRows) rule.push_back({row.tag, row.text});
  Nodes event = all;
  event.push_back({"Recurrence", rule});
  event.push_back(Exceptions({{"Other"}, Exception(all), Exception(all)}));
  sml_element* const tree = TreeOf(std::vector<Nodes>(20, event));
  const std::size_t ofTree = FailingMemory::LiveBlocks();
  std::vector<std::size_t> live;
  Look<AS_CALENDAR_T>([&live](const AS_CALENDAR_T&) { live.push_back(FailingMemory::LiveBlocks()); });
  EXPECT_EQ(SyncTree(tree), 0U);
  // The event's own: three times, three numbers, a flag and a list. The rule and its seven. The array, and
  // twice four times, three numbers, two flags and a list. Each with its node.
  EXPECT_EQ(live, std::vector<std::size_t>(20, ofTree + 2 * (8 + 8 + 1 + 2 * 10)));
}

TEST_F(ParserExceptions, LoseAListThatCantGrowAndNothingElse) {
  sml_element* const tree =
      TreeOf({{{"Subject", "s"},
               List("Categories", "Category", {"S"}),
               Exceptions({Exception({List("Categories", "Category", {"A", "B"}), {"Uid", "u"}})})}});
  // Two blocks before it (the series' list, the array), and its own: each takes two allocations.
  FailingMemory::FailAt(7);
  EXPECT_EQ(SyncTree(tree), 0U);
  const ItemFields fields = *store.Calls().at(0).event;
  EXPECT_EQ(fields.count("Exceptions[0].Categories"), 0U);
  EXPECT_EQ(fields.at("Exceptions[0].UID"), "u");
  EXPECT_EQ(fields.at("Categories"), "S");
}

TEST_F(ParserExceptions, MayBeThousands) {
  Nodes children(5000, Exception({{"Uid", "u"}}));
  EXPECT_EQ(DecodedField({Exceptions(children)}, "ExceptionCount"), "5000");
}

}  // namespace
}  // namespace airsync_test
