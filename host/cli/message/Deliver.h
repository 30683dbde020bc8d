// Sending a message, alone or with a mail that the server adds.
#ifndef AIRSYNC_CLI_MESSAGE_DELIVER_H
#define AIRSYNC_CLI_MESSAGE_DELIVER_H

#include <cstdint>
#include <span>

#include "api/AirSync.h"
#include "cli/Commands.h"
#include "transport/TransportOptions.h"

namespace airsync {

/// What is sent, and how it is told.
struct Errand {
  const char* action;     // for machines: "reply"
  const char* operation;  // "answering"
  const char* done;       // "answered"
  bool aboutMail;         // the command line names a mail, which the server adds
  AIRSYNC_STACK::SYNC_RESULT (*send)(AIRSYNC_STACK::AirSync& airSync, std::span<const unsigned char> message,
                                     bool saveInSent, const AIRSYNC_STACK::SERVER_ID& item,
                                     const AIRSYNC_STACK::FOLDER_ID& folder);
};

/// The message named on the command line goes out. When that fails, the error says whether the message may
/// have gone out all the same.
ExitCode deliver(Context& context, const Errand& errand);

/// Whether all of a message may have reached the server, after the last that was told of it: the piece that
/// was under way counts. False when nothing was told at all.
bool mayHaveGoneOut(const RawProgress& last);

}  // namespace airsync

#endif
