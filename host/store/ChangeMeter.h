// How much of a store has changed, in total and at the end: what comes and goes again does not count.
#ifndef AIRSYNC_HOST_STORE_CHANGE_METER_H
#define AIRSYNC_HOST_STORE_CHANGE_METER_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "store/Database.h"

namespace airsync {

/// Watches what one connection writes, from its construction on. It counts the rows of items and of local
/// changes that were there then and are touched, each once, and those that are new, as long as they are
/// there. A server can let the count grow only by giving what stays, and each thing that was here only once.
class ChangeMeter {
 public:
  explicit ChangeMeter(Database& database);
  ~ChangeMeter();
  ChangeMeter(const ChangeMeter&) = delete;
  ChangeMeter& operator=(const ChangeMeter&) = delete;

  /// Of what is committed.
  std::int64_t count() const { return committed_; }

 private:
  struct Watched {
    std::int64_t last = 0;      // the highest row when the watch began
    std::vector<bool> touched;  // by the number of the row
  };

  static void onRow(void* self, int operation, const char* schema, const char* table, std::int64_t row);
  static int onCommit(void* self);
  static void onRollback(void* self);
  void note(std::size_t table, int operation, std::int64_t row);

  Database& database_;
  std::array<Watched, 5> watched_;
  std::int64_t running_ = 0;  // with the transaction that is open
  std::int64_t committed_ = 0;
  std::vector<std::pair<std::size_t, std::size_t>> marked_;  // in `touched`, by that transaction
};

}  // namespace airsync

#endif
