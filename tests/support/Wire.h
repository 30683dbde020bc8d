// Driving the byte channel, and writing bytes down so that a reader can follow them.
#ifndef TESTS_SUPPORT_WIRE_H
#define TESTS_SUPPORT_WIRE_H

#include <string>
#include <vector>

#include "http/Communications.h"
#include "support/ScriptedTransport.h"

namespace airsync_test {

/// The bytes of a text of hexadecimal digits; blanks are skipped, and so is what follows a "#" up to the end
/// of its line: HexBytes("45 # Sync\n 01").
std::string HexBytes(const std::string& hex);

/// A Communications on a ScriptedTransport.
class Wire {
 public:
  Wire() : comms(AIRSYNC_STACK::SERVER_INFO(), &transport, nullptr) {}

  /// The source delivers these bytes, and nothing after them.
  explicit Wire(const std::string& incoming) : Wire() {
    transport.Answer(incoming);
    transport.BeginBody();
  }

  /// Everything that was sent.
  std::string Sent() const;
  /// The pieces in which it was sent.
  std::vector<std::string> SentPieces() const;

  ScriptedTransport transport;
  AIRSYNC_STACK::Communications comms;
};

}  // namespace airsync_test

#endif
