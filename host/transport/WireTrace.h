// What `-v -v` shows of the wire: heads and events, never a secret and never a body.
#ifndef AIRSYNC_TRANSPORT_WIRE_TRACE_H
#define AIRSYNC_TRANSPORT_WIRE_TRACE_H

#include <cstdint>
#include <functional>
#include <string_view>

namespace airsync {

/// Takes one line, without its line end. Called on the thread that runs the transport, from inside its
/// calls; it must neither call the transport nor throw. "* " marks an event, "> " what was sent, "< " what
/// arrived.
using WireTrace = std::function<void(std::string_view line)>;

enum class HeadOf : std::uint8_t { kRequest, kAnswer };

/// Hands the lines of a head to `trace`, each after its mark. Of a request, the values of lines that carry
/// secrets (credentials, cookies) are left out; of an answer, all values but those of the few lines that are
/// known and needed, and the words beside its status. Control characters are replaced.
void traceHead(const WireTrace& trace, HeadOf side, std::string_view head);

}  // namespace airsync

#endif
