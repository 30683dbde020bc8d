// Records from files and standard input.
#ifndef AIRSYNC_CLI_RECORD_H
#define AIRSYNC_CLI_RECORD_H

#include <string>
#include <string_view>
#include <variant>

#include "cli/output/Output.h"
#include "formats/ContactJson.h"
#include "formats/EventJson.h"
#include "store/StoreTypes.h"

namespace airsync {

/// What a record changes in a contact or in an event.
class RecordPatch {
 public:
  explicit RecordPatch(ContactPatch patch) : patch_(std::move(patch)) {}
  explicit RecordPatch(EventPatch patch) : patch_(std::move(patch)) {}

  bool names(std::string_view field) const;

  /// Applies it to an item of its class. Throws Error (item) when what comes out is nothing that could be
  /// sent; see checkEvent.
  void applyTo(ItemValue& item, bool isNew) const;

 private:
  std::variant<ContactPatch, EventPatch> patch_;
};

/// Reads the record in `file` ("-": standard input) for an item of a class: contacts or calendar. Throws
/// ExitError(kUsage) that names the place.
RecordPatch readRecord(const std::string& file, AIRSYNC_STACK::DATATYPE dataType);

/// Tells when an item is so large that no request will have room for it.
void noteIfTooLarge(const ItemValue& item, Output& output);

}  // namespace airsync

#endif
