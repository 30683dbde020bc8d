#include "protocol/GetItemEstimate.h"

#include <SQLiteCpp/Savepoint.h>

#include "data/Chain.h"
#include "items/ItemClass.h"
#include "protocol/ServerChanges.h"
#include "protocol/Status.h"
#include "support/Numbers.h"

namespace demoserver {
namespace {

constexpr std::size_t kMaxCollections = 1000;

// The text of one of the two tags, whichever is there.
std::string_view textOf(const Element& collection, std::string_view tag, std::string_view syncTag) {
  const Element* found = collection.child(tag);
  if (found == nullptr) found = collection.child(Page::Sync, syncTag);
  return found != nullptr && found->text ? std::string_view(*found->text) : std::string_view();
}

int keyStatus(KeyMatch match, bool started) {
  if (match == KeyMatch::Current || match == KeyMatch::Repeated) return kSuccess;
  return match == KeyMatch::Initial || !started ? kNotSynchronised : kInvalidEstimateKey;
}

struct Outcome {
  int status;
  std::int64_t count = 0;
};

Outcome estimate(State& state, const std::string& device, const Element& collection) {
  const std::string id(collection.textOf("CollectionId"));
  const auto folder = state.folders.find(id);
  const ItemClass* itemClass = folder ? itemClassOf(folder->type) : nullptr;
  if (itemClass == nullptr || collection.textOf("Class") != itemClass->name()) return {kNoSuchCollection};
  Chain chain(state.database, device, id);
  const KeyMatch match = chain.match(std::string(textOf(collection, "A:SyncKey", "SyncKey")));
  const int status = keyStatus(match, chain.started());
  if (status != kSuccess) return {status};
  // What a repeated key would bring is known only after its cycle is taken back: that is undone at the end.
  SQLite::Savepoint undone(state.database.handle(), "estimate");
  if (match == KeyMatch::Repeated) chain.rewind();
  const int filter = numberOr(textOf(collection, "A:FilterType", "FilterType"), 0);
  const std::int64_t start = itemClass->windowStart(filter, state.clock.now());
  return {kSuccess, ServerChanges(state.items, id, chain, start).count()};
}

}  // namespace

Element runGetItemEstimate(State& state, const std::string& device, const Element& request) {
  if (!request.is(Page::Estimate, "GetItemEstimate"))
    throw BadRequest("the root of a GetItemEstimate request must be GetItemEstimate");
  const Element* collections = request.child("Collections");
  if (collections == nullptr) throw BadRequest("the GetItemEstimate request has no Collections");
  if (collections->children.size() > kMaxCollections)
    throw BadRequest("the GetItemEstimate request names too many collections");
  Element response(Page::Estimate, "GetItemEstimate");
  for (const Element& collection : collections->children) {
    if (!collection.is(Page::Estimate, "Collection") || collection.textOf("CollectionId").empty())
      throw BadRequest("Collections may hold nothing but Collection, each with a CollectionId");
    const Outcome outcome = estimate(state, device, collection);
    Element& each = response.add("Response");
    each.add("Status", std::to_string(outcome.status));
    Element& answer = each.add("Collection");
    answer.add("Class", std::string(collection.textOf("Class")));
    answer.add("CollectionId", std::string(collection.textOf("CollectionId")));
    if (outcome.status == kSuccess) answer.add("Estimate", std::to_string(outcome.count));
  }
  return response;
}

}  // namespace demoserver
