// airsync discard FOLDER ID: the local change of an item is given up, the server's version stands.
#include "cli/Commands.h"
#include "cli/Item.h"

namespace airsync {

namespace {

// Of a new item the server has no version.
std::string_view whatIsLeft(const OpenItem& open) {
  constexpr std::string_view kAsThere = "is again as the server has it";
  try {
    const std::optional<PendingChange> pending = open.store.item(open.item).pending;
    if (!pending || pending->kind != ChangeKind::add) return kAsThere;
    return pending->state == PendingChange::State::unanswered
               ? "is forgotten here; if the server took it, airsync sync brings it back"
               : "is gone: the server does not have it";
  } catch (const Error&) {
    return kAsThere;  // its deletion waits, and is given up
  }
}

}  // namespace

ExitCode runDiscard(Context& context) {
  OpenItem open(context);
  const std::string_view left = whatIsLeft(open);
  open.store.discard(open.item);
  tellDone(context, open, open.item, "discard", left);
  return ExitCode::kDone;
}

}  // namespace airsync
