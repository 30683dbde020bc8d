// Stores that an older version wrote are brought up to date, whole or not at all.
#include <fstream>
#include <iterator>
#include <map>
#include <sqlite3.h>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

using std::filesystem::path;
using Commands = std::vector<Command>;

void execute(const path& file, const std::string& sql) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
  char* error = nullptr;
  EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK) << error;
  sqlite3_close(database);
}

int appendRow(void* text, int columns, char** values, char** names) {
  for (int column = 0; column < columns; ++column) {
    const char* value = values[column] == nullptr ? "NULL" : values[column];
    *static_cast<std::string*>(text) += std::string(names[column]) + "=" + value + "|";
  }
  *static_cast<std::string*>(text) += "\n";
  return 0;
}

// The rows that a query finds, one per line.
std::string rows(const path& file, const std::string& sql) {
  sqlite3* database = nullptr;
  EXPECT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
  std::string text;
  EXPECT_EQ(sqlite3_exec(database, sql.c_str(), appendRow, &text, nullptr), SQLITE_OK) << sql;
  sqlite3_close(database);
  return text;
}

// What the tables of version 1 hold.
std::map<std::string, std::string> content(const path& file) {
  std::map<std::string, std::string> tables;
  tables["folder"] = rows(file,
                          "SELECT id, server_id, parent_id, name, type, sync_key, generation, reconciling, "
                          "gone, last_sync FROM folder WHERE id > 0 ORDER BY id");
  tables["item"] = rows(file, "SELECT id, folder_id, server_id, revision, generation FROM item ORDER BY id");
  tables["pending"] =
      rows(file,
           "SELECT id, item_id, folder_id, kind, state, status, reason, since, dropped, handed, sent_key, "
           "sent_revision FROM pending ORDER BY id");
  for (const char* table : {"account", "contact", "contact_entry", "sqlite_sequence"}) {
    tables[table] = rows(file, std::string("SELECT * FROM ") + table + " ORDER BY 1, 2");
  }
  return tables;
}

std::string bytesOf(const path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class Migration : public testing::Test {
 protected:
  Migration() : file_(directory_.path() / "account.db") {
    execute(file_, bytesOf(path(AIRSYNC_STORE_TESTS) / "version1.sql"));
  }

  const Directory directory_;
  const path file_;
};

TEST_F(Migration, FromVersion1KeepsEveryRow) {
  const auto before = content(file_);
  ASSERT_NE(before.at("contact").find("value 51"), std::string::npos);
  { Store store(file_); }
  EXPECT_EQ(content(file_), before);
  EXPECT_EQ(rows(file_, "PRAGMA user_version"), "user_version=4|\n");
  EXPECT_EQ(rows(file_, "PRAGMA integrity_check"), "integrity_check=ok|\n");
  EXPECT_EQ(rows(file_, "PRAGMA foreign_key_check"), "");
}

TEST_F(Migration, FromVersion1KeepsWhatPeopleAndServersAreOwed) {
  Store store(file_);
  const Folder contacts = store.findFolder("c1");
  EXPECT_EQ(contacts.items, 8U);
  EXPECT_EQ(contacts.pending, 3U);
  EXPECT_EQ(contacts.failed, 4U);
  EXPECT_EQ(store.failures().size(), 5U);
  EXPECT_EQ(Library(store, contacts.number).request(),
            (Commands{changeOf("c1:3", "Changed"), deleteOf("c1:4"), addOf(10, "Waiting")}));
  // Additions were under way when the run was killed: what became of them is to be found out first.
  const Folder friends = store.findFolder("Contacts/Friends");
  EXPECT_TRUE(store.repetitionDue(friends.number));
  EXPECT_EQ(store.nextStep(friends.number, 0, false), SyncStep::beginAnew);
}

TEST_F(Migration, FromVersion1MakesRoomForEventsAndMails) {
  Store store(file_);
  const ItemNumber added = store.addItem(store.findFolder("Calendar").number, fullEvent());
  EXPECT_EQ(std::get<Event>(store.item(added).value), fullEvent());
  const FolderNumber inbox = store.findFolder("Inbox").number;
  Library library(store, inbox);
  library.add("m1:1", fullMail());
  library.key("k1");
  library.end();
  EXPECT_EQ(std::get<Mail>(store.item(store.findItem(inbox, "m1:1")).value), fullMail());
}

TEST_F(Migration, FromVersion1BelongsToNobodyBeforeItsFirstLogin) {
  Store store(file_);
  EXPECT_EQ(store.login(), std::nullopt);
  const Login ann = {.host = "sync.example.com", .path = "/service", .user = "ann", .domain = "corp"};
  store.setLogin(ann);
  EXPECT_EQ(store.login(), ann);
}

TEST_F(Migration, MakesTheTablesThatANewStoreHas) {
  { Store store(file_); }
  const path fresh = directory_.path() / "fresh.db";
  { Store store(fresh); }
  const std::string schema = "SELECT type, name, sql FROM sqlite_master WHERE name <> 'folder' ORDER BY name";
  EXPECT_EQ(rows(file_, schema), rows(fresh, schema));
  EXPECT_EQ(rows(file_, "SELECT * FROM pragma_table_info('folder')"),
            rows(fresh, "SELECT * FROM pragma_table_info('folder')"));
}

TEST_F(Migration, ThatFailsLeavesTheFileAsItWas) {
  // Stands where the last table is to be made.
  execute(file_, "CREATE TABLE trash(x)");
  const std::string before = bytesOf(file_);
  EXPECT_THROW(Store store(file_), Error);
  EXPECT_EQ(bytesOf(file_), before);
  EXPECT_EQ(rows(file_, "SELECT name FROM sqlite_master WHERE name = 'event'"), "");
  EXPECT_EQ(rows(file_, "PRAGMA user_version"), "user_version=1|\n");
  execute(file_, "DROP TABLE trash");
  Store store(file_);
  EXPECT_EQ(store.findFolder("c1").items, 8U);
}

}  // namespace
}  // namespace airsync::test
