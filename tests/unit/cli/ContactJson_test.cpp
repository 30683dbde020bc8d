#include "formats/ContactJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "api/ContactFields.h"
#include "unit/cli/FieldSamples.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

Contact parse(const std::string& json) {
  Contact contact;
  parseContactPatch(json).applyTo(contact);
  return contact;
}

// "LINE:COLUMN what", or "no error".
std::string error(const std::string& json) {
  try {
    parseContactPatch(json);
  } catch (const RecordError& error) {
    return std::to_string(error.line()) + ":" + std::to_string(error.column()) + " " + error.what();
  }
  return "no error";
}

class ContactJsonField : public testing::TestWithParam<std::size_t> {
 protected:
  const AS_CONTACT_FIELD_T& field() const { return AS_CONTACT_FIELDS[GetParam()]; }
  std::string object(const std::string& value) const {
    return "{\"" + std::string(field().name) + "\":" + value + "}";
  }
};

TEST_P(ContactJsonField, IsReadAndWrittenAsItsForm) {
  const test::FieldSample sample = test::sampleOf(field().form);
  const Contact contact = parse(object(sample.json));
  for (std::size_t i = 0; i < Contact::kFields; ++i) {
    EXPECT_EQ(contact[i], i == GetParam() ? sample.value : Contact::Value()) << i;
  }
  EXPECT_EQ(contactToJson(contact), nlohmann::ordered_json::parse(object(sample.json)));
}

TEST_P(ContactJsonField, IsClearedByNull) {
  Contact contact;
  contact.set(GetParam(), test::sampleOf(field().form).value);
  parseContactPatch(object("null")).applyTo(contact);
  EXPECT_EQ(contact, Contact());
}

