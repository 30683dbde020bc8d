// The folder hierarchy.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/Database.h"

namespace demoserver {

// Folder types as the protocol numbers them.
enum FolderType : int {
  kGenericFolder = 1,
  kInbox = 2,
  kDrafts = 3,
  kDeletedItems = 4,
  kSentItems = 5,
  kOutbox = 6,
  kTasks = 7,
  kCalendar = 8,
  kContacts = 9,
  kNotes = 10,
  kJournal = 11,
  kUserMail = 12,
  kUserCalendar = 13,
  kUserContacts = 14,
  kUserTasks = 15,
  kUserJournal = 16,
  kUserNotes = 17,
};

inline constexpr char kRootFolder[] = "0";

// Special folders stand there from the beginning; clients may neither change nor delete them.
constexpr bool isSpecial(int type) { return type >= kInbox && type <= kJournal; }
constexpr bool mayBeCreated(int type) {
  return type == kGenericFolder || (type >= kUserMail && type <= kUserNotes);
}

struct Folder {
  std::string id;
  std::string parent;  // "0": at the root
  std::string name;
  int type = kGenericFolder;
  std::int64_t revision = 0;
  bool gone = false;
};

class FolderStore {
 public:
  explicit FolderStore(Database& database) : database_(database) {}

  // Gives the folder its id; or takes one that the caller chose and that is in no use.
  Folder create(const std::string& parent, const std::string& name, int type, const std::string& id = "");
  std::int64_t update(const std::string& id, const std::string& parent, const std::string& name);
  // Leaves a tombstone.
  std::int64_t remove(const std::string& id);

  // The folder, unless it is gone.
  std::optional<Folder> find(const std::string& id);
  // The folder of that name below that parent, unless it is gone.
  std::optional<Folder> findByName(const std::string& parent, const std::string& name);
  // The special folder of this type, unless it is gone.
  std::optional<Folder> findByType(FolderType type);
  // All folders, in the order of their last changes. With `tombstones` those that are gone, too.
  std::vector<Folder> list(bool tombstones = false);
  // Ids of the folder and of all below it, children after their parents.
  std::vector<std::string> withDescendants(const std::string& id);

 private:
  Database& database_;
};

}  // namespace demoserver
