// What the test porting layer (TestPorting.cpp) saw, and how to make it fail.
//
// The layer is stricter than a host's: it fails the test when the library passes null to a porting function,
// frees or grows a block that is not live, or asks SmlRealloc for less than the block has. New memory is
// filled with 0xCD, and a grown block moves, so that stale pointers meet AddressSanitizer; one of more than
// 32 KiB only now and then.
#ifndef TESTS_SUPPORT_FAILING_MEMORY_H
#define TESTS_SUPPORT_FAILING_MEMORY_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "support/types.h"

namespace airsync_test {

struct MemoryCall {
  enum Kind { kMalloc, kRealloc, kFree };
  Kind kind;
  UINT32 size;        // 0 for kFree
  const void* block;  // given to SmlFree; or returned, null for a call that failed
};

class FailingMemory {
 public:
  /// No failures, all counts 0, nothing recorded. Live blocks stay live.
  static void Reset();

  /// The k-th SmlMalloc or SmlRealloc from now on, counted from 1, returns null; 0 for none.
  static void FailAt(std::size_t k);

  /// Blocks larger than this are refused.
  static void RefuseAbove(UINT32 size);

  /// Called before each SmlMalloc and SmlRealloc with its number since Reset, counted from 1; Reset keeps it.
  static void OnAllocation(std::function<void(std::size_t)> observer);

  /// Calls of SmlMalloc and SmlRealloc since Reset, those that failed included.
  static std::size_t Allocations();

  static std::size_t LiveBlocks();
  static std::size_t LiveBytes();
  static std::size_t MostLiveBytes();  // since Reset

  /// The size of a live block; 0 for any other pointer.
  static UINT32 SizeOf(const void* block);

  /// Whether calls are kept; off after Reset.
  static void Record(bool on);
  static const std::vector<MemoryCall>& Calls();
  /// The calls recorded as text: "malloc 64, malloc 11, free".
  static std::string CallsAsText();

  /// Calls of SmlUnexpected since Reset, all with false.
  static std::size_t Unexpected();
};

}  // namespace airsync_test

#endif
