// What all requests share: elements with numbers and texts, packed lists, log lines.
#include "generator/Generator.h"

#include "generator/Segment.h"
#include "support/InlineText.h"
#include "support/Memory.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

Generator::Generator(AirSyncDBInterface* storage, ENCODINGTYPE encoding, Log* log)
    : storage_(storage), encoding_(encoding), log_(log) {}

void Generator::BeginSync(const FOLDER_INFO& folder) {
  const bool sameFolder = InlineTextEquals(folder.folder.serverId.text,
                                           TerminatedText<sizeof(FOLDER_ID)>(pendingFolder_.text).text);
  if (!sameFolder || InlineTextEquals(folder.syncKey.text, "0")) DropPending();
}

void Generator::DropPending() {
  if (!pendingAttached_) SE_Destroy(pending_);
  ForgetTrackedMemory();
}

void Generator::ForgetTrackedMemory() {
  pending_ = nullptr;
  pendingAttached_ = false;
}

// NOLINTNEXTLINE(readability-non-const-parameter): the texts of records are given as they are
sml_element* Generator::buildDataElement(const char* tag, unsigned char* value) {
  const char* text = reinterpret_cast<const char*>(value);
  if (text == nullptr || text[0] == '\0') return nullptr;
  LogLine(AS_LOG_LEVEL_DETAIL, "current Element Name:", tag);
  LogLine(AS_LOG_LEVEL_DETAIL, "current Element Value:", text);
  return SE_New(tag, text);
}

sml_element* Generator::NumberElement(const char* tag, INT32 value) {
  char text[12];
  SmlSprintf(text, "%d", value);
  return SE_New(tag, text);
}

// Unsigned, so that no value that a host may have put there overflows.
int Generator::FullYear(const struct tm& time) {
  return static_cast<int>(static_cast<unsigned int>(time.tm_year) + 1900U);
}

int Generator::FullMonth(const struct tm& time) {
  return static_cast<int>(static_cast<unsigned int>(time.tm_mon) + 1U);
}

sml_element* Generator::PackedList(const char* listTag, const char* entryTag, const char* list,
                                   UINT8 codePage) {
  if (list == nullptr) return nullptr;
  char* copy = AdapterStrdup(list);
  sml_element* element = SE_New(listTag, nullptr);
  element->CodePage = codePage;
  for (char* entry = copy; entry != nullptr;) {
    char* next = getSegment(entry, "@@");
    if (entry[0] != '\0') SE_AddChild(element, SE_New(entryTag, entry));
    entry = next;
  }
  AdapterFree(copy);
  return element;
}

void Generator::LogLine(AS_LOG_LEVEL_T level, const char* text) const {
  if (log_ != nullptr) log_->write(AS_LOG_SOURCE_GENERATOR, level, text);
}

void Generator::LogLine(AS_LOG_LEVEL_T level, const char* label, const char* value) const {
  if (log_ != nullptr) log_->write(AS_LOG_SOURCE_GENERATOR, level, label, value);
}

}  // namespace AIRSYNC_STACK
