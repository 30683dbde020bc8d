#include "store/Schema.h"

#include <SQLiteCpp/Transaction.h>
#include <iterator>
#include <string>

#include "api/ContactFields.h"
#include "store/SchemaVersion2.h"
#include "store/SchemaVersion3.h"
#include "store/SchemaVersion4.h"
#include "store/StoreFile.h"
#include "support/Error.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

// The tables without the contact's columns. The other classes of items have tables of their own beside
// `contact`, with the same key (see SchemaVersion2.cpp); `item` and `pending` serve all classes.
//
// folder.server_id: null for a folder that is gone, whose identifier may come again for another one.
//
// item.generation: the folder's generation when the server last sent the item. After a reset the folder's
// number is one higher, and what still has an older one when the folder is complete is not on the server.
//
// pending: at most one local change per item; `id` is the order in which they are sent.
//   dropped           the addition was taken back after it may have been sent; it is deleted when it is known
//                     on the server
//   handed            given to the library; may be under way. Once that is certain, sent_key and
//                     sent_revision tell under which key, and in which revision of the item, it was sent.
constexpr const char* kTables = R"(
CREATE TABLE account(
  id INTEGER PRIMARY KEY CHECK (id = 1),
  hierarchy_key TEXT NOT NULL DEFAULT '0',
  hierarchy_time TEXT);
INSERT INTO account(id) VALUES (1);

CREATE TABLE folder(
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  server_id TEXT UNIQUE,
  parent_id TEXT NOT NULL,
  name TEXT NOT NULL,
  type INTEGER NOT NULL,
  sync_key TEXT NOT NULL DEFAULT '0',
  generation INTEGER NOT NULL DEFAULT 0,
  reconciling INTEGER NOT NULL DEFAULT 0 CHECK (reconciling IN (0, 1)),
  gone INTEGER NOT NULL DEFAULT 0 CHECK (gone IN (0, 1)),
  last_sync TEXT);

CREATE TABLE item(
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  folder_id INTEGER NOT NULL REFERENCES folder(id) ON DELETE CASCADE,
  server_id TEXT,
  revision INTEGER NOT NULL DEFAULT 0,
  generation INTEGER NOT NULL);
CREATE INDEX item_folder ON item(folder_id);
CREATE UNIQUE INDEX item_server_id ON item(folder_id, server_id);

CREATE TABLE pending(
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  item_id INTEGER NOT NULL UNIQUE REFERENCES item(id) ON DELETE CASCADE,
  folder_id INTEGER NOT NULL REFERENCES folder(id) ON DELETE CASCADE,
  kind TEXT NOT NULL CHECK (kind IN ('add', 'change', 'delete')),
  state TEXT NOT NULL DEFAULT 'waiting' CHECK (state IN ('waiting', 'failed', 'unanswered')),
  status INTEGER NOT NULL DEFAULT 0,
  reason TEXT,
  since TEXT,
  dropped INTEGER NOT NULL DEFAULT 0 CHECK (dropped IN (0, 1)),
  handed INTEGER NOT NULL DEFAULT 0 CHECK (handed IN (0, 1)),
  sent_key TEXT,
  sent_revision INTEGER);
CREATE INDEX pending_order ON pending(folder_id, state, id);
CREATE INDEX pending_handed ON pending(folder_id, id) WHERE handed = 1;
)";

// `version` 0 is what people see; 1 is the server's version, kept while a local change of it is pending.
// Categories and Children hold the number of entries; the entries themselves are in contact_entry.
std::string contactTables() {
  std::string sql =
      "CREATE TABLE contact(item_id INTEGER NOT NULL REFERENCES item(id) ON DELETE CASCADE, "
      "version INTEGER NOT NULL CHECK (version IN (0, 1))";
  for (const AS_CONTACT_FIELD_T& field : AS_CONTACT_FIELDS) {
    const bool number =
        field.form == AS_FORM_NUMBER || field.form == AS_FORM_FLAG || field.form == AS_FORM_LIST;
    sql += std::string(", \"") + field.name + (number ? "\" INTEGER" : "\" TEXT");
  }
  sql +=
      ", PRIMARY KEY (item_id, version));"
      "CREATE TABLE contact_entry("
      "item_id INTEGER NOT NULL, version INTEGER NOT NULL, field TEXT NOT NULL, "
      "position INTEGER NOT NULL, value TEXT NOT NULL, "
      "PRIMARY KEY (item_id, version, field, position), "
      "FOREIGN KEY (item_id, version) REFERENCES contact(item_id, version) "
      "ON DELETE CASCADE ON UPDATE CASCADE) WITHOUT ROWID;";
  return sql;
}

void makeContactStore(SQLite::Database& connection) {
  connection.exec(kTables);
  connection.exec(contactTables());
  connection.exec("PRAGMA application_id = " + std::to_string(kApplicationId));
}

void addEventsAndMails(SQLite::Database& connection) { connection.exec(kSchemaVersion2); }

void addLogin(SQLite::Database& connection) { connection.exec(kSchemaVersion3); }
void addOutcomesAndTrash(SQLite::Database& connection) { connection.exec(kSchemaVersion4); }

// Migration n brings a file of version n to version n + 1.
using Migration = void (*)(SQLite::Database&);
constexpr Migration kMigrations[] = {
    makeContactStore,
    addEventsAndMails,
    addLogin,
    addOutcomesAndTrash,
};
constexpr int kVersion = static_cast<int>(std::size(kMigrations));

int number(SQLite::Database& connection, const char* pragma) {
  return connection.execAndGet(std::string("PRAGMA ") + pragma).getInt();
}

[[noreturn]] void refuse(const std::filesystem::path& file, const std::string& cause,
                         const std::string& advice) {
  throw Error({.operation = "opening the store", .subject = file.string(), .cause = cause, .advice = advice});
}

void check(SQLite::Database& connection, const std::filesystem::path& file, int version) {
  if (version > kVersion) {
    refuse(file,
           "it has version " + std::to_string(version) + ", and this program knows versions up to " +
               std::to_string(kVersion),
           "Use the newer program that wrote it: local changes that were not sent are nowhere else.");
  }
  const bool ours =
      version == 0 ? connection.execAndGet("SELECT count(*) FROM sqlite_master").getInt() == 0
                   : version > 0 && number(connection, "application_id") == static_cast<int>(kApplicationId);
  if (!ours) {
    failDamaged(file, "it is damaged, or of another program");
  }
}

}  // namespace

void migrate(SQLite::Database& connection, const std::filesystem::path& file) {
  int version = 0;
  {
    // Version and tables of one moment: another process may be just making the file.
    SQLite::Transaction snapshot(connection, SQLite::TransactionBehavior::DEFERRED);
    version = number(connection, "user_version");
    check(connection, file, version);
  }
  if (version == kVersion) return;
  SQLite::Transaction transaction(connection, SQLite::TransactionBehavior::EXCLUSIVE);
  // Another process may have been faster.
  version = number(connection, "user_version");
  check(connection, file, version);
  for (; version < kVersion; ++version) kMigrations[version](connection);
  connection.exec("PRAGMA user_version = " + std::to_string(kVersion));
  transaction.commit();
}

}  // namespace airsync
