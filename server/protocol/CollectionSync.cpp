#include "protocol/CollectionSync.h"

#include "protocol/ClientChanges.h"
#include "protocol/Status.h"
#include "support/Numbers.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

constexpr int kDefaultWindow = 100;
constexpr int kLargestWindow = 512;
constexpr std::size_t kMaxSupported = 128;

int windowOf(const Element& request) {
  const int asked = numberOr(request.textOf("WindowSize"), 0);
  if (asked <= 0) return kDefaultWindow;
  return asked < kLargestWindow ? asked : kLargestWindow;
}

}  // namespace

CollectionSync::CollectionSync(State& state, const SyncBehaviour& behaviour, const std::string& device,
                               const Element& request)
    : state_(state),
      behaviour_(behaviour),
      request_(request),
      folder_(request.textOf("CollectionId")),
      key_(request.textOf("SyncKey")),
      requestBytes_(encode(request)),
      chain_(state.database, device, folder_),
      window_(windowOf(request)) {
  if (folder_.empty() || key_.empty()) throw BadRequest("a Collection needs a CollectionId and a SyncKey");
  if (const Element* options = request.child("Options")) {
    filter_ = numberOr(options->textOf("FilterType"), 0);
    serverWins_ = numberOr(options->textOf("Conflict"), 1) != 0;
    if (options->child("Truncation") != nullptr)
      transfer_.bodyLimit = bodyLimitOf(numberOr(options->textOf("Truncation"), -1));
  }
}

CollectionAnswer CollectionSync::run() {
  const auto folder = state_.folders.find(folder_);
  if (!folder) return failure(kNotFound);
  class_ = itemClassOf(folder->type);
  if (class_ == nullptr || request_.textOf("Class") != class_->name()) return failure(kProtocolError);
  if (const auto stored = chain_.answerTo(key_, requestBytes_)) return {decode(*stored)};
  switch (chain_.match(key_)) {
    case KeyMatch::Initial:
      return start();
    case KeyMatch::Current:
      if ((behaviour_.emptyWhenIdle || behaviour_.moreForever) && request_.child("Commands") == nullptr &&
          !hasChangesForClient())
        return {answer(key_, kSuccess, behaviour_.moreForever), true};
      chain_.advance();
      return exchange();
    case KeyMatch::Repeated:
      chain_.rewind();
      return exchange();
    case KeyMatch::Unknown:
      break;
  }
  return failure(kInvalidSyncKey);
}

bool CollectionSync::hasChangesForClient() {
  return request_.child("GetChanges") != nullptr && changesForClient().any();
}

ServerChanges CollectionSync::changesForClient() {
  return {state_.items, folder_, chain_, class_->windowStart(filter_, state_.clock.now())};
}

CollectionAnswer CollectionSync::start() {
  if (request_.child("Commands") != nullptr) return failure(kProtocolError);
  chain_.start(supportedTags());
  Element response = answer(chain_.nextKey(), kSuccess, behaviour_.moreForever);
  chain_.finish(key_, requestBytes_, encode(response));
  return {std::move(response)};
}

CollectionAnswer CollectionSync::exchange() {
  transfer_.supported = chain_.supported();
  Element responses(Page::Sync, "Responses");
  if (const Element* commands = request_.child("Commands"))
    ClientChanges(state_, folder_, chain_,
                  {*class_, transfer_, serverWins_, behaviour_.answerSuccesses,
                   request_.child("DeletesAsMoves") != nullptr})
        .apply(*commands, responses);
  Element commands(Page::Sync, "Commands");
  const bool more = request_.child("GetChanges") != nullptr &&
                    changesForClient().collect(commands, window_, *class_, transfer_);
  Element response = answer(chain_.nextKey(), kSuccess, more || behaviour_.moreForever);
  if (!commands.children.empty()) response.add(std::move(commands));
  if (!responses.children.empty()) response.add(std::move(responses));
  chain_.finish(key_, requestBytes_, encode(response));
  return {std::move(response)};
}

CollectionAnswer CollectionSync::failure(int status) const {
  return {answer(status == kInvalidSyncKey ? kInitialKey : key_, status, false)};
}

Element CollectionSync::answer(const std::string& key, int status, bool more) const {
  Element collection(Page::Sync, "Collection");
  collection.add("Class", std::string(request_.textOf("Class")));
  collection.add("SyncKey", key);
  collection.add("CollectionId", folder_);
  collection.add("Status", std::to_string(status));
  if (more) collection.add("MoreAvailable");
  return collection;
}

// The tags of the Supported element in the form that TransferOptions tells; their page does not matter.
std::string CollectionSync::supportedTags() const {
  const Element* supported = request_.child("Supported");
  if (supported == nullptr) return "*";
  if (supported->children.size() > kMaxSupported) throw BadRequest("Supported names too many fields");
  std::string tags;
  for (const Element& tag : supported->children) tags.append(tag.name).append(" ");
  return tags;
}

}  // namespace demoserver
