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

// Calls `with` with the fields that contacts and events have themselves.
template <typename With>
void visitFields(ItemValue& item, const With& with) {
  if (auto* contact = std::get_if<Contact>(&item)) with(*contact);
  if (auto* event = std::get_if<Event>(&item)) with(event->fields);
}

void refuseMail(const OpenItem& open, const ItemValue& item) {
  if (!std::holds_alternative<Mail>(item)) return;
  refuse("changing", open.subject(), "it is a mail, and only whether it is read can be changed",
         "Use airsync mark FOLDER ID --read or --unread; to answer it, airsync reply.");
}

// An upload replaces the whole item: a Body of which we have only the beginning would replace the whole one.
void refuseToSendCutBody(const OpenItem& open, ItemValue& item, const RecordPatch& patch) {
  bool cut = false;
  visitFields(item, [&cut](const auto& fields) {
    const auto* truncated = fields.template get<bool>("BodyTruncated");
    cut = truncated != nullptr && *truncated;
  });
  if (!cut || patch.names("Body")) return;
  throw ExitError(
      ExitCode::kNeedsPerson,
      {.kind = ErrorKind::item,
       .operation = "changing",
       .subject = open.subject(),
       .cause =
           "only the beginning of its Body is here, and sending the item would cut the Body on the server",
       .advice =
           fmt::format("Run {} first, or give the whole Body, too.", fetchCommand(open.folder, open.item))});
}

// Size and cut mark belong to the Body that they came with.
void dropBodyFacts(ItemValue& item, const RecordPatch& patch) {
  if (!patch.names("Body")) return;
  visitFields(item, [&patch](auto& fields) {
    for (const char* field : {"BodySize", "BodyTruncated"}) {
      if (fields.field(field) && !patch.names(field)) fields.set(field, std::monostate{});
    }
  });
}

}  // namespace

ExitCode runChange(Context& context) {
  OpenItem open(context);
  ItemValue before = open.store.item(open.item).value;
  refuseMail(open, before);
  const auto dataType = static_cast<AIRSYNC_STACK::DATATYPE>(before.index());
  const RecordPatch patch = readRecord(context.options.record, dataType);
  // Standard input may take its time, and a synchronisation bring the item anew meanwhile.
  before = open.store.item(open.item).value;
  refuseToSendCutBody(open, before, patch);
  ItemValue after = before;
  dropBodyFacts(after, patch);
  patch.applyTo(after, false);
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
