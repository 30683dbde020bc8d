// The server's state: one SQLite file, one connection, one thread.
//
// Every request runs in one transaction that is committed before its answer leaves, so a kill at any moment
// leaves the state after some whole request. The pragmas: WAL with synchronous NORMAL needs no disk flush per
// request; what a killed process had committed is safe, and a power cut can only roll back to an earlier
// whole request. A secure_delete or foreign key check would cost more than it protects here.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace demoserver {

class Query;

class Database {
 public:
  // Opens or creates the file. ":memory:" gives a state that is not kept.
  // Throws SQLite::Exception, or std::runtime_error for a file that a server of another version wrote.
  explicit Database(const std::string& file);

  // The next number of the one clock that orders every change of a folder or an item.
  std::int64_t nextRevision();

  // A small named text that outlives restarts; empty when it was never set.
  std::string setting(const std::string& name);
  void set(const std::string& name, const std::string& value);

  SQLite::Database& handle() { return database_; }

 private:
  friend class Query;

  SQLite::Database database_;
  std::unordered_map<const char*, std::unique_ptr<SQLite::Statement>> prepared_;
};

// Bytes that are no text. They are not copied: they must live until the query has run.
struct Bytes {
  std::string_view content;
};

// One use of a prepared statement. The text must be a literal: its address is the key of the cache. While a
// Query lives, no second one with the same text may be made.
class Query {
 public:
  template <typename... Values>
  Query(Database& database, const char* sql, const Values&... values) : statement_(prepare(database, sql)) {
    int index = 0;
    (bind(++index, values), ...);
  }
  ~Query() { statement_.tryReset(); }
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  // Moves to the next row; false when there is none.
  bool next() { return statement_.executeStep(); }
  // Runs a statement that gives no rows, and returns how many rows it touched.
  int run() { return statement_.exec(); }

  bool isNull(int column) { return statement_.getColumn(column).isNull(); }
  std::int64_t integer(int column) { return statement_.getColumn(column).getInt64(); }
  // Of a text or of bytes.
  std::string text(int column) { return statement_.getColumn(column).getString(); }

 private:
  static SQLite::Statement& prepare(Database& database, const char* sql);

  template <typename Value>
  void bind(int index, const Value& value) {
    statement_.bind(index, value);
  }
  void bind(int index, const Bytes& value) {
    statement_.bindNoCopy(index, value.content.data(), static_cast<int>(value.content.size()));
  }

  SQLite::Statement& statement_;
};

}  // namespace demoserver
