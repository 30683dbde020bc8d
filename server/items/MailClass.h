// Mails: records with the fields of kMailFields, in the forms of ItemFields.h. Importance and Read are always
// there; missing ones are 1 and false.
//
// Clients add no mails, and change nothing of one but Read. A change of Read alone travels alone.
//
// FilterType: 1, 2, 3, 4 and 5 are 1 day, 3 days, 1 week, 2 weeks and 1 month back from now, by DateReceived;
// any other number is all.
#pragma once

#include "items/ItemClass.h"

namespace demoserver {

class MailClass : public ItemClass {
 public:
  std::string_view name() const override { return "Email"; }
  Element encode(const nlohmann::json& record, const TransferOptions& options) const override;
  std::optional<Element> encodeState(const nlohmann::json& record) const override;
  nlohmann::json decode(const Element& data, const nlohmann::json& previous,
                        const TransferOptions& options) const override;
  nlohmann::json check(const nlohmann::json& record) const override;
  nlohmann::json view(const nlohmann::json& record) const override;
  std::int64_t windowStart(int filter, Moment now) const override;
  bool takesAdds() const override { return false; }
  bool hasDeletedItems() const override { return true; }
};

}  // namespace demoserver
