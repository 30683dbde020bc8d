// Mails as whole Internet messages, byte for byte as they were sent or made. Not every mail has one: those of
// a new data file are records only.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/Database.h"

namespace demoserver {

class MessageStore {
 public:
  explicit MessageStore(Database& database) : database_(database) {}

  // The message is gone when the item is, and goes along when that is moved (see Moves).
  void keep(const std::string& item, std::string_view message);
  std::optional<std::string> find(const std::string& item);

 private:
  Database& database_;
};

}  // namespace demoserver
