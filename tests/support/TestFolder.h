// The folder that the tests of requests and responses are about.
#ifndef TESTS_SUPPORT_TEST_FOLDER_H
#define TESTS_SUPPORT_TEST_FOLDER_H

#include <algorithm>
#include <cstring>
#include <string>

#include "api/Records.h"

namespace airsync_test {

/// Writes a text into an inline field, up to its last byte; a terminator follows where there is room.
template <std::size_t kCapacity>
void Fill(char (&field)[kCapacity], const std::string& text) {
  std::memset(field, 0, kCapacity);
  std::memcpy(field, text.data(), std::min(text.size(), kCapacity));
}

/// A folder of contacts: collection "2:1", handle 42, key "{7}12", conflict 1, truncation 4.
inline AIRSYNC_STACK::FOLDER_INFO FolderInUse() {
  AIRSYNC_STACK::FOLDER_INFO folder = {};
  Fill(folder.folder.serverId.text, "2:1");
  Fill(folder.syncKey.text, "{7}12");
  folder.handle = 42;
  folder.truncation = 4;
  folder.conflict = 1;
  folder.selected = 1;
  return folder;
}

}  // namespace airsync_test

#endif
