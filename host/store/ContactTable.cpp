#include "store/ContactTable.h"

#include <array>
#include <optional>

#include "store/ContactRecord.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

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
constexpr std::array kServersOwn = {"Body", "BodySize", "BodyTruncated"};

std::string columnsOf(const char* prefix) {
  std::string columns;
  for (const AS_CONTACT_FIELD_T& field : AS_CONTACT_FIELDS) {
    columns += columns.empty() ? "" : ", ";
    columns += std::string(prefix) + "\"" + field.name + "\"";
  }
  return columns;
}

std::string parameters(std::size_t count) {
  std::string marks = "?";
  for (std::size_t index = 1; index < count; ++index) marks += ", ?";
  return marks;
}

bool isServersOwn(const char* name) {
  for (const char* own : kServersOwn) {
    if (std::string_view(own) == name) return true;
  }
  return false;
}

// An empty field counts as absent: neither is sent.
bool isEmpty(const Contact::Value& value) {
  if (std::holds_alternative<std::monostate>(value)) return true;
  if (const auto* text = std::get_if<std::string>(&value)) return text->empty();
  if (const auto* entries = std::get_if<Contact::List>(&value)) return entries->empty();
  return false;
}

}  // namespace

ContactTable::ContactTable(Database& database)
    : ItemContents(database, "contact"),
      select_("SELECT " + columnsOf("") + " FROM contact WHERE item_id = ? AND version = ?"),
      insert_("INSERT INTO contact(item_id, version, " + columnsOf("") + ") VALUES (" +
              parameters(Contact::kFields + 2) + ")") {}

void ContactTable::writeContact(ItemNumber item, Version version, const Contact& contact) {
  drop(item, version);
  // Texts are bound without a copy, so those made here live as long as the query.
  std::array<std::string, Contact::kFields> made;
  Query query(database(), insert_);
  query.bind(item).bind(columnOf(version));
  for (std::size_t index = 0; index < Contact::kFields; ++index) {
    if (const auto* text = contact.get<std::string>(index)) {
      query.bind(*text);
    } else if (const auto* value = contact.get<std::int32_t>(index)) {
      query.bind(*value);
    } else if (const auto* flag = contact.get<bool>(index)) {
      query.bind(*flag ? 1 : 0);
    } else if (const auto* time = contact.get<UtcTime>(index)) {
      made.at(index) = time->text();
      query.bind(made.at(index));
    } else if (const auto* entries = contact.get<Contact::List>(index)) {
      query.bind(static_cast<std::int64_t>(entries->size()));
    } else {
      query.bindNull();
    }
  }
  query.run();
  for (std::size_t index = 0; index < Contact::kFields; ++index) {
    if (const auto* entries = contact.get<Contact::List>(index)) {
      writeEntries(item, version, AS_CONTACT_FIELDS[index].name, *entries);
    }
  }
}

void ContactTable::writeEntries(ItemNumber item, Version version, const char* field,
                                const Contact::List& entries) {
  const std::string name = field;
  std::int64_t position = 0;
  for (const std::string& entry : entries) {
    Query(database(),
          "INSERT INTO contact_entry(item_id, version, field, position, value) VALUES (?, ?, ?, ?, ?)")
        .bind(item)
        .bind(columnOf(version))
        .bind(name)
        .bind(position++)
        .bind(entry)
        .run();
  }
}

Contact::List ContactTable::loadEntries(ItemNumber item, Version version, const char* field) {
  const std::string name = field;
  Query query(database(),
              "SELECT value FROM contact_entry WHERE item_id = ? AND version = ? AND field = ? "
              "ORDER BY position");
  query.bind(item).bind(columnOf(version)).bind(name);
  Contact::List entries;
  while (query.step()) entries.push_back(query.text(0));
  return entries;
}

Contact ContactTable::loadContact(ItemNumber item, Version version) {
  Contact contact;
  Query query(database(), select_);
  query.bind(item).bind(columnOf(version));
  if (!query.step()) return contact;
  for (std::size_t index = 0; index < Contact::kFields; ++index) {
    const AS_CONTACT_FIELD_T& field = AS_CONTACT_FIELDS[index];
    const int column = static_cast<int>(index);
    if (query.null(column)) continue;
    switch (field.form) {
      case AS_FORM_NUMBER:
        contact.set(index, static_cast<std::int32_t>(query.integer(column)));
        break;
      case AS_FORM_FLAG:
        contact.set(index, query.integer(column) != 0);
        break;
      case AS_FORM_TIME:
        if (const auto time = UtcTime::parse(query.text(column))) contact.set(index, *time);
        break;
      case AS_FORM_LIST:
        contact.set(index, loadEntries(item, version, field.name));
        break;
      default:  // a text: contacts have no fields of other forms
        contact.set(index, query.text(column));
        break;
    }
  }
  return contact;
}

const std::string& ContactTable::summaryColumns() const {
  static const std::string columns = [] {
    std::string list;
    for (const char* field : kSummaryFields)
      list += (list.empty() ? "contact." : ", contact.") + std::string(field);
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

void ContactTable::validate(const ItemValue& value) const { valueOf<Contact>(value).validate(); }

void ContactTable::write(ItemNumber item, Version version, const ItemValue& value) {
  writeContact(item, version, valueOf<Contact>(value));
}

void ContactTable::write(ItemNumber item, Version version, const void* record) {
  writeContact(item, version, Contact::fromRecord(*static_cast<const AS_CONTACT_T*>(record)));
}

ItemValue ContactTable::load(ItemNumber item, Version version) { return loadContact(item, version); }

std::unique_ptr<OutgoingRecord> ContactTable::read(ItemNumber item, Version version) {
  return std::make_unique<OutgoingContact>(loadContact(item, version));
}

bool ContactTable::covered(ItemNumber item, const void* record) {
  const Contact own = loadContact(item, Version::shown);
  const Contact other = Contact::fromRecord(*static_cast<const AS_CONTACT_T*>(record));
  bool compared = false;
  for (std::size_t index = 0; index < Contact::kFields; ++index) {
    if (isEmpty(own[index]) || isServersOwn(AS_CONTACT_FIELDS[index].name)) continue;
    if (own[index] != other[index]) return false;
    compared = true;
  }
  return compared;
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

}  // namespace airsync
