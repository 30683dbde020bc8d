#include "data/FolderStore.h"

namespace demoserver {
namespace {

Folder readFolder(Query& row) {
  return {row.text(0),    row.text(1),        row.text(2), static_cast<int>(row.integer(3)),
          row.integer(4), row.integer(5) != 0};
}

}  // namespace

Folder FolderStore::create(const std::string& parent, const std::string& name, int type,
                           const std::string& id) {
  const std::int64_t revision = database_.nextRevision();
  Folder folder{id.empty() ? "u" + std::to_string(revision) : id, parent, name, type, revision, false};
  Query(database_, "INSERT INTO folders VALUES(?, ?, ?, ?, ?, 0)", folder.id, parent, name, type, revision)
      .run();
  return folder;
}

std::int64_t FolderStore::update(const std::string& id, const std::string& parent, const std::string& name) {
  const std::int64_t revision = database_.nextRevision();
  Query(database_, "UPDATE folders SET parent = ?, name = ?, revision = ? WHERE id = ?", parent, name,
        revision, id)
      .run();
  return revision;
}

std::int64_t FolderStore::remove(const std::string& id) {
  const std::int64_t revision = database_.nextRevision();
  Query(database_, "UPDATE folders SET gone = 1, revision = ? WHERE id = ?", revision, id).run();
  return revision;
}

std::optional<Folder> FolderStore::find(const std::string& id) {
  Query row(database_, "SELECT id, parent, name, type, revision, gone FROM folders WHERE id = ? AND gone = 0",
            id);
  if (!row.next()) return std::nullopt;
  return readFolder(row);
}

std::optional<Folder> FolderStore::findByName(const std::string& parent, const std::string& name) {
  Query row(database_,
            "SELECT id, parent, name, type, revision, gone FROM folders "
            "WHERE parent = ? AND name = ? AND gone = 0",
            parent, name);
  if (!row.next()) return std::nullopt;
  return readFolder(row);
}

std::optional<Folder> FolderStore::findByType(FolderType type) {
  Query row(database_,
            "SELECT id, parent, name, type, revision, gone FROM folders WHERE type = ? AND gone = 0 "
            "ORDER BY id LIMIT 1",
            static_cast<int>(type));
  if (!row.next()) return std::nullopt;
  return readFolder(row);
}

std::vector<Folder> FolderStore::list(bool tombstones) {
  Query rows(database_,
             "SELECT id, parent, name, type, revision, gone FROM folders WHERE gone = 0 OR ? "
             "ORDER BY revision",
             tombstones ? 1 : 0);
  std::vector<Folder> folders;
  while (rows.next()) folders.push_back(readFolder(rows));
  return folders;
}

std::vector<std::string> FolderStore::withDescendants(const std::string& id) {
  const std::vector<Folder> all = list();
  std::vector<std::string> found = {id};
  for (std::size_t i = 0; i < found.size(); ++i)
    for (const Folder& folder : all)
      if (folder.parent == found[i]) found.push_back(folder.id);
  return found;
}

}  // namespace demoserver
