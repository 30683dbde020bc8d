// One connection: when it takes the file for itself, what it makes of a full disk, what it trusts.
#include "store/Database.h"

#include <sqlite3.h>

#include "StoreFixture.h"
#include "store/StoreFile.h"

namespace airsync::test {
namespace {

class OneDatabase : public testing::Test {
 protected:
  OneDatabase() : file_(directory_.path() / "a.db"), database_(file_) {}

  const Directory directory_;
  const std::filesystem::path file_;
  Database database_;
};

// Another connection that does not wait.
int tryToWrite(const std::filesystem::path& file) {
  sqlite3* other = nullptr;
  EXPECT_EQ(sqlite3_open(file.c_str(), &other), SQLITE_OK);
  const int result = sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
  sqlite3_close(other);
  return result;
}

// What is read at the beginning of a transaction is still so when it writes.
TEST_F(OneDatabase, KeepsOthersFromWritingFromTheBeginningOfATransaction) {
  EXPECT_EQ(tryToWrite(file_), SQLITE_OK);
  {
    const Transaction transaction(database_);
    EXPECT_EQ(tryToWrite(file_), SQLITE_BUSY);
  }
  EXPECT_EQ(tryToWrite(file_), SQLITE_OK);
}

TEST_F(OneDatabase, TellsThatTheDiskIsFull) {
  database_.connection().exec("PRAGMA max_page_count = 1");  // as many as there are
  try {
    database_.guarded("storing an item in", [&] {
      Transaction transaction(database_);
      database_.connection().exec("CREATE TABLE more(x)");
      database_.connection().exec("INSERT INTO more VALUES (zeroblob(100000))");
      transaction.commit();
    });
    FAIL() << "there was room";
  } catch (const Error& error) {
    EXPECT_EQ(error.story().operation, "storing an item in");
    EXPECT_EQ(error.story().cause, "the disk is full");
    EXPECT_EQ(error.story().advice, "Make room, and try again; nothing was lost.");
    EXPECT_EQ(dynamic_cast<const DamagedStore*>(&error), nullptr);
  }
}

// Text that somebody has put into the schema.
TEST_F(OneDatabase, RunsNoFunctionThatTheSchemaNames) {
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &other), SQLITE_OK);
  const auto answer = [](sqlite3_context* context, int, sqlite3_value**) { sqlite3_result_int(context, 42); };
  sqlite3_create_function(other, "answer", 0, SQLITE_UTF8, nullptr, answer, nullptr, nullptr);
  EXPECT_EQ(sqlite3_exec(other, "CREATE VIEW planted AS SELECT answer() AS x", nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(other);
  sqlite3_create_function(database_.connection().getHandle(), "answer", 0, SQLITE_UTF8, nullptr, answer,
                          nullptr, nullptr);
  EXPECT_EQ(database_.connection().execAndGet("SELECT answer()").getInt(), 42);
  EXPECT_THROW(database_.connection().execAndGet("SELECT x FROM planted"), SQLite::Exception);
}

}  // namespace
}  // namespace airsync::test
