#include "formats/ItemJson.h"

#include <nlohmann/json.hpp>
#include <variant>

#include "formats/ContactJson.h"
#include "formats/EventJson.h"
#include "formats/MailJson.h"

namespace airsync {

namespace {

struct Writer {
  nlohmann::ordered_json operator()(const Contact& contact) const { return contactToJson(contact); }
  nlohmann::ordered_json operator()(const Event& event) const { return eventToJson(event); }
  nlohmann::ordered_json operator()(const Mail& mail) const { return mailToJson(mail); }
};

}  // namespace

nlohmann::ordered_json itemToJson(const ItemValue& item) { return std::visit(Writer{}, item); }

}  // namespace airsync
