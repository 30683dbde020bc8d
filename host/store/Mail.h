// A mail as the host handles it: a value that may be copied, compared and kept. Mails come from the server;
// of their contents a device changes only whether they are read.
#ifndef AIRSYNC_HOST_STORE_MAIL_H
#define AIRSYNC_HOST_STORE_MAIL_H

#include <optional>
#include <string>
#include <vector>

#include "store/FieldValues.h"

namespace airsync {

/// The meeting that a mail invites to.
struct MeetingRequest {
  FieldValues<AIRSYNC_STACK::AS_MEETING_REQUEST_T> fields;
  std::optional<FieldValues<AIRSYNC_STACK::AS_RECURRENCE_T>> recurrence;

  friend bool operator==(const MeetingRequest&, const MeetingRequest&) = default;
};

/// A mail: its own fields (of which "Importance" and "Read" are always there), its attachments, and the
/// meeting that it invites to.
struct Mail {
  FieldValues<AIRSYNC_STACK::AS_EMAIL_T> fields;
  std::vector<FieldValues<AIRSYNC_STACK::AS_ATTACHMENT_T>> attachments;
  std::optional<MeetingRequest> meetingRequest;

  /// A copy of a record of the library. Of the attachments, AttachmentCount entries, and none without a
  /// pointer to them.
  static Mail fromRecord(const AIRSYNC_STACK::AS_EMAIL_T& record);

  bool read() const;
  /// Whether the server kept back a part of the body.
  bool truncated() const;

  /// What lists and messages call it: its subject, or the best there is instead (sender, time of arrival).
  /// Empty where there is nothing.
  std::string displayName() const;

  friend bool operator==(const Mail&, const Mail&) = default;
};

}  // namespace airsync

#endif
