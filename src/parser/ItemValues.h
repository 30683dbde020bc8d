// The forms of item fields, from the texts of a response to what records point to.
//
// Everything here is made in tracked memory and lives until the record has been handed to storage. A missing
// or empty text is an absent field: it yields null.
#ifndef KROAIRSYNC_PARSER_ITEM_VALUES_H
#define KROAIRSYNC_PARSER_ITEM_VALUES_H

#include <ctime>

#include "document/Element.h"
#include "support/Memory.h"

namespace AIRSYNC_STACK {

/// The working integers of the dates of one item. They are shared: what a date's text does not supply keeps
/// the value that the item's previous date left.
struct DateParts {
  INT32 year = 0;
  INT32 month = 0;
  INT32 day = 0;
  INT32 hour = 0;
  INT32 minute = 0;
  INT32 second = 0;
  INT32 milliseconds = 0;
};

/// The number at the start of a text; 0 where there is none.
INT32 NumberIn(const char* text);

/// That number, by itself.
INT32* NewNumber(const char* text);

/// One byte: whether that number is not 0.
UINT8* NewFlag(const char* text);

/// A time of the form 2004-12-31T23:59:59.500Z, rounded up to a whole second.
struct tm* NewExtendedTime(const char* text, DateParts& parts);

/// A time of the form 20041231T235959Z.
struct tm* NewCompactTime(const char* text, DateParts& parts);

/// The 172 bytes of a time-zone block in base64: shorter ones are completed with zeros, longer ones cut. A
/// text that is no base64 ends the exchange with AS_RESULT_INVALID_ARGUMENT.
UINT8* NewTimeZone(const char* text);

enum class EmptyEntries { kSkipped, kKept };

/// The texts of the children of `list` that have the tag, joined by "@@"; null for a null list or when there
/// is none. A list that can't be grown is null, too.
char* NewPackedList(const sml_element* list, const char* entryTag, EmptyEntries emptyEntries);

/// The Attendee children of `list`, each as name, "##", e-mail address, joined by "@@". Those that lack one
/// of the two are left out.
char* NewAttendeeList(const sml_element* list);

/// What stands between the first double quotes of a text: leading quotes are skipped, and the next one is
/// overwritten by a NUL. A text without quotes is returned whole; one that holds nothing but quotes gives
/// null.
char* FirstQuotedPart(char* text);

/// Releases what a field points to, and makes it absent.
template <typename Value>
void ReleaseField(Value*& field) {
  if (field == nullptr) return;
  AdapterFree(field);
  field = nullptr;
}

}  // namespace AIRSYNC_STACK

#endif
