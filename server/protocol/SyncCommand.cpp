#include "protocol/SyncCommand.h"

#include "protocol/CollectionSync.h"
#include "protocol/Status.h"

namespace demoserver {
namespace {

constexpr std::size_t kMaxCollections = 100;

}  // namespace

std::optional<Element> runSync(State& state, const Habits& habits, const std::string& device,
                               const Element& request) {
  if (!request.is(Page::Sync, "Sync")) throw BadRequest("the root of a Sync request must be Sync");
  const Element* collections = request.child("Collections");
  if (collections == nullptr || collections->children.empty())
    throw BadRequest("the Sync request names no collection");
  if (collections->children.size() > kMaxCollections)
    throw BadRequest("the Sync request names too many collections");
  Element response(Page::Sync, "Sync");
  Element answers(Page::Sync, "Collections");
  bool idle = true;
  for (const Element& collection : collections->children) {
    if (!collection.is(Page::Sync, "Collection"))
      throw BadRequest("Collections may hold nothing but Collection");
    CollectionAnswer answer = CollectionSync(state, habits, device, collection).run();
    idle = idle && answer.idle;
    answers.add(std::move(answer.element));
  }
  if (idle && habits.emptyWhenIdle) return std::nullopt;
  if (idle && habits.noCollectionsWhenIdle) {
    response.add("Status", std::to_string(kSuccess));
    return response;
  }
  response.add(std::move(answers));
  return response;
}

}  // namespace demoserver
