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

CollectionSync::CollectionSync(State& state, const Habits& habits, const std::string& device,
                               const Element& request)
    : state_(state),
      habits_(habits),
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
  if (habits_.conflictServerWins) serverWins_ = true;
  if (habits_.conflictClientWins || habits_.conflictLastWriteWins) serverWins_ = false;
  if (habits_.ownAdditionsUntold) chain_.keepOwnAdditions();
  transfer_.clearsUnnamed = habits_.unnamedFieldsCleared;
}

CollectionAnswer CollectionSync::run() {
  const auto folder = state_.folders.find(folder_);
  if (!folder) return failure(kNotFound);
  class_ = itemClassOf(folder->type);
  if (class_ == nullptr || request_.textOf("Class") != class_->name()) return failure(kProtocolError);
  const KeyMatch match = chain_.match(key_);
  if (match == KeyMatch::Repeated && habits_.repeatedKeyRefused) return failure(kInvalidSyncKey);
  if (const auto stored = storedAnswer(match)) return {decode(*stored)};
  if (forgetsKey()) return failure(kInvalidSyncKey);
  switch (match) {
    case KeyMatch::Initial:
      return start();
    case KeyMatch::Current:
      if (isIdle()) return {answer(key_, kSuccess, habits_.moreForever), true};
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

std::optional<std::string> CollectionSync::storedAnswer(KeyMatch match) const {
  if (match == KeyMatch::Repeated && habits_.repeatedKeyRunsAgain) return std::nullopt;
  if (match == KeyMatch::Repeated && habits_.repeatedKeyAnswersStored) return chain_.lastAnswer();
  return chain_.answerTo(key_, requestBytes_);
}

// Whether this request is the one at which the key is forgotten; and then it is.
bool CollectionSync::forgetsKey() {
  if (!habits_.keyForgottenAtChange || key_ == kInitialKey || request_.child("Commands") == nullptr)
    return false;
  const std::string mark = "key forgotten " + chain_.device() + " " + folder_;
  if (!state_.database.setting(mark).empty()) return false;
  state_.database.set(mark, "1");
  forgetKeys(state_.database, folder_, chain_.device());
  return true;
}

// Only the habits that answer an idle request in their own way ask for this.
bool CollectionSync::isIdle() {
  if (!habits_.emptyWhenIdle && !habits_.noCollectionsWhenIdle && !habits_.moreForever) return false;
  if (request_.child("Commands") != nullptr) return false;
  return request_.child("GetChanges") == nullptr || !changesForClient().any();
}

ServerChanges CollectionSync::changesForClient() {
  return {state_.items, folder_, chain_, class_->windowStart(filter_, state_.clock.now())};
}

CollectionAnswer CollectionSync::start() {
  if (request_.child("Commands") != nullptr) return failure(kProtocolError);
  chain_.start(supportedTags());
  Element response = answer(chain_.nextKey(), kSuccess, habits_.moreForever);
  chain_.finish(key_, requestBytes_, encode(response));
  return {std::move(response)};
}

CollectionAnswer CollectionSync::exchange() {
  transfer_.supported = chain_.supported();
  Element responses(Page::Sync, "Responses");
  if (const Element* commands = request_.child("Commands"))
    ClientChanges(state_, folder_, chain_,
                  {*class_, transfer_, habits_, serverWins_, request_.child("DeletesAsMoves") != nullptr})
        .apply(*commands, responses);
  Element commands(Page::Sync, "Commands");
  const bool more = request_.child("GetChanges") != nullptr &&
                    changesForClient().collect(commands, window_, *class_, transfer_);
  Element response = answer(chain_.nextKey(), kSuccess, more || habits_.moreForever);
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
