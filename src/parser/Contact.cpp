// Contacts in Sync responses.
#include "api/ContactFields.h"
#include "parser/ItemValues.h"
#include "parser/Parser.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

char* ListOf(const sml_element* appData, const AS_CONTACT_FIELD_T& field) {
  const sml_element* list = SE_Search(appData, field.tag);
  // An empty Child stands for a child without a name; an empty Category for nothing.
  return field.text == &AS_CONTACT_T::Children ? NewPackedList(list, "Child", EmptyEntries::kKept)
                                               : NewPackedList(list, "Category", EmptyEntries::kSkipped);
}

void ReadField(AS_CONTACT_T& contact, const AS_CONTACT_FIELD_T& field, const sml_element* appData,
               DateParts& dates) {
  switch (field.form) {
    case AS_FORM_TEXT:
      contact.*field.text = Parser::ProcessDataElement(appData, field.tag);
      break;
    case AS_FORM_QUOTED:
      contact.*field.text = FirstQuotedPart(Parser::ProcessDataElement(appData, field.tag));
      break;
    case AS_FORM_LIST:
      contact.*field.text = ListOf(appData, field);
      break;
    case AS_FORM_NUMBER:
      contact.*field.number = NewNumber(Parser::ProcessDataElement(appData, field.tag));
      break;
    case AS_FORM_FLAG:
      contact.*field.flag = NewFlag(Parser::ProcessDataElement(appData, field.tag));
      break;
    case AS_FORM_TIME:
      contact.*field.time = NewExtendedTime(Parser::ProcessDataElement(appData, field.tag), dates);
      break;
  }
}

}  // namespace

void Parser::ProcessContactApplicationData(const sml_element* appData) {
  AS_CONTACT_T contact;
  SmlMemset(&contact, 0, sizeof(contact));
  DateParts dates;
  for (const AS_CONTACT_FIELD_T& field : AS_CONTACT_FIELDS) ReadField(contact, field, appData, dates);
  HandItem(&contact);
  // The texts belong to the response; only what was made for the record is released.
  ReleaseField(contact.Categories);
  ReleaseField(contact.Children);
  ReleaseField(contact.Anniversary);
  ReleaseField(contact.Birthday);
  ReleaseField(contact.BodySize);
  ReleaseField(contact.BodyTruncated);
}

}  // namespace AIRSYNC_STACK
