// Item records: the only form in which contacts, events and mails cross the border to the host's storage.
//
// A record is a flat sequence of fields, most of them pointers:
//   text      NUL-terminated, the document's UTF-8 bytes as they stand
//   number    a signed 32-bit integer, allocated by itself
//   flag      one byte, 1 or 0, allocated by itself
//   time      a broken-down UTC time; only seconds, minutes, hours, day of month, month (0 to 11) and years
//             since 1900 carry meaning
//   list      one text whose entries are joined by "@@" (a packed list)
//   attendees a packed list whose entries are name, "##", e-mail address
//   zone      exactly AS_ZONE_SIZE bytes: the protocol's time-zone structure, never interpreted by the
//   library
// A null pointer means that the item does not carry the field. It does not mean that the field is empty.
//
// A record that the library passes to storage, and all that it points to, lives until that call returns:
// storage copies what it keeps. A record that storage hands out (GetNextChange) stays valid until the
// response to the request that carries it has been processed.
#ifndef KROAIRSYNC_API_ITEM_RECORDS_H
#define KROAIRSYNC_API_ITEM_RECORDS_H

#include <ctime>

#include "support/types.h"

namespace AIRSYNC_STACK {

// Bytes of a zone.
inline constexpr UINT32 AS_ZONE_SIZE = 172;

// A contact. The fields are described, with the elements that carry them, in api/ContactFields.h.
struct AS_CONTACT_T {
  char* Body;
  INT32* BodySize;
  UINT8* BodyTruncated;
  struct tm* Anniversary;
  char* AssistantName;
  char* AssistantPhoneNumber;
  struct tm* Birthday;
  char* Business2PhoneNumber;
  char* BusinessCity;
  char* BusinessCountry;
  char* BusinessPostalCode;
  char* BusinessState;
  char* BusinessStreet;
  char* BusinessFaxNumber;
  char* BusinessPhoneNumber;
  char* CarPhoneNumber;
  char* Categories;  // list
  char* Children;    // list
  char* CompanyName;
  char* Department;
  char* Email1Address;
  char* Email2Address;
  char* Email3Address;
  char* FileAs;
  char* FirstName;
  char* Home2PhoneNumber;
  char* HomeCity;
  char* HomeCountry;
  char* HomePostalCode;
  char* HomeState;
  char* HomeStreet;
  char* HomeFaxNumber;
  char* HomePhoneNumber;
  char* JobTitle;
  char* LastName;
  char* MiddleName;
  char* MobilePhoneNumber;
  char* OfficeLocation;
  char* OtherCity;
  char* OtherCountry;
  char* OtherPostalCode;
  char* OtherState;
  char* OtherStreet;
  char* PagerNumber;
  char* RadioPhoneNumber;
  char* Spouse;
  char* Suffix;
  char* Title;
  char* WebPage;
  char* YomiCompanyName;
  char* YomiFirstName;
  char* YomiLastName;
};
static_assert(sizeof(AS_CONTACT_T) == 52 * sizeof(void*), "a flat sequence of 52 pointers");

// The rule by which an event repeats.
struct AS_RECURRENCE_T {
  INT32 Type;
  INT32* Interval;
  INT32* Occurrences;
  INT32* DayOfWeek;  // bit mask
  INT32* DayOfMonth;
  INT32* WeekOfMonth;
  INT32* MonthOfYear;
  struct tm* Until;
};
static_assert(sizeof(AS_RECURRENCE_T) == 8 * sizeof(void*), "a flat sequence of 8 words");

// One occurrence of a repeating event that differs from the others, or is cancelled.
struct AS_EXCEPTION_T {
  struct tm* DtStamp;
  struct tm* ExceptionStartTime;  // the start that the occurrence had before it was changed
  struct tm* StartTime;
  struct tm* EndTime;
  char* Location;
  char* Body;
  INT32* BusyStatus;
  INT32* Sensitivity;
  INT32* Reminder;
  char* Subject;
  char* UID;
  UINT8* AllDayEvent;
  UINT8* Deleted;    // the occurrence is cancelled
  char* Categories;  // list
};
static_assert(sizeof(AS_EXCEPTION_T) == 14 * sizeof(void*), "a flat sequence of 14 pointers");

// An event.
struct AS_CALENDAR_T {
  char* Body;
  INT32* BodySize;  // kept in the layout; neither filled nor read
  UINT8* BodyTruncated;
  UINT8* Timezone;  // zone
  struct tm* StartTime;
  struct tm* EndTime;
  struct tm* DtStamp;
  char* Location;
  INT32* Reminder;  // minutes before the start
  UINT8* AllDayEvent;
  INT32* BusyStatus;
  INT32* Sensitivity;
  char* Categories;  // list
  AS_RECURRENCE_T* Recurrence;
  AS_EXCEPTION_T* Exceptions;  // array of ExceptionCount entries, or null
  INT32 ExceptionCount;
  char* OrganizerName;
  char* OrganizerEmail;
  char* Subject;
  char* UID;
  INT32* MeetingStatus;
  char* Attendees;  // attendees
};
static_assert(sizeof(AS_CALENDAR_T) == 22 * sizeof(void*), "a flat sequence of 22 words");

// One attachment of a mail.
struct AS_ATTACHMENT_T {
  char* Name;
  INT32 Size;  // bytes
  char* OID;   // the server's handle for fetching the attachment
  INT32 Method;
  char* DisplayName;
};
static_assert(sizeof(AS_ATTACHMENT_T) == 5 * sizeof(void*), "a flat sequence of 5 words");

// The meeting that a mail invites to. Fields 4 to 14 stand where AS_CALENDAR_T has them; the reserved ones
// are never filled.
struct AS_MEETING_REQUEST_T {
  void* Reserved1;
  void* Reserved2;
  void* Reserved3;
  UINT8* Timezone;  // zone
  struct tm* StartTime;
  struct tm* EndTime;
  struct tm* DtStamp;
  char* Location;
  INT32* Reminder;  // minutes before the start
  UINT8* AllDayEvent;
  INT32* BusyStatus;
  INT32* Sensitivity;
  char* Categories;  // list
  AS_RECURRENCE_T* Recurrence;
  void* Reserved15;
  void* Reserved16;
  INT32 InstanceType;
  char* Organizer;
  struct tm* RecurrenceId;
  INT32 ResponseRequested;
  char* GlobalObjId;
};
static_assert(sizeof(AS_MEETING_REQUEST_T) == 21 * sizeof(void*), "a flat sequence of 21 words");

// A mail.
struct AS_EMAIL_T {
  char* Body;
  INT32* BodySize;
  UINT8* BodyTruncated;
  char* To;
  char* Cc;
  char* From;
  char* ReplyTo;
  struct tm* DateReceived;
  char* Subject;
  char* DisplayTo;
  INT32 Importance;
  UINT8 Read;  // 1 read, 0 unread
  char* MessageClass;
  AS_ATTACHMENT_T* Attachments;  // array of AttachmentCount entries; test it before the count
  UINT16 AttachmentCount;
  AS_MEETING_REQUEST_T* MeetingRequest;  // or null
  char* ThreadTopic;
};
static_assert(sizeof(void*) != 4 || sizeof(AS_EMAIL_T) == 17 * sizeof(void*),
              "a word for each field, also where it is narrower");

}  // namespace AIRSYNC_STACK

#endif
