#include "support/Memory.h"

#include "api/AirSync.h"
#include "support/Assert.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

LL_Node sentinel = {nullptr, 0, &sentinel, &sentinel, {}};

// Finding a block. A node hangs in a tree with four branches, at the first free place on the path that its
// hash spells, two bits for each level. The tree lives in the nodes: it takes no further allocation, never
// has to be rebalanced or rehashed, and finds one of 3,000,000 blocks in about a dozen steps, of a handful of
// blocks at once. A removed node's place goes to any leaf below it, since the leaf's path leads through it.
LL_Node* root = nullptr;

typedef std::uintptr_t Hash;
const unsigned kHashBits = sizeof(Hash) * 8;
const unsigned kBranchBits = 2;
static_assert(LL_Node::kBranches == 1U << kBranchBits, "a branch for each value of the bits");

// Multiplication by an odd number keeps addresses apart (so no path is longer than the hash has bits) and
// carries differences in their low bits to the top, where paths begin.
Hash HashOf(const void* block) {
  const Hash golden = static_cast<Hash>(0x9E3779B97F4A7C15U >> (64 - kHashBits)) | 1;
  return reinterpret_cast<Hash>(block) * golden;
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

LL_Node** FirstBranch(LL_Node* node) {
  for (LL_Node*& branch : node->branches) {
    if (branch) return &branch;
  }
  return nullptr;
}

void Unindex(LL_Node** place) {
  LL_Node* const node = *place;
  LL_Node** leafPlace = place;
  while (LL_Node** below = FirstBranch(*leafPlace)) leafPlace = below;
  LL_Node* const leaf = *leafPlace;
  *leafPlace = nullptr;
  if (leaf == node) return;
  for (unsigned i = 0; i < LL_Node::kBranches; ++i) leaf->branches[i] = node->branches[i];
  *place = leaf;
}

// The place in the tree of the block's node; the process stops when the block is not live.
LL_Node** LL_FindNode(const void* block) {
  Hash path = HashOf(block);
  LL_Node** place = &root;
  while (*place && (*place)->block != block) place = NextPlace(place, path);
  if (!*place) assert(0);
  return place;
}

void Link(LL_Node* node) {
  node->next = sentinel.next;
  node->prev = &sentinel;
  sentinel.next->prev = node;
  sentinel.next = node;
}

void Unlink(LL_Node* node) {
  node->prev->next = node->next;
  node->next->prev = node->prev;
}

void ReleaseNode(LL_Node* node) {
  Unlink(node);
  SmlFree(node->block);
  SmlFree(node);
}

}  // namespace

void StartAdapterMemory() {
  sentinel.next = &sentinel;
  sentinel.prev = &sentinel;
  root = nullptr;
}

void* AdapterMalloc(UINT32 size) {
  LL_Node* const node = static_cast<LL_Node*>(SmlMalloc(sizeof(LL_Node)));
  if (!node) AirSync::getInstance()->AbortSync(AS_RESULT_OUT_OF_MEMORY);
  node->block = SmlMalloc(size);
  if (!node->block) {
    SmlFree(node);
    AirSync::getInstance()->AbortSync(AS_RESULT_OUT_OF_MEMORY);
  }
  node->size = size;
  Link(node);
  Index(node);
  return node->block;
}

void AdapterFree(void* block) {
  LL_Node** const place = LL_FindNode(block);
  LL_Node* const node = *place;
  Unindex(place);
  ReleaseNode(node);
}

void* AdapterRealloc(void* block, UINT32 NewSize, UINT32 OldSize) {
  // The text of the assertion is fixed, blanks included.
  // clang-format off
  assert(NewSize>=OldSize);
  // clang-format on
  if (!block) {
    assert(!OldSize);
    return AdapterMalloc(NewSize);
  }
  LL_Node** const place = LL_FindNode(block);
  LL_Node* const node = *place;
  void* const grown = SmlRealloc(block, NewSize);
  if (!grown) return nullptr;
  node->size = NewSize;
  if (grown != node->block) {
    Unindex(place);
    node->block = grown;
    Index(node);
  }
  return grown;
}

char* AdapterStrdup(const char* text) {
  if (!text) return nullptr;
  char* const copy = static_cast<char*>(AdapterMalloc(SmlStrlen(text) + 1));
  SmlStrcpy(copy, text);
  return copy;
}

void AdapterFreeAll() {
  root = nullptr;
  while (sentinel.next != &sentinel) ReleaseNode(sentinel.next);
}

void DoneWithAdapterMemory() { AdapterFreeAll(); }

}  // namespace AIRSYNC_STACK
