#include "store/ItemMoves.h"

#include "store/FolderTypes.h"
#include "support/Error.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr const char* kOperation = "moving";

[[noreturn]] void refuse(ItemNumber item, const std::string& cause, const std::string& advice) {
  throw Error({.kind = ErrorKind::item,
               .operation = kOperation,
               .subject = "item " + std::to_string(item),
               .cause = cause,
               .advice = advice});
}

[[noreturn]] void refuseFolder(FolderNumber folder) {
  throw Error({.kind = ErrorKind::folder,
               .operation = "moving to",
               .subject = "folder " + std::to_string(folder),
               .cause = "it is not on the server any more",
               .advice = "Choose another folder."});
}

}  // namespace

void ItemMoves::check(ItemNumber item, FolderNumber to) {
  const auto row = items_.find(item);
  const auto pending = row ? pending_.find(item) : std::nullopt;
  const bool deleted = pending && (pending->dropped || pending->change.kind == ChangeKind::remove);
  if (!row || deleted) refuse(item, "there is no such item", "See \"airsync list\" for the items.");
  const auto target = folders_.state(to);
  if (!target || target->gone) refuseFolder(to);
  const auto source = folders_.state(row->folder);
  if (row->folder == to) refuse(item, "it is in that folder already", "Choose another folder.");
  if (!source || folderType(source->type).dataType != folderType(target->type).dataType) {
    refuse(item, "that folder is for items of another class", "Choose a folder of the same class.");
  }
  if (pending || !row->serverId) {
    refuse(item, "it has a local change that the server does not know",
           "Synchronise its folder first, or give the change up.");
  }
}

void ItemMoves::move(ItemNumber item, FolderNumber to, const std::optional<std::string>& newServerId) {
  Transaction transaction(database_);
  const auto target = folders_.state(to);
  if (!target || target->gone) refuseFolder(to);
  const auto row = items_.find(item);
  if (!row) return;  // somebody deleted it meanwhile; it comes back with the other folder's next response
  if (!newServerId) {
    moveWithoutId(*row, to, *target);
  } else {
    moveTo(*row, to, *newServerId, *target);
  }
  transaction.commit();
}

// A synchronisation of that folder may have been faster, and have brought it there. What a person made of
// either of the two in the meantime stays.
void ItemMoves::moveTo(const ItemRow& item, FolderNumber to, const std::string& newServerId,
                       const FolderState& target) {
  const auto there = items_.findByServerId(to, newServerId);
  if (there && there->number == item.number) return;  // told already
  if (there && (pending_.find(there->number) || !pending_.find(item.number))) {
    items_.remove(item.number);
    return;
  }
  if (there) items_.remove(there->number);
  items_.move(item.number, to, newServerId, target.generation);
}

// What a person made of it in the meantime is not lost, and not sent as a second item either.
void ItemMoves::moveWithoutId(const ItemRow& item, FolderNumber to, const FolderState& target) {
  const auto pending = pending_.find(item.number);
  const bool mail = folderType(target.type).dataType == DATATYPE_EMAIL;
  if (mail || !pending || pending->change.kind == ChangeKind::remove) {
    items_.remove(item.number);
    return;
  }
  items_.move(item.number, to, std::nullopt, target.generation);
  items_.bumpRevision(item.number);
  classes_.ofFolderType(target.type).drop(item.number, Version::server);
  pending_.renew(item.number, ChangeKind::add);
  pending_.fail(item.number, PendingChange::State::failed, 0,
                "The item was moved on the server while it was changed here, and what it is called there is "
                "not known: send it as a second item, or give this up.");
}

}  // namespace airsync
