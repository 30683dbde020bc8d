#include "formats/EventJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "unit/cli/FieldSamples.h"
#include "unit/cli/Support.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;
using nlohmann::ordered_json;
using testing::HasSubstr;
using testing::StartsWith;

Event parse(const std::string& json) {
  Event event;
  parseEventPatch(json).applyTo(event);
  return event;
}

// "LINE:COLUMN what", or "no error".
std::string error(const std::string& json) {
  try {
    parseEventPatch(json);
  } catch (const RecordError& error) {
    return std::to_string(error.line()) + ":" + std::to_string(error.column()) + " " + error.what();
  }
  return "no error";
}

// The records that an event is made of: how a field of each stands in the JSON, and where it goes.
struct InEvent {
  using Record = AS_CALENDAR_T;
  static std::string json(const std::string& member) { return "{" + member + "}"; }
  static constexpr const char* kPath = "";
  static Event with(FieldValues<Record> values) {
    Event event;
    event.fields = std::move(values);
    return event;
  }
};
struct InRecurrence {
  using Record = AS_RECURRENCE_T;
  static std::string json(const std::string& member) {
    return R"({"Recurrence":{"Type":1)" + (member.empty() ? "" : "," + member) + "}}";
  }
  static constexpr const char* kPath = "Recurrence.";
  static Event with(FieldValues<Record> values) {
    values.set("Type", 1);
    Event event;
    event.recurrence = std::move(values);
    return event;
  }
};
struct InException {
  using Record = AS_EXCEPTION_T;
  static std::string json(const std::string& member) {
    return R"({"Exceptions":[{"ExceptionStartTime":"2026-01-02T03:04:05Z")" +
           (member.empty() ? "" : "," + member) + "}]}";
  }
  static constexpr const char* kPath = "Exceptions[0].";
  static Event with(FieldValues<Record> values) {
    values.set("ExceptionStartTime", UtcTime{2026, 1, 2, 3, 4, 5});
    Event event;
    event.exceptions = {std::move(values)};
    return event;
  }
};

template <typename Place>
class EventJsonFields : public testing::Test {
 protected:
  using Values = FieldValues<typename Place::Record>;

  // All but the one that every such record in these tests has.
  static std::vector<AS_FIELD_T<typename Place::Record>> fields() {
    std::vector<AS_FIELD_T<typename Place::Record>> some;
    for (const auto& field : Values::table()) {
      const std::string name = field.name;
      if (name != "Type" && name != "ExceptionStartTime") some.push_back(field);
    }
    return some;
  }
  static std::string object(const char* name, const std::string& value) {
    return Place::json("\"" + std::string(name) + "\":" + value);
  }
};

TYPED_TEST_SUITE_P(EventJsonFields);

TYPED_TEST_P(EventJsonFields, AreReadAndWrittenAsTheirForms) {
  for (const auto& field : this->fields()) {
    const test::FieldSample sample = test::sampleOf(field.form);
    typename TestFixture::Values values;
    values.set(field.name, sample.value);
    const std::string json = this->object(field.name, sample.json);
    EXPECT_EQ(parse(json), TypeParam::with(values)) << field.name;
    // Members are written in the order of the table: the two that come together here may change places.
    EXPECT_EQ(nlohmann::json(eventToJson(parse(json))), nlohmann::json::parse(json)) << field.name;
  }
}

TYPED_TEST_P(EventJsonFields, AreAbsentWhenTheyAreNull) {
  for (const auto& field : this->fields()) {
    EXPECT_EQ(parse(this->object(field.name, "null")), parse(TypeParam::json(""))) << field.name;
  }
}

TYPED_TEST_P(EventJsonFields, RefuseEveryOtherType) {
  for (const auto& field : this->fields()) {
    const std::string own = test::sampleOf(field.form).json;
    for (const int form : {AS_FORM_TEXT, AS_FORM_NUMBER, AS_FORM_FLAG, AS_FORM_LIST, AS_FORM_ATTENDEES}) {
      const std::string other = test::sampleOf(static_cast<AS_FIELD_FORM_T>(form)).json;
      if (other == own) continue;
      EXPECT_THAT(error(this->object(field.name, other)),
                  HasSubstr(std::string(TypeParam::kPath) + field.name + " must "))
          << other;
    }
    for (const char* other : {"{}", "1.5", "2147483648", "[null]"}) {
      EXPECT_THAT(error(this->object(field.name, other)), HasSubstr(std::string(field.name) + " must "))
          << other;
    }
  }
}

TYPED_TEST_P(EventJsonFields, AreRefusedTwice) {
  for (const auto& field : this->fields()) {
    const std::string member = "\"" + std::string(field.name) + "\":null";
    EXPECT_THAT(error(TypeParam::json(member + "," + member)),
                HasSubstr(std::string(TypeParam::kPath) + field.name + " stands here twice"));
  }
}

