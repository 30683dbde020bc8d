// What the properties are tried on.
#ifndef TESTS_UNIT_PROPERTIES_GENERATORS_H
#define TESTS_UNIT_PROPERTIES_GENERATORS_H

#include <cstring>
#include <deque>
#include <rapidcheck.h>
#include <string>
#include <vector>

#include "api/ItemFields.h"
#include "support/FullItems.h"

namespace airsync_test {

/// One byte other than NUL and those named.
inline rc::Gen<char> AnyByte(const std::string& but = "") {
  const auto byte =
      rc::gen::map(rc::gen::inRange(1, 256), [](int value) { return static_cast<char>(value); });
  return rc::gen::suchThat(byte, [but](char c) { return but.find(c) == std::string::npos; });
}

/// A text of up to 30 such bytes.
inline rc::Gen<std::string> AnyText(const std::string& but = "") {
  return rc::gen::resize(30, rc::gen::container<std::string>(AnyByte(but)));
}
inline rc::Gen<std::string> AnyFullText(const std::string& but = "") {
  return rc::gen::nonEmpty(AnyText(but));
}

/// Any second of the years 0 to 9999, whether the calendar has that day or not.
inline struct tm AnyTime() {
  return TimeOf(*rc::gen::inRange(0, 10000), *rc::gen::inRange(1, 13), *rc::gen::inRange(1, 32),
                *rc::gen::inRange(0, 24), *rc::gen::inRange(0, 60), *rc::gen::inRange(0, 60));
}

/// Fills records by their tables, and owns what they then point to. A field is absent or has a value that
/// survives the way to the server: no text is empty, and no entry of a list holds its separator.
class ItemMaker {
 public:
  template <typename Record, std::size_t kRows>
  void Fill(Record& record, const AIRSYNC_STACK::AS_FIELD_T<Record> (&table)[kRows]) {
    for (const AIRSYNC_STACK::AS_FIELD_T<Record>& field : table) {
      if (*rc::gen::arbitrary<bool>()) FillField(record, field);
    }
  }

 private:
  template <typename Record>
  void FillField(Record& record, const AIRSYNC_STACK::AS_FIELD_T<Record>& field) {
    using namespace AIRSYNC_STACK;
    switch (field.form) {
      case AS_FORM_TEXT:
        record.*field.text = Keep(*AnyFullText());
        break;
      case AS_FORM_QUOTED:
        record.*field.text = Keep(*AnyFullText("\""));
        break;
      case AS_FORM_LIST:
        record.*field.text = Keep(Joined([] { return *AnyFullText("@"); }));
        break;
      case AS_FORM_ATTENDEES:
        record.*field.text = Keep(Joined([] { return *AnyFullText("@#") + "##" + *AnyFullText("@#"); }));
        break;
      case AS_FORM_NUMBER:
        record.*field.number = &numbers_.emplace_back(*rc::gen::arbitrary<INT32>());
        break;
      case AS_FORM_FLAG:
        record.*field.flag =
            reinterpret_cast<UINT8*>(Keep(std::string(1, static_cast<char>(*rc::gen::inRange(0, 2)))));
        break;
      case AS_FORM_ZONE: {
        const auto bytes = *rc::gen::container<std::vector<UINT8>>(kZoneSize, rc::gen::arbitrary<UINT8>());
        record.*field.flag = reinterpret_cast<UINT8*>(Keep(std::string(bytes.begin(), bytes.end())));
        break;
      }
      case AS_FORM_TIME:
      case AS_FORM_COMPACT_TIME:
        record.*field.time = &times_.emplace_back(AnyTime());
        break;
      case AS_FORM_INLINE_NUMBER:
        record.*field.inlineNumber = *rc::gen::arbitrary<INT32>();
        break;
      case AS_FORM_INLINE_FLAG:
        record.*field.inlineFlag = static_cast<UINT8>(*rc::gen::inRange(0, 2));
        break;
    }
  }

  template <typename MakeEntry>
  static std::string Joined(const MakeEntry& makeEntry) {
    std::string list = makeEntry();
    for (int more = *rc::gen::inRange(0, 3); more > 0; --more) list += "@@" + makeEntry();
    return list;
  }

  char* Keep(const std::string& text) { return texts_.emplace_back(text).data(); }

  std::deque<std::string> texts_;
  std::deque<INT32> numbers_;
  std::deque<struct tm> times_;
};

}  // namespace airsync_test

#endif
