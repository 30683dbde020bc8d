#include "store/ChangeMeter.h"

#include <algorithm>
#include <sqlite3.h>
#include <string>
#include <string_view>

namespace airsync {
namespace {

// Where items have their contents, local changes wait, and what the server deleted is kept.
constexpr std::array<std::string_view, 5> kTables = {"contact", "event", "mail", "pending", "trash"};

// Rows beyond are not counted: their marks would take more memory than a run should.
constexpr std::int64_t kMostRows = std::int64_t{1} << 27;

}  // namespace

ChangeMeter::ChangeMeter(Database& database) : database_(database) {
  for (std::size_t table = 0; table < kTables.size(); ++table) {
    Query query(database, "SELECT max(rowid) FROM " + std::string(kTables.at(table)));
    if (query.step()) watched_.at(table).last = query.integer(0);
  }
  sqlite3* handle = database.connection().getHandle();
  sqlite3_update_hook(
      handle,
      [](void* self, int operation, const char* schema, const char* table, sqlite3_int64 row) {
        onRow(self, operation, schema, table, row);
      },
      this);
  sqlite3_commit_hook(handle, onCommit, this);
  sqlite3_rollback_hook(handle, onRollback, this);
}

ChangeMeter::~ChangeMeter() {
  sqlite3* handle = database_.connection().getHandle();
  sqlite3_update_hook(handle, nullptr, nullptr);
  sqlite3_commit_hook(handle, nullptr, nullptr);
  sqlite3_rollback_hook(handle, nullptr, nullptr);
}

void ChangeMeter::onRow(void* self, int operation, const char* /*schema*/, const char* table,
                        std::int64_t row) {
  const auto* found = std::find(kTables.begin(), kTables.end(), std::string_view(table));
  if (found == kTables.end()) return;
  static_cast<ChangeMeter*>(self)->note(static_cast<std::size_t>(found - kTables.begin()), operation, row);
}

void ChangeMeter::note(std::size_t table, int operation, std::int64_t row) {
  Watched& watched = watched_.at(table);
  if (row > watched.last) {
    if (operation == SQLITE_INSERT) ++running_;
    if (operation == SQLITE_DELETE) --running_;
    return;
  }
  if (row < 0 || row >= kMostRows) return;
  const auto index = static_cast<std::size_t>(row);
  if (index >= watched.touched.size())
    watched.touched.resize(std::max(index + 1, 2 * watched.touched.size()));
  if (watched.touched[index]) return;
  watched.touched[index] = true;
  marked_.emplace_back(table, index);
  ++running_;
}

int ChangeMeter::onCommit(void* self) {
  auto& meter = *static_cast<ChangeMeter*>(self);
  meter.committed_ = meter.running_;
  meter.marked_.clear();
  return 0;
}

void ChangeMeter::onRollback(void* self) {
  auto& meter = *static_cast<ChangeMeter*>(self);
  for (const auto& [table, index] : meter.marked_) meter.watched_.at(table).touched[index] = false;
  meter.marked_.clear();
  meter.running_ = meter.committed_;
}

}  // namespace airsync
