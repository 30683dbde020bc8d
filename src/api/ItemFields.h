// How a field of an item record is described: by its name, the tag of its element, its form, and its place.
//
// The tables of such rows (ContactFields.h, CalendarFields.h, EmailFields.h) are walked by the library's
// encoders and decoders, and by any host that stores, shows or edits items field by field.
#ifndef KROAIRSYNC_API_ITEM_FIELDS_H
#define KROAIRSYNC_API_ITEM_FIELDS_H

#include "api/ItemRecords.h"

namespace AIRSYNC_STACK {

// The form that a record field has (see api/ItemRecords.h).
enum AS_FIELD_FORM_T : UINT8 {
  AS_FORM_TEXT,
  AS_FORM_NUMBER,
  AS_FORM_FLAG,
  AS_FORM_TIME,  // on the wire 2004-12-31T23:59:59.000Z
  AS_FORM_LIST,
  AS_FORM_QUOTED,  // a text of which only the part delimited by double quotes is kept when it is received
  AS_FORM_COMPACT_TIME,  // on the wire 20041231T235959Z
  AS_FORM_ZONE,
  AS_FORM_ATTENDEES,
  AS_FORM_INLINE_NUMBER,
  AS_FORM_INLINE_FLAG,
};

// One field. Of the member pointers, only the one that goes with the form is set.
template <typename Record>
struct AS_FIELD_T {
  const char* name;
  const char* tag;
  char* Record::*text = nullptr;  // text, quoted, list and attendees
  INT32* Record::*number = nullptr;
  UINT8* Record::*flag = nullptr;  // flag and zone
  struct tm* Record::*time = nullptr;
  INT32 Record::*inlineNumber = nullptr;
  UINT8 Record::*inlineFlag = nullptr;
  const char* entryTag = nullptr;  // of a list: the tag of its entries
  AS_FIELD_FORM_T form;
  bool keepsEmptyEntries = false;  // of a list: empty entries that are received stay

  constexpr AS_FIELD_T(const char* fieldName, const char* elementTag, char* Record::*member,
                       AS_FIELD_FORM_T textForm = AS_FORM_TEXT)
      : name(fieldName), tag(elementTag), text(member), form(textForm) {}
  constexpr AS_FIELD_T(const char* fieldName, const char* elementTag, char* Record::*member,
                       const char* listEntryTag, bool keepEmpty = false)
      : name(fieldName),
        tag(elementTag),
        text(member),
        entryTag(listEntryTag),
        form(AS_FORM_LIST),
        keepsEmptyEntries(keepEmpty) {}
  constexpr AS_FIELD_T(const char* fieldName, const char* elementTag, INT32* Record::*member)
      : name(fieldName), tag(elementTag), number(member), form(AS_FORM_NUMBER) {}
  constexpr AS_FIELD_T(const char* fieldName, const char* elementTag, UINT8* Record::*member,
                       AS_FIELD_FORM_T byteForm = AS_FORM_FLAG)
      : name(fieldName), tag(elementTag), flag(member), form(byteForm) {}
  constexpr AS_FIELD_T(const char* fieldName, const char* elementTag, struct tm* Record::*member,
                       AS_FIELD_FORM_T timeForm = AS_FORM_TIME)
      : name(fieldName), tag(elementTag), time(member), form(timeForm) {}
  constexpr AS_FIELD_T(const char* fieldName, const char* elementTag, INT32 Record::*member)
      : name(fieldName), tag(elementTag), inlineNumber(member), form(AS_FORM_INLINE_NUMBER) {}
  constexpr AS_FIELD_T(const char* fieldName, const char* elementTag, UINT8 Record::*member)
      : name(fieldName), tag(elementTag), inlineFlag(member), form(AS_FORM_INLINE_FLAG) {}
};

}  // namespace AIRSYNC_STACK

#endif
