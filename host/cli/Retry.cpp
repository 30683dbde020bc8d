// airsync retry FOLDER ID: a change that failed is sent again with the next sync.
#include "cli/Commands.h"
#include "cli/Item.h"

namespace airsync {

ExitCode runRetry(Context& context) {
  OpenItem open(context);
  open.store.retry(open.item);
  tellDone(context, open, open.item, "retry", "is sent again by the next airsync sync");
  return ExitCode::kDone;
}

}  // namespace airsync
