#include "protocol/MoveItems.h"

#include "data/Chain.h"
#include "items/ItemClass.h"
#include "protocol/Status.h"

namespace demoserver {
namespace {

struct Outcome {
  int status;
  std::string id = {};  // the item's new one
};

bool mayMove(State& state, const std::string& from, const std::string& to) {
  const auto source = state.folders.find(from);
  const auto destination = state.folders.find(to);
  if (!source || !destination) return false;
  const ItemClass* itemClass = itemClassOf(destination->type);
  return itemClass != nullptr && itemClass == itemClassOf(source->type);
}

// As if the device had been told of the move by both collections.
void countAsTold(State& state, const std::string& device, const Item& item, const Item& moved) {
  Chain(state.database, device, item.folder).release(item.id);
  Chain(state.database, device, moved.folder).hold(moved.id, moved.revision);
}

Outcome move(State& state, const Habits& habits, const std::string& device, const std::string& id,
             const std::string& from, const std::string& to) {
  const auto item = state.items.find(from, id);
  if (!item || item->gone) {
    const auto moved = state.moves.movedFrom(from, id);
    if (moved && moved->folder == to) return {kMoved, moved->id};
    return {kBadMoveSource};
  }
  if (from == to) return {kSameFolder};
  if (!mayMove(state, from, to)) return {kBadMoveDestination};
  const Item moved = state.moves.move(*item, to);
  if (habits.movesUntold) countAsTold(state, device, *item, moved);
  return {kMoved, moved.id};
}

}  // namespace

Element runMoveItems(State& state, const Habits& habits, const std::string& device, const Element& request) {
  if (!request.is(Page::Move, "Moves")) throw BadRequest("the root of a MoveItems request must be Moves");
  Element response(Page::Move, "Moves");
  for (const Element& each : request.children) {
    if (!each.is(Page::Move, "Move")) throw BadRequest("Moves may hold nothing but Move");
    const std::string id(each.textOf("SrcMsgId"));
    const std::string from(each.textOf("SrcFldId"));
    const std::string to(each.textOf("DstFldId"));
    if (id.empty() || from.empty() || to.empty())
      throw BadRequest("a Move needs a SrcMsgId, a SrcFldId and a DstFldId");
    const Outcome outcome = move(state, habits, device, id, from, to);
    Element& answer = response.add("Response");
    answer.add("SrcMsgId", id);
    answer.add("Status", std::to_string(outcome.status));
    if (outcome.status == kMoved) answer.add("DstMsgId", outcome.id);
  }
  return response;
}

}  // namespace demoserver
