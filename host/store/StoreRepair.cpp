#include "store/StoreRepair.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "store/Database.h"
#include "store/Store.h"
#include "store/StoreFile.h"
#include "store/TableRescue.h"
#include "store/UtcTime.h"

namespace airsync {
namespace {

namespace fs = std::filesystem;

constexpr const char* kReading = "reading.db";  // a copy that SQLite may write to
constexpr const char* kFresh = "new.db";

[[noreturn]] void fail(const fs::path& file, int error) {
  throw Error({.operation = "saving the store in",
               .subject = file.string(),
               .cause = std::generic_category().message(error),
               .advice = "Make room and the directory writable, then try again; the store is as it was."});
}

class File {
 public:
  File(const fs::path& path, int flags) : number_(openStateFile(path, flags)) {}
  ~File() {
    if (number_ >= 0) ::close(number_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

void syncDirectory(const fs::path& directory) {
  const int number = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (number < 0) return;
  ::fsync(number);
  ::close(number);
}

// Blocks that the disk does not give become zeros. Returns false for them, and for what is no file.
bool copyFile(const fs::path& from, const fs::path& to) {
  const File source(from, O_RDONLY);
  if (source.number() < 0 || !isRegularFile(source.number())) return false;
  const File target(to, O_WRONLY | O_CREAT | O_EXCL);
  if (target.number() < 0) fail(to, errno);
  struct stat status = {};
  if (::fstat(source.number(), &status) != 0) fail(from, errno);
  bool whole = true;
  std::array<char, 4096> block{};
  for (off_t at = 0; at < status.st_size; at += static_cast<off_t>(block.size())) {
    const ssize_t count = ::pread(source.number(), block.data(), block.size(), at);
    if (count < 0) {
      whole = false;
      continue;
    }
    if (::pwrite(target.number(), block.data(), static_cast<std::size_t>(count), at) != count)
      fail(to, errno);
  }
  if (::ftruncate(target.number(), status.st_size) != 0 || ::fsync(target.number()) != 0) fail(to, errno);
  return whole;
}

fs::path makeAside(const fs::path& file) {
  std::string time = UtcTime::now().text();
  std::erase_if(time, [](char c) { return c == '-' || c == ':'; });
  fs::path directory = file;
  directory += ".damaged-" + time;
  for (int again = 2; ::mkdir(directory.c_str(), S_IRWXU) != 0; ++again) {
    if (errno != EEXIST) fail(directory, errno);
    directory = file;
    directory += ".damaged-" + time + "-" + std::to_string(again);
  }
  return directory;
}

std::vector<std::string> column(SQLite::Database& database, const std::string& sql) {
  std::vector<std::string> values;
  SQLite::Statement query(database, sql);
  while (query.executeStep()) values.push_back(query.getColumn(0).getString());
  return values;
}

std::vector<std::string> tablesOf(SQLite::Database& database) {
  return column(
      database,
      "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite~_%' ESCAPE '~' "
      "ORDER BY rowid");
}

// Item numbers are never used twice.
void keepNumbering(SQLite::Database& damaged, SQLite::Database& fresh) {
  for (const char* table : {"item", "folder", "pending"}) {
    std::int64_t last = 0;
    try {
      SQLite::Statement query(damaged, "SELECT seq FROM sqlite_sequence WHERE name = ?");
      query.bind(1, table);
      if (query.executeStep()) last = query.getColumn(0).getInt64();
    } catch (const SQLite::Exception&) {
      continue;  // those of the rows that were read, then
    }
    SQLite::Statement raise(fresh, "UPDATE sqlite_sequence SET seq = max(seq, ?) WHERE name = ?");
    raise.bind(1, last);
    raise.bind(2, table);
    if (raise.exec() != 0) continue;
    SQLite::Statement begin(fresh, "INSERT INTO sqlite_sequence(name, seq) VALUES (?, ?)");
    begin.bind(1, table);
    begin.bind(2, last);
    begin.exec();
  }
}

// A change replaces the whole item on the server: one of which a part may be missing must not go there before
// a person has seen it.
void holdBack(SQLite::Database& fresh, const std::string& table, std::vector<std::string>& notes) {
  const std::string contents = table.substr(0, table.find('_'));
  if (contents == table || (contents != "contact" && contents != "event")) return;
  const int rows = fresh.exec(
      "UPDATE pending SET state = 'failed', handed = 0, sent_key = NULL, sent_revision = NULL, "
      "sent_kind = NULL, reason = 'The store was damaged; look whether the item is complete, then retry.' "
      "WHERE kind <> 'delete' AND item_id IN "
      "(SELECT "
      "item_id FROM " +
      contents + ")");
  if (rows != 0)
    notes.push_back(std::to_string(rows) + " local changes that may lack a part; they are failures");
}

void copyRows(const fs::path& reading, SQLite::Database& fresh, std::vector<std::string>& notes) {
  std::optional<SQLite::Database> damaged;
  try {
    damaged.emplace(reading.string(), SQLite::OPEN_READWRITE);
    damaged->exec("PRAGMA trusted_schema = OFF");
    if (tablesOf(*damaged).empty()) damaged.reset();
  } catch (const SQLite::Exception&) {
    damaged.reset();
  }
  if (!damaged) {
    notes.emplace_back("nothing in it could be read");
    return;
  }
  fresh.exec("DELETE FROM account");
  std::vector<std::string> torn;
  for (const std::string& table : tablesOf(fresh)) {
    if (!rescueTable(*damaged, fresh, table)) torn.push_back(table);
  }
  for (const std::string& table : torn) {
    notes.push_back("a part of table " + table + " could not be read");
    holdBack(fresh, table, notes);
  }
  keepNumbering(*damaged, fresh);
}

// What hangs from nothing is removed, until all hangs from something.
void removeOrphans(SQLite::Database& fresh) {
  int removed = 1;
  while (removed != 0) {
    removed = 0;
    for (const std::string& table : tablesOf(fresh)) {
      SQLite::Statement keys(
          fresh,
          "SELECT group_concat('p.\"' || \"to\" || '\" = \"' || ? || '\".\"' || \"from\" || "
          "'\"', ' AND '), \"table\" FROM pragma_foreign_key_list(?) GROUP BY id");
      keys.bind(1, table);
      keys.bind(2, table);
      std::vector<std::string> statements;
      while (keys.executeStep()) {
        statements.push_back("DELETE FROM \"" + table + "\" WHERE NOT EXISTS (SELECT 1 FROM \"" +
                             keys.getColumn(1).getString() + "\" p WHERE " + keys.getColumn(0).getString() +
                             ")");
      }
      for (const std::string& statement : statements) removed += fresh.exec(statement);
    }
  }
}

struct Mending {
  const char* note;  // with the number of rows in front of it; null: nothing to tell
  const char* sql;
};

// In this order. Local changes are never dropped where there is anything of them to keep.
constexpr const char* kReason = "'The store was damaged, and where this belongs could not be read.'";
const std::vector<Mending>& mendings() {
  static const std::string noContent =
      "NOT EXISTS (SELECT 1 FROM contact c WHERE c.item_id = item.id AND c.version = 0) AND "
      "NOT EXISTS (SELECT 1 FROM event c WHERE c.item_id = item.id AND c.version = 0) AND "
      "NOT EXISTS (SELECT 1 FROM mail c WHERE c.item_id = item.id AND c.version = 0)";
  static const std::string content =
      "(SELECT item_id FROM contact WHERE version = 0 UNION ALL SELECT item_id FROM event WHERE version = 0 "
      "UNION ALL SELECT item_id FROM mail WHERE version = 0)";
  static const std::string behind =
      "(SELECT item_id FROM contact WHERE version = 1 UNION ALL SELECT item_id FROM event WHERE version = 1 "
      "UNION ALL SELECT item_id FROM mail WHERE version = 1)";
  static const std::string changeOfLostItem =
      "INSERT INTO item(id, folder_id, generation) SELECT item_id, folder_id, 0 FROM pending WHERE kind <> "
      "'delete' AND item_id NOT IN (SELECT id FROM item) AND item_id IN " +
      content;
  static const std::string nowAnAddition =
      std::string(
          "UPDATE pending SET kind = 'add', state = 'failed', handed = 0, sent_key = NULL, sent_revision "
          "= NULL, sent_kind = NULL, reason = ") +
      kReason + " WHERE kind = 'change' AND item_id IN (SELECT id FROM item WHERE server_id IS NULL)";
  static const std::string lostAddition =
      "INSERT INTO pending(item_id, folder_id, kind, state, reason) SELECT id, folder_id, 'add', "
      "'unanswered', "
      "'The store was damaged; whether it was sent could not be read.' FROM item WHERE server_id IS NULL AND "
      "folder_id <> 0 AND id NOT IN (SELECT item_id FROM pending) AND id IN " +
      content;
  static const std::string lostChange =
      "INSERT INTO pending(item_id, folder_id, kind) SELECT id, folder_id, 'change' FROM item WHERE "
      "server_id IS "
      "NOT NULL AND id NOT IN (SELECT item_id FROM pending) AND id IN " +
      behind + " AND id IN " + content;
  static const std::string lostContent =
      "DELETE FROM pending WHERE kind <> 'delete' AND item_id NOT IN " + content;
  static const std::string emptyItems =
      "DELETE FROM item WHERE " + noContent + " AND id NOT IN (SELECT item_id FROM pending)";
  static const std::string recovered =
      "INSERT INTO folder(id, parent_id, name, type, gone) SELECT DISTINCT item.folder_id, '0', 'Recovered ' "
      "|| "
      "item.folder_id, CASE WHEN item.id IN (SELECT item_id FROM contact) THEN 14 WHEN item.id IN (SELECT "
      "item_id "
      "FROM event) THEN 13 ELSE 12 END, 1 FROM item JOIN pending ON item_id = item.id WHERE item.folder_id "
      "NOT IN "
      "(SELECT id FROM folder) GROUP BY item.folder_id";
  static const std::string failedThere =
      std::string(
          "UPDATE pending SET state = 'failed', handed = 0, sent_key = NULL, sent_revision = NULL, "
          "sent_kind = NULL, reason = ") +
      kReason + " WHERE folder_id IN (SELECT id FROM folder WHERE gone = 1) AND state <> 'failed'";
  static constexpr const char* unchangedThere =
      "DELETE FROM item WHERE folder_id IN (SELECT id FROM folder WHERE gone = 1) AND folder_id <> 0 "
      "AND id NOT IN (SELECT item_id FROM pending)";
  static const std::string trashedLostItem =
      "INSERT INTO item(id, folder_id, generation) SELECT item_id, 0, 0 FROM trash WHERE item_id NOT IN "
      "(SELECT id FROM item) AND item_id IN " +
      content;
  static const std::string lostTrash =
      "INSERT INTO trash(item_id, folder_id, folder_name, type, reason, since) SELECT id, 0, 'unknown', CASE "
      "WHEN id IN (SELECT item_id FROM contact) THEN 14 WHEN id IN (SELECT item_id FROM event) THEN 13 ELSE "
      "12 END, 'The store was damaged; why it is here could not be read.', strftime('%Y-%m-%dT%H:%M:%SZ', "
      "'now') FROM item WHERE folder_id = 0 AND id NOT IN (SELECT item_id FROM trash) AND id IN " +
      content;
  static const std::vector<Mending> all = {
      {nullptr, changeOfLostItem.c_str()},
      {nullptr, trashedLostItem.c_str()},
      {nullptr,
       "UPDATE pending SET folder_id = (SELECT folder_id FROM item WHERE item.id = item_id) WHERE "
       "item_id IN (SELECT id FROM item)"},
      {"changed items whose ids could not be read; they are failures, to be added with airsync retry",
       nowAnAddition.c_str()},
      {"items that were added here and may have been sent", lostAddition.c_str()},
      {"changed items whose state could not be read; they wait to be sent", lostChange.c_str()},
      {"local changes of which nothing could be read", lostContent.c_str()},
      {nullptr, emptyItems.c_str()},
      {"items in the trash whose folders could not be read", lostTrash.c_str()},
      {"folders that could not be read; what was changed in them stands in a folder \"Recovered\"",
       recovered.c_str()},
      {"deletions in them, which are not done",
       "DELETE FROM item WHERE id IN (SELECT item_id FROM pending WHERE kind = 'delete') AND folder_id IN "
       "(SELECT id FROM folder WHERE gone = 1)"},
      {nullptr, unchangedThere},
      {nullptr, failedThere.c_str()},
      {nullptr, "DELETE FROM account"},
      {nullptr, "INSERT INTO account(id) VALUES (1)"},
      {nullptr, "UPDATE folder SET asked_key = NULL"},
  };
  return all;
}

void mend(SQLite::Database& fresh, std::vector<std::string>& notes) {
  for (const Mending& mending : mendings()) {
    const int rows = fresh.exec(mending.sql);
    if (rows > 0 && mending.note != nullptr) notes.push_back(std::to_string(rows) + " " + mending.note);
  }
  removeOrphans(fresh);
}

// Keys go last: whatever was not read comes again with the next synchronisation.
void forgetKeys(const fs::path& fresh) {
  Store store(fresh);
  for (const Folder& folder : store.uncountedFolders()) {
    if (!folder.gone) store.resetFolder(folder.number);
  }
}

}  // namespace

StoreCondition conditionOf(const fs::path& file) {
  std::error_code error;
  if (!fs::exists(fs::symlink_status(file, error))) return StoreCondition::missing;
  try {
    Database database(file);
    return database.guarded("checking the store", [&] {
      Query whole(database, "PRAGMA integrity_check(1)");
      const bool intact = whole.step() && whole.text(0) == "ok";
      Query keys(database, "PRAGMA foreign_key_check");
      return intact && !keys.step() ? StoreCondition::sound : StoreCondition::damaged;
    });
  } catch (const DamagedStore&) {
    return StoreCondition::damaged;
  }
}

SavedStore saveStore(const fs::path& file) {
  SavedStore saved;
  saved.aside = makeAside(file);
  const fs::path reading = saved.aside / kReading;
  for (const fs::path& each : filesOfStore(file)) {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(each, error))) continue;
    const fs::path copy = saved.aside / each.filename();
    if (!copyFile(each, copy)) saved.notes.push_back(each.filename().string() + " could not be copied whole");
    const std::string suffix = each.filename().string().substr(file.filename().string().size());
    if (suffix != "-shm" && suffix != ".made") copyFile(copy, fs::path(reading) += suffix);
  }
  saved.fresh = saved.aside / kFresh;
  { const Store made(saved.fresh); }
  {
    SQLite::Database fresh(saved.fresh.string(), SQLite::OPEN_READWRITE);
    fresh.exec("PRAGMA foreign_keys = OFF");
    SQLite::Transaction transaction(fresh);
    copyRows(reading, fresh, saved.notes);
    mend(fresh, saved.notes);
    transaction.commit();
  }
  forgetKeys(saved.fresh);
  for (const fs::path& each : filesOfStore(reading)) {
    std::error_code error;
    fs::remove(each, error);
  }
  syncDirectory(saved.aside);
  syncDirectory(file.parent_path());
  return saved;
}

void putInPlace(const SavedStore& saved, const fs::path& file) {
  {
    // The last connection takes everything into the file itself.
    SQLite::Database fresh(saved.fresh.string(), SQLite::OPEN_READWRITE);
    fresh.exec("PRAGMA wal_checkpoint(TRUNCATE)");
  }
  const File written(saved.fresh, O_RDONLY);
  if (written.number() < 0 || ::fsync(written.number()) != 0) fail(saved.fresh, errno);
  std::error_code error;
  // Copies of them are aside; beside the new file they would be taken for its own.
  for (const fs::path& each : filesOfStore(file)) {
    if (each != file) fs::remove(each, error);
  }
  if (::rename(saved.fresh.c_str(), file.c_str()) != 0) fail(file, errno);
  for (const fs::path& each : filesOfStore(saved.fresh)) fs::remove(each, error);
  syncDirectory(file.parent_path());
  markStoreMade(file);
}

}  // namespace airsync
