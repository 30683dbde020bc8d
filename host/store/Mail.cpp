#include "store/Mail.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

MeetingRequest meetingRequestOf(const AS_MEETING_REQUEST_T& record) {
  MeetingRequest request;
  request.fields = FieldValues<AS_MEETING_REQUEST_T>::fromRecord(record);
  if (record.Recurrence != nullptr) {
    request.recurrence = FieldValues<AS_RECURRENCE_T>::fromRecord(*record.Recurrence);
  }
  return request;
}

bool isSet(const FieldValues<AS_EMAIL_T>& fields, const char* field) {
  const bool* flag = fields.get<bool>(field);
  return flag != nullptr && *flag;
}

}  // namespace

Mail Mail::fromRecord(const AS_EMAIL_T& record) {
  Mail mail;
  mail.fields = FieldValues<AS_EMAIL_T>::fromRecord(record);
  const int count = record.Attachments == nullptr ? 0 : record.AttachmentCount;
  for (int index = 0; index < count; ++index) {
    mail.attachments.push_back(FieldValues<AS_ATTACHMENT_T>::fromRecord(record.Attachments[index]));
  }
  if (record.MeetingRequest != nullptr) mail.meetingRequest = meetingRequestOf(*record.MeetingRequest);
  return mail;
}

bool Mail::read() const { return isSet(fields, "Read"); }

bool Mail::truncated() const { return isSet(fields, "BodyTruncated"); }

std::string Mail::displayName() const {
  for (const char* field : {"Subject", "From"}) {
    const auto* text = fields.get<std::string>(field);
    if (text != nullptr && !text->empty()) return *text;
  }
  const auto* received = fields.get<UtcTime>("DateReceived");
  return received == nullptr ? "" : received->text();
}

}  // namespace airsync
