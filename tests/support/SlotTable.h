// An object with a dispatch table of its own: calls arrive by their place in the table, whatever their names.
#ifndef TESTS_SUPPORT_SLOT_TABLE_H
#define TESTS_SUPPORT_SLOT_TABLE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace airsync_test {

/// What a foreign implementation of a host interface looks like to the library: a pointer to a table of
/// `kSlots` functions. It remembers the last slot that was called.
template <std::size_t kSlots>
class SlotTable {
 public:
  SlotTable() : table_(MakeTable(std::make_index_sequence<kSlots>())) {}

  template <typename Interface>
  Interface* As() {
    object_.table = table_.data();
    return reinterpret_cast<Interface*>(&object_);
  }

  static int LastSlot() { return lastSlot; }

 private:
  typedef std::uint32_t (*Entry)(void* self);

  template <int kSlot>
  static std::uint32_t Called(void*) {
    lastSlot = kSlot;
    return 0;
  }

  template <std::size_t... kSlot>
  static std::array<Entry, kSlots> MakeTable(std::index_sequence<kSlot...>) {
    return {&Called<static_cast<int>(kSlot)>...};
  }

  inline static int lastSlot = -1;
  std::array<Entry, kSlots> table_;
  struct {
    const Entry* table;
  } object_ = {};
};

}  // namespace airsync_test

#endif
