// airsync change FOLDER ID RECORD: the fields of the record replace the item's, null clears one, all others
// stay; durable here at once, sent with the next sync.
#include <fmt/core.h>
#include <variant>

#include "cli/Commands.h"
#include "cli/ExitError.h"
#include "cli/Item.h"
#include "cli/Record.h"

namespace airsync {

namespace {

bool isCut(const Contact& contact) {
  const bool* truncated = contact.get<bool>("BodyTruncated");
  return truncated != nullptr && *truncated;
}

// An upload replaces the whole item: a Body of which we have only the beginning would replace the whole one.
void refuseToSendCutBody(const OpenItem& open, const Contact& contact, const ContactPatch& patch) {
  if (!isCut(contact) || patch.names("Body")) return;
  ErrorStory story;
  story.kind = ErrorKind::item;
  story.operation = "changing";
  story.subject = fmt::format("item {} of folder \"{}\"", open.item, open.folder.path);
  story.cause =
      "only the beginning of its Body is here, and sending the item would cut the Body on the server";
  story.advice = "Set `truncation = 8` for the folder and synchronise it anew, or give the whole Body, too.";
  throw ExitError(ExitCode::kNeedsPerson, std::move(story));
}

// Size and cut mark belong to the Body that they came with.
void dropBodyFacts(Contact& contact, const ContactPatch& patch) {
  if (!patch.names("Body")) return;
  for (const char* field : {"BodySize", "BodyTruncated"}) {
    if (!patch.names(field)) contact.set(field, std::monostate{});
  }
}

}  // namespace

ExitCode runChange(Context& context) {
  OpenItem open(context);
  const ContactPatch patch = readRecord(context.options.record);
  const Contact before = std::get<Contact>(open.store.item(open.item).value);
  refuseToSendCutBody(open, before, patch);
  Contact after = before;
  dropBodyFacts(after, patch);
  patch.applyTo(after);
  if (after == before) {
    tellDone(context, open, open.item, "none", "is so already");
    return ExitCode::kDone;
  }
  open.store.changeItem(open.item, after);
  noteIfTooLarge(after, context.output);
  tellDone(context, open, open.item, "change", "changed; airsync sync sends it");
  return ExitCode::kDone;
}

}  // namespace airsync
