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

#include "MailRecord.h"
#include "store/ContactRecord.h"
#include "store/EventRecord.h"
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
Event event(const std::string& subject);
Mail mail(const std::string& subject, bool read = false);

// All fields, each with a value of its own that depends on `seed`, too.
template <typename Record>
FieldValues<Record> filled(int seed = 0) {
  FieldValues<Record> values;
  for (std::size_t index = 0; index < FieldValues<Record>::kFields; ++index) {
    const int number = static_cast<int>(index) + 100 * seed;
    const std::string text = std::to_string(number);
    switch (FieldValues<Record>::table()[index].form) {
      case AS_FORM_NUMBER:
      case AS_FORM_INLINE_NUMBER:
        values.set(index, std::int32_t{-1000 - number});
        break;
      case AS_FORM_FLAG:
      case AS_FORM_INLINE_FLAG:
        values.set(index, true);
        break;
      case AS_FORM_TIME:
      case AS_FORM_COMPACT_TIME:
        values.set(index, UtcTime{.year = 1900 + number % 100, .month = 2, .day = 3, .hour = 4, .minute = 5});
        break;
      case AS_FORM_LIST:
        values.set(index, List{"first " + text, "", "third"});
        break;
      case AS_FORM_ATTENDEES:
        values.set(index, std::vector<Attendee>{
                              {"Ann " + text, "ann@example.com"}, {"", "b@example.com"}, {"Cy", ""}});
        break;
      case AS_FORM_ZONE: {
        ZoneBlock zone = {};
        for (std::size_t byte = 0; byte < zone.size(); ++byte) {
          zone[byte] = static_cast<std::uint8_t>(5 * byte + static_cast<std::size_t>(seed));
        }
        values.set(index, zone);
        break;
      }
      default:
        values.set(index, "value " + text);
        break;
    }
  }
  return values;
}

// With every field of every part, three exceptions, three attachments.
Event fullEvent();
Mail fullMail();

// A record of any class for the library, with all that it leads to.
class AnyRecord {
 public:
  explicit AnyRecord(const ItemValue& value);
  const void* get() const { return record_; }

 private:
  std::unique_ptr<ContactRecord> contact_;
  std::unique_ptr<EventRecord> event_;
  std::unique_ptr<MailRecord> mail_;
  const void* record_ = nullptr;
};

// A command of a request, as the library would write it.
struct Command {
  int kind = 0;
  std::string serverId;  // of a Delete or a Change
  UINT32 clientId = 0;   // of an Add
  std::string name;      // a contact's first name, an event's subject, "read" or "unread" of a mail
  friend bool operator==(const Command&, const Command&) = default;
};
void PrintTo(const Command& command, std::ostream* stream);

Command addOf(ItemNumber item, const std::string& name);
Command changeOf(const std::string& serverId, const std::string& name);
Command deleteOf(const std::string& serverId);

// One AirSync::Sync: calls the store in the order in which the library does.
class Library {
 public:
  // beginSync, with a record of the folder as it is now.
  Library(Store& store, FolderNumber folder, const FolderSettings& settings = {}, bool allowDeletes = true);

  // Builds a request: asks for changes until there are none, or until one more than `room` was delivered,
  // which is kept for the next request.
  std::vector<Command> request(std::size_t room = 1000);

  // What a response may bring, to be called in the order of the library's parser.
  void add(const std::string& serverId, const ItemValue& value);
  void change(const std::string& serverId, const ItemValue& value);
  void remove(const std::string& serverId);
  void addResult(ItemNumber clientId, const std::string& serverId, SYNC_RESULT result = AS_RESULT_OK);
  void changeResult(const std::string& serverId, SYNC_RESULT result = AS_RESULT_OK);
  void deleteResult(const std::string& serverId, SYNC_RESULT result = AS_RESULT_OK);
  void key(const char* text);

  SyncOutcome end(SYNC_RESULT result = AS_RESULT_OK, Reached reached = Reached::perhaps) {
    return store_.endSync(result, reached);
  }

  const FOLDER_INFO& info() { return record_.info(); }

 private:
  std::optional<Command> next();

  Store& store_;
  FolderRecord record_;
  std::optional<Command> kept_;
};

SYNC_RESULT itemResult(SYNC_RESULT status);

inline constexpr SyncRules kLocalWins = {.conflict = ConflictRule::local, .allowDeletes = true};

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
  // The same for events, "Calendar" and "e1", and for mail, "Inbox" and "m1".
  FolderNumber calendar();
  FolderNumber inbox();
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
  Event eventOf(ItemNumber number) { return std::get<Event>(store().item(number).value); }
  Mail mailOf(ItemNumber number) { return std::get<Mail>(store().item(number).value); }
  // As a host does it before anything goes out: an exchange that carries nothing, and that the server answers
  // with nothing.
  void receive(FolderNumber folder) { Library(store(), folder).end(); }
  // One exchange of the folder in which `bring` happens.
  SyncOutcome exchange(FolderNumber folder, const std::function<void(Library&)>& bring,
                       const SyncRules& rules = {});
  std::optional<PendingChange> pending(ItemNumber number);

 private:
  Directory directory_;
  std::unique_ptr<Store> store_;
};

}  // namespace airsync::test

#endif
