// airsync send FILE: a message goes out.
#include "cli/message/Deliver.h"

namespace airsync {

ExitCode runSend(Context& context) {
  using namespace AIRSYNC_STACK;
  return deliver(context, {.action = "send",
                           .operation = "sending",
                           .done = "sent",
                           .aboutMail = false,
                           .send = [](AirSync& airSync, std::span<const unsigned char> message,
                                      bool saveInSent, const SERVER_ID&, const FOLDER_ID&) {
                             return airSync.SendMail(
                                 message.data(), static_cast<unsigned int>(message.size()), saveInSent, true);
                           }});
}

}  // namespace airsync
