// The porting layer of the library's unit tests: strict, counting, and failing on demand.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <sanitizer/asan_interface.h>
#include <unordered_map>
#include <utility>

#include "support/FailingMemory.h"
#include "support/HostCode.h"
#include "support/Porting.h"

namespace airsync_test {

namespace {

struct Block {
  UINT32 size;
  UINT32 capacity;
};

struct State {
  std::unordered_map<const void*, Block> live;
  std::size_t liveBytes = 0;
  std::size_t mostLiveBytes = 0;
  std::size_t allocations = 0;
  std::size_t failAt = 0;
  UINT32 limit = UINT32_MAX;
  bool record = false;
  std::vector<MemoryCall> calls;
  std::size_t unexpected = 0;
  std::function<void(std::size_t)> observer;
};

// Never destroyed: the library may free memory while the process ends.
State& TheState() {
  static State& state = *new State;
  return state;
}

void Note(MemoryCall::Kind kind, UINT32 size, const void* block) {
  if (TheState().record) TheState().calls.push_back({kind, size, block});
}

bool MayAllocate(UINT32 size) {
  State& state = TheState();
  ++state.allocations;
  if (state.observer) state.observer(state.allocations);
  return state.allocations != state.failAt && size <= state.limit;
}

// Large blocks have room to grow in, which a sanitizer guards: a child array grows by one pointer at a time,
// and to move it each time would take a test minutes.
constexpr UINT32 kLarge = 32 * 1024;

UINT32 CapacityFor(UINT32 size) {
  return size < kLarge || size > UINT32_MAX - kLarge ? size : (size / kLarge + 1) * kLarge;
}

void NoteSize(std::size_t added) {
  State& state = TheState();
  state.liveBytes += added;
  state.mostLiveBytes = std::max(state.mostLiveBytes, state.liveBytes);
}

void* NewBlock(UINT32 size) {
  const UINT32 capacity = CapacityFor(size);
  char* const block = static_cast<char*>(std::malloc(std::max<UINT32>(capacity, 1)));
  std::memset(block, 0xCD, size);
  ASAN_POISON_MEMORY_REGION(block + size, capacity - size);
  TheState().live[block] = {size, capacity};
  NoteSize(size);
  return block;
}

// False when the block has to move.
bool GrowInPlace(void* block, UINT32 size) {
  Block& known = TheState().live[block];
  if (known.size < kLarge || size > known.capacity) return false;
  const UINT32 added = size - known.size;
  ASAN_UNPOISON_MEMORY_REGION(static_cast<char*>(block) + known.size, added);
  std::memset(static_cast<char*>(block) + known.size, 0xCD, added);
  known.size = size;
  NoteSize(added);
  return true;
}

bool Forget(const void* block) {
  State& state = TheState();
  const auto found = state.live.find(block);
  if (found == state.live.end()) return false;
  state.liveBytes -= found->second.size;
  ASAN_UNPOISON_MEMORY_REGION(found->first, found->second.capacity);
  state.live.erase(found);
  return true;
}

// The library passes null to no porting function.
const char* Given(const char* text) {
  if (text != nullptr) return text;
  ADD_FAILURE() << "a porting function was given null";
  return "";
}

}  // namespace

void FailingMemory::Reset() {
  State& state = TheState();
  state.mostLiveBytes = state.liveBytes;
  state.allocations = 0;
  state.failAt = 0;
  state.limit = UINT32_MAX;
  state.record = false;
  state.calls.clear();
  state.unexpected = 0;
}

void FailingMemory::FailAt(std::size_t k) { TheState().failAt = k == 0 ? 0 : TheState().allocations + k; }
void FailingMemory::RefuseAbove(UINT32 size) { TheState().limit = size; }
void FailingMemory::OnAllocation(std::function<void(std::size_t)> observer) {
  TheState().observer = std::move(observer);
}
std::size_t FailingMemory::Allocations() { return TheState().allocations; }
std::size_t FailingMemory::LiveBlocks() { return TheState().live.size(); }
std::size_t FailingMemory::LiveBytes() { return TheState().liveBytes; }
std::size_t FailingMemory::MostLiveBytes() { return TheState().mostLiveBytes; }
std::size_t FailingMemory::Unexpected() { return TheState().unexpected; }
void FailingMemory::Record(bool on) { TheState().record = on; }
const std::vector<MemoryCall>& FailingMemory::Calls() { return TheState().calls; }

UINT32 FailingMemory::SizeOf(const void* block) {
  const auto found = TheState().live.find(block);
  return found == TheState().live.end() ? 0 : found->second.size;
}

std::string FailingMemory::CallsAsText() {
  std::string text;
  for (const MemoryCall& call : TheState().calls) {
    if (!text.empty()) text += ", ";
    if (call.kind == MemoryCall::kFree) {
      text += "free";
      continue;
    }
    text += call.kind == MemoryCall::kMalloc ? "malloc " : "realloc ";
    text += std::to_string(call.size);
  }
  return text;
}

}  // namespace airsync_test

