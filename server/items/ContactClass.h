// Contacts: records with the fields of kContactFields.
//
// Texts are JSON strings, dates ISO texts in UTC, lists arrays of strings; a field that is empty is absent.
// BodySize and BodyTruncated are computed when a contact is sent or shown, and never stored.
//
// Clients hold less than the server gave them: of an address with a display name they keep the name alone, of
// a long body its head. A Change that brings back exactly what the client was given leaves the field as it
// is.
#pragma once

#include "items/ItemClass.h"

namespace demoserver {

class ContactClass : public ItemClass {
 public:
  std::string_view name() const override { return "Contacts"; }
  Element encode(const nlohmann::json& record, const TransferOptions& options) const override;
  nlohmann::json decode(const Element& data, const nlohmann::json& previous,
                        const TransferOptions& options) const override;
  nlohmann::json check(const nlohmann::json& record) const override;
  nlohmann::json view(const nlohmann::json& record) const override;
};

}  // namespace demoserver
