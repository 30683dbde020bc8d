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
// A null pointer means that the item does not carry the field. It does not mean that the field is empty. What
// the server sends as an empty date, number or zone is no value, and counts as not carried.
//
// The library passes numbers on and reads none. Those that several records have mean:
//   BusyStatus     0 free, 1 tentative, 2 busy, 3 out of office
//   Sensitivity    0 normal, 1 personal, 2 private, 3 confidential
//   BodySize       bytes of the whole Body on the server, also where BodyTruncated says that it was cut
//   Reminder       minutes before the start
//
// A record that the library passes to storage, and all that it points to, lives until that call returns:
// storage copies what it keeps. A record that storage hands out (GetNextChange) stays valid until the
// response to the request that carries it has been processed.
#ifndef KROAIRSYNC_API_ITEM_RECORDS_H
#define KROAIRSYNC_API_ITEM_RECORDS_H

#include <cstddef>
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
  // 0 daily; 1 weekly, on DayOfWeek; 2 monthly, on DayOfMonth; 3 monthly, on DayOfWeek of WeekOfMonth;
  // 5 yearly, on DayOfMonth of MonthOfYear; 6 yearly, on DayOfWeek of WeekOfMonth of MonthOfYear. 4 is none.
  INT32 Type;
  INT32* Interval;     // every so many days, weeks or months; absent: 1
  INT32* Occurrences;  // how many there are; neither this nor Until: for ever
  // Bits: 1 Sunday, 2 Monday, 4 Tuesday, 8 Wednesday, 16 Thursday, 32 Friday, 64 Saturday.
  INT32* DayOfWeek;
  INT32* DayOfMonth;   // 1 to 31
  INT32* WeekOfMonth;  // 1 to 4; 5 is the last one
  INT32* MonthOfYear;  // 1 to 12
  struct tm* Until;    // the start of the last occurrence
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
  INT32* Reminder;
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
  // 0 an appointment, no meeting; 1 a meeting that the user organizes, 3 one that the user was invited to;
  // 5 and 7 the same, cancelled.
  INT32* MeetingStatus;
  char* Attendees;  // attendees
};
static_assert(sizeof(AS_CALENDAR_T) == 22 * sizeof(void*), "a flat sequence of 22 words");

// One attachment of a mail.
struct AS_ATTACHMENT_T {
  char* Name;
  INT32 Size;    // bytes, as the server announces them: many announce an estimate
  char* OID;     // the server's handle for fetching the attachment
  INT32 Method;  // 1 a file; 5 a message; 6 an object embedded in the text; servers may say others
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
  INT32* Reminder;
  UINT8* AllDayEvent;
  INT32* BusyStatus;
  INT32* Sensitivity;
  char* Categories;  // list
  AS_RECURRENCE_T* Recurrence;
  void* Reserved15;
  void* Reserved16;
  // 0 a single meeting, 1 the series, 2 one occurrence of a series, 3 an exception of a series.
  INT32 InstanceType;
  char* Organizer;
  struct tm* RecurrenceId;  // of an occurrence or an exception: which one is meant
  INT32 ResponseRequested;  // 1: the organizer wants an answer (AirSync::MeetingResponse); 0: not
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
  INT32 Importance;  // 0 low, 1 normal, 2 high
  UINT8 Read;        // 1 read, 0 unread
  char* MessageClass;
  AS_ATTACHMENT_T* Attachments;  // array of AttachmentCount entries; test it before the count
  UINT16 AttachmentCount;
  AS_MEETING_REQUEST_T* MeetingRequest;  // or null
  char* ThreadTopic;
};
static_assert(offsetof(AS_EMAIL_T, Importance) == 10 * sizeof(void*) &&
                  offsetof(AS_EMAIL_T, Read) == 10 * sizeof(void*) + 4 &&
                  offsetof(AS_EMAIL_T, MessageClass) == (sizeof(void*) == 4 ? 48 : 88) &&
                  offsetof(AS_EMAIL_T, Attachments) == (sizeof(void*) == 4 ? 52 : 96) &&
                  offsetof(AS_EMAIL_T, AttachmentCount) == (sizeof(void*) == 4 ? 56 : 104) &&
                  offsetof(AS_EMAIL_T, MeetingRequest) == (sizeof(void*) == 4 ? 60 : 112) &&
                  offsetof(AS_EMAIL_T, ThreadTopic) == (sizeof(void*) == 4 ? 64 : 120) &&
                  sizeof(AS_EMAIL_T) == (sizeof(void*) == 4 ? 68 : 128),
              "a word for each field, also where it is narrower; Importance and Read share one of 64 bits");

}  // namespace AIRSYNC_STACK

#endif
