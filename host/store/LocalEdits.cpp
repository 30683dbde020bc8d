#include "store/LocalEdits.h"

#include "store/FolderTypes.h"
#include "support/Error.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr const char* kGone = "it was deleted on the server";

[[noreturn]] void refuse(const char* operation, ItemNumber item, const std::string& cause,
                         const std::string& advice) {
  throw Error({.kind = ErrorKind::item,
               .operation = operation,
               .subject = "item " + std::to_string(item),
               .cause = cause,
               .advice = advice});
}

[[noreturn]] void refuseFolder(const char* operation, FolderNumber folder, const std::string& cause,
                               const std::string& advice) {
  throw Error({.kind = ErrorKind::folder,
               .operation = operation,
               .subject = "folder " + std::to_string(folder),
               .cause = cause,
               .advice = advice});
}

}  // namespace

// An item that is not there, and one whose deletion waits, are the same to a person.
ItemRow LocalEdits::visibleItem(const char* operation, ItemNumber item) {
  const auto row = items_.find(item);
  const auto pending = row ? pending_.find(item) : std::nullopt;
  const bool deleted = pending && (pending->dropped || pending->change.kind == ChangeKind::remove);
  if (!row || deleted)
    refuse(operation, item, "there is no such item", "See \"airsync list\" for the items.");
  return *row;
}

PendingRow LocalEdits::pendingOf(const char* operation, ItemNumber item) {
  const auto pending = pending_.find(item);
  if (!pending) {
    refuse(operation, item, "it has no local change", "See \"airsync status\" for the changes that failed.");
  }
  return *pending;
}

ItemContents& LocalEdits::contentsOf(FolderNumber folder) {
  const auto state = folders_.state(folder);
  if (!state) refuseFolder("opening", folder, "there is no such folder", "See \"airsync folders\".");
  return classes_.ofFolderType(state->type);
}

ItemNumber LocalEdits::add(FolderNumber folder, const ItemValue& value) {
  constexpr const char* operation = "adding to";
  Transaction transaction(database_);
  const auto state = folders_.state(folder);
  if (!state || state->gone) {
    refuseFolder(operation, folder, "it is not on the server any more", "Choose another folder.");
  }
  ItemContents& contents = classes_.ofFolderType(state->type);
  if (!contents.canBeAdded()) {
    refuseFolder(operation, folder, "mails come from the server only",
                 "Send the message: see \"airsync send\".");
  }
  ItemValue named = value;
  contents.identify(named, false);
  contents.validate(named);
  const ItemNumber item = items_.insert(folder, std::nullopt, state->generation);
  contents.write(item, Version::shown, named);
  items_.bumpRevision(item);
  pending_.insert({.number = item, .folder = folder, .serverId = std::nullopt, .revision = 1},
                  ChangeKind::add);
  transaction.commit();
  return item;
}

void LocalEdits::change(ItemNumber item, const ItemValue& value) {
  Transaction transaction(database_);
  const ItemRow row = visibleItem("changing", item);
  const auto folder = folders_.state(row.folder);
  if (folder && folder->gone) {
    refuseFolder("changing an item of", row.folder, kGone,
                 "Add the item to another folder, and give this change up.");
  }
  ItemContents& contents = contentsOf(row.folder);
  contents.validate(value);
  replace(row, contents, value);
  transaction.commit();
}

void LocalEdits::mark(ItemNumber item, bool read) {
  Transaction transaction(database_);
  const ItemRow row = visibleItem("marking", item);
  ItemContents& contents = contentsOf(row.folder);
  ItemValue value = contents.load(item, Version::shown);
  auto* mail = std::get_if<Mail>(&value);
  if (mail == nullptr) refuse("marking", item, "it is no mail", "Only mails are read or unread.");
  if (mail->read() == read) return;
  mail->fields.set("Read", read);
  replace(row, contents, value);
  transaction.commit();
}

// The shown version becomes the server's, if it is not kept already.
void LocalEdits::replace(const ItemRow& item, ItemContents& contents, const ItemValue& value) {
  const auto pending = pending_.find(item.number);
  if (!pending) {
    contents.move(item.number, Version::shown, Version::server);
    pending_.insert(item, ChangeKind::change);
  } else if (pending->change.state != PendingChange::State::unanswered) {
    pending_.wake(item.number, pending->change.kind);
  }
  if (pending) keepSent(*pending, contents);
  contents.write(item.number, Version::shown, value);
  items_.bumpRevision(item.number);
}

// What a request carries, or may have carried, has to be known until its answer is: for a repetition, and for
// finding the item among what the server sends.
void LocalEdits::keepSent(const PendingRow& pending, ItemContents& contents) {
  const bool unknown = pending.mayBeUnderWay() || pending.change.state == PendingChange::State::unanswered;
  if (!unknown || pending.change.kind == ChangeKind::remove) return;
  if (contents.has(pending.item, Version::sent)) return;
  contents.move(pending.item, Version::shown, Version::sent);
}