namespace AIRSYNC_STACK {

using namespace airsync_test;

void* SmlMalloc(UINT32 size) {
  const HostCode host;
  void* const block = MayAllocate(size) ? NewBlock(size) : nullptr;
  Note(MemoryCall::kMalloc, size, block);
  return block;
}

void SmlFree(void* block) {
  const HostCode host;
  Note(MemoryCall::kFree, 0, block);
  if (!Forget(block)) {
    ADD_FAILURE() << "SmlFree was given a block that is not live";
    return;
  }
  std::free(block);
}

void* SmlRealloc(void* block, UINT32 size) {
  const HostCode host;
  const UINT32 before = FailingMemory::SizeOf(block);
  if (TheState().live.count(block) == 0 || size < before) {
    ADD_FAILURE() << "SmlRealloc was given a block that is not live, or a smaller size";
    return nullptr;
  }
  if (!MayAllocate(size)) {
    Note(MemoryCall::kRealloc, size, nullptr);
    return nullptr;
  }
  if (GrowInPlace(block, size)) {
    Note(MemoryCall::kRealloc, size, block);
    return block;
  }
  void* const grown = NewBlock(size);
  std::memcpy(grown, block, before);
  Forget(block);
  std::free(block);
  Note(MemoryCall::kRealloc, size, grown);
  return grown;
}

void SmlMemcpy(void* destination, const void* source, UINT32 size) {
  if (size != 0) std::memcpy(destination, source, size);
}

void SmlMemmove(void* destination, const void* source, UINT32 size) {
  if (size != 0) std::memmove(destination, source, size);
}

void SmlMemset(void* destination, UINT8 value, UINT32 size) {
  if (size != 0) std::memset(destination, value, size);
}

UINT32 SmlStrlen(const char* text) { return static_cast<UINT32>(std::strlen(Given(text))); }

void SmlStrcpy(char* destination, const char* source) { std::strcpy(destination, Given(source)); }

void SmlStrncpy(char* destination, const char* source, UINT32 size) {
  std::strncpy(destination, Given(source), size);
}

void SmlStrcat(char* destination, const char* source) { std::strcat(destination, Given(source)); }

// Large values, of either sign: callers may test for zero only.
INT16 SmlStrcmp(const char* left, const char* right) {
  const int order = std::strcmp(Given(left), Given(right));
  return static_cast<INT16>(order == 0 ? 0 : order < 0 ? INT16_MIN : 0x0100);
}

int SmlStrncmp(const char* left, const char* right, UINT32 size) {
  return std::strncmp(Given(left), Given(right), size);
}

char* SmlStrchr(const char* text, int character) {
  return const_cast<char*>(std::strchr(Given(text), character));
}

char* SmlStrstr(const char* text, const char* pattern) {
  return const_cast<char*>(std::strstr(Given(text), Given(pattern)));
}

void SmlSprintf(char* buffer, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::vsprintf(buffer, format, arguments);
  va_end(arguments);
}

INT32 SmlAtoi(const char* text) { return std::atoi(Given(text)); }

void SmlUnexpected(bool expectation) {
  EXPECT_FALSE(expectation);
  ++TheState().unexpected;
}

}  // namespace AIRSYNC_STACK
