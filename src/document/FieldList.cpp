#include "document/FieldList.h"

#include "api/AirSync.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

// The name of the field that begins at `text`.
const char* FieldName(const char* text) {
  if (*text != '<') AirSync::getInstance()->AbortSync(AS_RESULT_MALFORMED_DOCUMENT);
  return text + 1;
}

}  // namespace

void GetFirstTag(char* destination, const char* source, char separator) {
  while (*source && *source != separator) *destination++ = *source++;
  *destination = '\0';
}

const char* RemoveFirstTag(const char* source, char separator) {
  while (*source && *source != separator) ++source;
  return *source ? source + 1 : source;
}

const char* GetFirstField(const char* text) { return text && *text ? FieldName(text) : nullptr; }

const char* GetNextField(const char* field) {
  while (field[0] || field[1] != '>') ++field;
  const char* const next = field + 2;
  return *next ? FieldName(next) : nullptr;
}

const char* GetFirstParameter(const char* field) { return GetNextParameter(field); }

const char* GetNextParameter(const char* parameter) {
  const char* const next = parameter + SmlStrlen(parameter) + 1;
  return *next == '>' ? nullptr : next;
}

}  // namespace AIRSYNC_STACK
