#include "MailRecord.h"

#include <limits>

namespace airsync {

MailRecord::MailRecord(const Mail& mail) : fields_(mail.fields) {
  for (const auto& attachment : mail.attachments) {
    if (array_.size() == std::numeric_limits<UINT16>::max()) break;
    array_.push_back(attachments_.emplace_back(attachment).record());
  }
  if (!array_.empty()) {
    record().Attachments = array_.data();
    record().AttachmentCount = static_cast<UINT16>(array_.size());
  }
  if (!mail.meetingRequest) return;
  auto& request = meetingRequest_.emplace(mail.meetingRequest->fields).record();
  if (mail.meetingRequest->recurrence) {
    request.Recurrence = &recurrence_.emplace(*mail.meetingRequest->recurrence).record();
  }
  record().MeetingRequest = &request;
}

}  // namespace airsync
