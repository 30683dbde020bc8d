// One connection to the store's file: statements that stay prepared, transactions, errors as sentences.
#ifndef AIRSYNC_HOST_STORE_DATABASE_H
#define AIRSYNC_HOST_STORE_DATABASE_H

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace airsync {

// What a committed transaction survives: a power failure, or only the end of the process. The second costs no
// wait for the disk; it is undone as a whole if at all, never in part.
enum class Durability { power, process };

/// Opens and prepares the connection; see Store. The file is in WAL mode, so that reading and writing do not
/// wait for each other. All members throw SQLite::Exception but the constructor, which throws Error.
class Database {
 public:
  explicit Database(const std::filesystem::path& file);

  SQLite::Database& connection() { return connection_; }
  const std::filesystem::path& file() const { return file_; }

  /// Runs `body`. What SQLite throws becomes an Error (account) that tells `operation`, the file and what to
  /// do; so does what the standard library throws over rows that contradict each other, which only a damaged
  /// file has.
  template <typename Body>
  decltype(auto) guarded(const char* operation, Body&& body) const {
    try {
      return std::forward<Body>(body)();
    } catch (const SQLite::Exception& exception) {
      throwError(operation, exception);
    } catch (const std::logic_error& contradiction) {
      throwDamaged(operation, contradiction);
    }
  }

 private:
  friend class Query;
  friend class Transaction;

  [[noreturn]] void throwError(const char* operation, const SQLite::Exception& exception) const;
  [[noreturn]] void throwDamaged(const char* operation, const std::logic_error& contradiction) const;
  void configure();
  void begin(Durability durability);

  std::filesystem::path file_;
  SQLite::Database connection_;
  std::optional<Durability> durability_;
  // Prepared statements that are not in use, by their text.
  std::unordered_map<std::string, std::vector<std::unique_ptr<SQLite::Statement>>> idle_;
};

/// One use of a prepared statement. Parameters are bound in their order.
class Query {
 public:
  Query(Database& database, const std::string& sql);
  ~Query();
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  Query& bind(std::int64_t value);
  /// The text is not copied: it lives until the last step.
  Query& bind(const std::string& text);
  Query& bind(std::string&&) = delete;
  /// Bytes, copied.
  Query& bindBlob(const void* bytes, std::size_t size);
  Query& bindNull();
  template <typename T>
  Query& bind(const std::optional<T>& value) {
    return value ? bind(*value) : bindNull();
  }

  /// The next row; false when there is none.
  bool step() { return statement_->executeStep(); }

  /// Runs it to its end; returns the number of rows that it changed.
  int run();

  bool null(int column) const { return statement_->getColumn(column).isNull(); }
  std::int64_t integer(int column) const { return statement_->getColumn(column).getInt64(); }
  /// The bytes as they were bound, of a text or a blob; null counts as empty.
  std::string text(int column) const { return statement_->getColumn(column).getString(); }
  std::optional<std::string> maybeText(int column) const {
    return null(column) ? std::nullopt : std::optional(text(column));
  }

 private:
  Database& database_;
  std::string sql_;
  std::unique_ptr<SQLite::Statement> statement_;
  int bound_ = 0;
};

/// A write transaction: begins at once (waiting for another's), and is undone unless it is committed.
class Transaction {
 public:
  explicit Transaction(Database& database, Durability durability = Durability::power);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit();

 private:
  Database& database_;
  bool open_ = true;
};

/// While it lives, everything that is read is of one moment, whatever another process writes meanwhile.
/// Within a transaction, which is that by itself, it does nothing.
class Snapshot {
 public:
  explicit Snapshot(Database& database);
  ~Snapshot();
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;

 private:
  Database& database_;
  bool open_;
};

}  // namespace airsync

#endif
