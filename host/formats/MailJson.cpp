#include "formats/MailJson.h"

#include "formats/EventJson.h"
#include "formats/FieldJson.h"

namespace airsync {

nlohmann::ordered_json mailToJson(const Mail& mail) {
  nlohmann::ordered_json record = fieldsToJson(mail.fields);
  for (const auto& attachment : mail.attachments) record["Attachments"].push_back(fieldsToJson(attachment));
  if (mail.meetingRequest) {
    nlohmann::ordered_json& request = record["MeetingRequest"] = fieldsToJson(mail.meetingRequest->fields);
    if (mail.meetingRequest->recurrence) {
      request["Recurrence"] = recurrenceToJson(*mail.meetingRequest->recurrence);
    }
  }
  return record;
}

}  // namespace airsync
