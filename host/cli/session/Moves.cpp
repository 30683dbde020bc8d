#include "cli/session/Moves.h"

#include <fmt/core.h>

#include "cli/ExitError.h"
#include "cli/ResultText.h"
#include "cli/output/Displayable.h"
#include "cli/output/Output.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;

// Around an element's text: its tag, the mark of a text, the text's end, the element's end.
constexpr std::size_t kAroundText = 4;
// Around a move's three elements: its tag and its end.
constexpr std::size_t kAroundMove = 2;

class Batch {
 public:
  Batch(const std::vector<RemoteItem>& items, std::size_t first, std::size_t count, const Folder& to)
      : newIds_(count), results_(count) {
    for (std::size_t index = first; index < first + count; ++index) {
      items_.push_back(items[index].serverId());
      sources_.push_back(items[index].folderId());
      destinations_.push_back(folderIdOf(to));
    }
  }

  SYNC_RESULT send(AirSync& airSync) {
    return airSync.MoveItems(items_.data(), sources_.data(), destinations_.data(), newIds_.data(),
                             results_.data(), static_cast<int>(items_.size()));
  }

  int status(std::size_t index) const { return results_[index]; }

  std::optional<std::string> newId(std::size_t index) const {
    const std::string id = newIds_[index].text;
    return id.empty() || id == "0" ? std::nullopt : std::optional(id);
  }

 private:
  std::vector<SERVER_ID> items_;
  std::vector<FOLDER_ID> sources_;
  std::vector<FOLDER_ID> destinations_;
  std::vector<SERVER_ID> newIds_;
  std::vector<int> results_;
};

Trouble refusal(const MovedItem& moved) {
  const ResultText text = describeMove(moved.status);
  return {text.exitCode, displayable(text.sentence), asSentence(text.advice)};
}

// The others of a batch that failed as a whole: whether the server moved them is not known.
Trouble unknown(const Trouble& failure) {
  return {failure.code, failure.message + "; whether the server moved it is not known",
          "Run airsync sync, then see where it is."};
}

// A server that asks who we are, does not let us in, or knows no such address has moved nothing.
bool wasTurnedAway(const TransportError& error) {
  return error.kind == TransportErrorKind::kHttpStatus && error.httpStatus >= 400 && error.httpStatus < 500;
}

Trouble notSent(const Trouble& failure) {
  return {failure.code, "not moved, because an earlier request failed", "Run the command again for it."};
}

void record(Turn& turn, MovedItem& moved, const Folder& to) {
  if (describeMove(moved.status).exitCode != ExitCode::kDone) {
    moved.trouble = refusal(moved);
    return;
  }
  try {
    turn.store().moveItem(moved.item.number, to.number, moved.newId);
  } catch (const Error& error) {
    moved.trouble = troubleOf(error);
    moved.trouble->message += "; the server has moved it";
  }
}

// Whether further batches may go.
bool moveBatch(Turn& turn, const std::vector<RemoteItem>& items, std::size_t count, const Folder& to,
               std::vector<MovedItem>& done) {
  const std::size_t first = done.size();
  Batch batch(items, first, count, to);
  std::optional<Trouble> failure;
  bool begun = false;
  try {
    turn.session().beginCommand();
    begun = true;
    turn.session().require(batch.send(turn.session().airSync()), "moving items to",
                           fmt::format("folder \"{}\"", to.path), ErrorKind::folder);
  } catch (const Error& error) {
    failure = troubleOf(error);
    if (!begun) {
      failure = notSent(*failure);
    } else if (!wasTurnedAway(turn.session().transportError())) {
      failure = unknown(*failure);
    }
  }
  for (std::size_t index = 0; index < count; ++index) {
    MovedItem moved;
    moved.item = items[first + index];
    if (failure) {
      moved.trouble = failure;
    } else {
      moved.status = batch.status(index);
      moved.newId = batch.newId(index);
      record(turn, moved, to);
    }
    done.push_back(std::move(moved));
  }
  return !failure;
}

}  // namespace

std::size_t measuredMove(const std::string& item, const std::string& source, const std::string& destination) {
  return kAroundMove + 3 * kAroundText + item.size() + source.size() + destination.size();
}

std::size_t batchSize(const std::vector<RemoteItem>& items, std::size_t first, const std::string& destination,
                      std::size_t largest) {
  std::size_t size = kMovesFrame;
  std::size_t count = 0;
  for (std::size_t index = first; index < items.size(); ++index) {
    size += measuredMove(items[index].id, items[index].folder.serverId, destination);
    if (size > largest && count != 0) break;
    ++count;
  }
  return count;
}

std::vector<MovedItem> moveItems(Turn& turn, const std::vector<RemoteItem>& items, const Folder& to) {
  std::vector<MovedItem> done;
  bool more = true;
  while (more && done.size() < items.size()) {
    more = moveBatch(turn, items, batchSize(items, done.size(), to.serverId), to, done);
  }
  while (done.size() < items.size()) {
    MovedItem left;
    left.item = items[done.size()];
    left.trouble = notSent(*done.back().trouble);
    done.push_back(std::move(left));
  }
  return done;
}

}  // namespace airsync
