#include "protocol/ServerChanges.h"

namespace demoserver {

// What the device itself did, or was sent meanwhile, gives nothing to say.
ServerChanges::Kind ServerChanges::kindFor(const Item& item) {
  const auto known = chain_.known(item.id);
  if (item.gone) return known ? Kind::Delete : Kind::None;
  if (!known) return Kind::Add;
  return *known < item.revision ? Kind::Change : Kind::None;
}

bool ServerChanges::any() {
  constexpr int kBatch = 64;
  std::int64_t position = chain_.position();
  for (;;) {
    const std::vector<Item> batch = items_.changedAfter(folder_, position, kBatch);
    if (batch.empty()) return false;
    for (const Item& item : batch)
      if (kindFor(item) != Kind::None) return true;
    position = batch.back().revision;
  }
}

bool ServerChanges::collect(Element& commands, int window, const ItemClass& itemClass,
                            const TransferOptions& transfer) {
  int sent = 0;
  for (;;) {
    const std::vector<Item> batch = items_.changedAfter(folder_, chain_.position(), window + 1);
    if (batch.empty()) return false;
    for (const Item& item : batch) {
      const Kind kind = kindFor(item);
      if (kind != Kind::None && sent == window) return true;
      chain_.moveTo(item.revision);
      if (kind == Kind::None) continue;
      ++sent;
      Element& command = commands.add(kind == Kind::Add ? "Add" : kind == Kind::Change ? "Change" : "Delete");
      command.add("ServerId", item.id);
      if (kind == Kind::Delete) {
        chain_.forget(item.id);
      } else {
        command.add(itemClass.encode(item.record, transfer));
        chain_.learn(item.id, item.revision);
      }
    }
  }
}

}  // namespace demoserver
