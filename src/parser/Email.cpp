// Mails in Sync responses.
#include "api/EmailFields.h"
#include "parser/Recurrence.h"

namespace AIRSYNC_STACK {

namespace {

void ReadAttachments(AS_EMAIL_T& email, const sml_element* appData, DateParts& dates) {
  const sml_element* list = SE_Search(appData, "Attachments");
  const UINT16 children = list == nullptr ? 0 : SE_GetNumberOfChildren(list);
  const UINT32 slot = sizeof(AS_ATTACHMENT_T);
  for (UINT16 i = 0; i < children; ++i) {
    const sml_element* child = SE_GetNthChild(list, i);
    if (SmlStrcmp(SE_GetTag(child), "Attachment") != 0) continue;
    const UINT32 count = email.AttachmentCount;
    void* grown = AdapterRealloc(email.Attachments, (count + 1) * slot, count * slot);
    if (grown == nullptr) {
      ReleaseField(email.Attachments);  // the count keeps its last value
      return;
    }
    email.Attachments = static_cast<AS_ATTACHMENT_T*>(grown);
    AS_ATTACHMENT_T& attachment = email.Attachments[email.AttachmentCount++];
    SmlMemset(&attachment, 0, slot);
    ReadFields(attachment, AS_ATTACHMENT_FIELDS, child, dates);
  }
}

AS_MEETING_REQUEST_T* NewMeetingRequest(const sml_element* appData, DateParts& dates) {
  const sml_element* element = SE_Search(appData, "MeetingRequest");
  if (element == nullptr) return nullptr;
  AS_MEETING_REQUEST_T* request =
      static_cast<AS_MEETING_REQUEST_T*>(AdapterMalloc(sizeof(AS_MEETING_REQUEST_T)));
  SmlMemset(request, 0, sizeof(AS_MEETING_REQUEST_T));
  for (const AS_MEETING_REQUEST_FIELD_T& field : AS_MEETING_REQUEST_FIELDS) {
    // The rule is read in between, so that its end takes part in the order of the dates.
    if (field.inlineNumber == &AS_MEETING_REQUEST_T::InstanceType) {
      request->Recurrence = NewRecurrence(element, AS_MEETING_RECURRENCE_FIELDS, dates);
    }
    ReadField(*request, field, element, dates);
  }
  return request;
}

void ReleaseMeetingRequest(AS_MEETING_REQUEST_T*& request) {
  if (request == nullptr) return;
  ReleaseFields(*request, AS_MEETING_REQUEST_FIELDS);
  ReleaseRecurrence(request->Recurrence, AS_MEETING_RECURRENCE_FIELDS);
  ReleaseField(request);
}

}  // namespace

void Parser::ProcessEmailApplicationData(const sml_element* appData) {
  AS_EMAIL_T email;
  SmlMemset(&email, 0, sizeof(email));
  DateParts dates;
  ReadFields(email, AS_EMAIL_FIELDS, appData, dates);
  ReadAttachments(email, appData, dates);
  email.MeetingRequest = NewMeetingRequest(appData, dates);
  HandItem(&email);
  ReleaseFields(email, AS_EMAIL_FIELDS);
  ReleaseField(email.Attachments);
  ReleaseMeetingRequest(email.MeetingRequest);
}

}  // namespace AIRSYNC_STACK
