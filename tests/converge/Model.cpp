#include "converge/Model.h"

#include <algorithm>
#include <stdexcept>

#include "formats/ContactJson.h"
#include "formats/EventJson.h"
#include "formats/ItemJson.h"

namespace airsync::converge {

namespace {

constexpr std::size_t kContactsAtFirst = 60;
constexpr std::size_t kEventsAtFirst = 30;
constexpr std::size_t kMailsAtFirst = 40;

bool isMail(const char* folder) {
  return std::string(folder) == kInbox || std::string(folder) == kDeletedItems;
}

Json contact(Random& random) {
  return {{"FirstName", random.text(8)},
          {"LastName", random.text(12)},
          {"Email1Address", random.text(8) + "@example.com"},
          {"Body", random.text(random.between(1, 3'000))}};
}

Json event(Random& random) {
  return {{"Subject", random.text(12)},
          {"Location", random.text(8)},
          {"StartTime", "2026-11-23T09:00:00Z"},
          {"EndTime", "2026-11-23T09:15:00Z"},
          {"Body", random.text(random.between(1, 3'000))}};
}

Json mail(Random& random) {
  return {{"To", "demo@example.com"},
          {"From", "ann@example.com"},
          {"DateReceived", "2026-11-20T08:30:00Z"},
          {"Subject", random.text(12)},
          {"Read", random.chance(50)},
          {"Importance", 1},
          {"MessageClass", "IPM.Note"},
          {"Body", random.text(random.between(1, 6'000))}};
}

Json recordFor(const char* folder, Random& random) {
  if (isMail(folder)) return mail(random);
  return std::string(folder) == kContacts ? contact(random) : event(random);
}

ItemValue applied(ItemValue value, const Json& fields) {
  if (auto* contactValue = std::get_if<Contact>(&value)) {
    parseContactPatch(fields.dump()).applyTo(*contactValue);
  } else {
    parseEventPatch(fields.dump()).applyTo(std::get<Event>(value));
  }
  return value;
}

Json overlaid(Json record, const Json& fields) {
  for (const auto& [name, value] : fields.items()) record[name] = value;
  return record;
}

// The first of a set that has not been taken; what is left in the end came from nowhere.
bool take(std::vector<Json>& records, const Json& wanted) {
  const auto found = std::find(records.begin(), records.end(), wanted);
  if (found == records.end()) return false;
  records.erase(found);
  return true;
}

}  // namespace

void fill(Machine& machine, Random& random) {
  for (std::size_t i = 0; i < kContactsAtFirst; ++i) machine.server().add(kContacts, contact(random));
  for (std::size_t i = 0; i < kEventsAtFirst; ++i) machine.server().add(kCalendar, event(random));
  for (std::size_t i = 0; i < kMailsAtFirst; ++i) machine.server().add(kInbox, mail(random));
}

Model::Model(Machine& machine, Random& random) : machine_(machine), random_(random) {
  for (const char* id : kFolders) folders_.push_back({id, machine.there(id), {}, {}, {}});
}

Model::Folder& Model::folder(const char* id) {
  const auto found = std::find_if(folders_.begin(), folders_.end(),
                                  [id](const Folder& each) { return std::string(each.id) == id; });
  if (found == folders_.end()) throw std::logic_error("no such folder");
  return *found;
}

std::string Model::untouched(Folder& folder) {
  std::vector<std::string> ids;
  for (const auto& [id, record] : folder.expected) {
    if (!folder.touched.contains(id)) ids.push_back(id);
  }
  if (ids.empty()) return {};
  const std::string id = ids[random_.below(ids.size())];
  folder.touched.insert(id);
  return id;
}

Json Model::newValues(const char* folder) {
  if (std::string(folder) == kContacts) return {{"JobTitle", random_.text(10)}, {"Body", random_.text(50)}};
  return {{"Location", random_.text(10)}, {"Body", random_.text(50)}};
}

void Model::addThere(Folder& folder) {
  const Json record = recordFor(folder.id, random_);
  const std::string id = machine_.server().add(folder.id, record);
  folder.expected[id] = record;
  folder.touched.insert(id);
}

void Model::changeThere(Folder& folder) {
  const std::string id = untouched(folder);
  if (id.empty()) return;
  Json& record = folder.expected.at(id);
  record = overlaid(
      record, isMail(folder.id) ? Json{{"Read", !record.at("Read").get<bool>()}} : newValues(folder.id));
  machine_.server().replace(folder.id, id, record);
}

void Model::removeThere(Folder& folder) {
  const std::string id = untouched(folder);
  if (id.empty()) return;
  machine_.server().remove(folder.id, id);
  folder.expected.erase(id);
}

void Model::changeThere() {
  for (const char* id : {kContacts, kCalendar, kInbox}) {
    Folder& each = folder(id);
    for (std::size_t i = random_.below(8); i > 0; --i, ++changes_) addThere(each);
    for (std::size_t i = random_.below(5); i > 0; --i, ++changes_) changeThere(each);
    for (std::size_t i = random_.below(4); i > 0; --i, ++changes_) removeThere(each);
  }
}

void Model::addHere(Store& store, Folder& folder) {
  const Json record = recordFor(folder.id, random_);
  const ItemValue empty = std::string(folder.id) == kContacts ? ItemValue(Contact()) : ItemValue(Event());
  const ItemNumber number = store.addItem(store.findFolder(folder.id).number, applied(empty, record));
  folder.addedHere[number] = itemToJson(store.item(number).value);  // an event has a UID by now
}

void Model::changeHere(Store& store, Folder& folder) {
  const std::string id = untouched(folder);
  if (id.empty()) return;
  const ItemNumber number = store.findItem(store.findFolder(folder.id).number, id);
  Json& record = folder.expected.at(id);
  if (isMail(folder.id)) {
    record["Read"] = !record.at("Read").get<bool>();
    store.markMail(number, record.at("Read").get<bool>());
    return;
  }
  const Json values = newValues(folder.id);
  store.changeItem(number, applied(store.item(number).value, values));
  record = overlaid(record, values);
}

// One whose addition may be under way, or have arrived without an answer.
void Model::changeAddedHere(Store& store, Folder& folder) {
  if (folder.addedHere.empty()) return;
  auto entry = folder.addedHere.begin();
  std::advance(entry, static_cast<std::ptrdiff_t>(random_.below(folder.addedHere.size())));
  if (random_.chance(40)) {
    store.deleteItem(entry->first);
    folder.addedHere.erase(entry);
    return;
  }
  const Json values = newValues(folder.id);
  store.changeItem(entry->first, applied(store.item(entry->first).value, values));
  entry->second = overlaid(entry->second, values);
}

void Model::removeHere(Store& store, Folder& folder) {
  const std::string id = untouched(folder);
  if (id.empty()) return;
  store.deleteItem(store.findItem(store.findFolder(folder.id).number, id));
  if (isMail(folder.id)) this->folder(kDeletedItems).moved.push_back(folder.expected.at(id));
  folder.expected.erase(id);
}

// What the server has added since the last run is not known here yet, and counts as touched.
void Model::changeHere() {
  Store store(machine_.storeFile());
  for (const char* id : {kContacts, kCalendar, kInbox}) {
    Folder& each = folder(id);
    for (std::size_t i = random_.below(5); i > 0; --i, ++changes_) changeHere(store, each);
    for (std::size_t i = random_.below(4); i > 0; --i, ++changes_) removeHere(store, each);
    if (isMail(id)) continue;
    for (std::size_t i = random_.below(3); i > 0; --i, ++changes_) changeAddedHere(store, each);
    for (std::size_t i = random_.below(8); i > 0; --i, ++changes_) addHere(store, each);
  }
}

void Model::compareThere(const Folder& folder, const Records& there,
                         std::vector<std::string>& complaints) const {
  const std::string name = folder.id;
  std::vector<Json> others;
  for (const auto& [id, record] : there) {
    if (!folder.expected.contains(id)) others.push_back(normalized(record));
  }
  for (const auto& [id, record] : folder.expected) {
    const auto found = there.find(id);
    if (found == there.end()) {
      complaints.push_back(name + ": lost on the server: " + id);
    } else if (normalized(found->second) != normalized(record)) {
      complaints.push_back(name + ": " + id + " is " + normalized(found->second).dump() +
                           " on the server, not " + normalized(record).dump());
    }
  }
  for (const auto& [number, record] : folder.addedHere) {
    if (take(others, normalized(record))) continue;
    complaints.push_back(name + ": added here and not on the server: " + std::to_string(number) + " " +
                         normalized(record).dump());
  }
  for (const Json& record : folder.moved) {
    if (take(others, normalized(record))) continue;
    complaints.push_back(name + ": not moved there: " + normalized(record).dump());
  }
  for (const Json& record : others) complaints.push_back(name + ": twice, or from nowhere: " + record.dump());
}

void Model::compareHere(const Folder& folder, const Records& there,
                        std::vector<std::string>& complaints) const {
  const std::string name = folder.id;
  const Records here = machine_.here(folder.id);
  for (const auto& [id, record] : there) {
    const auto found = here.find(id);
    if (found == here.end()) {
      complaints.push_back(name + ": missing here: " + id);
    } else if (normalized(found->second) != normalized(record)) {
      complaints.push_back(name + ": " + id + " is " + normalized(found->second).dump() + " here, " +
                           normalized(record).dump() + " on the server");
    }
  }
  for (const auto& [id, record] : here) {
    if (!there.contains(id)) complaints.push_back(name + ": only here: " + id + " " + record.dump());
  }
}

void Model::checkStore(std::vector<std::string>& complaints) const {
  const Store store(machine_.storeFile());
  for (const auto& each : store.folders()) {
    if (each.pending == 0 && each.failed == 0) continue;
    complaints.push_back(each.path + ": " + std::to_string(each.pending) + " changes still wait, " +
                         std::to_string(each.failed) + " failed");
  }
}

std::vector<std::string> Model::complaints() {
  std::vector<std::string> found;
  for (const Folder& each : folders_) {
    const Records there = machine_.there(each.id);
    compareThere(each, there, found);
    compareHere(each, there, found);
  }
  checkStore(found);
  return found;
}

}  // namespace airsync::converge
