// What a server may send instead of a response: head and framing, the body in pieces of odd sizes.
//
// Keeps S10.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "transport/BodyFraming.h"
#include "transport/ResponseHead.h"
#include "transport/TransportError.h"

namespace {

using namespace airsync;

constexpr std::uint64_t kMostBody = 1 << 20;

// Takes the body out of what arrives, `piece` bytes at a time.
void ReadBody(const ResponseHead& head, std::span<const std::uint8_t> arrived, std::size_t piece) {
  BodyFraming framing;
  framing.start(head.framing, head.contentLength, kMostBody);
  std::uint64_t body = 0;
  while (!framing.done() && !arrived.empty()) {
    const std::span<const std::uint8_t> input = arrived.first(std::min(piece, arrived.size()));
    std::size_t used = framing.skipFraming(input);
    const auto run =
        static_cast<std::size_t>(std::min<std::uint64_t>(framing.runLeft(), input.size() - used));
    framing.took(run);
    body += run;
    used += run;
    if (used == 0 && !framing.done()) __builtin_trap();  // it would never end
    arrived = arrived.subspan(used);
  }
  if (!framing.done()) framing.inputEnded();
  if (body != framing.taken() || body > kMostBody) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t piece = data[0] % 64 + 1U;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::size_t end = text.find("\r\n\r\n");
  try {
    mayBeResponseHead(text);
    if (end == std::string_view::npos) return 0;
    const ResponseHead head = parseResponseHead(text.substr(0, end + 4), "peer");
    statusError(head, "peer");
    ReadBody(head, {data + 1 + end + 4, size - 1 - end - 4}, piece);
  } catch (const TransportFailure&) {  // NOLINT(bugprone-empty-catch): refused, as it should be
  }
  return 0;
}
