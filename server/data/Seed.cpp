#include "data/Seed.h"

#include <array>

#include "data/SeedEvents.h"
#include "data/SeedMails.h"

namespace demoserver {
namespace {

struct SeedFolder {
  const char* id;
  const char* parent;
  const char* name;
  FolderType type;
};

// Ids hold slashes and percent signs here and there, as those of other servers may: clients must take them as
// they are. "Reisen" comes before "Privat", its parent.
constexpr std::array<SeedFolder, 19> kFolders = {{
    {"f2", kRootFolder, "Inbox", kInbox},
    {"f3", kRootFolder, "Drafts", kDrafts},
    {"f4", kRootFolder, "Deleted Items", kDeletedItems},
    {"f5", kRootFolder, "Sent Items", kSentItems},
    {"f6", kRootFolder, "Outbox", kOutbox},
    {"f7", kRootFolder, "Tasks", kTasks},
    {"f8", kRootFolder, "Calendar", kCalendar},
    {kContactsFolder, kRootFolder, "Contacts", kContacts},
    {"f10", kRootFolder, "Notes", kNotes},
    {"f11", kRootFolder, "Journal", kJournal},
    {"m/2", "m/1", "Reisen", kUserMail},
    {"m/1", kRootFolder, "Privat", kUserMail},
    {"m/3", "m/2", "日本旅行 2006", kUserMail},
    {"m%2F4", "f2", "Lists & <announcements>", kUserMail},
    {"c1", kRootFolder, "Geburtstage", kUserCalendar},
    {"c2", "f8", "Ελληνικές αργίες", kUserCalendar},
    {"k1", kRootFolder, "Müller & Söhne", kUserContacts},
    {"k2", "f9", "Клиенты", kUserContacts},
    {"k3", "k2", "Архив", kUserContacts},
}};

void seedFolders(State& state, int extra) {
  for (const SeedFolder& folder : kFolders)
    state.folders.create(folder.parent, folder.name, folder.type, folder.id);
  constexpr std::array<FolderType, 3> kTypes = {kUserMail, kUserCalendar, kUserContacts};
  std::string group = kRootFolder;
  for (int i = 0; i < extra; ++i) {
    const FolderType type = kTypes[static_cast<std::size_t>(i) % kTypes.size()];
    const std::string id = "x" + std::to_string(i + 1);
    // Every tenth opens a group at the root; the nine that follow lie in it.
    if (i % 10 == 0) group = kRootFolder;
    state.folders.create(group, "Folder " + std::to_string(i + 1), type, id);
    if (i % 10 == 0) group = id;
  }
}

// The contents are stored under handles that only an item's id gives.
void addMail(State& state, const SeedMail& mail) {
  nlohmann::json record = mail.record;
  const std::string id = state.items.add(mail.folder, record).id;
  if (mail.attachments.empty()) return;
  for (const SeedAttachment& attachment : mail.attachments)
    record["Attachments"].push_back(
        {{"Name", attachment.name},
         {"DisplayName", attachment.name},
         {"Size", announcedSize(attachment.content.size())},
         {"Method", attachment.method},
         {"OID", state.attachments.add(id, attachment.name, attachment.type, attachment.content)}});
  state.items.replace(id, record);
}

}  // namespace

bool seed(State& state, const SeedOptions& options) {
  if (!state.database.setting("seeded").empty()) return false;
  SQLite::Transaction transaction(state.database.handle());
  seedFolders(state, options.folders);
  for (int number = 0; number < options.contacts; ++number)
    state.items.add(kContactsFolder, seedContact(options.seed, number));
  const Moment now = state.clock.now();
  for (int number = 0; number < options.events; ++number)
    state.items.add(seedEventFolder(number), seedEvent(options.seed, number, now));
  for (int number = 0; number < options.mails; ++number) addMail(state, seedMail(options.seed, number, now));
  state.database.set("seeded", std::to_string(options.seed));
  transaction.commit();
  return true;
}

}  // namespace demoserver
