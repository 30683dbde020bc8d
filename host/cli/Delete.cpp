// airsync delete FOLDER ID: gone here at once, deleted on the server with the next sync.
#include "cli/Commands.h"
#include "cli/Item.h"

namespace airsync {

ExitCode runDelete(Context& context) {
  OpenItem open(context, Naming::exact);
  open.store.deleteItem(open.item);
  tellDone(context, open, open.item, "delete", "deleted; airsync sync deletes it on the server");
  return ExitCode::kDone;
}

}  // namespace airsync
