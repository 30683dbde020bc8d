// The administration: a look at the server's side, and changes to it, as JSON.
//
//   GET    /admin/state                        counts, and the keys of every device and collection
//   GET    /admin/folders                      [{"id", "parent", "name", "type", "items"}]
//   POST   /admin/folders                      {"parent", "name", "type"} -> 201 {"id"}
//   PUT    /admin/folders?id=ID                {"parent", "name"}
//   DELETE /admin/folders?id=ID
//   GET    /admin/items?folder=ID              [{"id", "record"}]
//   GET    /admin/items?folder=ID&id=ID        {"id", "record"}
//   POST   /admin/items?folder=ID              record -> 201 {"id"}
//   PUT    /admin/items?folder=ID&id=ID        record; replaces the whole of it
//   DELETE /admin/items?folder=ID&id=ID
//   GET    /admin/message?folder=ID&id=ID      message/rfc822: a mail as it was sent, or made of a reply
//   GET    /admin/attachment?handle=HANDLE     the content of an attachment, under its own type
//   GET    /admin/habits                       {"NAME": on} for every habit (see protocol/Habits.h)
//   PUT    /admin/habits                       {"NAME": true or false}; the others stay as they are
//   GET    /admin/faults                       the plan, and how many requests were "picked" so far
//   PUT    /admin/faults                       a new plan, which begins to count now
//   DELETE /admin/keys?folder=ID[&device=ID]   forgets the folder's keys: {"forgotten": of how many devices}
//
// A plan of faults is {"command", "after", "count", "status", "cutBody", "delayMs", "closeBeforeHandling",
// "closeBeforeAnswer", "closeAfterAnswer", "noCollection"} as the options --fail-cmd to --no-collection, each
// where it is meant; {} is no fault. The key of folder "hierarchy" is that of the list of folders. What is
// set here lasts until the server ends.
//
// A record is an object of the fields of the folder's class by name (ContactFields.h, CalendarFields.h,
// MailFields.h): texts, numbers, flags as true and false, lists as arrays; times as "2026-11-21T09:00:00Z",
// those of contacts as "2026-11-21T09:00:00.000Z"; absent fields are empty. BodySize and BodyTruncated are
// shown, and ignored when given. A DELETE is final, also of a mail.
// Ids may hold any character, so they are percent-encoded in the query. A change here is a change by the
// server: devices get it with their next Sync or FolderSync. Errors are {"error": sentence}.
#pragma once

#include <string_view>

#include "data/State.h"
#include "http/Controls.h"
#include "http/Message.h"

namespace demoserver {

bool isAdminPath(std::string_view path);

// The caller has checked the credentials.
HttpReply runAdmin(State& state, const Controls& controls, const HttpRequest& request);

}  // namespace demoserver
