#include "store/Database.h"

#include <sqlite3.h>
#include <sys/resource.h>

#include "store/Schema.h"
#include "store/StoreFile.h"
#include "support/Error.h"

namespace airsync {
namespace {

constexpr int kBusyMilliseconds = 10'000;

const std::filesystem::path& prepared(const std::filesystem::path& file) {
  prepareStoreFile(file);
  return file;
}

struct Explanation {
  int code;
  const char* cause;
  const char* advice;
};

constexpr Explanation kExplanations[] = {
    {SQLITE_CORRUPT, "the file is damaged", kDamagedAdvice},
    {SQLITE_NOTADB, "the file is damaged, or of another program", kDamagedAdvice},
    {SQLITE_BUSY, "another process has been writing to it for more than ten seconds",
     "Wait until that process is done, and try again."},
    {SQLITE_FULL, "the disk is full", "Make room, and try again; nothing was lost."},
    {SQLITE_READONLY, "the file or its directory can't be written",
     "Make both readable and writable for you, and try again."},
    {SQLITE_CANTOPEN, "the file can't be opened",
     "Make it and its directory readable and writable for you, and try again."},
    {SQLITE_IOERR, "the disk reported an error", "Look at the system's log, and try again."},
    {SQLITE_NOMEM, "there is no memory left", "End other programs, and try again."},
};

// A limit on the size of files stops a write as a full disk does; SQLite reports a fault of the disk.
bool isLimitOfFiles(const SQLite::Exception& exception) {
  const int code = exception.getExtendedErrorCode();
  if (code != SQLITE_IOERR_WRITE && code != SQLITE_IOERR_SHMSIZE && code != SQLITE_IOERR_TRUNCATE)
    return false;
  rlimit limit = {};
  return ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
}

[[noreturn]] void throwStory(const char* operation, const std::filesystem::path& file,
                             const SQLite::Exception& exception) {
  ErrorStory story = {.operation = operation,
                      .subject = file.string(),
                      .cause = exception.what(),
                      .advice = "This is an error of the program: report it with this line."};
  const int code = exception.getErrorCode() & 0xff;
  for (const Explanation& known : kExplanations) {
    if (known.code != code) continue;
    story.cause = known.cause;
    story.advice = known.advice;
  }
  if (isLimitOfFiles(exception)) {
    story.cause = "a file must not become larger than the limit that is set for this process (ulimit -f)";
    story.advice = "Raise the limit, and try again; nothing was lost.";
  }
  if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB) throw DamagedStore(std::move(story));
  throw Error(std::move(story));
}

// The switch wants the file alone, and SQLite does not wait for that: another process may be opening it, too.
void switchToWal(SQLite::Database& connection) {
  constexpr int kPauseMilliseconds = 5;
  for (int waited = 0;; waited += kPauseMilliseconds) {
    try {
      connection.exec("PRAGMA journal_mode = WAL");
      return;
    } catch (const SQLite::Exception& exception) {
      if (exception.getErrorCode() != SQLITE_BUSY || waited >= kBusyMilliseconds) throw;
    }
    sqlite3_sleep(kPauseMilliseconds);
  }
}

}  // namespace

Database::Database(const std::filesystem::path& file) try
    : file_(prepared(file)), connection_(file.string(), SQLite::OPEN_READWRITE, kBusyMilliseconds) {
  configure();
} catch (const SQLite::Exception& exception) {
  throwStory("opening the store", file, exception);
}

void Database::configure() {
  connection_.exec("PRAGMA foreign_keys = ON");
  // Text that damage or a foreign hand put into the schema must not run functions.
  connection_.exec("PRAGMA trusted_schema = OFF");
  migrate(connection_, file_);
  switchToWal(connection_);
  markStoreMade(file_);
}

void Database::throwError(const char* operation, const SQLite::Exception& exception) const {
  throwStory(operation, file_, exception);
}

void Database::throwDamaged(const char* operation, const std::logic_error& contradiction) const {
  throw DamagedStore({.operation = operation,
                      .subject = file_.string(),
                      .cause = std::string("the file is damaged: its tables contradict each other (") +
                               contradiction.what() + ")",
                      .advice = kDamagedAdvice});
}

// A WAL transaction survives a power failure only with FULL, which waits for the disk at each commit; NORMAL
// waits at checkpoints alone. Both keep the file whole.
void Database::begin(Durability durability) {
  if (durability_ != durability) {
    connection_.exec(durability == Durability::power ? "PRAGMA synchronous = FULL"
                                                     : "PRAGMA synchronous = NORMAL");
    durability_ = durability;
  }
  Query(*this, "BEGIN IMMEDIATE").run();
}

Query::Query(Database& database, const std::string& sql) : database_(database), sql_(sql) {
  auto& idle = database.idle_[sql];
  if (idle.empty()) {
    statement_ = std::make_unique<SQLite::Statement>(database.connection_, sql);
  } else {
    statement_ = std::move(idle.back());
    idle.pop_back();
  }
}

Query::~Query() {
  statement_->tryReset();
  try {
    statement_->clearBindings();
    database_.idle_[sql_].push_back(std::move(statement_));
  } catch (...) {
    // The statement is not kept then; it is prepared anew when it is needed.
    statement_.reset();
  }
}

Query& Query::bind(std::int64_t value) {
  statement_->bind(++bound_, value);
  return *this;
}

Query& Query::bind(const std::string& text) {
  statement_->bindNoCopy(++bound_, text);
  return *this;
}

Query& Query::bindBlob(const void* bytes, std::size_t size) {
  statement_->bind(++bound_, bytes, static_cast<int>(size));
  return *this;
}

Query& Query::bindNull() {
  statement_->bind(++bound_);
  return *this;
}

int Query::run() {
  while (statement_->executeStep()) {
  }
  return database_.connection_.getChanges();
}

Transaction::Transaction(Database& database, Durability durability) : database_(database) {
  database_.begin(durability);
}

Transaction::~Transaction() {
  if (!open_) return;
  try {
    Query(database_, "ROLLBACK").run();
  } catch (const SQLite::Exception&) {
    // SQLite has rolled back by itself already, as it does after some errors.
  }
}

void Transaction::commit() {
  Query(database_, "COMMIT").run();
  open_ = false;
}

Snapshot::Snapshot(Database& database)
    : database_(database), open_(sqlite3_get_autocommit(database.connection().getHandle()) != 0) {
  if (open_) Query(database_, "BEGIN").run();
}

Snapshot::~Snapshot() {
  if (!open_) return;
  try {
    Query(database_, "ROLLBACK").run();
  } catch (const SQLite::Exception&) {
    // SQLite has ended it by itself already, as it does after some errors.
  }
}

}  // namespace airsync
