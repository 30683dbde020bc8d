// Apart from the benchmarks, as any host's transport is from the library: the calls stay calls.
#include "Endpoints.h"

#include <cstring>

namespace airsync_bench {

MemoryTransport::SYNC_RESULT MemoryTransport::Read(UINT8* destination, INT32* count, INT32) {
  const std::size_t left = static_cast<std::size_t>(response_.data() + response_.size() - position_);
  const std::size_t wanted = static_cast<std::size_t>(*count);
  if (wanted > left) return 1;
  if (wanted == 1) {
    *destination = static_cast<UINT8>(*position_);
  } else {
    std::memcpy(destination, position_, wanted);
  }
  position_ += wanted;
  return 0;
}

MemoryTransport::SYNC_RESULT MemoryTransport::Write(const UINT8*, INT32 count, INT32) {
  sent_ += static_cast<std::size_t>(count);
  return 0;
}

}  // namespace airsync_bench
