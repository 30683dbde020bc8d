// airsync reply FOLDER ID FILE: an answer goes out; the server adds the mail that it answers.
#include "cli/message/Deliver.h"

namespace airsync {

ExitCode runReply(Context& context) {
  using namespace AIRSYNC_STACK;
  return deliver(context, {.action = "reply",
                           .operation = "answering",
                           .done = "answered",
                           .aboutMail = true,
                           .send = [](AirSync& airSync, std::span<const unsigned char> message,
                                      bool saveInSent, const SERVER_ID& item, const FOLDER_ID& folder) {
                             return airSync.SmartReply(message.data(),
                                                       static_cast<unsigned int>(message.size()), saveInSent,
                                                       item, folder, true);
                           }});
}

}  // namespace airsync
