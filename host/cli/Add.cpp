// airsync add FOLDER RECORD: a new item, durable here at once, sent with the next sync.
#include "cli/Commands.h"
#include "cli/Item.h"
#include "cli/Record.h"

namespace airsync {

ExitCode runAdd(Context& context) {
  OpenFolder open(context);
  Contact contact;
  readRecord(context.options.record).applyTo(contact);
  const ItemNumber item = open.store.addItem(open.folder.number, contact);
  noteIfTooLarge(contact, context.output);
  tellDone(context, open, item, "add", "added; airsync sync sends it");
  return ExitCode::kDone;
}

}  // namespace airsync
