// Completes a message that a client wrote with what the server adds to it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mime/Message.h"

namespace demoserver {

// The message with `text` after its plain text (as a text of its own if it has none) and with the attachments
// behind all its parts. Headers and other parts stay as they are, apart from line ends, which are CR LF.
std::string completeMessage(std::string_view message, const std::string& text,
                            const std::vector<MimeAttachment>& attachments);

}  // namespace demoserver
