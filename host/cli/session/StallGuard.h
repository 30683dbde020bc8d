// Notices a server that promises more for ever.
#ifndef AIRSYNC_CLI_SESSION_STALL_GUARD_H
#define AIRSYNC_CLI_SESSION_STALL_GUARD_H

#include <string>

namespace airsync {

/// Counts the exchanges of one folder that bring nothing. An exchange brings something when an item or a
/// result arrives, or when the sync key becomes another one; each of the two alone helps only for a while.
class StallGuard {
 public:
  /// Exchanges in a row without anything, not even a new key.
  static constexpr int kMostEmpty = 3;
  /// Exchanges in a row with new keys and nothing else.
  static constexpr int kMostKeysOnly = 100;
  /// Exchanges in a row that brought something and no new key: the same over and over.
  static constexpr int kMostOnOneKey = 100;

  /// A folder begins, with the key that it has.
  void begin(const std::string& key);
  /// A request is about to be sent. False: too many before it were in vain, don't.
  bool exchange();
  void brought() { brought_ = true; }
  void key(const std::string& key);

  bool stalled() const { return stalled_; }

 private:
  std::string key_;
  bool running_ = false;  // an exchange has begun since begin()
  bool brought_ = false;
  bool newKey_ = false;
  bool stalled_ = false;
  int empty_ = 0;
  int keysOnly_ = 0;
  int onOneKey_ = 0;
};

}  // namespace airsync

#endif
