// What an HttpTransport must know of its server, and how patient and how generous it is.
#ifndef AIRSYNC_TRANSPORT_TRANSPORT_OPTIONS_H
#define AIRSYNC_TRANSPORT_TRANSPORT_OPTIONS_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "transport/Resolver.h"
#include "transport/WireTrace.h"

namespace airsync {

enum class Scheme : std::uint8_t { kHttp, kHttps };

/// How far the bytes of a message or an attachment have come: what is written and read with `raw` set.
struct RawProgress {
  std::uint64_t done = 0;   // bytes that the network has taken, or that are here
  std::uint64_t next = 0;   // bytes of the piece that follows at once; 0 at the end
  std::uint64_t total = 0;  // of the whole message, or of the room that was given to an attachment
};

/// Told before each piece of at most kRawPiece bytes, and at the end. It may cancel the transport, which
/// keeps the piece from being moved; it must not call anything else of it, and must not throw.
using WatchRaw = std::function<void(const RawProgress&)>;
inline constexpr std::size_t kRawPiece = std::size_t{64} * 1024;

struct TransportOptions {
  Scheme scheme = Scheme::kHttps;
  std::string host;        // a name or an IP literal; an IPv6 literal with or without its brackets
  std::uint16_t port = 0;  // 0: the scheme's own, 80 or 443

  /// The host must be this machine: whatever its name resolves to, only loopback addresses are connected to.
  bool loopbackOnly = false;

  /// PEM file of the only authorities to trust; empty: the system's store. There is no way to trust a
  /// server without verifying its certificate and its name.
  std::string caFile;

  /// Resolving, connecting and the TLS handshake together.
  std::chrono::milliseconds connectTimeout{30'000};
  /// Nothing at all moves on the connection while a call waits for it.
  std::chrono::milliseconds idleTimeout{120'000};
  /// From the first byte of a request to the last byte of its response. Every 64 KiB that have moved start
  /// it anew: a large message may take as long as it needs, a peer that drips bytes may not.
  std::chrono::milliseconds totalTimeout{600'000};

  std::size_t maxHead = std::size_t{32} * 1024;        // bytes of a response head, interim ones included
  std::uint64_t maxBody = 256ULL * 1024ULL * 1024ULL;  // bytes of a response body

  WireTrace trace;    // may be empty
  WatchRaw watchRaw;  // may be empty
  Resolve resolve;    // empty: the system's resolver
};

}  // namespace airsync

#endif
