// The administration: a look at the server's side, and changes to it, as JSON.
//
//   GET    /admin/state                        counts, and the keys of every device and collection
//   GET    /admin/folders                      [{"id", "parent", "name", "type", "items"}]
//   POST   /admin/folders                      {"parent", "name", "type"} -> 201 {"id"}
//   PUT    /admin/folders?id=ID                {"parent", "name"}
//   DELETE /admin/folders?id=ID
//   GET    /admin/contacts?folder=ID           [{"id", "contact"}]
//   GET    /admin/contacts?folder=ID&id=ID     {"id", "contact"}
//   POST   /admin/contacts?folder=ID           contact -> 201 {"id"}
//   PUT    /admin/contacts?folder=ID&id=ID     contact; replaces the whole record
//   DELETE /admin/contacts?folder=ID&id=ID
//
// A contact is an object of the 52 fields by name: texts, dates as "YYYY-MM-DDThh:mm:ss.000Z", Categories and
// Children as arrays; absent fields are empty. BodySize and BodyTruncated are shown, and ignored when given.
// Ids may hold any character, so they are percent-encoded in the query. A change here is a change by the
// server: devices get it with their next Sync or FolderSync. Errors are {"error": sentence}.
#pragma once

#include <string_view>

#include "data/State.h"
#include "http/Message.h"

namespace demoserver {

bool isAdminPath(std::string_view path);

// The caller has checked the credentials.
HttpReply runAdmin(State& state, const HttpRequest& request);

}  // namespace demoserver
