#include "parser/ItemValues.h"

#include <cstdio>
#include <cstring>

#include "api/AirSync.h"
#include "api/ItemRecords.h"
#include "document/Base64.h"
#include "parser/Parser.h"
#include "support/Porting.h"
#include "support/Time.h"

namespace AIRSYNC_STACK {

namespace {

const char kSeparator[] = "@@";
const UINT32 kSeparatorLength = sizeof(kSeparator) - 1;
const UINT32 kLongestList = INT32_MAX;

// Both are lengths of texts that a server sent: their sum may be more than the number holds.
UINT32 Sum(UINT32 left, UINT32 right) {
  if (left > kLongestList || right > kLongestList - left) {
    AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT);
  }
  return left + right;
}

bool IsAbsent(const char* text) { return text == nullptr || text[0] == '\0'; }

struct tm* NewTime(const DateParts& parts) {
  struct tm* time = static_cast<struct tm*>(AdapterMalloc(sizeof(struct tm)));
  SmlMemset(time, 0, sizeof(struct tm));
  time->tm_sec = parts.second;
  time->tm_min = parts.minute;
  time->tm_hour = parts.hour;
  time->tm_mday = parts.day;
  time->tm_mon = parts.month - 1;
  time->tm_year = parts.year - 1900;
  return time;
}

// A list that grows entry by entry.
struct PackedListText {
  char* text = nullptr;
  UINT32 length = 0;

  bool Append(const char* entry) { return Append(entry, "", ""); }

  // An entry made of three parts. False when there is no memory to grow with; the list is then gone.
  bool Append(const char* first, const char* middle, const char* last) {
    const UINT32 entryLength = Sum(Sum(SmlStrlen(first), SmlStrlen(middle)), SmlStrlen(last));
    if (text == nullptr) {
      text = static_cast<char*>(AdapterMalloc(entryLength + 1));
    } else {
      const UINT32 grownLength = Sum(length + kSeparatorLength, entryLength);
      char* grown = static_cast<char*>(AdapterRealloc(text, grownLength + 1, length + 1));
      if (grown == nullptr) {
        ReleaseField(text);
        return false;
      }
      text = grown;
      Add(kSeparator);
    }
    Add(first);
    Add(middle);
    Add(last);
    return true;
  }

 private:
  void Add(const char* part) {
    const UINT32 partLength = SmlStrlen(part);
    SmlMemcpy(text + length, part, partLength + 1);
    length += partLength;
  }
};

}  // namespace

// Scans are not checked: what a text does not supply keeps its value.
// NOLINTBEGIN(cert-err33-c, cert-err34-c)
INT32 NumberIn(const char* text) {
  int value = 0;
  if (text != nullptr) std::sscanf(text, "%d", &value);
  return value;
}

INT32* NewNumber(const char* text) {
  if (IsAbsent(text)) return nullptr;
  INT32* number = static_cast<INT32*>(AdapterMalloc(sizeof(INT32)));
  *number = NumberIn(text);
  return number;
}

UINT8* NewFlag(const char* text) {
  if (IsAbsent(text)) return nullptr;
  UINT8* flag = static_cast<UINT8*>(AdapterMalloc(sizeof(UINT8)));
  *flag = NumberIn(text) != 0 ? 1 : 0;
  return flag;
}

struct tm* NewExtendedTime(const char* text, DateParts& parts) {
  if (IsAbsent(text)) return nullptr;
  // How much of the text fits the pattern is not tested.
  std::sscanf(text, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", &parts.year, &parts.month, &parts.day, &parts.hour,
              &parts.minute, &parts.second, &parts.milliseconds);
  AdjustTime(parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second, parts.milliseconds);
  return NewTime(parts);
}

struct tm* NewCompactTime(const char* text, DateParts& parts) {
  if (IsAbsent(text)) return nullptr;
  std::sscanf(text, "%04d%02d%02dT%02d%02d%02dZ", &parts.year, &parts.month, &parts.day, &parts.hour,
              &parts.minute, &parts.second);
  return NewTime(parts);
}
// NOLINTEND(cert-err33-c, cert-err34-c)

UINT8* NewTimeZone(const char* text) {
  if (IsAbsent(text)) return nullptr;
  // The decoder may write one byte past three quarters of its text.
  const UINT32 decodedSize = SmlStrlen(text) / 4 * 3 + 1;
  const UINT32 size = decodedSize < AS_ZONE_SIZE ? AS_ZONE_SIZE : decodedSize;
  char* decoded = static_cast<char*>(AdapterMalloc(size));
  SmlMemset(decoded, 0, size);
  if (!SmlBase64Decode(decoded, text)) AirSync::getInstance()->AbortSync(AS_RESULT_INVALID_ARGUMENT);
  UINT8* zone = static_cast<UINT8*>(AdapterMalloc(AS_ZONE_SIZE));
  SmlMemcpy(zone, decoded, AS_ZONE_SIZE);
  AdapterFree(decoded);
  return zone;
}

char* NewPackedList(const sml_element* list, const char* entryTag, EmptyEntries emptyEntries) {
  PackedListText packed;
  const UINT16 count = list == nullptr ? 0 : SE_GetNumberOfChildren(list);
  for (UINT16 i = 0; i < count; ++i) {
    const sml_element* child = SE_GetNthChild(list, i);
    if (SmlStrcmp(SE_GetTag(child), entryTag) != 0) continue;
    const char* entry = SE_GetValue(child);
    if (IsAbsent(entry) && emptyEntries == EmptyEntries::kSkipped) continue;
    if (!packed.Append(entry == nullptr ? "" : entry)) return nullptr;
  }
  return packed.text;
}

char* NewAttendeeList(const sml_element* list) {
  PackedListText packed;
  const UINT16 count = list == nullptr ? 0 : SE_GetNumberOfChildren(list);
  for (UINT16 i = 0; i < count; ++i) {
    const sml_element* child = SE_GetNthChild(list, i);
    if (SmlStrcmp(SE_GetTag(child), "Attendee") != 0) continue;
    const char* email = Parser::ProcessDataElement(child, "AttendeeEmail");
    const char* name = Parser::ProcessDataElement(child, "AttendeeName");
    if (IsAbsent(email) || IsAbsent(name)) continue;
    if (!packed.Append(name, "##", email)) return nullptr;
  }
  return packed.text;
}

char* FirstQuotedPart(char* text) {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread drives the library
  return text == nullptr ? nullptr : std::strtok(text, "\"");
}

}  // namespace AIRSYNC_STACK
