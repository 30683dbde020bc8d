#include "store/FieldValues.h"

#include <cstring>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

template <typename Record>
class AnyFields : public testing::Test {};
using Records = testing::Types<AS_CONTACT_T, AS_CALENDAR_T, AS_RECURRENCE_T, AS_EXCEPTION_T, AS_EMAIL_T,
                               AS_ATTACHMENT_T, AS_MEETING_REQUEST_T>;
TYPED_TEST_SUITE(AnyFields, Records);

TYPED_TEST(AnyFields, AreTheSameAfterTheWayThroughARecord) {
  const auto values = filled<TypeParam>(3);
  FieldRecord<TypeParam> record(values);
  EXPECT_EQ(FieldValues<TypeParam>::fromRecord(record.record()), values);
}

TYPED_TEST(AnyFields, AreAZeroedRecordWhenThereAreNone) {
  FieldRecord<TypeParam> record((FieldValues<TypeParam>()));
  const TypeParam nothing = {};
  EXPECT_EQ(std::memcmp(&record.record(), &nothing, sizeof(nothing)), 0);
  EXPECT_EQ(FieldValues<TypeParam>::fromRecord(nothing), FieldValues<TypeParam>());
}

TYPED_TEST(AnyFields, AreFoundByTheirNames) {
  for (std::size_t index = 0; index < FieldValues<TypeParam>::kFields; ++index) {
    EXPECT_EQ(FieldValues<TypeParam>::field(FieldValues<TypeParam>::table()[index].name), index);
  }
  EXPECT_EQ(FieldValues<TypeParam>::field("Shoe size"), std::nullopt);
}

TYPED_TEST(AnyFields, TakeOnlyValuesOfTheirForms) {
  const auto sample = filled<TypeParam>();
  for (std::size_t index = 0; index < FieldValues<TypeParam>::kFields; ++index) {
    for (std::size_t other = 0; other < FieldValues<TypeParam>::kFields; ++other) {
      FieldValues<TypeParam> values;
      if (sample[index].index() == sample[other].index()) {
        values.set(index, sample[other]);
        EXPECT_EQ(values[index], sample[other]);
      } else {
        EXPECT_THROW(values.set(index, sample[other]), Error);
      }
    }
  }
}

// The library cuts a text after 65,536 bytes, and says nothing.
TEST(FieldValues, MarkABodyThatTheLibraryCut) {
  for (const std::size_t length : {65535U, 65536U}) {
    std::string body(length, 'b');
    AS_EMAIL_T mail = {};
    mail.Body = body.data();
    UINT8 whole = 0;
    mail.BodyTruncated = &whole;
    const auto values = FieldValues<AS_EMAIL_T>::fromRecord(mail);
    EXPECT_EQ(*values.get<bool>("BodyTruncated"), length == 65536U);
    EXPECT_EQ(*values.get<std::string>("Body"), body);
  }
  std::string body(65536, 'b');
  AS_CONTACT_T contact = {};
  contact.Body = body.data();
  EXPECT_TRUE(*FieldValues<AS_CONTACT_T>::fromRecord(contact).get<bool>("BodyTruncated"));
  AS_EXCEPTION_T exception = {};
  exception.Body = body.data();
  EXPECT_EQ(*FieldValues<AS_EXCEPTION_T>::fromRecord(exception).get<std::string>("Body"), body);
}

TEST(FieldValues, HoldInlineFieldsFromTheBeginning) {
  FieldValues<AS_EMAIL_T> mail;
  EXPECT_EQ(*mail.get<std::int32_t>("Importance"), 0);
  EXPECT_EQ(*mail.get<bool>("Read"), false);
  mail.set("Importance", std::int32_t{2});
  mail.set("Read", true);
  mail.set("Importance", std::monostate());
  mail.set("Read", std::monostate());
  EXPECT_EQ(mail, FieldValues<AS_EMAIL_T>());
}

