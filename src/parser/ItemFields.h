// Reading the fields of a record from an element, and releasing them, by the record's table.
#ifndef KROAIRSYNC_PARSER_ITEM_FIELDS_H
#define KROAIRSYNC_PARSER_ITEM_FIELDS_H

#include "api/ItemFields.h"
#include "parser/ItemValues.h"
#include "parser/Parser.h"

namespace AIRSYNC_STACK {

/// Fills one field from the first element below `element` that has its tag.
template <typename Record>
void ReadField(Record& record, const AS_FIELD_T<Record>& field, const sml_element* element,
               DateParts& dates) {
  if (field.form == AS_FORM_LIST || field.form == AS_FORM_ATTENDEES) {
    const sml_element* list = SE_Search(element, field.tag);
    record.*field.text =
        field.form == AS_FORM_ATTENDEES
            ? NewAttendeeList(list)
            : NewPackedList(list, field.entryTag,
                            field.keepsEmptyEntries ? EmptyEntries::kKept : EmptyEntries::kSkipped);
    return;
  }
  char* text = Parser::ProcessDataElement(element, field.tag);
  switch (field.form) {
    case AS_FORM_TEXT:
      record.*field.text = text;
      break;
    case AS_FORM_QUOTED:
      record.*field.text = FirstQuotedPart(text);
      break;
    case AS_FORM_NUMBER:
      record.*field.number = NewNumber(text);
      break;
    case AS_FORM_FLAG:
      record.*field.flag = NewFlag(text);
      break;
    case AS_FORM_ZONE:
      record.*field.flag = NewTimeZone(text);
      break;
    case AS_FORM_TIME:
      record.*field.time = NewExtendedTime(text, dates);
      break;
    case AS_FORM_COMPACT_TIME:
      record.*field.time = NewCompactTime(text, dates);
      break;
    case AS_FORM_INLINE_NUMBER:
      record.*field.inlineNumber = NumberIn(text);
      break;
    case AS_FORM_INLINE_FLAG:
      record.*field.inlineFlag = NumberIn(text) != 0 ? 1 : 0;
      break;
    case AS_FORM_LIST:
    case AS_FORM_ATTENDEES:
      break;
  }
}

template <typename Record, unsigned kRows>
void ReadFields(Record& record, const AS_FIELD_T<Record> (&table)[kRows], const sml_element* element,
                DateParts& dates) {
  for (const AS_FIELD_T<Record>& field : table) ReadField(record, field, element, dates);
}

/// Releases what was made for the record. Its texts belong to the response.
template <typename Record, unsigned kRows>
void ReleaseFields(Record& record, const AS_FIELD_T<Record> (&table)[kRows]) {
  for (const AS_FIELD_T<Record>& field : table) {
    if (field.form == AS_FORM_LIST || field.form == AS_FORM_ATTENDEES) ReleaseField(record.*field.text);
    if (field.number != nullptr) ReleaseField(record.*field.number);
    if (field.flag != nullptr) ReleaseField(record.*field.flag);
    if (field.time != nullptr) ReleaseField(record.*field.time);
  }
}

}  // namespace AIRSYNC_STACK

#endif
