#include "formats/MailJson.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "formats/ItemJson.h"
#include "unit/cli/FieldSamples.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;
using nlohmann::json;

template <typename Record>
void set(FieldValues<Record>& values, const char* field) {
  values.set(field, test::sampleOf(values.table()[*values.field(field)].form).value);
}

template <typename Record>
json sampleJson(const AS_FIELD_T<Record>& field) {
  return json::parse(test::sampleOf(field.form).json);
}

// A record as JSON of which one field is set, beside the numbers and flags that are always there.
template <typename Record>
json withField(json record, const AS_FIELD_T<Record>& field) {
  record[field.name] = sampleJson(field);
  return record;
}

const json kMail = {{"Importance", 0}, {"Read", false}};
const json kAttachment = {{"Size", 0}, {"Method", 0}};
const json kRequest = {{"InstanceType", 0}, {"ResponseRequested", 0}};

TEST(MailJson, WritesEveryFieldOfAMail) {
  for (const auto& field : AS_EMAIL_FIELDS) {
    Mail mail;
    set(mail.fields, field.name);
    EXPECT_EQ(json(mailToJson(mail)), withField(kMail, field)) << field.name;
  }
}

TEST(MailJson, WritesEveryFieldOfAnAttachment) {
  for (const auto& field : AS_ATTACHMENT_FIELDS) {
    Mail mail;
    mail.attachments.resize(2);
    set(mail.attachments[1], field.name);
    json expected = kMail;
    expected["Attachments"] = json::array({kAttachment, withField(kAttachment, field)});
    EXPECT_EQ(json(mailToJson(mail)), expected) << field.name;
  }
}

TEST(MailJson, WritesEveryFieldOfAMeetingRequest) {
  for (const auto& field : AS_MEETING_REQUEST_FIELDS) {
    Mail mail;
    set(mail.meetingRequest.emplace().fields, field.name);
    json expected = kMail;
    expected["MeetingRequest"] = withField(kRequest, field);
    EXPECT_EQ(json(mailToJson(mail)), expected) << field.name;
  }
}

TEST(MailJson, WritesEveryFieldOfTheRecurrenceOfAMeetingRequest) {
  for (const auto& field : AS_RECURRENCE_FIELDS) {
    Mail mail;
    set(mail.meetingRequest.emplace().recurrence.emplace(), field.name);
    json expected = kMail;
    expected["MeetingRequest"] = kRequest;
    expected["MeetingRequest"]["Recurrence"] = withField(json{{"Type", 0}}, field);
    EXPECT_EQ(json(mailToJson(mail)), expected) << field.name;
  }
}

TEST(ItemJson, WritesItemsOfEachClass) {
  Contact contact;
  contact.set("FirstName", std::string("Ann"));
  EXPECT_EQ(itemToJson(contact).dump(), R"({"FirstName":"Ann"})");
  Event event;
  event.fields.set("Subject", std::string("Lunch"));
  EXPECT_EQ(itemToJson(event).dump(), R"({"Subject":"Lunch"})");
  EXPECT_EQ(itemToJson(Mail()).dump(), R"({"Importance":0,"Read":false})");
}

}  // namespace
}  // namespace airsync
