#include "formats/ContactJson.h"

namespace airsync {

ContactPatch parseContactPatch(std::string_view json) {
  const JsonTree tree(json);
  requireRecord(tree, tree.root(), "\"FirstName\": \"Ann\"");
  return readFields<AIRSYNC_STACK::AS_CONTACT_T>(tree, tree.root(), "",
                                                 [](const JsonMember&) { return false; });
}

nlohmann::ordered_json contactToJson(const Contact& contact) { return fieldsToJson(contact); }

}  // namespace airsync
