// The parts of a message, sorted by what they are for the reader. For mime/ alone.
#pragma once

#include <string>
#include <vector>

#include "mime/Gmime.h"
#include "mime/Message.h"

namespace demoserver {

// Pointers to parts are valid as long as the message, and as long as its tree is not changed.
class MessageParts {
 public:
  explicit MessageParts(GMimeMessage* message);

  // The plain texts that are no attachments.
  const std::vector<GMimePart*>& texts() const { return texts_; }
  // The others, at most kMaxAttachments of them; an enclosed message is one. HTML is left out when there is
  // a plain text.
  const std::vector<GMimeObject*>& attachments() const { return attachments_; }

 private:
  void sort(GMimeObject* part, int depth);

  std::vector<GMimePart*> texts_;
  std::vector<GMimePart*> pages_;  // HTML without a name
  std::vector<GMimeObject*> attachments_;
};

// The text of a plain text part, within the limits and in the form that Message.h tells.
std::string plainText(GMimePart* part);

MimeAttachment attachmentOf(GMimeObject* part);

}  // namespace demoserver
