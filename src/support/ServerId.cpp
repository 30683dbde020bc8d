#include "support/ServerId.h"

#include "support/Porting.h"

namespace AIRSYNC_STACK {

static_assert(sizeof(SERVER_ID::text) > ServerId::kLength, "an identifier and its terminator");

char* ServerId::toChar(const SERVER_ID& id, char* destination) {
  if (!id.text[0]) {
    SmlStrcpy(destination, "0");
    return destination;
  }
  SmlStrncpy(destination, id.text, kLength);
  destination[kLength] = '\0';
  return destination;
}

SERVER_ID ServerId::fromChar(const char* text) {
  SERVER_ID id = {};
  SmlStrncpy(id.text, text && *text ? text : "0", kLength);
  return id;
}

int ServerId::compare(const SERVER_ID& left, const SERVER_ID& right) {
  return SmlStrncmp(left.text, right.text, kLength);
}

}  // namespace AIRSYNC_STACK
