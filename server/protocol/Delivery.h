// Where a message goes that a client sends: this server knows one account, and no other servers.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "data/State.h"
#include "mime/Message.h"
#include "support/Dates.h"

namespace demoserver {

struct Posting {
  std::string ownAddress;  // of the account
  Moment now;
  bool saveInSent = false;
};

// The record of a mail with this message, without its attachments.
nlohmann::json mailRecord(const MimeMessage& message, Moment received, bool read);

// Puts the message, byte for byte, and its record into Sent Items if that is asked for, and into the Inbox if
// To or Cc names the account. Throws BadRequest for an empty message. Runs inside the caller's transaction.
void deliver(State& state, const Posting& posting, std::string_view message);

}  // namespace demoserver
