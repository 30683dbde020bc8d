// Events in both directions, and what the commands make of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "formats/Base64.h"
#include "integration/Fixture.h"
#include "unit/cli/FieldSamples.h"

namespace airsync::integration {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kCalendar = "f8";
constexpr const char* kNow = "2026-11-21T12:00:00Z";

// A series with every part that an event can have.
json series() {
  return {
      {"Subject", "Stand-up <&> \"daily\""},
      {"Body", "one\ntwo Ünï"},
      {"Timezone", test::sampleZoneText()},
      {"StartTime", "2026-11-23T09:00:00Z"},
      {"EndTime", "2026-11-23T09:15:00Z"},
      {"DtStamp", "2026-11-01T08:00:00Z"},
      {"Location", "Room 1"},
      {"Reminder", 15},
      {"AllDayEvent", false},
      {"BusyStatus", 2},
      {"Sensitivity", 1},
      {"Categories", {"Work", "Team A"}},
      {"OrganizerName", "Ann Example"},
      {"OrganizerEmail", "ann@example.com"},
      {"UID", "uid-1"},
      {"MeetingStatus", 1},
      {"Attendees",
       {{{"Name", "Bo"}, {"Email", "bo@example.com"}}, {{"Name", "Cai"}, {"Email", "cai@example.com"}}}},
      {"Recurrence", {{"Type", 1}, {"Interval", 1}, {"DayOfWeek", 62}, {"Until", "2027-06-30T00:00:00Z"}}},
      {"Exceptions",
       {{{"ExceptionStartTime", "2026-11-24T09:00:00Z"}, {"Deleted", true}},
        {{"DtStamp", "2026-11-02T08:00:00Z"},
         {"ExceptionStartTime", "2026-11-25T09:00:00Z"},
         {"StartTime", "2026-11-25T11:00:00Z"},
         {"EndTime", "2026-11-25T11:30:00Z"},
         {"Location", "Room 2"},
         {"Body", "later"},
         {"BusyStatus", 1},
         {"Sensitivity", 2},
         {"Reminder", 5},
         {"Subject", "Stand-up, later"},
         {"AllDayEvent", false},
         {"Deleted", false},
         {"Categories", {"Moved"}}}}}};
}

class CalendarSync : public AirsyncTest {
 protected:
  CalendarSync() { serve({"--contacts", "0", "--now", kNow}); }

  long long addEvent(const json& record) {
    const Finished result = run({"--json", "add", "Calendar", "-"}, record.dump());
    if (result.code != 0) throw std::runtime_error(result.errors);
    return result.json().at("number");
  }
  json show(const std::string& item) { return run({"--json", "show", "Calendar", item}).json().at("record"); }
};

// Whether the members of `part` stand in `whole` with the same values, member by member also inside.
void expectHolds(const json& whole, const json& part, const std::string& path) {
  if (part.is_object() || (part.is_array() && !part.empty() && part.front().is_object())) {
    ASSERT_EQ(whole.type(), part.type()) << path;
    ASSERT_GE(whole.size(), part.size()) << path;
    for (const auto& [key, value] : part.items()) {
      const auto member = part.is_object() ? json(whole.value(key, json())) : whole.at(std::stoul(key));
      expectHolds(member, value, path + "/" + key);
    }
    return;
  }
  EXPECT_EQ(whole, part) << path;
}

TEST_F(CalendarSync, BringsASeriesWithEverythingThatItHas) {
  const std::string id = server().add(kCalendar, series());
  const Finished result = run({"sync", "Calendar"});
  ASSERT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.output, "Calendar: 1 added\n");
  expectHolds(show(id), series(), "");
}

// A record without what stands for "not there", and without what only one side counts.
json normalized(const json& record) {
  if (record.is_array()) {
    json entries = json::array();
    for (const json& entry : record) entries.push_back(normalized(entry));
    return entries;
  }
  if (!record.is_object()) return record;
  json result = json::object();
  for (const auto& [name, value] : record.items()) {
    if (value.is_null() || value == "" || value == json::array()) continue;
    if (name == "BodySize" || name == "BodyTruncated") continue;
    result[name] = normalized(value);
  }
  return result;
}

class SeededCalendar : public AirsyncTest {};

TEST_F(SeededCalendar, BringsEveryKindOfEventAsTheServerHasIt) {
  serve({"--contacts", "0", "--events", "80", "--seed", "3", "--now", kNow});
  sync();
  const auto here = itemsHere(kCalendar);
  const auto there = server().items(kCalendar);
  EXPECT_GE(there.size(), 40U);
  EXPECT_EQ(here.size(), there.size());
  for (const auto& [id, event] : there) {
    ASSERT_EQ(here.count(id), 1U) << id;
    EXPECT_EQ(normalized(here.at(id)), normalized(event)) << id;
  }
}