void LocalEdits::remove(ItemNumber item) {
  Transaction transaction(database_);
  const ItemRow row = visibleItem("deleting", item);
  const auto pending = pending_.find(item);
  items_.bumpRevision(item);
  if (!pending) {
    pending_.insert(row, ChangeKind::remove);
  } else if (pending->change.kind == ChangeKind::add) {
    removeAdded(row, *pending);
  } else {
    // Once the deletion is given up, the item is to be what the server has.
    ItemContents& contents = contentsOf(row.folder);
    keepSent(*pending, contents);
    if (contents.has(item, Version::server)) contents.move(item, Version::server, Version::shown);
    pending_.wake(item, ChangeKind::remove);
  }
  forgetIfGoneAndEmpty(row.folder);
  transaction.commit();
}

// A folder that the server deleted stays for the items that were not sent, and no longer.
void LocalEdits::forgetIfGoneAndEmpty(FolderNumber folder) {
  Query(database_,
        "DELETE FROM folder WHERE id = ? AND gone = 1 AND NOT EXISTS (SELECT 1 FROM item WHERE folder_id = "
        "folder.id)")
      .bind(folder)
      .run();
}

void LocalEdits::removeAdded(const ItemRow& item, const PendingRow& pending) {
  const bool serverMayHaveIt =
      pending.mayBeUnderWay() || pending.change.state == PendingChange::State::unanswered;
  if (serverMayHaveIt) {
    pending_.setDropped(item.number);
  } else {
    items_.remove(item.number);
  }
}

void LocalEdits::retry(ItemNumber item) {
  constexpr const char* operation = "sending again";
  Transaction transaction(database_);
  const PendingRow pending = pendingOf(operation, item);
  if (pending.change.state == PendingChange::State::waiting) {
    refuse(operation, item, "its change has not failed", "It goes out with the next synchronisation.");
  }
  const auto folder = folders_.state(pending.folder);
  if (!folder || folder->gone) {
    refuseFolder(operation, pending.folder, kGone,
                 "Add the item to another folder, and give this change up.");
  }
  if (pending.dropped) {
    items_.remove(item);
  } else {
    pending_.renew(item, pending.change.kind);
  }
  transaction.commit();
}

void LocalEdits::discard(ItemNumber item) {
  Transaction transaction(database_);
  const PendingRow pending = pendingOf("giving the change up of", item);
  if (pending.mayBeUnderWay()) {
    refuse("giving the change up of", item,
           "it is under way to the server, or was when a synchronisation broke off",
           "Synchronise, and then look at the item again.");
  }
  switch (pending.change.kind) {
    case ChangeKind::add:
      items_.remove(item);
      break;
    case ChangeKind::change:
      discardChange(pending);
      break;
    case ChangeKind::remove:
      pending_.remove(item);
      items_.bumpRevision(item);
      break;
  }
  forgetIfGoneAndEmpty(pending.folder);
  transaction.commit();
}

void LocalEdits::discardChange(const PendingRow& pending) {
  // The server took an older change of the item while this one was made: what it has now is not here.
  ItemContents& contents = contentsOf(pending.folder);
  if (!contents.has(pending.item, Version::server)) {
    refuse("giving the change up of", pending.item, "the server's version of the item is not known here",
           "Change the item to what it should be, and synchronise.");
  }
  contents.move(pending.item, Version::server, Version::shown);
  pending_.remove(pending.item);
  items_.bumpRevision(pending.item);
}

ItemNumber LocalEdits::restore(ItemNumber item, std::optional<FolderNumber> to) {
  constexpr const char* operation = "restoring";
  Transaction transaction(database_);
  const auto type = trash_.typeOf(item);
  if (!type) refuse(operation, item, "it is not in the trash", "See \"airsync trash\" for what is.");
  const FolderNumber folder = to.value_or(*trash_.originOf(item));
  const auto state = folders_.state(folder);
  if (!state || state->gone) {
    refuse(operation, item, "its folder is not on the server any more",
           "Name another folder of its class with --to.");
  }
  if (folderType(state->type).dataType != folderType(*type).dataType) {
    refuse(operation, item, "that folder is for items of another class", "Name a folder of its class.");
  }
  ItemContents& contents = classes_.ofFolderType(*type);
  if (!contents.canBeAdded()) {
    refuse(operation, item, "the protocol does not let a device put a mail on the server",
           "\"airsync trash show\" prints it.");
  }
  trash_.takeOut(item, folder, state->generation);
  // The server may still have the version that won, under the same identity.
  ItemValue value = contents.load(item, Version::shown);
  contents.identify(value, true);
  contents.write(item, Version::shown, value);
  pending_.insert({.number = item, .folder = folder, .serverId = std::nullopt, .revision = 0},
                  ChangeKind::add);
  transaction.commit();
  return item;
}

}  // namespace airsync