TYPED_TEST_P(EventJsonFields, AreRefusedUnderOtherNames) {
  EXPECT_THAT(error(TypeParam::json("\"Shoe\":1")),
              HasSubstr(std::string("there is no field \"") + TypeParam::kPath + "Shoe\""));
}

REGISTER_TYPED_TEST_SUITE_P(EventJsonFields, AreReadAndWrittenAsTheirForms, AreAbsentWhenTheyAreNull,
                            RefuseEveryOtherType, AreRefusedTwice, AreRefusedUnderOtherNames);
using Places = testing::Types<InEvent, InRecurrence, InException>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, EventJsonFields, Places);

constexpr const char* kSeries =
    R"({"StartTime":"2026-11-21T09:00:00Z","EndTime":"2026-11-21T10:00:00Z","Subject":"Stand-up",)"
    R"("Recurrence":{"Type":1,"Interval":1,"DayOfWeek":62,"Until":"2027-01-01T00:00:00Z"},)"
    R"("Exceptions":[{"ExceptionStartTime":"2026-11-24T09:00:00Z","Deleted":true},)"
    R"({"ExceptionStartTime":"2026-11-25T09:00:00Z","StartTime":"2026-11-25T11:00:00Z","Subject":"Later"}]})";

TEST(EventJson, WritesASeriesAsItWasRead) { EXPECT_EQ(eventToJson(parse(kSeries)).dump(), kSeries); }

TEST(EventJson, ReadsThePlaceOfEachException) {
  const Event event = parse(kSeries);
  ASSERT_EQ(event.exceptions.size(), 2U);
  EXPECT_EQ(*event.exceptions[0].get<bool>("Deleted"), true);
  EXPECT_EQ(event.exceptions[1].get<bool>("Deleted"), nullptr);
  EXPECT_EQ(*event.exceptions[1].get<std::string>("Subject"), "Later");
}

TEST(EventJson, TakesADateWithoutATime) {
  EXPECT_EQ(parse(R"({"StartTime":"2026-02-28"})"), parse(R"({"StartTime":"2026-02-28T00:00:00Z"})"));
}

struct ErrorRow {
  std::string json;
  const char* expected;
};

const ErrorRow kErrors[] = {
    {"", "1:1 not JSON: "},
    {"[]", "1:1 a record is an object, {\"Subject\": \"Lunch\", ...}, and this is an array"},
    {"{\"StartTime\": \"2026-02-29\"}", "1:26 StartTime is a date or time that does not exist"},
    {"{\"StartTime\": \"noon\"}",
     "1:20 StartTime must be a date in a text, \"1970-01-31\" or \"1970-01-31T12:00:00Z\", and this is "
     "another text"},
    {"{\"Recurrence\": 1}", "1:17 Recurrence must be an object, and this is a number"},
    {"{\"Recurrence\": {}}", "1:16 Recurrence needs Type"},
    {"{\"Recurrence\": {\"Interval\": 2}}", "1:16 Recurrence needs Type"},
    {"{\"Recurrence\": {\"Type\": null}}", "1:16 Recurrence needs Type"},
    {"{\"Recurrence\": {\"Type\": \"weekly\"}}",
     "1:32 Recurrence.Type must be a whole number of 32 bits, and this is a text"},
    {"{\"Recurrence\": null, \"Recurrence\": null}", "1:33 Recurrence stands here twice"},
    {"{\"Exceptions\": {}}", "1:16 Exceptions must be an array of objects, and this is an object"},
    {"{\"Exceptions\": [1]}", "1:18 Exceptions[0] must be an object, and this is a number"},
    {"{\"Exceptions\": [\n{\"ExceptionStartTime\":\"2026-01-01\"},\n{\"Deleted\": true}]}",
     "3:1 Exceptions[1] needs ExceptionStartTime"},
    {"{\"Attendees\": [\"Ann\"]}", "1:20 Attendees must hold objects only, and this is a text"},
    {"{\"Attendees\": [{}]}", "1:16 Attendees has an entry with neither a name nor an address"},
    {"{\"Attendees\": [{\"Name\": 1}]}", "1:26 Attendees.Name must be a text, and this is a number"},
    {"{\"Attendees\": [{\"Phone\": \"1\"}]}", "1:23 there is no field \"Attendees.Phone\""},
    {"{\"Attendees\": [{\"Name\": \"a\", \"Name\": \"b\"}]}", "1:35 Attendees.Name stands here twice"},
    {"{\"Attendees\": [{\"Name\": \"a##b\"}]}", "1:30 Attendees.Name must not have \"##\" in an entry"},
    {"{\"Attendees\": [{\"Email\": \"a@@b\"}]}", "1:31 Attendees.Email must not have \"@@\" in an entry"},
    {"{\"Attendees\": [{\"Name\": \"a#\", \"Email\": \"b\"}]}",
     "1:15 Attendees has an entry with \"#\" or \"@\" where it touches the next one"},
    {"{\"Attendees\": [{\"Name\": \"a\\u0000\"}]}",
     "1:33 Attendees.Name must not contain the character U+0000"},
    {"{\"Timezone\": \"AAEC\"}",
     "1:19 Timezone must be the base64 of 172 bytes in a text, and this is another text"},
    {"{\"Timezone\": \"*\"}", "1:16 Timezone must be the base64 of 172 bytes in a text"},
};

