// Contacts as JSON: one object, whose members are the fields of the record (see FieldJson.h).
#ifndef AIRSYNC_FORMATS_CONTACT_JSON_H
#define AIRSYNC_FORMATS_CONTACT_JSON_H

#include <nlohmann/json_fwd.hpp>
#include <string_view>

#include "formats/FieldJson.h"
#include "formats/RecordError.h"
#include "store/Contact.h"

namespace airsync {

using ContactPatch = FieldPatch<AIRSYNC_STACK::AS_CONTACT_T>;

/// Reads one record. Throws RecordError for anything but one object of known fields with fitting values:
/// unknown and repeated names, wrong types, dates that do not exist, texts that could not be sent.
ContactPatch parseContactPatch(std::string_view json);

/// The record of a contact, in the order of the fields.
nlohmann::ordered_json contactToJson(const Contact& contact);

}  // namespace airsync

#endif
