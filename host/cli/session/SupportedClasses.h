// Which kinds of items this version synchronises: the one place that says so.
#ifndef AIRSYNC_CLI_SESSION_SUPPORTED_CLASSES_H
#define AIRSYNC_CLI_SESSION_SUPPORTED_CLASSES_H

#include <algorithm>
#include <iterator>
#include <string_view>

#include "store/StoreTypes.h"

namespace airsync {

struct NotYetSupported {
  AIRSYNC_STACK::DATATYPE dataType;
};

/// Classes that the protocol knows and the library does not decode yet; their folders are passed over.
inline constexpr NotYetSupported kNotYetSupported[] = {
    {AIRSYNC_STACK::DATATYPE_CALENDAR},
    {AIRSYNC_STACK::DATATYPE_EMAIL},
};

enum class Participation {
  yes,
  notYet,  // of a class that this version does not know
  never,   // the protocol has no class for it: tasks, notes, journals
  gone,    // deleted on the server, kept for the changes in it that could not be sent
};

inline Participation participationOf(const Folder& folder) {
  if (folder.gone) return Participation::gone;
  if (!folder.dataType) return Participation::never;
  const bool notYet =
      std::any_of(std::begin(kNotYetSupported), std::end(kNotYetSupported),
                  [&folder](const NotYetSupported& entry) { return entry.dataType == *folder.dataType; });
  return notYet ? Participation::notYet : Participation::yes;
}

/// As people read it, after the name of the folder.
constexpr std::string_view sentenceOf(Participation participation) {
  switch (participation) {
    case Participation::yes:
      return "synchronised";
    case Participation::notYet:
      return "not yet supported by this version";
    case Participation::never:
      return "never synchronised";
    case Participation::gone:
      return "deleted on the server";
  }
  return "";
}

}  // namespace airsync

#endif
