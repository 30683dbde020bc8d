#include "items/ContactClass.h"

#include "items/ContactFields.h"
#include "support/Dates.h"
#include "support/Utf8.h"

namespace demoserver {
namespace {

using nlohmann::json;

std::string_view entryTag(FieldKind kind) { return kind == FieldKind::Categories ? "Category" : "Child"; }

bool isList(FieldKind kind) { return kind == FieldKind::Categories || kind == FieldKind::Children; }

bool isComputed(FieldKind kind) { return kind == FieldKind::BodySize || kind == FieldKind::BodyTruncated; }

const ContactField* fieldOfName(std::string_view name) {
  for (const ContactField& field : kContactFields)
    if (field.name == name) return &field;
  return nullptr;
}

// What a client keeps of an address: the part between the double quotes, if there are any.
std::string_view displayPart(std::string_view address) {
  const std::size_t start = address.find_first_not_of('"');
  if (start == std::string_view::npos) return {};
  return address.substr(start, address.find('"', start) - start);
}

// True if the client sent back what it was given of the old text, so that the old text stays.
bool isEcho(const ContactField& field, const std::string& old, const json& value,
            const TransferOptions& options) {
  const std::string_view sent = value.is_string() ? value.get_ref<const std::string&>() : std::string_view();
  if (field.kind == FieldKind::Address) return sent == displayPart(old);
  return field.kind == FieldKind::Body && sent == utf8Head(old, options.bodyLimit);
}

std::string checkedText(const ContactField& field, std::string_view text) {
  const std::string name(field.name);
  if (!isItemText(text)) throw ItemError(name + " holds control characters or is not UTF-8");
  if (field.kind != FieldKind::Date) return std::string(text);
  std::string date = normalisedDate(text);
  if (date.empty()) throw ItemError(name + " is not a date such as 1970-01-31T00:00:00.000Z");
  return date;
}

json decodeList(const ContactField& field, const Element& container) {
  json list = json::array();
  for (const Element& entry : container.children)
    if (entry.is(Page::Contacts, entryTag(field.kind)) && entry.text && !entry.text->empty())
      list.push_back(checkedText(field, *entry.text));
  return list;
}

// The field's value; null or an empty list when the element holds nothing.
json decodeField(const ContactField& field, const Element& element) {
  if (isList(field.kind)) return decodeList(field, element);
  if (!element.text || element.text->empty()) return nullptr;
  return checkedText(field, *element.text);
}

json checkedList(const ContactField& field, const json& list) {
  if (!list.is_array()) throw ItemError(std::string(field.name) + " must be an array of texts");
  json checked = json::array();
  for (const json& entry : list) {
    if (!entry.is_string()) throw ItemError(std::string(field.name) + " must be an array of texts");
    checked.push_back(checkedText(field, entry.get_ref<const std::string&>()));
  }
  return checked;
}

void encodeBody(Element& data, const std::string& body, const TransferOptions& options) {
  const std::string_view sent = utf8Head(body, options.bodyLimit);
  data.children.emplace_back(Page::Contacts, "Body", std::string(sent));
  data.children.emplace_back(Page::Contacts, "BodySize", std::to_string(body.size()));
  data.children.emplace_back(Page::Contacts, "BodyTruncated", sent.size() < body.size() ? "1" : "0");
}

}  // namespace

Element ContactClass::encode(const json& record, const TransferOptions& options) const {
  Element data(Page::Sync, "ApplicationData");
  for (const ContactField& field : kContactFields) {
    const auto value = record.find(field.name);
    if (value == record.end()) continue;
    if (field.kind == FieldKind::Body) {
      encodeBody(data, value->get_ref<const std::string&>(), options);
    } else if (isList(field.kind)) {
      Element& list = data.add(Element(Page::Contacts, field.tag));
      for (const json& entry : *value) list.add(entryTag(field.kind), entry.get<std::string>());
    } else {
      data.children.emplace_back(Page::Contacts, field.tag, value->get<std::string>());
    }
  }
  return data;
}

json ContactClass::decode(const Element& data, const json& previous, const TransferOptions& options) const {
  json record = previous;
  for (const ContactField& field : kContactFields) {
    if (isComputed(field.kind)) continue;
    const std::string name(field.name);
    const Element* sent = data.child(Page::Contacts, field.tag);
    json value = sent == nullptr ? json() : decodeField(field, *sent);
    const auto old = record.find(name);
    const bool mayStay = sent != nullptr || !options.clearsUnnamed;
    if (mayStay && old != record.end() && old->is_string() &&
        isEcho(field, old->get_ref<const std::string&>(), value, options))
      continue;
    if (!value.empty())
      record[name] = std::move(value);
    else if (sent != nullptr || options.replaces(field.tag))
      record.erase(name);
  }
  return record;
}

json ContactClass::check(const json& record) const {
  if (!record.is_object()) throw ItemError("a contact must be a JSON object");
  json checked = json::object();
  for (const auto& [name, value] : record.items()) {
    const ContactField* field = fieldOfName(name);
    if (field == nullptr) throw ItemError("a contact has no field " + name);
    if (isComputed(field->kind) || value.is_null()) continue;
    if (isList(field->kind)) {
      json list = checkedList(*field, value);
      if (!list.empty()) checked[name] = std::move(list);
    } else if (!value.is_string()) {
      throw ItemError(name + " must be a text");
    } else if (!value.get_ref<const std::string&>().empty()) {
      checked[name] = checkedText(*field, value.get_ref<const std::string&>());
    }
  }
  return checked;
}

json ContactClass::view(const json& record) const {
  json shown = record;
  const auto body = record.find("Body");
  if (body == record.end()) return shown;
  shown["BodySize"] = body->get_ref<const std::string&>().size();
  shown["BodyTruncated"] = false;
  return shown;
}

}  // namespace demoserver
