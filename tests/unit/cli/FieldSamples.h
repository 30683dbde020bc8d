// A value of each form of field, as JSON and as the host keeps it.
#ifndef AIRSYNC_TESTS_UNIT_CLI_FIELD_SAMPLES_H
#define AIRSYNC_TESTS_UNIT_CLI_FIELD_SAMPLES_H

#include <string>
#include <vector>

#include "store/FieldValues.h"

namespace airsync::test {

struct FieldSample {
  std::string json;
  FieldValue value;
};

/// 172 bytes: 0, 1, 2 ... 171.
inline ZoneBlock sampleZone() {
  ZoneBlock zone = {};
  for (std::size_t i = 0; i < zone.size(); ++i) zone[i] = static_cast<std::uint8_t>(i);
  return zone;
}

inline const char* sampleZoneText() {
  return "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUmJygpKissLS4vMDEyMzQ1Njc4OTo7PD0+P0BBQkNERUZH"
         "SElKS0xNTk9QUVJTVFVWV1hZWltcXV5fYGFiY2RlZmdoaWprbG1ub3BxcnN0dXZ3eHl6e3x9fn+AgYKDhIWGh4iJiouMjY6P"
         "kJGSk5SVlpeYmZqbnJ2en6ChoqOkpaanqKmqqw==";
}

inline FieldSample sampleOf(AIRSYNC_STACK::AS_FIELD_FORM_T form) {
  using namespace AIRSYNC_STACK;
  switch (form) {
    case AS_FORM_NUMBER:
    case AS_FORM_INLINE_NUMBER:
      return {"-17", std::int32_t{-17}};
    case AS_FORM_FLAG:
    case AS_FORM_INLINE_FLAG:
      return {"true", true};
    case AS_FORM_TIME:
    case AS_FORM_COMPACT_TIME:
      return {"\"1969-12-31T23:59:58Z\"", UtcTime{1969, 12, 31, 23, 59, 58}};
    case AS_FORM_LIST:
      return {"[\"a\",\"b c\"]", List{"a", "b c"}};
    case AS_FORM_ATTENDEES:
      return {R"([{"Name":"Ann","Email":"ann@example.com"},{"Name":"Bo","Email":""}])",
              std::vector<Attendee>{{"Ann", "ann@example.com"}, {"Bo", ""}}};
    case AS_FORM_ZONE:
      return {std::string("\"") + sampleZoneText() + "\"", sampleZone()};
    case AS_FORM_TEXT:
    case AS_FORM_QUOTED:
      break;
  }
  return {"\"J\\u00fcrgen\\n2\"", std::string("J\xc3\xbcrgen\n2")};
}

}  // namespace airsync::test

#endif
