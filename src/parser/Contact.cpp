// Contacts in Sync responses.
#include "api/ContactFields.h"
#include "parser/ItemFields.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

void Parser::ProcessContactApplicationData(const sml_element* appData) {
  AS_CONTACT_T contact;
  SmlMemset(&contact, 0, sizeof(contact));
  DateParts dates;
  ReadFields(contact, AS_CONTACT_FIELDS, appData, dates);
  HandItem(&contact);
  ReleaseFields(contact, AS_CONTACT_FIELDS);
}

}  // namespace AIRSYNC_STACK
