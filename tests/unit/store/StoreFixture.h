// A store in a directory of its own, and the library's way of calling it.
#ifndef AIRSYNC_TESTS_UNIT_STORE_STORE_FIXTURE_H
#define AIRSYNC_TESTS_UNIT_STORE_STORE_FIXTURE_H

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/ContactRecord.h"
#include "store/Store.h"

namespace airsync::test {

using namespace AIRSYNC_STACK;

// A new, empty directory, removed with all that is in it.
class Directory {
 public:
  Directory();
  ~Directory();
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

Contact person(const std::string& first, const std::string& last = "Lovelace");

// A command of a request, as the library would write it.
struct Command {
  int kind = 0;
  std::string serverId;  // of a Delete or a Change
  UINT32 clientId = 0;   // of an Add
  std::string firstName;
  friend bool operator==(const Command&, const Command&) = default;
};
void PrintTo(const Command& command, std::ostream* stream);

Command addOf(ItemNumber item, const std::string& firstName);
Command changeOf(const std::string& serverId, const std::string& firstName);
Command deleteOf(const std::string& serverId);

// One AirSync::Sync: calls the store in the order in which the library does.
class Library {
 public:
  // beginSync, with a record of the folder as it is now.
  Library(Store& store, FolderNumber folder, const FolderSettings& settings = {});

  // Builds a request: asks for changes until there are none, or until one more than `room` was delivered,
  // which is kept for the next request.
  std::vector<Command> request(std::size_t room = 1000);

  // What a response may bring, to be called in the order of the library's parser.
  void add(const std::string& serverId, const Contact& contact);
  void change(const std::string& serverId, const Contact& contact);
  void remove(const std::string& serverId);
  void addResult(ItemNumber clientId, const std::string& serverId, SYNC_RESULT result = AS_RESULT_OK);
  void changeResult(const std::string& serverId, SYNC_RESULT result = AS_RESULT_OK);
  void deleteResult(const std::string& serverId, SYNC_RESULT result = AS_RESULT_OK);
  void key(const char* text);

  SyncOutcome end(SYNC_RESULT result = AS_RESULT_OK) { return store_.endSync(result); }

  const FOLDER_INFO& info() { return record_.info(); }

 private:
  std::optional<Command> next();

  Store& store_;
  FolderRecord record_;
  std::optional<Command> kept_;
};

SYNC_RESULT itemResult(SYNC_RESULT status);

class StoreTest : public testing::Test {
 protected:
  StoreTest();

  std::filesystem::path file() const { return directory_.path() / "account.db"; }
  Store& store() { return *store_; }

  // Closes the store and opens it again.
  void reopen();
  void close() { store_.reset(); }

  // A folder for contacts called "Contacts", with the server id "c1", and its number.
  FolderNumber contacts();
  // The same with the key `key` stored.
  FolderNumber synchronisedContacts(const char* key = "k1");
  // The same with items of these server ids, called as their ids.
  FolderNumber contactsWith(const std::vector<std::string>& serverIds);

  void hierarchy(HierarchyFetch fetch, const std::function<void()>& updates, const char* key);
  void updateFolder(const std::string& serverId, const std::string& name, INT32 type, int operation,
                    const std::string& parent = "0");

  ItemNumber item(FolderNumber folder, const std::string& serverId);
  // The first names of the folder's contacts, in the order of the list.
  std::vector<std::string> names(FolderNumber folder);
  Contact contactOf(ItemNumber number);
  std::optional<PendingChange> pending(ItemNumber number);

 private:
  Directory directory_;
  std::unique_ptr<Store> store_;
};

}  // namespace airsync::test

#endif
