// The server's changes that one device lacks of one collection. First what has left the device's window of
// time since the last exchange, then what has entered it, by a filter that is another one now or by the
// course of time; then what was changed, in the order in which it was.
//
// An item that the device itself put outside of its window stays there until the next exchange.
#pragma once

#include <cstdint>
#include <string>

#include "data/Chain.h"
#include "data/ItemStore.h"
#include "items/ItemClass.h"
#include "wbxml/Element.h"

namespace demoserver {

class ServerChanges {
 public:
  // `windowStart`: see ItemClass. All references must outlive the object.
  ServerChanges(ItemStore& items, std::string folder, Chain& chain, std::int64_t windowStart)
      : items_(items), folder_(std::move(folder)), chain_(chain), start_(windowStart) {}

  bool any() { return count(1) > 0; }
  // How many commands collect would give without a limit; no more than `limit`. Changes nothing.
  std::int64_t count(std::int64_t limit = INT64_MAX);

  // Appends up to `window` Adds, Changes and Deletes to `commands`, moves the chain past them, and returns
  // whether more are left.
  bool collect(Element& commands, int window, const ItemClass& itemClass, const TransferOptions& transfer);

 private:
  enum class Kind { None, Add, Change, Delete };
  struct Output;

  Kind kindFor(const Item& item);
  EndRange leaving() const { return {chain_.window().emptyBefore, start_}; }
  EndRange entering() const { return {start_, chain_.window().completeFrom}; }

  bool collectLeaving(Output& output);
  bool collectEntering(Output& output);
  bool collectChanged(Output& output);
  void write(Output& output, const Item& item, Kind kind);

  ItemStore& items_;
  std::string folder_;
  Chain& chain_;
  std::int64_t start_;
};

}  // namespace demoserver
