// airsync discard FOLDER ID: the local change of an item is given up, the server's version stands.
#include "cli/Commands.h"
#include "cli/Item.h"

namespace airsync {

ExitCode runDiscard(Context& context) {
  OpenItem open(context);
  open.store.discard(open.item);
  tellDone(context, open, open.item, "discard", "is again as the server has it");
  return ExitCode::kDone;
}

}  // namespace airsync
