#include "store/StoreFile.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <fstream>
#include <iterator>
#include <sqlite3.h>
#include <sys/stat.h>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

using std::filesystem::path;

mode_t modeOf(const path& file) {
  struct stat status = {};
  EXPECT_EQ(::stat(file.c_str(), &status), 0) << file;
  return status.st_mode & 07777;
}

std::string bytesOf(const path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void writeBytes(const path& file, const std::string& bytes) {
  std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
}

void execute(const path& file, const char* sql) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  sqlite3_close(database);
}

// What opening the file fails with; empty when it does not fail.
std::string failureOf(const path& file) {
  try {
    Store store(file);
  } catch (const Error& error) {
    EXPECT_FALSE(error.advice().empty());
    EXPECT_NE(std::string(error.what()).find(file.string()), std::string::npos);
    return error.story().cause;
  }
  return "";
}

class WithUmask {
 public:
  explicit WithUmask(mode_t mask) : before_(::umask(mask)) {}
  ~WithUmask() { ::umask(before_); }

 private:
  mode_t before_;
};

// Keeps S14.
TEST(StoreFile, IsForItsOwnerAloneWhateverTheUmask) {
  for (const mode_t mask : {0000U, 0022U, 0277U}) {
    const Directory directory;
    const path file = directory.path() / "state" / "airsync" / "a.db";
    const WithUmask guard(mask);
    Store store(file);
    store.beginHierarchy(HierarchyFetch::all);
    EXPECT_EQ(modeOf(directory.path() / "state"), 0700U);
    EXPECT_EQ(modeOf(directory.path() / "state" / "airsync"), 0700U);
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_EQ(modeOf(path(file) += "-wal"), 0600U);
    EXPECT_EQ(modeOf(path(file) += "-shm"), 0600U);
  }
}

// Keeps S15.
TEST(StoreFile, IsNotReachedThroughALink) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  const path victim = directory.path() / "victim";
  std::filesystem::create_symlink(victim, file);
  EXPECT_EQ(failureOf(file), "it is a symbolic link, and these are not followed");
  EXPECT_FALSE(std::filesystem::exists(victim));
  { Store store(victim); }
  const std::string before = bytesOf(victim);
  EXPECT_EQ(failureOf(file), "it is a symbolic link, and these are not followed");
  EXPECT_EQ(bytesOf(victim), before);
}

// Keeps S15.
TEST(StoreFile, WritesThroughNoLinkInPlaceOfTheFilesBesideIt) {
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    const Directory directory;
    const path file = directory.path() / "a.db";
    const path victim = directory.path() / "victim";
    writeBytes(victim, "untouched");
    std::filesystem::create_symlink(victim, path(file) += suffix);
    failureOf(file);  // some are refused, some removed
    EXPECT_EQ(bytesOf(victim), "untouched") << suffix;
  }
}

TEST(StoreFile, LosesRightsThatOthersHad) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  { Store store(file); }
  ::chmod(file.c_str(), 0644);
  Store store(file);
  EXPECT_EQ(modeOf(file), 0600U);
}

TEST(StoreFile, LeavesTheModeOfADirectoryThatIsThere) {
  const Directory directory;
  ::chmod(directory.path().c_str(), 0755);
  Store store(directory.path() / "a.db");
  EXPECT_EQ(modeOf(directory.path()), 0755U);
}

TEST(StoreFile, IsKnownByItsMark) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  { Store store(file); }
  EXPECT_EQ(bytesOf(file).substr(68, 4), "ASYC");
  EXPECT_EQ(bytesOf(file).substr(60, 4), std::string("\0\0\0\4", 4));
}

// Keeps S19.
TEST(StoreFile, OfANewerVersionIsRefusedAndLeftAlone) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  { Store store(file); }
  execute(file, "PRAGMA user_version = 5");
  const std::string before = bytesOf(file);
  EXPECT_EQ(failureOf(file), "it has version 5, and this program knows versions up to 4");
  EXPECT_EQ(bytesOf(file), before);
}

// Keeps S19.
TEST(StoreFile, WhoseVersionIsBelowZeroIsRefusedAndLeftAlone) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  { Store store(file); }
  execute(file, "PRAGMA user_version = -1");
  const std::string before = bytesOf(file);
  EXPECT_EQ(failureOf(file), "it is damaged, or of another program");
  EXPECT_EQ(bytesOf(file), before);
}

// Keeps S19.
TEST(StoreFile, OfAnotherProgramIsRefusedAndLeftAlone) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  execute(file, "CREATE TABLE other(x); INSERT INTO other VALUES (1);");
  const std::string before = bytesOf(file);
  const mode_t mode = modeOf(file);
  EXPECT_EQ(failureOf(file), "it is damaged, or of another program");
  EXPECT_EQ(bytesOf(file), before);
  EXPECT_EQ(modeOf(file), mode);
}

// Keeps S19.
TEST(StoreFile, ThatIsNoDatabaseIsRefusedAndLeftAlone) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  for (const std::string& bytes : {std::string("x"), std::string("# notes\n"), std::string(5000, '\0'),
                                   std::string("SQLite format 3\0", 16)}) {
    writeBytes(file, bytes);
    EXPECT_EQ(failureOf(file), "it is damaged, or of another program");
    EXPECT_EQ(bytesOf(file), bytes);
  }
}

