// A machine with airsync on it and the demo server beside it, in a directory of their own.
#ifndef AIRSYNC_TESTS_CONVERGE_MACHINE_H
#define AIRSYNC_TESTS_CONVERGE_MACHINE_H

#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "integration/Process.h"
#include "integration/Server.h"
#include "store/Store.h"

namespace airsync::converge {

using Json = nlohmann::json;
using Records = std::map<std::string, Json>;  // by server id

/// The folders that take part: contacts, events, mails, and where mails go that a client deletes.
inline constexpr const char* kContacts = "f9";
inline constexpr const char* kCalendar = "f8";
inline constexpr const char* kInbox = "f2";
inline constexpr const char* kDeletedItems = "f4";
inline constexpr const char* kFolders[] = {kContacts, kCalendar, kInbox, kDeletedItems};

class Machine {
 public:
  /// Starts the server on what the directory holds, or on nothing.
  explicit Machine(std::filesystem::path directory);

  integration::Server& server() { return *server_; }
  /// Starts the server anew on its data, at its old port.
  void restartServer();

  std::unique_ptr<integration::Process> start(long largestFile = 0) const;
  /// Synchronises without any disturbance. Throws when that fails.
  void sync() const;

  std::filesystem::path state() const { return directory_ / "state" / "airsync"; }
  std::filesystem::path storeFile() const { return state() / "demo.db"; }
  const std::filesystem::path& directory() const { return directory_; }

  Records here(const char* folder) const;
  Records there(const char* folder) { return server_->items(folder); }

 private:
  std::filesystem::path directory_;
  std::unique_ptr<integration::Server> server_;
};

/// A record in a form that both sides share: nothing that stands for "not there", nothing that only one side
/// counts.
Json normalized(const Json& record);

}  // namespace airsync::converge

#endif
