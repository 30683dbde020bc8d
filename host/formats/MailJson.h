// Mails as JSON: one object, whose members are the fields of the record (see FieldJson.h; "Importance" and
// "Read" are always there), and
//
//   "Attachments": [{"DisplayName": ..., "Size": ..., ...}]
//   "MeetingRequest": {"StartTime": ..., ..., "Recurrence": {...}}
//
// A mail without them has no such member. Mails are only written: a device does not make or edit them.
#ifndef AIRSYNC_FORMATS_MAIL_JSON_H
#define AIRSYNC_FORMATS_MAIL_JSON_H

#include <nlohmann/json_fwd.hpp>

#include "store/Mail.h"

namespace airsync {

nlohmann::ordered_json mailToJson(const Mail& mail);

}  // namespace airsync

#endif
