#include "store/ContactTable.h"

#include <array>
#include <utility>

#include "store/ContactRecord.h"
#include "store/FieldCover.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr FieldPlace kContacts = {.table = "contact", .entries = "contact_entry", .listName = "field"};

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

// Fields that come out differently without anybody's edit, and those that a server fills in.
constexpr std::array<std::string_view, 2> kStamps = {"BodySize", "BodyTruncated"};
constexpr std::array<std::string_view, 1> kFilledIn = {"FileAs"};

}  // namespace

ContactTable::ContactTable(Database& database)
    : ClassContents(database, "contact"), contacts_(database, kContacts) {}

void ContactTable::insert(ItemNumber item, Version version, const Contact& contact) {
  contacts_.insert(item, version, contact);
}

Contact ContactTable::get(ItemNumber item, Version version) {
  Contact contact;
  for (auto& fields : contacts_.load(item, version)) contact = Contact(std::move(fields));
  return contact;
}

std::unique_ptr<OutgoingRecord> ContactTable::read(ItemNumber item, Version version) {
  return std::make_unique<OwnedRecord<ContactRecord>>(get(item, version));
}

bool ContactTable::covered(ItemNumber item, Version version, const void* record) {
  const Contact theirs = valueFrom(record);
  return coverOf<AS_CONTACT_T>(get(item, version), theirs, kServersOwn) == Cover::yes;
}

bool ContactTable::sameValue(const Contact& ours, const Contact& theirs) const {
  return sameFields<AS_CONTACT_T>(
      ours, theirs,
      {.stamps = kStamps, .filledIn = kFilledIn, .body = bodyWasCut(ours) || bodyWasCut(theirs)});
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

}  // namespace airsync