TEST_P(ContactJsonField, RefusesEveryOtherType) {
  const std::string name = field().name;
  const struct {
    const char* json;
    std::set<AS_FIELD_FORM_T> fits;
  } values[] = {
      {"\"x\"", {AS_FORM_TEXT, AS_FORM_QUOTED}},
      {"1", {AS_FORM_NUMBER}},
      {"1.5", {}},
      {"true", {AS_FORM_FLAG}},
      {"[\"x\"]", {AS_FORM_LIST}},
      {"[1]", {}},
      {"[null]", {}},
      {"[[]]", {}},
      {"{}", {}},
      {"2147483648", {}},
      {"-2147483649", {}},
      {"18446744073709551615", {}},
  };
  for (const auto& [json, fits] : values) {
    if (fits.count(field().form) != 0) {
      EXPECT_EQ(error(object(json)), "no error") << json;
    } else {
      EXPECT_THAT(error(object(json)), testing::HasSubstr(" " + name + " must ")) << json;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, ContactJsonField, testing::Range(std::size_t{0}, Contact::kFields),
                         [](const auto& row) { return std::string(AS_CONTACT_FIELDS[row.param].name); });

TEST(ContactJson, WritesFieldsInTheOrderOfTheRecord) {
  const Contact contact = parse(R"({"YomiLastName":"z","Body":"a","FirstName":"f"})");
  EXPECT_EQ(contactToJson(contact).dump(), R"({"Body":"a","FirstName":"f","YomiLastName":"z"})");
}

TEST(ContactJson, TakesADateWithoutATime) {
  EXPECT_EQ(parse(R"({"Birthday":"2000-02-29"})"), parse(R"({"Birthday":"2000-02-29T00:00:00Z"})"));
}

TEST(ContactJson, KeepsAnEmptyListApartFromNone) {
  EXPECT_EQ(*parse(R"({"Categories":[]})").get<Contact::List>("Categories"), Contact::List());
  EXPECT_EQ(contactToJson(parse(R"({"Categories":[]})")).dump(), R"({"Categories":[]})");
}

struct ErrorRow {
  const char* what;
  std::string json;
  const char* expected;
};

const ErrorRow kErrors[] = {
    {"nothing", "", "1:1 not JSON: "},
    {"a text", "\"x\"", "1:3 a record is an object, {\"FirstName\": \"Ann\", ...}, and this is a text"},
    {"a number", "1", "1:1 a record is an object, {\"FirstName\": \"Ann\", ...}, and this is a number"},
    {"null", "null", "1:4 a record is an object, {\"FirstName\": \"Ann\", ...}, and this is null"},
    {"an array", "[{}]", "1:1 a record is an object, {\"FirstName\": \"Ann\", ...}, and this is an array"},
    {"an unknown field", "{\n  \"FirstName\": \"Ann\",\n  \"Shoe\": 1}",
     "3:8 there is no field \"Shoe\" (names are written as `airsync show` does)"},
    {"a field in other letters", "{\"firstname\": \"Ann\"}",
     "1:12 there is no field \"firstname\" (names are written as `airsync show` does)"},
    {"a field twice", "{\"FirstName\": \"a\", \"FirstName\": \"b\"}", "1:30 FirstName stands here twice"},
    {"a day that does not exist", "{\"Birthday\": \"2001-02-29\"}",
     "1:25 Birthday is a date or time that does not exist"},
    {"a month that does not exist", "{\"Birthday\": \"2001-13-01\"}",
     "1:25 Birthday is a date or time that does not exist"},
    {"an hour that does not exist", "{\"Anniversary\": \"2001-12-01T24:00:00Z\"}",
     "1:38 Anniversary is a date or time that does not exist"},
    {"a text that is no date", "{\"Birthday\": \"1 May\"}",
     "1:20 Birthday must be a date in a text, \"1970-01-31\" or \"1970-01-31T12:00:00Z\", and this is "
     "another "
     "text"},
    {"an error far down", std::string(30, '\n') + "{\"FirstName\": 1}",
     "31:16 FirstName must be a text, and this is a number"},
    {"a separator in an entry", "{\"Categories\": [\"a@@b\"]}",
     "1:22 Categories must not have \"@@\" in an entry"},
    {"an entry that ends like a separator begins", "{\"Categories\": [\"a@\", \"b\"]}",
     "1:20 Categories must not have an entry that ends with \"@\" before another one"},
    {"a NUL in a text", "{\"Body\": \"a\\u0000b\"}", "1:19 Body must not contain the character U+0000"},
    {"a NUL in an entry", "{\"Children\": [\"\\u0000\"]}",
     "1:22 Children must not contain the character U+0000"},
    {"quotes in an address", "{\"Email1Address\": \"\\\"Ann\\\" <a@b>\"}",
     "1:33 Email1Address must not contain double quotes"},
};

// Keeps S20.
TEST(ContactJson, RefusesWhatIsNoRecordAndTellsWhere) {
  for (const ErrorRow& row : kErrors) {
    EXPECT_THAT(error(row.json), testing::StartsWith(row.expected)) << row.what;
  }
}

TEST(ContactJson, RefusesTextsThatAreNoJson) {
  for (const std::string json : {"{", "{\"FirstName\"", "{\"FirstName\":}", "{\"FirstName\":\"a\",}",
                                 "{\"FirstName\":\"a\"} x", "{'a':1}", "{\"Body\":\"\\ud800\"}",
                                 "{\"Body\":\"\xff\"}", "{\"Body\":\"a\nb\"}", "{\"BodySize\":01}"}) {
    EXPECT_THAT(error(json), testing::HasSubstr("not JSON: ")) << json;
  }
}

TEST(ContactJson, NamesNothingOfTheContentOfWhatIsNoJson) {
  for (const std::string& json :
       {std::string("{\"Body\": \"Dear Ann\xff\"}"), std::string("{\"Body\": \"Dear Ann"),
        std::string("{\"Body\": \"Dear Ann\\q\"}")}) {
    EXPECT_THAT(error(json),
                testing::AllOf(testing::HasSubstr("not JSON: "), testing::HasSubstr("invalid string"),
                               testing::Not(testing::HasSubstr("Dear"))));
  }
}

TEST(ContactJson, IsNotImpressedByDeepNesting) {
  for (const std::string& json : {std::string(1000000, '['), "{\"Body\":" + std::string(1000000, '[')}) {
    EXPECT_THAT(error(json), testing::EndsWith("no record has values so deep in each other"));
  }
}

TEST(ContactPatch, TellsWhichFieldsItNames) {
  const ContactPatch patch = parseContactPatch(R"({"Body":null,"FirstName":"Ann"})");
  EXPECT_TRUE(patch.names("Body"));
  EXPECT_TRUE(patch.names("FirstName"));
  EXPECT_FALSE(patch.names("LastName"));
  EXPECT_FALSE(patch.names("NoSuchField"));
}

TEST(ContactPatch, LeavesOtherFieldsAlone) {
  Contact contact = parse(R"({"FirstName":"Ann","LastName":"Example"})");
  parseContactPatch(R"({"LastName":null,"Title":"Dr"})").applyTo(contact);
  EXPECT_EQ(contact, parse(R"({"FirstName":"Ann","Title":"Dr"})"));
}

}  // namespace
}  // namespace airsync
