// What `-v -v` shows of the wire: heads and events, never a secret and never a body.
#ifndef AIRSYNC_TRANSPORT_WIRE_TRACE_H
#define AIRSYNC_TRANSPORT_WIRE_TRACE_H

#include <functional>
#include <string_view>

namespace airsync {

/// Takes one line, without its line end. Called on the thread that runs the transport, from inside its
/// calls; it must neither call the transport nor throw. "* " marks an event, "> " what was sent, "< " what
/// arrived.
using WireTrace = std::function<void(std::string_view line)>;

/// Hands the lines of a head to `trace`, each after `mark`. The values of header lines that carry secrets
/// (credentials, cookies) are left out, control characters are replaced.
void traceHead(const WireTrace& trace, std::string_view mark, std::string_view head);

}  // namespace airsync

#endif
