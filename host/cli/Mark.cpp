// airsync mark FOLDER ID --read|--unread: durable here at once, told to the server with the next sync.
#include <variant>

#include "cli/Commands.h"
#include "cli/Item.h"

namespace airsync {

ExitCode runMark(Context& context) {
  OpenItem open(context);
  const bool read = context.options.read;
  const ItemValue item = open.store.item(open.item).value;
  const auto* mail = std::get_if<Mail>(&item);
  if (mail == nullptr) {
    refuse("marking", open.subject(), "it is no mail", "See airsync list for what the folder holds.");
  }
  if (mail->read() == read) {
    tellDone(context, open, open.item, "none", "is so already");
    return ExitCode::kDone;
  }
  open.store.markMail(open.item, read);
  tellDone(context, open, open.item, read ? "read" : "unread",
           read ? "is read; airsync sync tells the server" : "is unread; airsync sync tells the server");
  return ExitCode::kDone;
}

}  // namespace airsync
