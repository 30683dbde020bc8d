// The head of a response: what the transport needs of it.
#ifndef AIRSYNC_TRANSPORT_RESPONSE_HEAD_H
#define AIRSYNC_TRANSPORT_RESPONSE_HEAD_H

#include <cstdint>
#include <string>
#include <string_view>

#include "transport/BodyFraming.h"
#include "transport/TransportError.h"

namespace airsync {

struct ResponseHead {
  std::uint16_t status = 0;
  bool keepAlive = false;
  FramingKind framing = FramingKind::kNone;
  std::uint64_t contentLength = 0;  // for FramingKind::kLength
  std::string location;             // printable
  std::string protocolVersions;     // of "MS-ASProtocolVersions"; several lines joined by ","
  std::string protocolCommands;     // of "MS-ASProtocolCommands"
};

/// `head` is a whole head with its empty last line. Throws TransportFailure(kProtocol) for whatever is
/// malformed, contradicts itself, or frames the body in a way that nobody asked for.
ResponseHead parseResponseHead(std::string_view head, const std::string& peer);

/// Whether `start`, the first bytes of an answer, can be the beginning of a head.
bool mayBeResponseHead(std::string_view start);

/// The story of a response whose status is no success. What a status means to people is not told here.
TransportError statusError(const ResponseHead& head, const std::string& peer);

}  // namespace airsync

#endif
