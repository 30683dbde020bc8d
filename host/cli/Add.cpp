// airsync add FOLDER RECORD: a new contact or event, durable here at once, sent with the next sync.
#include "cli/Commands.h"
#include "cli/Item.h"
#include "cli/Record.h"

namespace airsync {

namespace {

ItemValue emptyItem(const OpenFolder& open) {
  const std::string subject = "to folder \"" + open.folder.path + "\"";
  if (open.folder.dataType == AIRSYNC_STACK::DATATYPE_EMAIL) {
    refuse("adding", subject, "mails are not added by a record",
           "Write a message and send it: airsync send FILE.");
  }
  if (open.folder.dataType == AIRSYNC_STACK::DATATYPE_CALENDAR) return Event();
  if (open.folder.dataType == AIRSYNC_STACK::DATATYPE_CONTACTS) return Contact();
  refuse("adding", subject, "it can't be synchronised", "See airsync folders for those that are.");
}

}  // namespace

ExitCode runAdd(Context& context) {
  OpenFolder open(context);
  ItemValue value = emptyItem(open);
  readRecord(context.options.record, *open.folder.dataType).applyTo(value, true);
  const ItemNumber item = open.store.addItem(open.folder.number, value);
  noteIfTooLarge(value, context.output);
  tellDone(context, open, item, "add", "added; airsync sync sends it");
  return ExitCode::kDone;
}

}  // namespace airsync