TEST(EventJson, RefusesWhatIsNoRecordAndTellsWhere) {
  for (const ErrorRow& row : kErrors) EXPECT_THAT(error(row.json), StartsWith(row.expected)) << row.json;
}

TEST(EventPatch, ReplacesRuleAndExceptionsWholeAndLeavesTheRestAlone) {
  Event event = parse(kSeries);
  parseEventPatch(R"({"Recurrence":{"Type":0},"Exceptions":[],"Location":"Room 1"})").applyTo(event);
  EXPECT_EQ(eventToJson(event).dump(),
            R"({"StartTime":"2026-11-21T09:00:00Z","EndTime":"2026-11-21T10:00:00Z","Location":"Room 1",)"
            R"("Subject":"Stand-up","Recurrence":{"Type":0}})");
}

TEST(EventPatch, ClearsRuleAndExceptionsWithNull) {
  Event event = parse(kSeries);
  parseEventPatch(R"({"Recurrence":null,"Exceptions":null})").applyTo(event);
  EXPECT_EQ(event.recurrence, std::nullopt);
  EXPECT_TRUE(event.exceptions.empty());
}

TEST(EventPatch, TellsWhatItNames) {
  const EventPatch patch = parseEventPatch(R"({"Body":null,"Exceptions":null})");
  EXPECT_TRUE(patch.names("Body"));
  EXPECT_TRUE(patch.names("Exceptions"));
  EXPECT_FALSE(patch.names("Recurrence"));
  EXPECT_FALSE(patch.names("Subject"));
}

// What checkEvent says of an event to which a patch is applied.
std::string check(const std::string& before, const std::string& patch, bool isNew = false) {
  Event event = parse(before);
  const EventPatch change = parseEventPatch(patch);
  change.applyTo(event);
  return test::errorOf([&] { checkEvent(event, change, isNew); });
}

TEST(CheckEvent, RefusesAnEventThatEndsBeforeItStarts) {
  EXPECT_THAT(check("{}", R"({"StartTime":"2026-11-21T09:00:00Z","EndTime":"2026-11-21T08:59:59Z"})"),
              HasSubstr("the event: it ends (2026-11-21T08:59:59Z) before it starts (2026-11-21T09:00:00Z)"));
  EXPECT_EQ(check("{}", R"({"StartTime":"2026-11-21T09:00:00Z","EndTime":"2026-11-21T09:00:00Z"})"),
            "no error");
  EXPECT_THAT(check(kSeries, R"({"EndTime":"2026-11-20"})"), HasSubstr("before it starts"));
  EXPECT_THAT(check(kSeries, R"({"Exceptions":[{"ExceptionStartTime":"2026-11-25","StartTime":"2026-11-26",)"
                             R"("EndTime":"2026-11-25"}]})"),
              HasSubstr("the event's Exceptions[0]: it ends"));
}

TEST(CheckEvent, WantsAStartAndAnEndOfNewEventsAndLetsNobodyTakeThemAway) {
  EXPECT_THAT(check("{}", R"({"Subject":"x","EndTime":"2026-11-21"})", true),
              HasSubstr("it has no StartTime"));
  EXPECT_THAT(check("{}", R"({"Subject":"x","StartTime":"2026-11-21"})", true),
              HasSubstr("it has no EndTime"));
  EXPECT_THAT(check(kSeries, R"({"EndTime":null})"), HasSubstr("it has no EndTime"));
  EXPECT_EQ(check("{}", kSeries, true), "no error");
}

TEST(CheckEvent, RefusesExceptionsOfNothing) {
  EXPECT_THAT(check(kSeries, R"({"Recurrence":null})"), HasSubstr("exceptions but no recurrence"));
  EXPECT_EQ(check(kSeries, R"({"Recurrence":null,"Exceptions":null})"), "no error");
}

TEST(CheckEvent, LeavesAloneWhatThePatchDoesNotTouch) {
  const std::string odd =
      R"({"StartTime":"2026-11-21","EndTime":"2026-11-20","Exceptions":[{"ExceptionStartTime":"2026-11-25"}]})";
  EXPECT_EQ(check(odd, R"({"Subject":"x"})"), "no error");
  EXPECT_EQ(check("{}", R"({"Subject":"x"})"), "no error");
}

}  // namespace
}  // namespace airsync
