// Comparing a table of fields with the protocol's documentation.
#ifndef TESTS_UNIT_API_FIELD_TABLES_H
#define TESTS_UNIT_API_FIELD_TABLES_H

#include <cstddef>
#include <gtest/gtest.h>

#include "api/ItemFields.h"

namespace airsync_test {

struct DocumentedField {
  int place;  // in the record, from 1; 0 when words are shared there
  const char* name;
  const char* tag;
  AIRSYNC_STACK::AS_FIELD_FORM_T form;
};

/// The place in the record, from 1, that the row's one member pointer leads to.
template <typename Record>
std::ptrdiff_t PlaceOf(const AIRSYNC_STACK::AS_FIELD_T<Record>& row) {
  static const Record record = {};
  const void* member = nullptr;
  int members = 0;
  const auto look = [&](auto pointer) {
    if (pointer == nullptr) return;
    member = &(record.*pointer);
    ++members;
  };
  look(row.text);
  look(row.number);
  look(row.flag);
  look(row.time);
  look(row.inlineNumber);
  look(row.inlineFlag);
  EXPECT_EQ(members, 1) << row.name;
  const std::ptrdiff_t offset = static_cast<const char*>(member) - reinterpret_cast<const char*>(&record);
  return offset / static_cast<std::ptrdiff_t>(sizeof(void*)) + 1;
}

template <typename Record, std::size_t kRows, std::size_t kDocumentedRows>
void ExpectDocumented(const AIRSYNC_STACK::AS_FIELD_T<Record> (&table)[kRows],
                      const DocumentedField (&documented)[kDocumentedRows]) {
  ASSERT_EQ(kRows, kDocumentedRows);
  for (std::size_t i = 0; i < kRows; ++i) {
    EXPECT_STREQ(table[i].name, documented[i].name);
    EXPECT_STREQ(table[i].tag, documented[i].tag);
    EXPECT_EQ(table[i].form, documented[i].form) << table[i].name;
    const std::ptrdiff_t place = PlaceOf(table[i]);
    EXPECT_TRUE(place == documented[i].place || documented[i].place == 0) << table[i].name << place;
    const bool isList = table[i].form == AIRSYNC_STACK::AS_FORM_LIST;
    EXPECT_STREQ(table[i].entryTag, isList ? "Category" : nullptr) << table[i].name;
    EXPECT_FALSE(table[i].keepsEmptyEntries) << table[i].name;
  }
}

}  // namespace airsync_test

#endif
