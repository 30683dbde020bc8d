#include "cli/session/StallGuard.h"

namespace airsync {

void StallGuard::begin(const std::string& key) {
  *this = StallGuard();
  key_ = key;
}

bool StallGuard::exchange() {
  if (running_) {
    empty_ = brought_ || newKey_ ? 0 : empty_ + 1;
    keysOnly_ = brought_ ? 0 : keysOnly_ + 1;
    onOneKey_ = newKey_ ? 0 : onOneKey_ + 1;
  }
  running_ = true;
  brought_ = false;
  newKey_ = false;
  stalled_ = empty_ >= kMostEmpty || keysOnly_ >= kMostKeysOnly || onOneKey_ >= kMostOnOneKey;
  return !stalled_;
}

void StallGuard::key(const std::string& key) {
  if (key == key_) return;
  key_ = key;
  newKey_ = true;
}

}  // namespace airsync
