#include "support/Memory.h"

#include "api/AirSync.h"
#include "support/Assert.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

// The sentinel's block is an address that no caller has.
LL_Node sentinel = {&sentinel, 0, &sentinel, &sentinel, {}};

// Finding a block goes from the likely to the certain. First the blocks that were made or grown last:
// decoding drops or grows what it has just made. Then the neighbours of the block that was freed last: a tree
// of elements is freed in an order that stays close to the list's. Then the blocks that are growing. Last a
// search tree, which nodes enter only when a block is sought that nothing else has found. So decoding and
// freeing a document costs no search in a structure of its size (five times as fast at 10,000 contacts), and
// the most hostile order of calls only the logarithm of it.
const unsigned kRecentBits = 6;
LL_Node* recent[1U << kRecentBits];

LL_Node* lastPlace = &sentinel;
const unsigned kNeighbours = 4;

// The blocks that were born by growing: arrays of children. They grow as their levels of a document are open,
// so that those above one that grows again are complete, and leave. None of them is in the search tree.
const unsigned kMostGrowing = 32;
LL_Node* growing[kMostGrowing];
unsigned growingCount = 0;

// Steps along the list that searches may still take. Each block that is made pays for one.
UINT32 stepsLeft = 0;

// The search tree. A node hangs at the first free place on the path that its hash spells. The tree lives in
// the nodes: it takes no further allocation and never has to be rebalanced or rehashed. A removed node's
// place goes to any leaf below it, since the leaf's path leads through it.
LL_Node* root = nullptr;
// From here towards older blocks, all nodes are in the tree.
LL_Node* indexedFrom = &sentinel;

typedef std::uintptr_t Hash;
const unsigned kHashBits = sizeof(Hash) * 8;
const unsigned kBranchBits = 1;
static_assert(LL_Node::kBranches == 1U << kBranchBits, "a branch for each value of the bits");

// Multiplication by an odd number keeps addresses apart (so no path is longer than the hash has bits) and
// carries differences in their low bits to the top, where paths begin.
Hash HashOf(const void* block) {
  const Hash golden = static_cast<Hash>(0x9E3779B97F4A7C15U >> (64 - kHashBits)) | 1;
  return reinterpret_cast<Hash>(block) * golden;
}

LL_Node*& RecentSlot(const void* block) { return recent[HashOf(block) >> (kHashBits - kRecentBits)]; }

bool IsIndexed(const LL_Node* node) { return node->branches[0] != node; }

bool IsGrowing(const LL_Node* node) { return !IsIndexed(node) && node->branches[1] == node; }

// Those from this place on are complete.
void LeaveGrowing(unsigned place) {
  while (growingCount > place) growing[--growingCount]->branches[1] = nullptr;
}

void EnterGrowing(LL_Node* node) {
  if (growingCount == kMostGrowing) LeaveGrowing(0);
  node->branches[1] = node;
  growing[growingCount++] = node;
}

LL_Node* FindGrowing(const void* block) {
  for (unsigned i = growingCount; i; --i) {
    if (growing[i - 1]->block != block) continue;
    LeaveGrowing(i);
    return growing[i - 1];
  }
  return nullptr;
}

// Whatever stands above it may be complete or not: it is found by another way.
void EndGrowing(const LL_Node* node) {
  unsigned place = growingCount;
  while (growing[--place] != node) {
  }
  LeaveGrowing(place);
}

LL_Node** NextPlace(LL_Node** place, Hash& path) {
  LL_Node** next = &(*place)->branches[path >> (kHashBits - kBranchBits)];
  path <<= kBranchBits;
  return next;
}

void Index(LL_Node* node) {
  for (LL_Node*& branch : node->branches) branch = nullptr;
  Hash path = HashOf(node->block);
  LL_Node** place = &root;
  while (*place) place = NextPlace(place, path);
  *place = node;
}

void IndexAll() {
  LeaveGrowing(0);
  for (LL_Node* node = sentinel.next; node != indexedFrom; node = node->next) {
    if (!IsIndexed(node)) Index(node);
  }
  indexedFrom = sentinel.next;
}

// The place of the block's node in the tree, or a free place when it is not there.
LL_Node** PlaceOf(const void* block) {
  Hash path = HashOf(block);
  LL_Node** place = &root;
  while (*place && (*place)->block != block) place = NextPlace(place, path);
  return place;
}

// Asked of nodes that are in the tree only.
LL_Node** FirstBranch(LL_Node* node) {
  // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): the analyser can't know that a block's node is there
  for (LL_Node*& branch : node->branches) {
    if (branch) return &branch;
  }
  return nullptr;
}

void Unindex(const LL_Node* node) {
  LL_Node** const place = PlaceOf(node->block);
  LL_Node** leafPlace = place;
  while (LL_Node** below = FirstBranch(*leafPlace)) leafPlace = below;
  LL_Node* const leaf = *leafPlace;
  *leafPlace = nullptr;
  if (leaf == node) return;
  for (unsigned i = 0; i < LL_Node::kBranches; ++i) leaf->branches[i] = node->branches[i];
  *place = leaf;
}

