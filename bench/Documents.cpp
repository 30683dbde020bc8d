#include "Documents.h"

#include <cstring>
#include <random>

#include "Items.h"
#include "api/ContactFields.h"
#include "document/Vocabulary.h"
#include "document/wbxmlTokens.h"

namespace airsync_bench {

using namespace AIRSYNC_STACK;

namespace {

constexpr UINT8 kSyncPage = 0;

// Items repeat after so many: documents of a hundred and of thousands have the same mean.
constexpr unsigned kDifferentItems = 100;

struct KindTraits {
  const char* name;
  const char* className;
  DATATYPE type;
  UINT8 page;
};

const KindTraits& TraitsOf(Kind kind) {
  static const KindTraits kTraits[] = {{"contacts", "Contacts", DATATYPE_CONTACTS, 1},
                                       {"events", "Calendar", DATATYPE_CALENDAR, 4},
                                       {"mails", "Email", DATATYPE_EMAIL, 2}};
  return kTraits[static_cast<int>(kind)];
}

// Writes elements the way a server does: with a page switch only where the page changes.
class Writer {
 public:
  Writer() : bytes_{char(kWbxmlVersion13), char(kUnknownPublicId), char(kCharsetUtf8), '\0'} {}

  void Begin(UINT8 page, const char* tag) {
    if (page != page_) {
      bytes_ += {char(SWITCH_PAGE), char(page)};
      page_ = page;
    }
    bytes_ += char(TokenOfTag(page, tag) | kTagHasContent);
  }
  void End() { bytes_ += char(END); }
  void Element(UINT8 page, const char* tag, const std::string& text) {
    Begin(page, tag);
    bytes_ += char(STR_I);
    bytes_ += text;
    bytes_ += '\0';
    End();
  }
  void Field(UINT8 page, const Node& field) {
    if (field.children.empty()) return Element(page, field.tag, field.text);
    Begin(page, field.tag);
    for (const Node& child : field.children) Field(page, child);
    End();
  }
  std::string Take() { return std::move(bytes_); }

 private:
  std::string bytes_;
  UINT8 page_ = 0;
};

void SetText(AS_CONTACT_T& record, const char* tag, char* text) {
  for (const AS_CONTACT_FIELD_T& field : AS_CONTACT_FIELDS) {
    if (field.text != nullptr && field.form != AS_FORM_LIST && std::strcmp(field.tag, tag) == 0) {
      record.*field.text = text;
    }
  }
}

}  // namespace

const char* NameOf(Kind kind) { return TraitsOf(kind).name; }

FOLDER_INFO FolderFor(Kind kind) {
  FOLDER_INFO folder = {};
  std::strcpy(folder.folder.serverId.text, "2:1");
  std::strcpy(folder.syncKey.text, "{1}7");
  folder.dataType = TraitsOf(kind).type;
  folder.selected = 1;
  return folder;
}

std::string SyncResponse(Kind kind, unsigned items) {
  const KindTraits& traits = TraitsOf(kind);
  Writer writer;
  writer.Begin(kSyncPage, "Sync");
  writer.Begin(kSyncPage, "Collections");
  writer.Begin(kSyncPage, "Collection");
  writer.Element(kSyncPage, "Class", traits.className);
  writer.Element(kSyncPage, "SyncKey", "{1}8");
  writer.Element(kSyncPage, "CollectionId", "2:1");
  writer.Element(kSyncPage, "Status", "1");
  writer.Begin(kSyncPage, "Commands");
  for (unsigned i = 0; i < items; ++i) {
    writer.Begin(kSyncPage, "Add");
    writer.Element(kSyncPage, "ServerId", "2:" + std::to_string(i + 1));
    writer.Begin(kSyncPage, "ApplicationData");
    std::mt19937 random(i % kDifferentItems);
    for (const Node& field : NewItem(kind, random)) writer.Field(traits.page, field);
    writer.End();
    writer.End();
  }
  for (int open = 0; open < 4; ++open) writer.End();
  return writer.Take();
}

ContactRecords::ContactRecords(unsigned count) : records_(count) {
  unsigned i = 0;
  for (AS_CONTACT_T& record : records_) {
    std::mt19937 random(i++ % kDifferentItems);
    for (const Node& field : NewItem(Kind::kContacts, random)) {
      if (!field.children.empty()) continue;
      texts_.push_back(std::make_unique<std::string>(field.text));
      SetText(record, field.tag, texts_.back()->data());
    }
  }
}

void RestorePages(sml_element* element, Kind kind) {
  const bool isItem = std::strcmp(element->pTag, "ApplicationData") == 0 || element->CodePage != kSyncPage;
  for (UINT16 i = 0; i < element->NumberOfChildren; ++i) {
    if (isItem) element->pChildren[i]->CodePage = TraitsOf(kind).page;
    RestorePages(element->pChildren[i], kind);
  }
}

}  // namespace airsync_bench