TEST(StoreFile, ThatIsADirectoryIsRefused) {
  const Directory directory;
  EXPECT_NE(failureOf(directory.path()), "");
}

// Keeps S19.
TEST(StoreFile, ThatWasEmptiedIsRefusedAndLeftAlone) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  { Store store(file); }
  writeBytes(file, "");
  EXPECT_EQ(failureOf(file),
            "it is empty, and it was not: what it held is lost, local changes that were not sent too");
  EXPECT_EQ(bytesOf(file), "");
}

TEST(StoreFile, ThatWasMovedAwayIsMadeAnew) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  { Store store(file); }
  std::filesystem::remove(file);
  EXPECT_EQ(failureOf(file), "");
  std::filesystem::remove(file);
  writeBytes(path(file) += ".made", "");
  EXPECT_EQ(failureOf(file), "");
}

TEST(StoreFile, IsRefusedWithAPipeBesideIt) {
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
    const Directory directory;
    const path file = directory.path() / "a.db";
    ASSERT_EQ(::mkfifo((path(file) += suffix).c_str(), 0600), 0);
    try {
      Store store(file);
      FAIL() << suffix;
    } catch (const Error& error) {
      EXPECT_EQ(error.story().cause, "it is no regular file") << suffix;
      EXPECT_EQ(error.story().subject, (path(file) += suffix).string());
    }
  }
}

TEST(StoreFile, ThatWasMadeAndNeverFilledIsFilled) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  writeBytes(file, "");
  EXPECT_EQ(failureOf(file), "");
  EXPECT_EQ(Store(file).hierarchyKey(), "0");
}

// Keeps S19.
TEST(StoreFile, ThatIsDamagedInsideGetsAClearErrorAndIsLeftAlone) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  { Store store(file); }
  std::string bytes = bytesOf(file);
  ASSERT_GT(bytes.size(), 8192U);
  for (std::size_t index = 100; index < bytes.size(); ++index) bytes[index] = '\xa5';
  writeBytes(file, bytes);
  EXPECT_EQ(failureOf(file), "the file is damaged");
  EXPECT_EQ(bytesOf(file), bytes);
}

// Keeps S19.
TEST(StoreFile, ThatIsDamagedBehindItsSchemaIsNamedByTheOperation) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  { Store store(file); }
  std::string bytes = bytesOf(file);
  for (std::size_t index = 4096; index < bytes.size(); ++index) bytes[index] = '\xa5';
  writeBytes(file, bytes);
  try {
    Store store(file);
    store.folders();
    FAIL() << "the damage was not noticed";
  } catch (const Error& error) {
    EXPECT_EQ(error.story().cause, "the file is damaged");
  }
}

// Keeps S19.
TEST(StoreFile, WhoseTablesContradictEachOtherIsNamedByTheOperation) {
  const Directory directory;
  const path file = directory.path() / "a.db";
  { Store store(file); }
  {
    SQLite::Database connection(file.string(), SQLite::OPEN_READWRITE);
    connection.exec("PRAGMA foreign_keys = OFF");
    connection.exec("INSERT INTO item(folder_id, generation) VALUES (7, 0)");
  }
  Store store(file);
  try {
    store.folders();
    FAIL() << "an item of no folder was not noticed";
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::account);
    EXPECT_THAT(error.story().cause, testing::StartsWith("the file is damaged: its tables contradict"));
    EXPECT_EQ(error.story().subject, file.string());
  }
}

TEST(StoreFile, ThatCanNotBeMadeNamesTheDirectoryThatIsInTheWay) {
  const Directory directory;
  writeBytes(directory.path() / "file", "");
  try {
    Store store(directory.path() / "file" / "a.db");
    FAIL() << "a file was taken for a directory";
  } catch (const Error& error) {
    EXPECT_EQ(error.story().subject, (directory.path() / "file").string());
    EXPECT_EQ(error.kind(), ErrorKind::account);
  }
}

// The rows that a query gives, their columns joined by "|".
std::vector<std::string> rowsOf(const path& file, const std::string& sql) {
  SQLite::Database database(file.string());
  SQLite::Statement query(database, sql);
  std::vector<std::string> rows;
  while (query.executeStep()) {
    std::string row;
    for (int column = 0; column < query.getColumnCount(); ++column) {
      if (column > 0) row += '|';
      row += query.getColumn(column).getString();
    }
    rows.push_back(row);
  }
  return rows;
}

class StoreQueries : public StoreTest {};

TEST_F(StoreQueries, AreForPeople) {
  Contact ada = person("Ada");
  ada.set("Birthday", UtcTime{.year = 1815, .month = 12, .day = 10});
  ada.set("Children", Contact::List{"Byron", "Annabella"});
  store().addItem(contacts(), ada);
  close();
  using testing::ElementsAre;
  EXPECT_THAT(rowsOf(file(), "SELECT FirstName, Birthday FROM contact JOIN item ON item.id = item_id"),
              ElementsAre("Ada|1815-12-10T00:00:00Z"));
  EXPECT_THAT(rowsOf(file(), "SELECT value FROM contact_entry WHERE field = 'Children' ORDER BY position"),
              ElementsAre("Byron", "Annabella"));
  EXPECT_THAT(rowsOf(file(), "SELECT kind, state, status, reason FROM pending"), testing::SizeIs(1));
}

}  // namespace
}  // namespace airsync::test
