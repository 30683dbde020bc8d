#include "protocol/ClientChanges.h"

#include <algorithm>

#include "items/EventRewriting.h"
#include "protocol/Status.h"

namespace demoserver {
namespace {

constexpr std::size_t kMaxIdLength = 64;
// A Fetch is short, and what it brings is an item whole: without a limit, a request could ask for more than
// the memory holds.
constexpr int kMaxFetches = 100;

std::string idOf(const Element& command, std::string_view tag) {
  const std::string_view id = command.textOf(tag);
  if (id.empty() || id.size() > kMaxIdLength)
    throw BadRequest("a command " + std::string(command.name) + " has no usable " + std::string(tag));
  return std::string(id);
}

const Element& dataOf(const Element& command) {
  const Element* data = command.child("ApplicationData");
  if (data == nullptr) throw BadRequest("a command " + std::string(command.name) + " has no ApplicationData");
  return *data;
}

bool holdsCulprit(const Element& element) {
  return (element.text && element.text->find(kCulprit) != std::string::npos) ||
         std::any_of(element.children.begin(), element.children.end(), holdsCulprit);
}

}  // namespace

void ClientChanges::apply(const Element& commands, Element& responses) {
  const std::size_t count = commands.children.size();
  const std::size_t stored = rules_.habits.batchHalfStored && count > 1 ? count / 2 : count;
  int fetches = 0;
  std::size_t done = 0;
  for (const Element& command : commands.children) {
    if (done++ == stored) throw StoredInPart("the second half of the commands is not stored");
    if (rules_.habits.culpritFails) failIfCulprit(command);
    if (command.is(Page::Sync, "Fetch") && ++fetches > kMaxFetches)
      throw BadRequest("Commands holds too many Fetch");
    if (command.is(Page::Sync, "Add"))
      respondToAdd(command, responses);
    else if (command.is(Page::Sync, "Fetch"))
      respondToFetch(command, responses);
    else
      respond(command, responses);
  }
}

void ClientChanges::failIfCulprit(const Element& command) {
  const auto item = items_.find(folder_, std::string(command.textOf("ServerId")));
  const bool stored = item && !item->gone && item->record.dump().find(kCulprit) != std::string::npos;
  if (stored || holdsCulprit(command)) throw StoredInPart("an item is more than this server can take");
}

// What the client's data make of the record before.
nlohmann::json ClientChanges::recordOf(const Element& data, const nlohmann::json& previous) const {
  nlohmann::json record = rules_.itemClass.decode(data, previous, rules_.transfer);
  if (rules_.habits.zonesAndRulesRewritten) rewriteZoneAndRule(record);
  return record;
}

void ClientChanges::respondToAdd(const Element& command, Element& responses) {
  const std::string clientId = idOf(command, "ClientId");
  std::string serverId;
  const int status = applyAdd(clientId, dataOf(command), serverId);
  Element& response = responses.add("Add");
  response.add("ClientId", clientId);
  if (status == kSuccess) response.add("ServerId", serverId);
  response.add("Status", std::to_string(status));
}

void ClientChanges::respondToFetch(const Element& command, Element& responses) {
  const std::string serverId = idOf(command, "ServerId");
  const auto item = items_.find(folder_, serverId);
  const bool found = item && !item->gone;
  Element& response = responses.add("Fetch");
  response.add("ServerId", serverId);
  response.add("Status", std::to_string(found ? static_cast<int>(kSuccess) : kNotFound));
  if (found) response.add(rules_.itemClass.encode(item->record, TransferOptions()));
}

void ClientChanges::respond(const Element& command, Element& responses) {
  const bool change = command.is(Page::Sync, "Change");
  if (!change && !command.is(Page::Sync, "Delete"))
    throw BadRequest("Commands may not hold " + std::string(command.name));
  const std::string serverId = idOf(command, "ServerId");
  const int status = change ? applyChange(serverId, dataOf(command)) : applyDelete(serverId);
  if (status == kSuccess && !rules_.habits.answerSuccesses) return;
  Element& response = responses.add(command.name);
  response.add("ServerId", serverId);
  response.add("Status", std::to_string(status));
}

int ClientChanges::applyAdd(const std::string& clientId, const Element& data, std::string& serverId) try {
  const auto lost = rules_.habits.repeatedKeyRunsAgain ? std::nullopt : chain_.itemOfLostAdd(clientId);
  if (lost) {
    serverId = *lost;
    return repeatAdd(clientId, data, serverId);
  }
  if (!rules_.itemClass.takesAdds()) return kBadItem;
  const Item item = items_.add(folder_, recordOf(data, nlohmann::json::object()));
  serverId = item.id;
  chain_.learn(item.id, item.revision);
  chain_.applied(item.id, item.revision, clientId);
  return kSuccess;
} catch (const ItemError&) {
  return kBadItem;
}

// The Add was applied before, but its answer never arrived. If the item has changed since, the client learns
// that by an ordinary Change or Delete: it counts as holding an older version.
int ClientChanges::repeatAdd(const std::string& clientId, const Element& data, const std::string& serverId) {
  const auto item = items_.find(folder_, serverId);
  const bool untouched = item && chain_.isOwnChange(serverId, item->revision);
  if (item && (untouched || (!item->gone && !rules_.serverWins)))
    store(*item, data, clientId);
  else
    chain_.learn(serverId, 0);
  return kSuccess;
}

bool ClientChanges::isConflict(const Item& item) {
  const auto known = chain_.known(item.id);
  if (!known && rules_.habits.changeMeansHeld) return false;
  return (!known || *known < item.revision) && !chain_.isOwnChange(item.id, item.revision);
}

// A change that leaves the record as it is makes no new revision, so that no other device hears of it.
void ClientChanges::store(const Item& item, const Element& data, const std::string& clientId) {
  const nlohmann::json old = item.gone ? nlohmann::json::object() : item.record;
  const nlohmann::json record = recordOf(data, old);
  const bool same = !item.gone && record == item.record;
  const std::int64_t revision = same ? item.revision : items_.replace(item.id, record);
  chain_.learn(item.id, revision);
  chain_.applied(item.id, revision, clientId);
}

int ClientChanges::applyChange(const std::string& serverId, const Element& data) try {
  const auto found = items_.find(folder_, serverId);
  if (!found) return kNotFound;
  const Item& item = found.value();
  const bool clientWins = !rules_.serverWins;
  // What lives on in another folder does not return: it would be there twice.
  const bool mayReturn = clientWins && !rules_.habits.conflictLastWriteWins && rules_.itemClass.takesAdds() &&
                         chain_.known(serverId) && !state_.moves.movedFrom(folder_, serverId);
  if (item.gone && !mayReturn) return kNotFound;
  if (!clientWins && isConflict(item)) return kConflict;
  store(item, data, "");
  return kSuccess;
} catch (const ItemError&) {
  return kBadItem;
}

int ClientChanges::applyDelete(const std::string& serverId) {
  const auto item = items_.find(folder_, serverId);
  if (!item) return kNotFound;
  const bool refused = !item->gone && rules_.serverWins && isConflict(*item);
  // Either way the client no longer holds it; after a refusal it is therefore sent as an Add.
  chain_.forget(serverId);
  if (refused) return kConflict;
  if (!item->gone) chain_.applied(serverId, remove(*item));
  return kSuccess;
}

// Returns the revision of what is left in the folder.
std::int64_t ClientChanges::remove(const Item& item) {
  const auto bin = state_.folders.findByType(kDeletedItems);
  const bool move = rules_.deletesAsMoves && rules_.itemClass.hasDeletedItems() && bin && bin->id != folder_;
  if (!move) return items_.remove(item.id);
  state_.moves.move(item, bin->id);
  return items_.find(folder_, item.id)->revision;
}

}  // namespace demoserver
