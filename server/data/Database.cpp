#include "data/Database.h"

#include <stdexcept>

namespace demoserver {
namespace {

constexpr int kSchemaVersion = 6;

// known: what each device holds of each collection. undo: what known held before the device's last cycle.
// applied: what the device itself did in that cycle. added: which device an item came from. An item or folder
// that is gone stays as a tombstone. attachments, messages: what belongs to a mail besides its record; the
// triggers let it go with the item, by whatever way that goes. moves: under which id an item that was moved
// lives on. devices, notified: who is to be told of changes, and in which folders.
constexpr const char* kSchema = R"sql(
CREATE TABLE settings(name TEXT PRIMARY KEY, value) WITHOUT ROWID;
INSERT INTO settings VALUES('revision', 0);
CREATE TABLE folders(id TEXT PRIMARY KEY, parent TEXT NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL,
                     revision INTEGER NOT NULL, gone INTEGER NOT NULL) WITHOUT ROWID;
CREATE UNIQUE INDEX folders_by_revision ON folders(revision);
CREATE TABLE items(id TEXT PRIMARY KEY, folder TEXT NOT NULL, record TEXT NOT NULL,
                   revision INTEGER NOT NULL, gone INTEGER NOT NULL,
                   content_revision INTEGER NOT NULL, until INTEGER NOT NULL);
CREATE INDEX items_by_end ON items(folder, until);
CREATE UNIQUE INDEX items_by_revision ON items(folder, revision);
CREATE TABLE chains(device TEXT, collection TEXT, lineage TEXT NOT NULL, number INTEGER NOT NULL,
                    previous_key TEXT NOT NULL, position INTEGER NOT NULL, previous_position INTEGER NOT NULL,
                    request BLOB NOT NULL, response BLOB NOT NULL, supported TEXT NOT NULL,
                    complete_from INTEGER NOT NULL, empty_before INTEGER NOT NULL,
                    previous_complete_from INTEGER NOT NULL, previous_empty_before INTEGER NOT NULL,
                    PRIMARY KEY(device, collection)) WITHOUT ROWID;
CREATE TABLE known(device TEXT, collection TEXT, item TEXT, revision INTEGER NOT NULL,
                   PRIMARY KEY(device, collection, item)) WITHOUT ROWID;
CREATE TABLE undo(device TEXT, collection TEXT, item TEXT, revision INTEGER,
                  PRIMARY KEY(device, collection, item)) WITHOUT ROWID;
CREATE TABLE applied(device TEXT, collection TEXT, item TEXT, client_id TEXT NOT NULL,
                     revision INTEGER NOT NULL, PRIMARY KEY(device, collection, item)) WITHOUT ROWID;
CREATE TABLE added(item TEXT PRIMARY KEY, device TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE attachments(handle TEXT PRIMARY KEY, item TEXT NOT NULL, name TEXT NOT NULL, type TEXT NOT NULL,
                         content BLOB NOT NULL);
CREATE INDEX attachments_by_item ON attachments(item);
CREATE TABLE messages(item TEXT PRIMARY KEY, content BLOB NOT NULL);
CREATE TABLE moves(item TEXT PRIMARY KEY, folder TEXT NOT NULL, new_item TEXT NOT NULL,
                   new_folder TEXT NOT NULL) WITHOUT ROWID;
CREATE INDEX moves_by_new_item ON moves(new_item);
CREATE TABLE devices(device TEXT PRIMARY KEY, friendly_name TEXT NOT NULL, address TEXT NOT NULL,
                     carrier TEXT NOT NULL, lifetime INTEGER NOT NULL) WITHOUT ROWID;
CREATE TABLE notified(device TEXT, folder TEXT, PRIMARY KEY(device, folder)) WITHOUT ROWID;
CREATE TRIGGER item_removed AFTER UPDATE OF gone ON items WHEN NEW.gone = 1 BEGIN
  DELETE FROM attachments WHERE item = NEW.id;
  DELETE FROM messages WHERE item = NEW.id;
  DELETE FROM added WHERE item = NEW.id;
END;
CREATE TRIGGER item_forgotten AFTER DELETE ON items BEGIN
  DELETE FROM attachments WHERE item = OLD.id;
  DELETE FROM messages WHERE item = OLD.id;
  DELETE FROM added WHERE item = OLD.id;
  DELETE FROM moves WHERE new_item = OLD.id;
END;
)sql";

}  // namespace

Database::Database(const std::string& file)
    : database_(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, 5000) {
  database_.exec("PRAGMA journal_mode = WAL");
  database_.exec("PRAGMA synchronous = NORMAL");
  const int version = database_.execAndGet("PRAGMA user_version").getInt();
  if (version > kSchemaVersion)
    throw std::runtime_error("the data file " + file + " was written by a newer server; use another file");
  if (version == kSchemaVersion) return;
  if (version != 0)
    throw std::runtime_error("the data file " + file + " was written by an older server; use another file");
  SQLite::Transaction transaction(database_);
  database_.exec(kSchema);
  database_.exec("PRAGMA user_version = " + std::to_string(kSchemaVersion));
  transaction.commit();
}

std::int64_t Database::nextRevision() {
  Query(*this, "UPDATE settings SET value = value + 1 WHERE name = 'revision'").run();
  Query query(*this, "SELECT value FROM settings WHERE name = 'revision'");
  query.next();
  return query.integer(0);
}

std::string Database::setting(const std::string& name) {
  Query query(*this, "SELECT value FROM settings WHERE name = ?", name);
  return query.next() ? query.text(0) : std::string();
}

void Database::set(const std::string& name, const std::string& value) {
  Query(*this, "INSERT OR REPLACE INTO settings VALUES(?, ?)", name, value).run();
}

SQLite::Statement& Query::prepare(Database& database, const char* sql) {
  auto& slot = database.prepared_[sql];
  if (!slot) slot = std::make_unique<SQLite::Statement>(database.database_, sql);
  return *slot;
}

}  // namespace demoserver