TEST_F(CalendarSync, SendsASeriesWithEverythingThatItHas) {
  sync();
  const long long number = addEvent(series());
  sync();
  const auto there = server().items(kCalendar);
  ASSERT_EQ(there.size(), 1U);
  expectHolds(there.begin()->second, series(), "");
  EXPECT_EQ(show(std::to_string(number)), show(there.begin()->first));
  EXPECT_EQ(run({"sync", "Calendar"}).output, "Calendar: up to date\n");
}

TEST_F(CalendarSync, SendsChangedAndDeletedOccurrences) {
  const std::string id = server().add(kCalendar, series());
  sync();
  const json patch = {{"Subject", "Weekly"},
                      {"Body", nullptr},
                      {"Recurrence", {{"Type", 1}, {"DayOfWeek", 2}, {"Occurrences", 10}}},
                      {"Exceptions",
                       {{{"ExceptionStartTime", "2026-11-30T09:00:00Z"}, {"Deleted", true}},
                        {{"ExceptionStartTime", "2026-12-07T09:00:00Z"}, {"Subject", "At noon"}}}}};
  ASSERT_EQ(run({"change", "Calendar", id, "-"}, patch.dump()).code, 0);
  EXPECT_EQ(folder(kCalendar).at("pending"), 1);
  sync();
  const json there = server().items(kCalendar).at(id);
  EXPECT_EQ(there.at("Subject"), "Weekly");
  EXPECT_EQ(there.count("Body"), 0U) << there;
  expectHolds(there.at("Recurrence"), patch.at("Recurrence"), "Recurrence");
  EXPECT_EQ(there.at("Recurrence").count("Until"), 0U);
  ASSERT_EQ(there.at("Exceptions").size(), 2U);
  expectHolds(there.at("Exceptions"), patch.at("Exceptions"), "Exceptions");
  EXPECT_EQ(there.at("Location"), "Room 1");

  ASSERT_EQ(run({"change", "Calendar", id, "-"}, R"({"Recurrence":null,"Exceptions":null})").code, 0);
  sync();
  EXPECT_EQ(server().items(kCalendar).at(id).count("Recurrence"), 0U);
  EXPECT_EQ(server().items(kCalendar).at(id).count("Exceptions"), 0U);
}

TEST_F(CalendarSync, BringsTheServersChangesAndDeletions) {
  const std::string changed = server().add(kCalendar, series());
  const std::string deleted = server().add(kCalendar, series());
  sync();
  json record = series();
  record["Location"] = "Elsewhere";
  record["Exceptions"].erase(1);
  record["Attendees"].erase(0);
  server().replace(kCalendar, changed, record);
  server().remove(kCalendar, deleted);
  EXPECT_EQ(run({"sync", "Calendar"}).output, "Calendar: 1 changed, 1 deleted\n");
  const json here = show(changed);
  expectHolds(here, record, "");
  EXPECT_EQ(here.at("Exceptions").size(), 1U);
  EXPECT_EQ(here.at("Attendees").size(), 1U);
  EXPECT_EQ(run({"show", "Calendar", deleted}).code, 1);
}

TEST_F(CalendarSync, DeletesEventsOnTheServer) {
  const std::string id = server().add(kCalendar, series());
  sync();
  ASSERT_EQ(run({"delete", "Calendar", id}).code, 0);
  sync();
  EXPECT_TRUE(server().items(kCalendar).empty());
}

TEST_F(CalendarSync, TellsOfAnEventThatTheServerRefuses) {
  sync();
  json odd = series();
  odd["Recurrence"]["Type"] = 9;
  const long long number = addEvent(odd);
  addEvent(series());
  const Finished result = run({"sync", "Calendar"});
  EXPECT_EQ(result.code, 7) << result.errors;
  EXPECT_THAT(result.output, HasSubstr("1 sent to the server, 1 not taken by the server"));
  EXPECT_THAT(result.errors, HasSubstr("(Stand-up <&> \"daily\"): add failed: "));
  const json failures = run({"--json", "status"}).json().at("accounts").at(0).at("failures");
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_EQ(failures.at(0).at("number"), number);
  EXPECT_EQ(failures.at(0).at("folder"), "Calendar");
  EXPECT_EQ(server().items(kCalendar).size(), 1U);
}

