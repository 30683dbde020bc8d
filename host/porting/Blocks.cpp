// The memory functions. As shipped they stand on mimalloc, with which documents decode half again as fast as
// with the standard library's allocator; without it, and under sanitizers, which must see every block, on
// that.
#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "support/Porting.h"

#ifdef AIRSYNC_MIMALLOC
#include <mimalloc.h>
#endif

namespace AIRSYNC_STACK {

#ifdef AIRSYNC_MIMALLOC

namespace {

// What an exchange gave back stays with the process for so many milliseconds: the next exchange needs it
// again.
constexpr long kKeepMemory = 5000;

bool KeepMemory() noexcept {
  mi_option_set(mi_option_decommit_delay, kKeepMemory);
  return true;
}
[[maybe_unused]] const bool kMemoryIsKept = KeepMemory();

}  // namespace

void* SmlMalloc(UINT32 size) { return mi_malloc(size); }

void SmlFree(void* block) { mi_free(block); }

// Arrays of children grow by one slot at a time: half as much again in reserve, so that few steps move them.
void* SmlRealloc(void* block, UINT32 size) {
  if (size <= mi_usable_size(block)) return block;
  const std::size_t reserve = std::min<std::size_t>(size / 2, SIZE_MAX - size);
  void* const grown = mi_realloc(block, size + reserve);
  return grown == nullptr ? mi_realloc(block, size) : grown;
}

#else

// The library may ask for 0 bytes; a null result would tell it that memory has run out.
void* SmlMalloc(UINT32 size) { return std::malloc(std::max<UINT32>(size, 1)); }

void SmlFree(void* block) { std::free(block); }

void* SmlRealloc(void* block, UINT32 size) { return std::realloc(block, std::max<UINT32>(size, 1)); }

#endif

}  // namespace AIRSYNC_STACK
