// Tracked memory: every block of an exchange is known here, so that an abort releases them all at once.
//
// The pool stands on SmlMalloc, SmlRealloc and SmlFree, is usable from the start of the process, and belongs
// to the thread that drives the library. AdapterFree is in support/AdapterFree.h.
#ifndef KROAIRSYNC_SUPPORT_MEMORY_H
#define KROAIRSYNC_SUPPORT_MEMORY_H

#include "support/AdapterFree.h"
#include "support/types.h"

namespace AIRSYNC_STACK {

/// One live block. The nodes form a circular list around a sentinel, newest first. Some of them also form, by
/// the hash of `block`, a tree in which a block is found.
struct LL_Node {
  static const unsigned kBranches = 2;

  void* block;
  UINT32 size;
  LL_Node* next;  // towards older blocks
  LL_Node* prev;
  LL_Node* branches[kBranches];  // the first leads to the node itself as long as that is not in the tree
};

/// Makes the list empty. Blocks that are live are forgotten, not freed.
void StartAdapterMemory();

/// A block of `size` bytes, not cleared; never null. Two host allocations: the node, then the block. When
/// either fails, the exchange ends with AS_RESULT_OUT_OF_MEMORY.
void* AdapterMalloc(UINT32 size);

/// Grows a block. A null block (with old size 0) makes a new one, as AdapterMalloc does. Null when the host
/// has no more memory: the old block then stays live as it is.
/// Asserts "NewSize>=OldSize", "!OldSize" (a null block with an old size), "0" (a block that is not live).
void* AdapterRealloc(void* block, UINT32 NewSize, UINT32 OldSize);

/// A copy of `text`; null for null.
char* AdapterStrdup(const char* text);

/// A copy of the first `length` characters of a text, which has no fewer.
char* AdapterStrndup(const char* text, UINT32 length);

/// Frees every live block, newest first.
void AdapterFreeAll();

/// The node of the newest block, or the list's sentinel; and the release of all blocks that are newer than
/// it, newest first. The block itself must still be live.
const LL_Node* NewestNode();
void AdapterFreeNewerThan(const LL_Node* node);

/// The end of an exchange's use of the pool: AdapterFreeAll by another name.
void DoneWithAdapterMemory();

}  // namespace AIRSYNC_STACK

#endif
