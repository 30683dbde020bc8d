// One collection of one Sync request.
#pragma once

#include <optional>
#include <string>

#include "data/Chain.h"
#include "data/State.h"
#include "items/ItemClass.h"
#include "protocol/Habits.h"
#include "protocol/ServerChanges.h"
#include "wbxml/Element.h"

namespace demoserver {

struct CollectionAnswer {
  Element element;
  bool idle = false;  // neither side had anything to say, and the state is as it was
};

class CollectionSync {
 public:
  // All references must outlive the object.
  CollectionSync(State& state, const Habits& habits, const std::string& device, const Element& request);

  CollectionAnswer run();

 private:
  std::optional<std::string> storedAnswer(KeyMatch match) const;
  bool forgetsKey();
  bool isIdle();
  CollectionAnswer start();
  CollectionAnswer exchange();
  CollectionAnswer failure(int status) const;
  Element answer(const std::string& key, int status, bool more) const;
  std::string supportedTags() const;
  ServerChanges changesForClient();

  State& state_;
  const Habits& habits_;
  const Element& request_;
  std::string folder_;
  std::string key_;
  std::string requestBytes_;
  Chain chain_;
  const ItemClass* class_ = nullptr;
  TransferOptions transfer_;
  bool serverWins_ = true;
  int window_ = 0;
  int filter_ = 0;
};

}  // namespace demoserver
