// What the store tells: folders, items, failures, the outcome of a synchronisation.
#ifndef AIRSYNC_HOST_STORE_STORE_TYPES_H
#define AIRSYNC_HOST_STORE_STORE_TYPES_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "api/Records.h"
#include "store/Contact.h"
#include "store/Event.h"
#include "store/Mail.h"
#include "store/UtcTime.h"

namespace airsync {

// A folder's number in the store: stable, and the handle that the library hands to storage calls.
using FolderNumber = INT32;

// An item's number in the store: stable from the moment when the item is first seen or made here, never used
// twice, shown to people; also the client id of an item that was added here.
using ItemNumber = std::int64_t;

// An item of any class. Its index() is the class's DATATYPE.
using ItemValue = std::variant<Contact, Event, Mail>;

// One folder.
struct Folder {
  FolderNumber number = 0;
  std::string serverId;  // empty when it is gone
  std::string parentId;  // "0" at the root
  std::string name;
  std::string path;  // names from the root down, joined by "/"
  INT32 type = 0;
  std::optional<AIRSYNC_STACK::DATATYPE> dataType;  // empty: never synchronised (tasks, notes, journals)
  std::string syncKey;                              // "0": not synchronised yet
  bool gone = false;  // deleted on the server; kept because local changes in it could not be sent any more
  std::optional<UtcTime> lastSync;  // the end of the last successful one

  // Counts; `items` leaves out those whose deletion waits, `pending` counts changes that will be sent,
  // `failed` those that won't be until somebody looks at them.
  std::size_t items = 0;
  std::size_t pending = 0;
  std::size_t failed = 0;
};

// Who wins when an item was edited on both sides, or edited on one and deleted on the other.
enum class ConflictRule {
  keepBoth,  // the server's version, and ours beside it as a copy; an edit wins over a deletion
  server,    // the server's; ours goes to the trash
  local,     // ours; the server's goes to the trash
};

// What an account's configuration says about a folder.
struct FolderSettings {
  INT32 truncation = 0;
  ConflictRule conflict = ConflictRule::keepBoth;
  INT32 filter = 0;                                   // calendar and mail only
  INT32 syncMode = 0;                                 // 1: only send, 2: only receive, 0: both
  std::optional<std::vector<std::string>> supported;  // tag names; empty: no list is sent
};

/// A FOLDER_INFO with the memory behind it. The record stays at one address when this object is moved.
class FolderRecord {
 public:
  /// Throws Error (folder) when the folder has no data class, or the list of supported tags has more than 255
  /// entries or one of more than 63 characters.
  FolderRecord(const Folder& folder, const FolderSettings& settings);

  AIRSYNC_STACK::FOLDER_INFO& info() { return *info_; }

