// What can go wrong in a conversation, one thing at a time.
#ifndef TESTS_TORTURE_FAULT_H
#define TESTS_TORTURE_FAULT_H

#include <array>
#include <cstddef>
#include <string>

namespace torture {

enum class FaultKind {
  allocation,        // the k-th allocation has nothing left
  object,            // the k-th operator new has nothing left, from before Initialize
  transport,         // the k-th call of the transport fails
  status,            // the k-th response head is refused: `value` is its HTTP status
  cut,               // the responses end before their k-th byte
  byte,              // the k-th byte of the responses is `value`
  cancelTransport,   // CancelSync from inside the k-th call of the transport
  cancelThread,      // the same, from another thread
  cancelStorage,     // CancelSync from inside the k-th call of storage
  cancelAllocation,  // CancelSync before the k-th allocation
};

struct KindRow {
  FaultKind kind;
  const char* name;  // on the command line
};

inline constexpr std::array kKinds = {
    KindRow{FaultKind::allocation, "allocation"},
    KindRow{FaultKind::object, "new"},
    KindRow{FaultKind::transport, "transport"},
    KindRow{FaultKind::status, "status"},
    KindRow{FaultKind::cut, "cut"},
    KindRow{FaultKind::byte, "byte"},
    KindRow{FaultKind::cancelTransport, "cancel-transport"},
    KindRow{FaultKind::cancelThread, "cancel-thread"},
    KindRow{FaultKind::cancelStorage, "cancel-storage"},
    KindRow{FaultKind::cancelAllocation, "cancel-allocation"},
};

constexpr const char* NameOf(FaultKind kind) { return kKinds[static_cast<std::size_t>(kind)].name; }

/// What a byte becomes: an end, the version, a tag with content, the beginning of an opaque text, and a byte
/// that is nothing.
inline constexpr std::array<unsigned, 5> kBytes = {0x00, 0x03, 0x45, 0xC3, 0xFF};
inline constexpr std::array<unsigned, 5> kStatuses = {400, 401, 404, 500, 503};

struct Fault {
  FaultKind kind = FaultKind::allocation;
  std::size_t at = 1;  // counted from 1
  unsigned value = 0;
};

/// What an undisturbed run did.
struct Events {
  std::size_t allocations = 0;
  std::size_t objects = 0;  // made by operator new, Initialize's and Connect's included
  std::size_t transportCalls = 0;
  std::size_t heads = 0;
  std::size_t storageCalls = 0;
  std::size_t bytes = 0;  // of all responses

  std::size_t Total() const { return allocations + objects + transportCalls + storageCalls + bytes; }
};

}  // namespace torture

#endif
