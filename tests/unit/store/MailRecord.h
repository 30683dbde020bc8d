// A mail's record as the library hands it to storage; airsync itself sends nothing of a mail but its mark.
#ifndef AIRSYNC_TESTS_STORE_MAIL_RECORD_H
#define AIRSYNC_TESTS_STORE_MAIL_RECORD_H

#include <deque>
#include <optional>
#include <vector>

#include "store/FieldRecord.h"
#include "store/Mail.h"

namespace airsync {

/// Owns an AS_EMAIL_T made from a Mail, and all that it leads to. Like FieldRecord it stays at one address.
/// The array of attachments is null when there are none; more than the count holds are left out.
class MailRecord {
 public:
  explicit MailRecord(const Mail& mail);
  MailRecord(const MailRecord&) = delete;
  MailRecord& operator=(const MailRecord&) = delete;

  AIRSYNC_STACK::AS_EMAIL_T& record() { return fields_.record(); }

 private:
  FieldRecord<AIRSYNC_STACK::AS_EMAIL_T> fields_;
  std::deque<FieldRecord<AIRSYNC_STACK::AS_ATTACHMENT_T>>
      attachments_;  // own what the array's entries point to
  std::vector<AIRSYNC_STACK::AS_ATTACHMENT_T> array_;
  std::optional<FieldRecord<AIRSYNC_STACK::AS_MEETING_REQUEST_T>> meetingRequest_;
  std::optional<FieldRecord<AIRSYNC_STACK::AS_RECURRENCE_T>> recurrence_;
};

}  // namespace airsync

#endif
