#include "data/Chain.h"

#include <array>
#include <cstdio>
#include <random>

namespace demoserver {
namespace {

std::string drawLineage() {
  std::random_device source;
  std::array<char, 17> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "%08x%08x", source(), source()));
  return text.data();
}

}  // namespace

void forgetCollection(Database& database, const std::string& collection) {
  Query(database, "DELETE FROM chains WHERE collection = ?", collection).run();
  Query(database, "DELETE FROM known WHERE collection = ?", collection).run();
  Query(database, "DELETE FROM undo WHERE collection = ?", collection).run();
  Query(database, "DELETE FROM applied WHERE collection = ?", collection).run();
}

int forgetKeys(Database& database, const std::string& collection, const std::string& device) {
  return Query(database, "DELETE FROM chains WHERE collection = ?1 AND (?2 = '' OR device = ?2)", collection,
               device)
      .run();
}

Chain::Chain(Database& database, std::string device, std::string collection)
    : database_(database), device_(std::move(device)), collection_(std::move(collection)) {
  Query row(
      database_,
      "SELECT lineage, number, previous_key, position, previous_position, request, response, supported, "
      "complete_from, empty_before, previous_complete_from, previous_empty_before "
      "FROM chains WHERE device = ? AND collection = ?",
      device_, collection_);
  if (!row.next()) return;
  lineage_ = row.text(0);
  number_ = row.integer(1);
  previousKey_ = row.text(2);
  position_ = row.integer(3);
  previousPosition_ = row.integer(4);
  request_ = row.text(5);
  response_ = row.text(6);
  supported_ = row.text(7);
  window_ = {row.integer(8), row.integer(9)};
  previousWindow_ = {row.integer(10), row.integer(11)};
}

KeyMatch Chain::match(const std::string& key) const {
  if (key == kInitialKey) return KeyMatch::Initial;
  if (lineage_.empty()) return KeyMatch::Unknown;
  if (key == this->key()) return KeyMatch::Current;
  return key == previousKey_ ? KeyMatch::Repeated : KeyMatch::Unknown;
}

std::optional<std::string> Chain::answerTo(const std::string& key, const std::string& request) const {
  if (lineage_.empty() || key != previousKey_ || request != request_) return std::nullopt;
  return response_;
}

void Chain::start(const std::string& supported) {
  Query(database_,
        "DELETE FROM known WHERE device = ?1 AND collection = ?2 AND NOT "
        "(?3 AND item IN (SELECT item FROM added WHERE device = ?1))",
        device_, collection_, keepsOwnAdditions_ ? 1 : 0)
      .run();
  Query(database_, "DELETE FROM undo WHERE device = ? AND collection = ?", device_, collection_).run();
  Query(database_, "DELETE FROM applied WHERE device = ? AND collection = ?", device_, collection_).run();
  lineage_ = drawLineage();
  number_ = 0;
  position_ = previousPosition_ = 0;
  window_ = previousWindow_ = HeldWindow();
  supported_ = supported;
}

void Chain::advance() {
  Query(database_, "DELETE FROM undo WHERE device = ? AND collection = ?", device_, collection_).run();
  Query(database_, "DELETE FROM applied WHERE device = ? AND collection = ?", device_, collection_).run();
  previousPosition_ = position_;
  previousWindow_ = window_;
}

void Chain::rewind() {
  Query(database_,
        "DELETE FROM known WHERE device = ?1 AND collection = ?2 AND item IN "
        "(SELECT item FROM undo WHERE device = ?1 AND collection = ?2) AND NOT "
        "(?3 AND item IN (SELECT item FROM added WHERE device = ?1))",
        device_, collection_, keepsOwnAdditions_ ? 1 : 0)
      .run();
  Query(database_,
        "INSERT OR REPLACE INTO known SELECT device, collection, item, revision FROM undo "
        "WHERE device = ? AND collection = ? AND revision IS NOT NULL",
        device_, collection_)
      .run();
  // The undo rows stay: they tell the state before the lost cycle, to which this cycle can be taken back too.
  position_ = previousPosition_;
  window_ = previousWindow_;
  rewound_ = true;
}

void Chain::finish(const std::string& key, const std::string& request, const std::string& response) {
  ++number_;
  previousKey_ = key;
  request_ = request;
  response_ = response;
  Query(database_, "INSERT OR REPLACE INTO chains VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)", device_,
        collection_, lineage_, number_, previousKey_, position_, previousPosition_, request_, response_,
        supported_, window_.completeFrom, window_.emptyBefore, previousWindow_.completeFrom,
        previousWindow_.emptyBefore)
      .run();
}

std::optional<std::int64_t> Chain::known(const std::string& item) {
  Query row(database_, "SELECT revision FROM known WHERE device = ? AND collection = ? AND item = ?", device_,
            collection_, item);
  if (!row.next()) return std::nullopt;
  return row.integer(0);
}

void Chain::learn(const std::string& item, std::int64_t revision) {
  remember(item);
  Query(database_, "INSERT OR REPLACE INTO known VALUES(?, ?, ?, ?)", device_, collection_, item, revision)
      .run();
}

void Chain::forget(const std::string& item) {
  remember(item);
  Query(database_, "DELETE FROM known WHERE device = ? AND collection = ? AND item = ?", device_, collection_,
        item)
      .run();
}

void Chain::hold(const std::string& item, std::int64_t revision) {
  release(item);
  Query(database_, "INSERT INTO known VALUES(?, ?, ?, ?)", device_, collection_, item, revision).run();
}

void Chain::release(const std::string& item) {
  Query(database_, "DELETE FROM undo WHERE device = ? AND collection = ? AND item = ?", device_, collection_,
        item)
      .run();
  Query(database_, "DELETE FROM known WHERE device = ?1 AND collection = ?2 AND item = ?3", device_,
        collection_, item)
      .run();
}

// Keeps what was known before the cycle's first change to it.
void Chain::remember(const std::string& item) {
  Query(database_,
        "INSERT OR IGNORE INTO undo SELECT ?1, ?2, ?3, "
        "(SELECT revision FROM known WHERE device = ?1 AND collection = ?2 AND item = ?3)",
        device_, collection_, item)
      .run();
}

void Chain::applied(const std::string& item, std::int64_t revision, const std::string& clientId) {
  Query(database_, "INSERT OR REPLACE INTO applied VALUES(?, ?, ?, ?, ?)", device_, collection_, item,
        clientId, revision)
      .run();
  if (!clientId.empty()) Query(database_, "INSERT OR IGNORE INTO added VALUES(?, ?)", item, device_).run();
}

std::optional<std::string> Chain::itemOfLostAdd(const std::string& clientId) {
  if (!rewound_) return std::nullopt;
  Query row(database_, "SELECT item FROM applied WHERE device = ? AND collection = ? AND client_id = ?",
            device_, collection_, clientId);
  if (!row.next()) return std::nullopt;
  return row.text(0);
}

bool Chain::isOwnChange(const std::string& item, std::int64_t revision) {
  if (!rewound_) return false;
  Query row(database_,
            "SELECT 1 FROM applied WHERE device = ? AND collection = ? AND item = ? AND revision = ?",
            device_, collection_, item, revision);
  return row.next();
}

}  // namespace demoserver
