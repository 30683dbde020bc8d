// Apart from the benchmarks, as any host's transport is from the library: the calls stay calls.
#include "Endpoints.h"

#include <cstddef>
#include <cstring>

namespace airsync_bench {

MemoryTransport::SYNC_RESULT MemoryTransport::Read(UINT8* destination, INT32* count, INT32) {
  if (*count == 1 && position_ != end_) {
    *destination = static_cast<UINT8>(*position_++);
    return 0;
  }
  const std::ptrdiff_t wanted = *count;
  if (wanted > end_ - position_) return 1;
  std::memcpy(destination, position_, static_cast<std::size_t>(wanted));
  position_ += wanted;
  return 0;
}

MemoryTransport::SYNC_RESULT MemoryTransport::Write(const UINT8*, INT32 count, INT32) {
  sent_ += static_cast<std::size_t>(count);
  return 0;
}

}  // namespace airsync_bench
