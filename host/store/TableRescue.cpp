#include "store/TableRescue.h"

#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <sqlite3.h>
#include <vector>

#include "support/Error.h"

namespace airsync {
namespace {

using Columns = std::vector<std::string>;

// Rows that are looked for one by one, between those that could be read from both ends.
constexpr std::int64_t kMostProbes = 1'000'000;

Columns columnsOf(SQLite::Database& database, const std::string& table) {
  Columns columns;
  SQLite::Statement query(database, "SELECT name FROM pragma_table_info(?)");
  query.bind(1, table);
  while (query.executeStep()) columns.push_back(query.getColumn(0).getString());
  return columns;
}

bool hasRowids(SQLite::Database& database, const std::string& table) {
  SQLite::Statement query(database, "SELECT sql LIKE '%WITHOUT ROWID%' FROM sqlite_master WHERE name = ?");
  query.bind(1, table);
  return !query.executeStep() || query.getColumn(0).getInt() == 0;
}

class Rescue {
 public:
  Rescue(SQLite::Database& damaged, SQLite::Database& sound, const std::string& table, const Columns& columns)
      : damaged_(damaged), sound_(sound), table_(table), columns_(columns) {
    std::string marks;
    for (const std::string& column : columns) {
      names_ += (names_.empty() ? "\"" : ", \"") + column + "\"";
      marks += marks.empty() ? "?" : ", ?";
    }
    insert_ = "INSERT OR IGNORE INTO \"" + table + "\"(" + names_ + ") VALUES (" + marks + ")";
  }

  bool run() {
    const bool rowids = hasRowids(sound_, table_);
    const std::string order = rowids ? "rowid" : primaryKey();
    std::int64_t first = 0;
    std::int64_t last = std::numeric_limits<std::int64_t>::max();
    const std::string from = " FROM \"" + table_ + "\" NOT INDEXED ";
    const std::string select = "SELECT " + std::string(rowids ? "rowid" : "0") + ", " + names_;
    if (take(select + " FROM \"" + table_ + "\" ORDER BY " + order, &first)) return true;
    take(select + " FROM \"" + table_ + "\" ORDER BY " + descending(order), &last);
    if (rowids) {
      probe(select + from + "WHERE rowid = ?", first, last);
    } else {
      probeItems(select + " FROM \"" + table_ + "\" WHERE item_id = ?");
    }
    return false;
  }

 private:
  std::string primaryKey() {
    std::string key;
    SQLite::Statement query(sound_, "SELECT name FROM pragma_table_info(?) WHERE pk > 0 ORDER BY pk");
    query.bind(1, table_);
    while (query.executeStep()) key += (key.empty() ? "" : ", ") + query.getColumn(0).getString();
    return key;
  }

  static std::string descending(std::string order) {
    for (std::size_t at = 0; (at = order.find(',', at)) != std::string::npos; at += 6)
      order.insert(at, " DESC");
    return order + " DESC";
  }

  // Inserts what the query finds, up to its end (true) or to where reading fails. `row` becomes the number of
  // the last row.
  bool take(const std::string& sql, std::int64_t* row, std::optional<std::int64_t> parameter = std::nullopt) {
    try {
      SQLite::Statement query(damaged_, sql);
      if (parameter) query.bind(1, *parameter);
      while (query.executeStep()) {
        if (row != nullptr) *row = query.getColumn(0).getInt64();
        insert(query);
      }
      return true;
    } catch (const SQLite::Exception&) {
      return false;
    }
  }

  void insert(SQLite::Statement& query) {
    SQLite::Statement row(sound_, insert_);
    for (int index = 1; index <= static_cast<int>(columns_.size()); ++index) {
      const SQLite::Column value = query.getColumn(index);
      if (value.isInteger()) row.bind(index, value.getInt64());
      if (value.isFloat()) row.bind(index, value.getDouble());
      if (value.isText()) row.bind(index, value.getString());
      if (value.isBlob()) row.bind(index, value.getBlob(), value.getBytes());
    }
    try {
      row.exec();
    } catch (const SQLite::Exception& exception) {
      // A value that no row of a store has: this one is damaged, too.
      const int code = exception.getErrorCode() & 0xff;
      if (code != SQLITE_CONSTRAINT && code != SQLITE_MISMATCH) fail(exception);
    }
  }

  void probe(const std::string& sql, std::int64_t first, std::int64_t last) {
    const std::int64_t end = std::min(last, first + kMostProbes);
    for (std::int64_t row = first + 1; row < end; ++row) take(sql, nullptr, row);
  }

  void probeItems(const std::string& sql) {
    std::vector<std::int64_t> items;
    SQLite::Statement query(sound_, "SELECT id FROM item");
    while (query.executeStep()) items.push_back(query.getColumn(0).getInt64());
    for (const std::int64_t item : items) take(sql, nullptr, item);
  }

  [[noreturn]] static void fail(const SQLite::Exception& exception) {
    throw Error({.operation = "writing the new store",
                 .subject = {},
                 .cause = exception.what(),
                 .advice = "Make room where the state is, and try again; the damaged store is as it was."});
  }

  SQLite::Database& damaged_;
  SQLite::Database& sound_;
  const std::string& table_;
  const Columns& columns_;
  std::string names_;
  std::string insert_;
};

}  // namespace

bool rescueTable(SQLite::Database& damaged, SQLite::Database& sound, const std::string& table) {
  Columns columns;
  try {
    const Columns there = columnsOf(damaged, table);
    for (const std::string& column : columnsOf(sound, table)) {
      if (std::find(there.begin(), there.end(), column) != there.end()) columns.push_back(column);
    }
  } catch (const SQLite::Exception&) {
    return false;
  }
  if (columns.empty()) return true;  // an older version had no such table
  return Rescue(damaged, sound, table, columns).run();
}

}  // namespace airsync