TEST(FieldValues, TakeAnyByteThatIsNotZeroForAFlagThatIsSet) {
  AS_EMAIL_T raw = {};
  raw.Read = 2;
  UINT8 cut = 255;
  raw.BodyTruncated = &cut;
  const auto mail = FieldValues<AS_EMAIL_T>::fromRecord(raw);
  EXPECT_EQ(*mail.get<bool>("Read"), true);
  EXPECT_EQ(*mail.get<bool>("BodyTruncated"), true);
}

TEST(FieldValues, CountWhatTheyTakeInARequest) {
  FieldValues<AS_CALENDAR_T> fields;
  EXPECT_EQ(fields.validate(7), 7U);
  fields.set("Subject", std::string("12345"));
  fields.set("Reminder", std::int32_t{15});
  fields.set("AllDayEvent", true);
  fields.set("StartTime", UtcTime());
  fields.set("Categories", List{"ab", "c"});
  fields.set("Attendees", std::vector<Attendee>{{"Ann", "a@b.c"}});
  fields.set("Timezone", ZoneBlock());
  EXPECT_EQ(fields.validate(), 5U + 16U + 8U + 32U + (6U + 5U) + (8U + 12U) + 237U);
}

bool refused(FieldValue value, const char* field = "Attendees") {
  FieldValues<AS_CALENDAR_T> fields;
  fields.set(field, std::move(value));
  try {
    fields.validate();
  } catch (const Error& error) {
    EXPECT_NE(std::string(error.what()).find(field), std::string::npos) << error.what();
    EXPECT_FALSE(error.advice().empty());
    return true;
  }
  return false;
}

TEST(FieldValues, RefuseAttendeesThatWouldNotComeApartAgain) {
  using Attendees = std::vector<Attendee>;
  EXPECT_FALSE(refused(Attendees{}));
  EXPECT_FALSE(refused(Attendees{{"Ann", "ann@example.com"}, {"Bob", ""}, {"", "c@example.com"}}));
  EXPECT_FALSE(refused(Attendees{{"#1", "a"}, {"@", "b"}}));
  EXPECT_TRUE(refused(Attendees{{"", ""}}));
  EXPECT_TRUE(refused(Attendees{{"a##b", "c"}}));
  EXPECT_TRUE(refused(Attendees{{"a", "b##c"}}));
  EXPECT_TRUE(refused(Attendees{{"a@@b", "c"}}));
  EXPECT_TRUE(refused(Attendees{{"a", "b@@c"}}));
  EXPECT_TRUE(refused(Attendees{{"a#", "b"}}));
  EXPECT_TRUE(refused(Attendees{{"a", "b@"}, {"c", "d"}}));
  EXPECT_TRUE(refused(Attendees{{std::string("a\0b", 3), "c"}}));
  EXPECT_TRUE(refused(Attendees{{"a", std::string("\0", 1)}}));
}

TEST(FieldValues, RefuseTimesThatAreNone) {
  EXPECT_FALSE(refused(UtcTime{.year = 2024, .month = 2, .day = 29}, "StartTime"));
  EXPECT_TRUE(refused(UtcTime{.year = 2023, .month = 2, .day = 29}, "StartTime"));
}

TEST(PackedAttendees, ComeApartAtTheirSeparators) {
  using Attendees = std::vector<Attendee>;
  EXPECT_EQ(unpackAttendees(""), Attendees{});
  EXPECT_EQ(unpackAttendees("Ann##a@b.c"), (Attendees{{"Ann", "a@b.c"}}));
  EXPECT_EQ(unpackAttendees("Ann##a@b.c@@Bob##b@b.c"), (Attendees{{"Ann", "a@b.c"}, {"Bob", "b@b.c"}}));
  EXPECT_EQ(unpackAttendees("Ann@@##b"), (Attendees{{"Ann", ""}, {"", "b"}}));
  EXPECT_EQ(unpackAttendees("@@Ann@@@@"), (Attendees{{"Ann", ""}}));
  EXPECT_EQ(unpackAttendees("a##b##c"), (Attendees{{"a", "b##c"}}));
  EXPECT_EQ(packAttendees({{"Ann", "a@b.c"}, {"Bob", ""}}), "Ann##a@b.c@@Bob##");
}

}  // namespace
}  // namespace airsync::test
