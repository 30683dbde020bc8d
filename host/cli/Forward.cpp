// airsync forward FOLDER ID FILE: a message goes out; the server adds the mail that is forwarded.
#include "cli/message/Deliver.h"

namespace airsync {

ExitCode runForward(Context& context) {
  using namespace AIRSYNC_STACK;
  return deliver(context, {.action = "forward",
                           .operation = "forwarding",
                           .done = "forwarded",
                           .aboutMail = true,
                           .send = [](AirSync& airSync, std::span<const unsigned char> message,
                                      bool saveInSent, const SERVER_ID& item, const FOLDER_ID& folder) {
                             return airSync.SmartForward(message.data(),
                                                         static_cast<unsigned int>(message.size()),
                                                         saveInSent, item, folder, true);
                           }});
}

}  // namespace airsync
