#include "protocol/ServerChanges.h"

#include <algorithm>

namespace demoserver {
namespace {

constexpr int kBatch = 64;

int limitOf(std::int64_t limit) { return static_cast<int>(std::min<std::int64_t>(limit, INT32_MAX)); }

}  // namespace

struct ServerChanges::Output {
  Element& commands;
  int room;  // for so many commands
  const ItemClass& itemClass;
  const TransferOptions& transfer;
};

// What the device itself did, or was sent meanwhile, gives nothing to say.
ServerChanges::Kind ServerChanges::kindFor(const Item& item) {
  const auto known = chain_.known(item.id);
  if (item.gone) return known ? Kind::Delete : Kind::None;
  if (item.until < start_) return known && *known < item.revision ? Kind::Delete : Kind::None;
  if (!known) return Kind::Add;
  return *known < item.revision ? Kind::Change : Kind::None;
}

std::int64_t ServerChanges::count(std::int64_t limit) {
  const auto sizeOf = [](const std::vector<Item>& items) { return static_cast<std::int64_t>(items.size()); };
  const std::string& device = chain_.device();
  std::int64_t position = chain_.position();
  std::int64_t found = sizeOf(items_.heldIn(folder_, device, leaving(), position, limitOf(limit)));
  if (found < limit)
    found += sizeOf(items_.notHeldIn(folder_, device, entering(), position, limitOf(limit - found)));
  while (found < limit) {
    const std::vector<Item> batch = items_.changedAfter(folder_, position, kBatch);
    if (batch.empty()) break;
    for (const Item& item : batch) found += kindFor(item) == Kind::None ? 0 : 1;
    position = batch.back().revision;
  }
  return std::min(found, limit);
}

bool ServerChanges::collect(Element& commands, int window, const ItemClass& itemClass,
                            const TransferOptions& transfer) {
  Output output{commands, window, itemClass, transfer};
  return collectLeaving(output) || collectEntering(output) || collectChanged(output);
}

void ServerChanges::write(Output& output, const Item& item, Kind kind) {
  --output.room;
  const auto known = chain_.known(item.id);
  Element& command = output.commands.add(kind == Kind::Add      ? "Add"
                                         : kind == Kind::Change ? "Change"
                                                                : "Delete");
  command.add("ServerId", item.id);
  if (kind == Kind::Delete) return chain_.forget(item.id);
  auto state =
      known && *known >= item.contentRevision ? output.itemClass.encodeState(item.record) : std::nullopt;
  command.add(state ? std::move(*state) : output.itemClass.encode(item.record, output.transfer));
  chain_.learn(item.id, item.revision);
}

// Each of the three returns whether it had to leave something for the next exchange.

bool ServerChanges::collectLeaving(Output& output) {
  HeldWindow window = chain_.window();
  const auto items = items_.heldIn(folder_, chain_.device(), leaving(), chain_.position(), output.room + 1);
  for (const Item& item : items) {
    if (output.room == 0) {
      chain_.setWindow(window);
      return true;
    }
    window.emptyBefore = item.until;
    write(output, item, Kind::Delete);
  }
  window.emptyBefore = start_;
  chain_.setWindow(window);
  return false;
}

bool ServerChanges::collectEntering(Output& output) {
  HeldWindow window = chain_.window();
  const auto items =
      items_.notHeldIn(folder_, chain_.device(), entering(), chain_.position(), output.room + 1);
  for (const Item& item : items) {
    if (output.room == 0) {
      chain_.setWindow(window);
      return true;
    }
    // Others may end at the same moment. What never ends is no part of the range.
    window.completeFrom = item.until + 1;
    write(output, item, Kind::Add);
  }
  window.completeFrom = start_;
  chain_.setWindow(window);
  return false;
}

bool ServerChanges::collectChanged(Output& output) {
  for (;;) {
    const auto batch = items_.changedAfter(folder_, chain_.position(), output.room + 1);
    if (batch.empty()) return false;
    for (const Item& item : batch) {
      const Kind kind = kindFor(item);
      if (kind != Kind::None && output.room == 0) return true;
      chain_.moveTo(item.revision);
      if (kind != Kind::None)
        write(output, item, kind);
      else if (!item.gone && item.until < start_ && chain_.known(item.id))
        chain_.setWindow({chain_.window().completeFrom, std::min(chain_.window().emptyBefore, item.until)});
    }
  }
}

}  // namespace demoserver
