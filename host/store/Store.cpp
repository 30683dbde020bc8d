// The login, and folders. Items are in StoreItems.cpp, what surrounds a command in StoreCommands.cpp, the
// library's calls in StoreCallbacks.cpp.
#include "store/Store.h"

#include "store/StoreParts.h"

namespace airsync {

Store::Store(const std::filesystem::path& file) : parts_(std::make_unique<Parts>(file)) {}
Store::~Store() = default;

std::optional<Login> Store::login() const {
  return parts_->database.guarded("reading the login in", [&]() -> std::optional<Login> {
    Query query(parts_->database, "SELECT host, path, user, domain FROM login");
    if (!query.step()) return std::nullopt;
    return Login{
        .host = query.text(0), .path = query.text(1), .user = query.text(2), .domain = query.text(3)};
  });
}

void Store::setLogin(const Login& login) {
  parts_->database.guarded("storing the login in", [&] {
    Transaction transaction(parts_->database);
    Query(parts_->database,
          "INSERT OR REPLACE INTO login(id, host, path, user, domain) VALUES (1, ?, ?, ?, ?)")
        .bind(login.host)
        .bind(login.path)
        .bind(login.user)
        .bind(login.domain)
        .run();
    transaction.commit();
  });
}

std::int64_t Store::changeCount() {
  return parts_->database.guarded("counting the changes in", [&] {
    if (!parts_->meter) parts_->meter.emplace(parts_->database);
    return parts_->meter->count();
  });
}

bool Store::agrees(const AIRSYNC_STACK::FOLDER_INFO& info, const std::string& serverId,
                   const void* record) const {
  return parts_->database.guarded("comparing an item in", [&] {
    const auto item = parts_->items.findByServerId(info.handle, serverId);
    if (!item) return false;
    ItemContents& contents = parts_->classes.of(info.dataType);
    if (info.dataType != AIRSYNC_STACK::DATATYPE_EMAIL)
      return contents.covered(item->number, Version::shown, record);
    // Mails are never made from two sides, so that there is no cover of them; what stands on their envelopes
    // does not change.
    const Mail theirs = Mail::fromRecord(*static_cast<const AIRSYNC_STACK::AS_EMAIL_T*>(record));
    const Mail ours = std::get<Mail>(contents.load(item->number, Version::shown));
    return ours.displayName() == theirs.displayName() && ours.attachments.size() == theirs.attachments.size();
  });
}

std::vector<Folder> Store::folders() const {
  return parts_->database.guarded("reading the folders in", [&] { return parts_->folders.list(); });
}

std::vector<Folder> Store::uncountedFolders() const {
  return parts_->database.guarded("reading the folders in", [&] { return parts_->folders.listUncounted(); });
}

Folder Store::folder(FolderNumber number) const {
  return parts_->database.guarded("reading the folders in", [&] { return parts_->folders.get(number); });
}

Folder Store::findFolder(std::string_view text) const {
  return parts_->database.guarded("reading the folders in", [&] { return parts_->folders.find(text); });
}

FolderRecord Store::folderInfo(FolderNumber number, const FolderSettings& settings) const {
  const Folder folder = parts_->database.guarded("reading the folders in",
                                                 [&] { return parts_->folders.getUncounted(number); });
  return {folder, settings};
}

void Store::resetFolder(FolderNumber number) {
  parts_->database.guarded("resetting a folder in", [&] {
    Transaction transaction(parts_->database);
    // What was sent under the forgotten key may be on the server, or not: the full download shows it.
    const std::string now = UtcTime::now().text();
    Query(parts_->database,
          "UPDATE pending SET state = 'unanswered', since = ?, reason = 'It was sent, and the server did not "
          "say "
          "what became of it.' WHERE folder_id = ? AND handed = 1 AND sent_key IS NOT NULL AND kind = 'add'")
        .bind(now)
        .bind(number)
        .run();
    Query(parts_->database,
          "UPDATE pending SET handed = 0, sent_key = NULL, sent_revision = NULL, sent_kind = NULL WHERE "
          "folder_id = ? AND handed = 1")
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

}  // namespace airsync
