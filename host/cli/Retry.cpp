// airsync retry FOLDER ID: a change that failed is sent again with the next sync.
#include <algorithm>
#include <fmt/core.h>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/Item.h"
#include "cli/output/Words.h"

namespace airsync {

namespace {

// It would be set aside again, before it is sent.
void refuseTooLarge(const OpenItem& open) {
  const std::vector<Failure> failures = open.store.failures(open.folder.number);
  const bool tooLarge = std::any_of(failures.begin(), failures.end(), [&open](const Failure& failure) {
    return failure.item == open.item && isTooLarge(failure.change);
  });
  if (!tooLarge) return;
  throw ExitError(ExitCode::kNeedsPerson,
                  {.kind = ErrorKind::item,
                   .operation = "sending again",
                   .subject = open.subject(),
                   .cause = "it was never sent, since no request has room for it, and none will have",
                   .advice = fmt::format("Make it smaller with airsync change {0} {1} RECORD (its Body, most "
                                         "likely), or give the change up with airsync discard {0} {1}.",
                                         open.folder.serverId, open.item)});
}

}  // namespace

ExitCode runRetry(Context& context) {
  OpenItem open(context);
  refuseTooLarge(open);
  open.store.retry(open.item);
  tellDone(context, open, open.item, "retry", "is sent again by the next airsync sync");
  return ExitCode::kDone;
}

}  // namespace airsync
