// Responses as servers send them, generated: the same bytes in every run for the same kind and count.
#ifndef BENCH_DOCUMENTS_H
#define BENCH_DOCUMENTS_H

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "api/ItemRecords.h"
#include "api/Records.h"
#include "document/Element.h"

namespace airsync_bench {

enum class Kind { kContacts, kEvents, kMails };

inline constexpr std::array<Kind, 3> kKinds = {Kind::kContacts, Kind::kEvents, Kind::kMails};

/// "contacts", "events", "mails".
const char* NameOf(Kind kind);

/// A folder that takes a response of that kind.
AIRSYNC_STACK::FOLDER_INFO FolderFor(Kind kind);

/// A Sync response in WBXML that adds so many items. Texts are of mixed lengths, and one in four is not
/// ASCII.
std::string SyncResponse(Kind kind, unsigned items);

/// Contacts as records, for requests.
class ContactRecords {
 public:
  explicit ContactRecords(unsigned count);
  std::vector<AIRSYNC_STACK::AS_CONTACT_T>& Records() { return records_; }

 private:
  std::vector<std::unique_ptr<std::string>> texts_;
  std::vector<AIRSYNC_STACK::AS_CONTACT_T> records_;
};

/// Gives the items of a tree that was read from a response the page of their kind, which reading does not
/// keep, so that the tree can be written.
void RestorePages(AIRSYNC_STACK::sml_element* element, Kind kind);

}  // namespace airsync_bench

#endif
