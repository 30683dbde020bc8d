// What one device holds of one collection, and the chain of sync keys that leads there.
//
// A key is "LINEAGE.NUMBER". Each answered cycle issues the next number; the lineage is drawn anew at every
// initial synchronisation, so that keys of an earlier life are never taken for valid ones. Two keys are
// accepted: the current one, and the one before it, for a device that never saw the answer to its last
// request. The chain can take back what that answer told the device (rewind), but keeps what the device's
// own changes did, so that a repeated change is recognised and not applied twice.
//
// A collection is a folder's id, or kHierarchy for the folders themselves. Nothing here is durable before the
// caller's transaction commits.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "data/Database.h"

namespace demoserver {

inline constexpr char kHierarchy[] = "";
inline constexpr char kInitialKey[] = "0";

enum class KeyMatch { Initial, Current, Repeated, Unknown };

// What a device holds of a collection of which a filter lets it have the later part (see ItemStore): of what
// has not changed after the chain's position, everything that ends at completeFrom or later, and nothing that
// ends before emptyBefore.
struct HeldWindow {
  std::int64_t completeFrom = INT64_MIN;
  std::int64_t emptyBefore = INT64_MAX;
};

// Forgets what all devices hold of a collection that is gone.
void forgetCollection(Database& database, const std::string& collection);

// Forgets the keys of a collection, of one device or (with an empty name) of all: no key but "0" is valid any
// more. Returns how many devices had one.
int forgetKeys(Database& database, const std::string& collection, const std::string& device);

class Chain {
 public:
  Chain(Database& database, std::string device, std::string collection);

  // From now on start and rewind leave alone what is known of items that the device itself added, as if it
  // had been told of them.
  void keepOwnAdditions() { keepsOwnAdditions_ = true; }

  KeyMatch match(const std::string& key) const;
  // False until the device has been given a key of this collection.
  bool started() const { return !lineage_.empty(); }

  // The stored response, if this very request was the last one that the chain answered.
  std::optional<std::string> answerTo(const std::string& key, const std::string& request) const;

  // The response that the chain gave last.
  const std::string& lastAnswer() const { return response_; }

  // Each cycle opens with exactly one of these. start: nothing is known any more. advance: the device has
  // seen the last answer. rewind: it has not.
  void start(const std::string& supported);
  void advance();
  void rewind();

  // The key that the answer of this cycle carries.
  std::string nextKey() const { return lineage_ + "." + std::to_string(number_ + 1); }
  // Ends the cycle: the next key becomes the current one, and the answer is kept for a repeated request.
  void finish(const std::string& key, const std::string& request, const std::string& response);

  // Position in the order of changes up to which the device has been served.
  std::int64_t position() const { return position_; }
  void moveTo(std::int64_t position) { position_ = position; }
  const HeldWindow& window() const { return window_; }
  void setWindow(const HeldWindow& window) { window_ = window; }
  const std::string& device() const { return device_; }
  // The names of the fields that the device supports, as given at the start (see ContactClass).
  const std::string& supported() const { return supported_; }

  // The revision of the item that the device holds, if it holds it.
  std::optional<std::int64_t> known(const std::string& item);
  void learn(const std::string& item, std::int64_t revision);
  void forget(const std::string& item);

  // What the device holds by other means than a cycle of this chain; no rewind takes it back.
  void hold(const std::string& item, std::int64_t revision);
  void release(const std::string& item);

  // Remembers the device's own change until the cycle after the next one opens. `clientId` is empty unless
  // the change is an Add.
  void applied(const std::string& item, std::int64_t revision, const std::string& clientId = "");
  // After rewind: the item that an Add with this client id made in the lost cycle.
  std::optional<std::string> itemOfLostAdd(const std::string& clientId);
  // After rewind: true if the item's revision is this device's own work in the lost cycle.
  bool isOwnChange(const std::string& item, std::int64_t revision);

 private:
  std::string key() const { return lineage_ + "." + std::to_string(number_); }
  void remember(const std::string& item);

  Database& database_;
  std::string device_;
  std::string collection_;
  std::string lineage_;  // empty before the first start
  std::int64_t number_ = 0;
  std::string previousKey_;
  std::int64_t position_ = 0;
  std::int64_t previousPosition_ = 0;
  HeldWindow window_;
  HeldWindow previousWindow_;
  std::string request_;
  std::string response_;
  std::string supported_;
  bool rewound_ = false;
  bool keepsOwnAdditions_ = false;
};

}  // namespace demoserver
