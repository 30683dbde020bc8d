// Which folders are synchronised: the one place that says so.
#ifndef AIRSYNC_CLI_SESSION_SUPPORTED_CLASSES_H
#define AIRSYNC_CLI_SESSION_SUPPORTED_CLASSES_H

#include <string_view>

#include "store/StoreTypes.h"

namespace airsync {

enum class Participation {
  yes,
  never,  // the protocol has no class for it: tasks, notes, journals
  gone,   // deleted on the server, kept for the changes in it that could not be sent
};

inline Participation participationOf(const Folder& folder) {
  if (folder.gone) return Participation::gone;
  return folder.dataType ? Participation::yes : Participation::never;
}

/// As people read it, after the name of the folder.
constexpr std::string_view sentenceOf(Participation participation) {
  switch (participation) {
    case Participation::yes:
      return "synchronised";
    case Participation::never:
      return "can't be synchronised";
    case Participation::gone:
      return "deleted on the server";
  }
  return "";
}

}  // namespace airsync

#endif
