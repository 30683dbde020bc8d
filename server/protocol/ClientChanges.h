// Applies the commands of a client to one collection and writes their Responses.
//
// A Delete of a mail moves it to Deleted Items if the collection says DeletesAsMoves, unless it is there
// already. A Fetch changes nothing; it is answered with the whole item, whatever the options say of its size
// and age.
#pragma once

#include <string>

#include "data/Chain.h"
#include "data/State.h"
#include "items/ItemClass.h"
#include "protocol/Habits.h"
#include "wbxml/Element.h"

namespace demoserver {

class ClientChanges {
 public:
  struct Rules {
    const ItemClass& itemClass;
    const TransferOptions& transfer;
    const Habits& habits;
    bool serverWins = true;
    bool deletesAsMoves = false;
  };

  ClientChanges(State& state, std::string folder, Chain& chain, const Rules& rules)
      : state_(state), items_(state.items), folder_(std::move(folder)), chain_(chain), rules_(rules) {}

  // Appends to `responses` what the client must hear. Throws BadRequest for anything that is no command, and
  // for more than a hundred of the command Fetch; StoredInPart when a habit ends the work half-way.
  void apply(const Element& commands, Element& responses);

 private:
  // Each returns the status of the command.
  int applyAdd(const std::string& clientId, const Element& data, std::string& serverId);
  int repeatAdd(const std::string& clientId, const Element& data, const std::string& serverId);
  int applyChange(const std::string& serverId, const Element& data);
  int applyDelete(const std::string& serverId);

  std::int64_t remove(const Item& item);

  void failIfCulprit(const Element& command);
  nlohmann::json recordOf(const Element& data, const nlohmann::json& previous) const;
  void respondToAdd(const Element& command, Element& responses);
  void respondToFetch(const Element& command, Element& responses);
  void respond(const Element& command, Element& responses);
  void store(const Item& item, const Element& data, const std::string& clientId);
  bool isConflict(const Item& item);

  State& state_;
  ItemStore& items_;
  std::string folder_;
  Chain& chain_;
  Rules rules_;
};

}  // namespace demoserver
