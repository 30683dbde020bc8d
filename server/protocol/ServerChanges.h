// The server's changes that one device lacks of one collection, in the order in which they were made.
#pragma once

#include <string>

#include "data/Chain.h"
#include "data/ItemStore.h"
#include "items/ItemClass.h"
#include "wbxml/Element.h"

namespace demoserver {

class ServerChanges {
 public:
  ServerChanges(ItemStore& items, std::string folder, Chain& chain)
      : items_(items), folder_(std::move(folder)), chain_(chain) {}

  bool any();

  // Appends up to `window` Adds, Changes and Deletes to `commands`, moves the chain past them, and returns
  // whether more are left.
  bool collect(Element& commands, int window, const ItemClass& itemClass, const TransferOptions& transfer);

 private:
  enum class Kind { None, Add, Change, Delete };

  Kind kindFor(const Item& item);

  ItemStore& items_;
  std::string folder_;
  Chain& chain_;
};

}  // namespace demoserver
