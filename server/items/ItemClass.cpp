#include "items/ItemClass.h"

#include <array>

#include "data/FolderStore.h"
#include "items/CalendarClass.h"
#include "items/ContactClass.h"
#include "items/MailClass.h"

namespace demoserver {
std::size_t bodyLimitOf(int truncation) {
  constexpr std::array<std::size_t, 8> kLimits = {0, 4096, 5120, 7168, 10240, 20480, 51200, 102400};
  if (truncation < 0 || static_cast<std::size_t>(truncation) >= kLimits.size()) return std::string::npos;
  return kLimits[static_cast<std::size_t>(truncation)];
}

const ItemClass* itemClassOf(int folderType) {
  static const ContactClass contacts;
  static const CalendarClass calendar;
  static const MailClass mail;
  switch (folderType) {
    case kContacts:
    case kUserContacts:
      return &contacts;
    case kCalendar:
    case kUserCalendar:
      return &calendar;
    case kGenericFolder:
    case kInbox:
    case kDrafts:
    case kDeletedItems:
    case kSentItems:
    case kOutbox:
    case kUserMail:
      return &mail;
    default:
      return nullptr;
  }
}

}  // namespace demoserver
