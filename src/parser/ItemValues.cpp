#include "parser/ItemValues.h"

#include <cstdio>
#include <cstring>

#include "support/Porting.h"
#include "support/Time.h"

namespace AIRSYNC_STACK {

namespace {

const char kSeparator[] = "@@";
const UINT32 kSeparatorLength = sizeof(kSeparator) - 1;

bool IsAbsent(const char* text) { return text == nullptr || text[0] == '\0'; }

INT32 NumberIn(const char* text) {
  int value = 0;
  std::sscanf(text, "%d", &value);
  return value;
}

// A list that grows entry by entry.
struct PackedListText {
  char* text = nullptr;
  UINT32 length = 0;

  // False when there is no memory to grow with; the list is then gone.
  bool Append(const char* entry) {
    const UINT32 entryLength = SmlStrlen(entry);
    if (text == nullptr) {
      text = static_cast<char*>(AdapterMalloc(entryLength + 1));
    } else {
      char* grown =
          static_cast<char*>(AdapterRealloc(text, length + kSeparatorLength + entryLength + 1, length + 1));
      if (grown == nullptr) {
        ReleaseField(text);
        return false;
      }
      text = grown;
      SmlMemcpy(text + length, kSeparator, kSeparatorLength);
      length += kSeparatorLength;
    }
    SmlMemcpy(text + length, entry, entryLength + 1);
    length += entryLength;
    return true;
  }
};

}  // namespace

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

char* FirstQuotedPart(char* text) { return text == nullptr ? nullptr : std::strtok(text, "\""); }

}  // namespace AIRSYNC_STACK