LL_Node* FindNearLastPlace(const void* block) {
  LL_Node* older = lastPlace;
  LL_Node* newer = lastPlace->prev;
  for (unsigned i = 0; i < kNeighbours; ++i) {
    if (older->block == block) return older;
    if (newer->block == block) return newer;
    older = older->next;
    newer = newer->prev;
  }
  return nullptr;
}

// Among those that are not in the search tree, the newest first.
LL_Node* FindAlongList(const void* block) {
  for (LL_Node* node = sentinel.next; node != indexedFrom && stepsLeft; node = node->next) {
    if (node->block == block) return node;
    --stepsLeft;
  }
  return nullptr;
}

// The process stops when the block is not live.
LL_Node* LL_FindNode(const void* block) {
  LL_Node* node = RecentSlot(block);
  if (node && node->block == block) return node;
  node = FindNearLastPlace(block);
  if (!node) node = FindGrowing(block);
  if (!node) node = *PlaceOf(block);
  if (!node) node = FindAlongList(block);
  if (!node) {
    IndexAll();
    node = *PlaceOf(block);
  }
  if (!node) assert(0);
  return node;
}

LL_Node* NewNode(UINT32 size) {
  LL_Node* const node = static_cast<LL_Node*>(SmlMalloc(sizeof(LL_Node)));
  if (!node) AirSync::getInstance()->AbortSync(AS_RESULT_OUT_OF_MEMORY);
  node->block = SmlMalloc(size);
  if (!node->block) {
    SmlFree(node);
    AirSync::getInstance()->AbortSync(AS_RESULT_OUT_OF_MEMORY);
  }
  node->size = size;
  node->branches[0] = node;
  node->branches[1] = nullptr;
  node->next = sentinel.next;
  node->prev = &sentinel;
  sentinel.next->prev = node;
  sentinel.next = node;
  lastPlace = node;
  ++stepsLeft;
  RecentSlot(node->block) = node;
  return node;
}

void ForgetWhereBlocksAre() {
  for (LL_Node*& node : recent) node = nullptr;
  lastPlace = &sentinel;
  growingCount = 0;
  stepsLeft = 0;
  root = nullptr;
  indexedFrom = &sentinel;
}

}  // namespace

void StartAdapterMemory() {
  sentinel.next = &sentinel;
  sentinel.prev = &sentinel;
  ForgetWhereBlocksAre();
}

void* AdapterMalloc(UINT32 size) { return NewNode(size)->block; }

void AdapterFree(void* block) {
  LL_Node* const node = LL_FindNode(block);
  if (IsIndexed(node)) Unindex(node);
  if (IsGrowing(node)) EndGrowing(node);
  if (RecentSlot(block) == node) RecentSlot(block) = nullptr;
  if (indexedFrom == node) indexedFrom = node->next;
  lastPlace = node->next;
  node->prev->next = node->next;
  node->next->prev = node->prev;
  SmlFree(block);
  SmlFree(node);
}

void* AdapterRealloc(void* block, UINT32 NewSize, UINT32 OldSize) {
  // The text of the assertion is fixed, blanks included.
  // clang-format off
  assert(NewSize>=OldSize);
  // clang-format on
  if (!block) {
    assert(!OldSize);
    LL_Node* const born = NewNode(NewSize);
    EnterGrowing(born);
    return born->block;
  }
  LL_Node* const node = LL_FindNode(block);
  void* const grown = SmlRealloc(block, NewSize);
  if (!grown) return nullptr;
  node->size = NewSize;
  if (grown != block) {
    const bool indexed = IsIndexed(node);
    if (indexed) Unindex(node);
    if (RecentSlot(block) == node) RecentSlot(block) = nullptr;
    node->block = grown;
    if (indexed) Index(node);
  }
  RecentSlot(grown) = node;
  return grown;
}

char* AdapterStrdup(const char* text) { return text ? AdapterStrndup(text, SmlStrlen(text)) : nullptr; }

char* AdapterStrndup(const char* text, UINT32 length) {
  char* const copy = static_cast<char*>(AdapterMalloc(length + 1));
  SmlMemcpy(copy, text, length);
  copy[length] = '\0';
  return copy;
}

void AdapterFreeAll() {
  ForgetWhereBlocksAre();
  while (sentinel.next != &sentinel) {
    LL_Node* const newest = sentinel.next;
    sentinel.next = newest->next;
    newest->next->prev = &sentinel;
    SmlFree(newest->block);
    SmlFree(newest);
  }
}

const LL_Node* NewestNode() { return sentinel.next; }

void AdapterFreeNewerThan(const LL_Node* node) {
  while (sentinel.next != node) AdapterFree(sentinel.next->block);
}

void DoneWithAdapterMemory() { AdapterFreeAll(); }

}  // namespace AIRSYNC_STACK
