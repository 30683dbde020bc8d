// Whether fields that came from a server may be those that we sent.
#ifndef AIRSYNC_HOST_STORE_FIELD_COVER_H
#define AIRSYNC_HOST_STORE_FIELD_COVER_H

#include <algorithm>
#include <span>
#include <string_view>

#include "store/FieldValues.h"

namespace airsync {

/// Whether a field has nothing that a request would carry, or nothing that a server must send back: an empty
/// text or list, or a flag that is not set.
inline bool saysNothing(const FieldValue& value) {
  if (std::holds_alternative<std::monostate>(value)) return true;
  if (const auto* text = std::get_if<std::string>(&value)) return text->empty();
  if (const auto* entries = std::get_if<List>(&value)) return entries->empty();
  if (const auto* attendees = std::get_if<std::vector<Attendee>>(&value)) return attendees->empty();
  if (const auto* flag = std::get_if<bool>(&value)) return !*flag;
  return false;
}

enum class Cover {
  no,      // something of ours is missing, or other than it was
  yes,     // all of ours is there
  nothing  // there is nothing of ours to compare
};

/// Fields called as in `serversOwn` don't count: servers set or cut them by themselves. They may add fields
/// that we did not have, but set no flag that we have not.
template <typename Record>
Cover coverOf(const FieldValues<Record>& ours, const FieldValues<Record>& theirs,
              std::span<const std::string_view> serversOwn) {
  Cover cover = Cover::nothing;
  for (std::size_t index = 0; index < FieldValues<Record>::kFields; ++index) {
    const std::string_view name = FieldValues<Record>::table()[index].name;
    if (std::find(serversOwn.begin(), serversOwn.end(), name) != serversOwn.end()) continue;
    const bool* flag = std::get_if<bool>(&theirs[index]);
    if (flag != nullptr && *flag && saysNothing(ours[index])) return Cover::no;
    if (saysNothing(ours[index])) continue;
    if (ours[index] != theirs[index]) return Cover::no;
    cover = Cover::yes;
  }
  return cover;
}

/// What does not count when two versions of an item are compared.
struct Unlike {
  std::span<const std::string_view> stamps;    // differs without anybody's edit
  std::span<const std::string_view> filledIn;  // a server fills it in where a device left it out
  bool body = false;                           // one of the two was cut
};

template <typename Record>
bool sameFields(const FieldValues<Record>& ours, const FieldValues<Record>& theirs, const Unlike& unlike) {
  const auto among = [](std::span<const std::string_view> names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  };
  for (std::size_t index = 0; index < FieldValues<Record>::kFields; ++index) {
    const std::string_view name = FieldValues<Record>::table()[index].name;
    if (among(unlike.stamps, name) || (unlike.body && name == "Body")) continue;
    if (saysNothing(ours[index]) && (saysNothing(theirs[index]) || among(unlike.filledIn, name))) continue;
    if (ours[index] != theirs[index]) return false;
  }
  return true;
}

/// Whether a body was cut, so that it can't be compared.
template <typename Record>
bool bodyWasCut(const FieldValues<Record>& fields) {
  const bool* cut = fields.template get<bool>("BodyTruncated");
  return cut != nullptr && *cut;
}

}  // namespace airsync

#endif
