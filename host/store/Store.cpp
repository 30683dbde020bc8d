// Looking at the store and changing it; the library's calls are in StoreCallbacks.cpp.
#include "store/Store.h"

#include <charconv>
#include <cstring>

#include "store/ContactTable.h"
#include "store/FolderTypes.h"
#include "store/StoreParts.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr std::size_t kPage = 200;  // lines of a list that are read at once

[[noreturn]] void refuseItem(const std::string& subject) {
  throw Error({.kind = ErrorKind::item,
               .operation = "looking for",
               .subject = subject,
               .cause = "there is no such item",
               .advice = "See \"airsync list\" for the items of a folder."});
}

}  // namespace

Store::Store(const std::filesystem::path& file) : parts_(std::make_unique<Parts>(file)) {}
Store::~Store() = default;

std::vector<Folder> Store::folders() const {
  return parts_->database.guarded("reading the folders in", [&] { return parts_->folders.list(); });
}

Folder Store::folder(FolderNumber number) const {
  return parts_->database.guarded("reading the folders in", [&] { return parts_->folders.get(number); });
}

Folder Store::findFolder(std::string_view text) const {
  return parts_->database.guarded("reading the folders in", [&] { return parts_->folders.find(text); });
}

FolderRecord Store::folderInfo(FolderNumber number, const FolderSettings& settings) const {
  return {folder(number), settings};
}

void Store::resetFolder(FolderNumber number) {
  parts_->database.guarded("resetting a folder in", [&] {
    Transaction transaction(parts_->database);
    // What was sent under the forgotten key may be on the server, or not: the full download shows it.
    const std::string now = UtcTime::now().text();
    Query(
        parts_->database,
        "UPDATE pending SET state = 'unanswered', since = ?, reason = 'It was sent, and the server lost "
        "count "
        "before it said what became of it.' WHERE folder_id = ? AND handed = 1 AND sent_key IS NOT NULL AND "
        "kind = 'add'")
        .bind(now)
        .bind(number)
        .run();
    Query(parts_->database,
          "UPDATE pending SET handed = 0, sent_key = NULL, sent_revision = NULL WHERE folder_id = ? AND "
          "handed = 1")
        .bind(number)
        .run();
    parts_->folders.beginReconciling(number);
    transaction.commit();
  });
}

std::string Store::hierarchyKey() const {
  return parts_->database.guarded("reading the hierarchy's key in", [&] {
    Query query(parts_->database, "SELECT hierarchy_key FROM account");
    return query.step() ? query.text(0) : std::string("0");
  });
}

void Store::listContacts(FolderNumber folder, const std::function<bool(const ContactSummary&)>& each) const {
  static const std::string sql =
      "SELECT item.id, item.server_id, " + std::string(kPendingChangeColumns) + ", " +
      ContactTable::summaryColumns() +
      " FROM item JOIN contact ON contact.item_id = item.id AND contact.version = 0 "
      "LEFT JOIN pending ON pending.item_id = item.id "
      "WHERE item.folder_id = ? AND item.id > ? AND pending.dropped IS NOT 1 AND "
      "pending.kind IS NOT 'delete' ORDER BY item.id LIMIT ?";
  // Page by page, so that a slow reader holds no snapshot of the file, and `each` may call the store.
  std::vector<ContactSummary> page;
  ItemNumber last = 0;
  do {
    page.clear();
    parts_->database.guarded("listing contacts in", [&] {
      Query query(parts_->database, sql);
      query.bind(folder).bind(last).bind(static_cast<std::int64_t>(kPage));
      while (query.step()) {
        const Contact contact = ContactTable::summary(query, 6);
        page.push_back({.number = query.integer(0),
                        .serverId = query.maybeText(1),
                        .name = contact.displayName(),
                        .email = contact.email(),
                        .phone = contact.phone(),
                        .pending = pendingChange(query, 2)});
      }
    });
    for (const ContactSummary& line : page) {
      if (!each(line)) return;
      last = line.number;
    }
  } while (page.size() == kPage);
}

ItemNumber Store::findItem(FolderNumber folder, std::string_view text) const {
  return parts_->database.guarded("looking for an item in", [&] {
    ItemNumber number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    std::optional<ItemRow> item;
    if (error == std::errc() && end == text.data() + text.size()) item = parts_->items.find(number);
    if (!item || item->folder != folder) item = parts_->items.findByServerId(folder, std::string(text));
    if (!item) refuseItem("\"" + std::string(text) + "\"");
    return item->number;
  });
}

StoredContact Store::contact(ItemNumber item) const {
  return parts_->database.guarded("reading a contact in", [&] {
    const auto row = parts_->items.find(item);
    const auto pending = row ? parts_->pending.find(item) : std::nullopt;
    const bool deleted = pending && (pending->dropped || pending->change.kind == ChangeKind::remove);
    if (!row || deleted) refuseItem("item " + std::to_string(item));
    return StoredContact{.number = item,
                         .serverId = row->serverId,
                         .pending = pending ? std::optional(pending->change) : std::nullopt,
                         .contact = parts_->contacts.load(item, Version::shown)};
  });
}

ItemNumber Store::addContact(FolderNumber folder, const Contact& contact) {
  return parts_->database.guarded("adding a contact to", [&] { return parts_->edits.add(folder, contact); });
}

void Store::changeContact(ItemNumber item, const Contact& contact) {
  parts_->database.guarded("changing a contact in", [&] { parts_->edits.change(item, contact); });
}

void Store::deleteItem(ItemNumber item) {
  parts_->database.guarded("deleting an item in", [&] { parts_->edits.remove(item); });
}

std::vector<Failure> Store::failures(std::optional<FolderNumber> folder) const {
  static const std::string sql =
      "SELECT folder.id, folder.name, item.id, item.server_id, pending.since, " +
      std::string(kPendingChangeColumns) + ", " + ContactTable::summaryColumns() +
      " FROM pending JOIN item ON item.id = pending.item_id JOIN folder ON folder.id = pending.folder_id "
      "LEFT JOIN contact ON contact.item_id = item.id AND contact.version = 0 "
      "WHERE pending.state <> 'waiting' AND (?1 IS NULL OR pending.folder_id = ?1) ORDER BY pending.id";
  return parts_->database.guarded("reading the failures in", [&] {
    std::vector<Failure> failures;
    Query query(parts_->database, sql);
    query.bind(folder);
    while (query.step()) {
      const auto since = query.maybeText(4);
      failures.push_back({.folder = static_cast<FolderNumber>(query.integer(0)),
                          .folderName = query.text(1),
                          .item = query.integer(2),
                          .serverId = query.maybeText(3),
                          .name = ContactTable::summary(query, 9).displayName(),
                          .change = *pendingChange(query, 5),
                          .since = since ? UtcTime::parse(*since) : std::nullopt});
    }
    return failures;
  });
}

void Store::retry(ItemNumber item) {
  parts_->database.guarded("retrying a change in", [&] { parts_->edits.retry(item); });
}

void Store::discard(ItemNumber item) {
  parts_->database.guarded("giving up a change in", [&] { parts_->edits.discard(item); });
}

}  // namespace airsync