TEST_F(CalendarSync, KeepsToTheFilterOfTheConfiguration) {
  json old = {{"Subject", "Old"}, {"StartTime", "2026-10-01T09:00:00Z"}, {"EndTime", "2026-10-01T10:00:00Z"}};
  json recent = {
      {"Subject", "Recent"}, {"StartTime", "2026-11-15T09:00:00Z"}, {"EndTime", "2026-11-15T10:00:00Z"}};
  const std::string oldId = server().add(kCalendar, old);
  const std::string recentId = server().add(kCalendar, recent);
  configure(url(), "[account.demo.folder.Calendar]\nfilter = 4\n");
  sync();
  EXPECT_EQ(run({"show", "Calendar", oldId}).code, 1);
  EXPECT_EQ(run({"show", "Calendar", recentId}).code, 0);
  configure(url());
  EXPECT_EQ(run({"sync", "Calendar"}).output, "Calendar: 1 added\n");
  EXPECT_EQ(run({"show", "Calendar", oldId}).code, 0);
}

TEST_F(CalendarSync, TellsTheServerOnlyTheSupportedFieldsOfEvents) {
  configure(url(), "supported = [\"FirstName\", \"Subject\", \"StartTime\", \"EndTime\"]\n");
  const std::string id = server().add(kCalendar, series());
  const Finished result = run({"sync"});
  EXPECT_EQ(result.code, 0) << result.errors;
  ASSERT_EQ(run({"change", "Calendar", id, "-"}, R"({"Subject":"Weekly","Location":null})").code, 0);
  sync();
  const json there = server().items(kCalendar).at(id);
  EXPECT_EQ(there.at("Subject"), "Weekly");
  EXPECT_EQ(there.at("Location"), "Room 1");
}

TEST_F(CalendarSync, ListsEventsWithTheirColumns) {
  sync();
  addEvent(series());
  const Finished list = run({"list", "Calendar"});
  EXPECT_EQ(list.output.substr(0, list.output.find('\n')),
            "NUMBER  START                 SUBJECT               LOCATION  REPEATS  LOCAL CHANGE");
  EXPECT_THAT(list.output,
              HasSubstr("2026-11-23T09:00:00Z  Stand-up <&> \"daily\"  Room 1    yes      add waiting"));
  const json item = run({"--json", "list", "Calendar"}).json().at("items").at(0);
  EXPECT_EQ(item.at("subject"), "Stand-up <&> \"daily\"");
  EXPECT_EQ(item.at("start"), "2026-11-23T09:00:00Z");
  EXPECT_EQ(item.at("end"), "2026-11-23T09:15:00Z");
  EXPECT_EQ(item.at("all_day"), false);
  EXPECT_EQ(item.at("recurring"), true);
}

TEST_F(CalendarSync, ShowsTheOccurrencesThatDiffer) {
  sync();
  const std::string number = std::to_string(addEvent(series()));
  const std::string text = run({"show", "Calendar", number}).output;
  EXPECT_THAT(text, HasSubstr("Attendees: Bo <bo@example.com>, Cai <cai@example.com>\n"));
  EXPECT_THAT(text, HasSubstr("Recurrence:\n    Type: 1 (weekly)\n"));
  EXPECT_THAT(text,
              HasSubstr("Exception 1:\n    ExceptionStartTime: 2026-11-24T09:00:00Z\n    Deleted: true\n"));
  EXPECT_THAT(text, HasSubstr("    Subject: Stand-up, later\n"));
}

TEST_F(CalendarSync, RefusesEventsThatCanNotBeAndChangesNothing) {
  sync();
  const Finished order = run({"add", "Calendar", "-"},
                             R"({"StartTime":"2026-11-21T09:00:00Z","EndTime":"2026-11-21T08:00:00Z"})");
  EXPECT_EQ(order.code, 1);
  EXPECT_THAT(order.errors, HasSubstr("it ends (2026-11-21T08:00:00Z) before it starts"));
  const Finished typeless = run({"add", "Calendar", "-"}, "{\n\"Recurrence\": {\"Interval\": 2}}");
  EXPECT_EQ(typeless.code, 1);
  EXPECT_THAT(typeless.errors, HasSubstr("line 2, column 15: Recurrence needs Type"));
  const Finished contact = run({"add", "Calendar", "-"}, R"({"FirstName":"Ann"})");
  EXPECT_EQ(contact.code, 1);
  EXPECT_THAT(contact.errors, HasSubstr("there is no field \"FirstName\""));
  EXPECT_EQ(folder(kCalendar).at("items"), 0);
}

}  // namespace
}  // namespace airsync::integration
