// Text forms of an item's server identifier.
#ifndef KROAIRSYNC_SUPPORT_SERVER_ID_H
#define KROAIRSYNC_SUPPORT_SERVER_ID_H

#include "api/Records.h"

namespace AIRSYNC_STACK {

class AIRSYNC_API ServerId {
 public:
  /// Characters of an identifier that count.
  static constexpr UINT32 kLength = 48;

  /// Writes the identifier, "0" for the empty one, to `destination` (at least 49 bytes), and returns it.
  static char* toChar(const SERVER_ID& id, char* destination);

  /// The first 48 characters of `text`; "0" for null and for the empty text.
  static SERVER_ID fromChar(const char* text);

  /// Zero when both are equal in their first 48 characters.
  static int compare(const SERVER_ID& left, const SERVER_ID& right);
};

}  // namespace AIRSYNC_STACK

#endif