 private:
  std::unique_ptr<AIRSYNC_STACK::FOLDER_INFO> info_;
  std::unique_ptr<AIRSYNC_STACK::SUPPORTED_TAG[]> supported_;
};

// What a local change does.
enum class ChangeKind { add, change, remove };

// A local change that the server has not confirmed.
struct PendingChange {
  ChangeKind kind = ChangeKind::add;
  // waiting: goes out with the next synchronisation.
  // failed: the server refused it, or it could not be sent; see `reason`.
  // unanswered: an addition that was sent and never answered. It is not sent again blindly, since the server
  //             may have it; it is sent again after a full download has shown that it has not (unless the
  //             server answered its request with an error: then it fails), or on retry.
  enum class State { waiting, failed, unanswered } state = State::waiting;
  INT32 status = 0;    // the server's status for it; 0: none
  std::string reason;  // a sentence, when it is not waiting
};

// What lists show of an item; texts are empty where the item has none.
struct ContactSummary {
  std::string name;
  std::string email;
  std::string phone;
};
struct EventSummary {
  std::string subject;
  std::string location;
  std::optional<UtcTime> start;
  std::optional<UtcTime> end;
  bool allDay = false;
  bool recurring = false;
};
struct MailSummary {
  std::string from;
  std::string subject;
  std::optional<UtcTime> received;
  bool read = false;
  std::size_t attachments = 0;
  bool truncated = false;  // the server kept back a part of the body: see Store::beginFetch
  bool isMeetingRequest = false;
};

// Its index() is the class's DATATYPE.
using ItemDetails = std::variant<ContactSummary, EventSummary, MailSummary>;

// One line of a list of items.
struct ItemSummary {
  ItemNumber number = 0;
  std::optional<std::string> serverId;  // empty: the server does not know it yet
  std::optional<PendingChange> pending;
  ItemDetails details;
};

// One item, whole.
struct StoredItem {
  ItemNumber number = 0;
  FolderNumber folder = 0;
  std::optional<std::string> serverId;
  std::optional<PendingChange> pending;
  ItemValue value;  // as it is here, local changes included
};

// A local change that needs a person.
struct Failure {
  FolderNumber folder = 0;
  std::string folderName;
  ItemNumber item = 0;
  std::optional<std::string> serverId;
  std::string name;  // the item's display name
  // The item beside which this one was kept, because both sides had edited it: see ConflictRule::keepBoth.
  std::optional<ItemNumber> copyOf;
  PendingChange change;
  std::optional<UtcTime> since;
};

// What a folder's next AirSync::Sync has to be; see Store::nextStep.
enum class SyncStep {
  beginAnew,  // additions went out and were never answered: Store::resetFolder, then receive
  repeat,     // changes and deletions went out and were never answered: the same again, and nothing else
  receive,    // what the server has; nothing goes out (mode 2)
  send,       // local changes
  done,
};

// An item that was edited on both sides, or edited on one and deleted on the other, and what became of it.
struct Conflict {
  enum class Outcome {
    keptBoth,     // the server's version is the item, ours is `copy`, a change that waits for a person
    serverWon,    // ours is in the trash
    localWon,     // the server's is in the trash; ours goes out
    addedAnew,    // deleted there, edited here: it goes out as a new item
    broughtBack,  // deleted here, edited there: the deletion was given up
  };
  Outcome outcome = Outcome::keptBoth;
  ItemNumber item = 0;
  ItemNumber copy = 0;
  std::string name;  // the item's display name
};

// An item in the trash: deleted by the server, or the version that lost a conflict.
struct TrashedItem {
  ItemNumber number = 0;
  FolderNumber folder = 0;  // where it was; perhaps there is no such folder any more
  std::string folderName;
  AIRSYNC_STACK::DATATYPE dataType = AIRSYNC_STACK::DATATYPE_CONTACTS;
  std::string name;
  std::string reason;  // a sentence
  std::optional<UtcTime> since;
};

// What one AirSync::Sync did to the store. Counts are of what became durable.
struct SyncOutcome {
  std::size_t added = 0;  // items that came from the server
  std::size_t changed = 0;
  std::size_t deleted = 0;  // items that the server deleted, or did not send again after a reset
  std::size_t sent = 0;     // local changes that are settled, deletions included
  std::size_t sentDeletions = 0;
  std::size_t refused = 0;      // local changes that became failures, unanswered ones included
  std::size_t overwritten = 0;  // local changes that lost against the server's: see `conflicts`
  std::size_t ignored = 0;      // what can't be stored: items without an identifier, marks of unknown mails
  std::size_t keys = 0;         // sync keys stored; the number of exchanges that came to their end
  // Items that the server deleted and that are still here, because they are too many to go without a word:
  // see SyncRules. They are all that wait for it, not only this call's.
  std::size_t withheld = 0;
  std::size_t withheldOf = 0;  // the items that the folder has, those among them
  bool initial = false;        // only the key "0" was exchanged: items come with the next AirSync::Sync
  bool moreToSend = false;     // local changes wait: call AirSync::Sync again
  bool receiveAgain = false;   // the server refused changes because it has versions of its own: receive them
  std::vector<Conflict> conflicts;
};

// How a synchronisation treats what a person might not want.
struct SyncRules {
  ConflictRule conflict = ConflictRule::keepBoth;
  // Whether a server's deletions are carried out even when they are more than kMostDeletions items and more
  // than a third of the folder.
  bool allowDeletes = false;
};

// More than this and more than a third of the folder is a mass deletion.
constexpr std::size_t kMostDeletions = 5;
constexpr bool isMassDeletion(std::size_t deletions, std::size_t items) {
  return deletions > kMostDeletions && deletions * 3 > items;
}

// Deletions that wait to be sent, and the items that the server has of the folder as far as is known.
struct WaitingDeletions {
  std::size_t deletions = 0;
  std::size_t items = 0;
};

// Whose fault an error of the server may be; see Store::blameRequest.
enum class Blame {
  nothing,  // the request carried no change
  several,  // each goes in a request of its own from now on
  one,      // it is set aside
};

// Whether a request reached the server, as far as the transport knows.
enum class Reached { no, perhaps };

// What one AirSync::Fetch did to the store.
struct FetchOutcome {
  SyncOutcome changes;   // the answer may bring the server's changes, too; initial is never set
  bool arrived = false;  // the item's contents are here now, and durable
  // What the server said of the item: AS_RESULT_OK or AS_RESULT_FAMILY_ITEM | status. An item that it does
  // not have may come back without a word: `arrived` is false then, and this AS_RESULT_OK.
  AIRSYNC_STACK::SYNC_RESULT item = AIRSYNC_STACK::AS_RESULT_OK;
};

// What the server said of one of the folders that Store::offerFolders offered.
struct FolderEstimate {
  FolderNumber folder = 0;
  AIRSYNC_STACK::SYNC_RESULT result = AIRSYNC_STACK::AS_RESULT_OK;  // or AS_RESULT_FAMILY_ESTIMATE | status
  int items = 0;  // that wait on the server; without meaning when `result` is not AS_RESULT_OK
};
struct FolderNotifyStatus {
  FolderNumber folder = 0;
  AIRSYNC_STACK::SYNC_RESULT result = AIRSYNC_STACK::AS_RESULT_OK;  // or AS_RESULT_FAMILY_NOTIFY | status
};

}  // namespace airsync

#endif
