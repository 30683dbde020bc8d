#include "store/ContactTable.h"

#include <array>
#include <utility>

#include "store/ContactRecord.h"
#include "store/FieldCover.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr FieldPlace kContacts = {.table = "contact", .entries = "contact_entry", .listName = "field"};

class OutgoingContact final : public OutgoingRecord {
 public:
  explicit OutgoingContact(const Contact& contact) : record_(contact) {}
  void* record() override { return &record_.record(); }

 private:
  ContactRecord record_;
};

constexpr std::array kSummaryFields = {
    "FileAs",
    "FirstName",
    "LastName",
    "CompanyName",
    "Email1Address",
    "Email2Address",
    "Email3Address",
    "MobilePhoneNumber",
    "HomePhoneNumber",
    "BusinessPhoneNumber",
    "CarPhoneNumber",
    "Home2PhoneNumber",
    "Business2PhoneNumber",
};

// Fields that a server sets or cuts by itself.
constexpr std::array<std::string_view, 3> kServersOwn = {"Body", "BodySize", "BodyTruncated"};

}  // namespace

ContactTable::ContactTable(Database& database)
    : ItemContents(database, "contact"), contacts_(database, kContacts) {}

void ContactTable::validate(const ItemValue& value) const { valueOf<Contact>(value).validate(); }

void ContactTable::writeContact(ItemNumber item, Version version, const Contact& contact) {
  drop(item, version);
  contacts_.insert(item, version, contact);
}

void ContactTable::write(ItemNumber item, Version version, const ItemValue& value) {
  writeContact(item, version, valueOf<Contact>(value));
}

void ContactTable::write(ItemNumber item, Version version, const void* record) {
  writeContact(item, version, Contact::fromRecord(*static_cast<const AS_CONTACT_T*>(record)));
}

Contact ContactTable::loadContact(ItemNumber item, Version version) {
  Contact contact;
  for (auto& fields : contacts_.load(item, version)) contact = Contact(std::move(fields));
  return contact;
}

ItemValue ContactTable::load(ItemNumber item, Version version) { return loadContact(item, version); }

std::unique_ptr<OutgoingRecord> ContactTable::read(ItemNumber item, Version version) {
  return std::make_unique<OutgoingContact>(loadContact(item, version));
}

bool ContactTable::covered(ItemNumber item, const void* record) {
  const Contact theirs = Contact::fromRecord(*static_cast<const AS_CONTACT_T*>(record));
  return coverOf<AS_CONTACT_T>(loadContact(item, Version::shown), theirs, kServersOwn) == Cover::yes;
}

std::string ContactTable::likeness(const void* record) {
  const auto& contact = *static_cast<const AS_CONTACT_T*>(record);
  std::string text;
  for (const char* field :
       {contact.LastName, contact.FirstName, contact.CompanyName, contact.Email1Address}) {
    if (field != nullptr) text += field;
    text += '\0';
  }
  return text;
}

const std::string& ContactTable::summaryColumns() const {
  static const std::string columns = [] {
    std::string list;
    for (const char* field : kSummaryFields) {
      list += (list.empty() ? "contact." : ", contact.") + std::string(field);
    }
    return list;
  }();
  return columns;
}

ItemDetails ContactTable::summary(const Query& query, int column) const {
  Contact contact;
  for (const char* field : kSummaryFields) {
    if (auto text = query.maybeText(column++)) contact.set(field, *std::move(text));
  }
  return ContactSummary{.name = contact.displayName(), .email = contact.email(), .phone = contact.phone()};
}

std::string ContactTable::displayName(ItemNumber item) {
  return loadContact(item, Version::shown).displayName();
}

}  // namespace airsync
