#include "items/ItemFields.h"

#include <charconv>
#include <optional>

#include "items/ItemClass.h"
#include "support/Base64.h"
#include "support/Dates.h"
#include "support/Utf8.h"

namespace demoserver {
namespace {

using nlohmann::json;

[[noreturn]] void fail(const ItemField& field, const std::string& what) {
  throw ItemError(std::string(field.name) + " " + what);
}

bool isComputed(FieldForm form) { return form == FieldForm::BodySize || form == FieldForm::Truncated; }

const std::string& textOf(const json& value) { return value.get_ref<const std::string&>(); }

std::string wireText(const ItemField& field, const json& value) {
  switch (field.form) {
    case FieldForm::Number:
      return std::to_string(value.get<std::int32_t>());
    case FieldForm::Flag:
      return value.get<bool>() ? "1" : "0";
    case FieldForm::Time:
      return normalisedDate(textOf(value));
    case FieldForm::CompactTime:
      return compactTime(textOf(value));
    default:
      return textOf(value);
  }
}

void encodeBody(Element& parent, Page page, std::span<const ItemField> fields, const std::string& body,
                std::size_t limit) {
  const std::string_view sent = utf8Head(body, limit);
  for (const ItemField& field : fields) {
    if (field.form == FieldForm::Body)
      parent.children.emplace_back(page, field.tag, std::string(sent));
    else if (field.form == FieldForm::BodySize)
      parent.children.emplace_back(page, field.tag, std::to_string(body.size()));
    else if (field.form == FieldForm::Truncated)
      parent.children.emplace_back(page, field.tag, sent.size() < body.size() ? "1" : "0");
  }
}

void encodeContainer(Element& parent, Page page, const ItemField& field, const json& value) {
  Element& container = parent.add(Element(page, field.tag));
  if (field.form == FieldForm::Record)
    return encodeFields(container, page, field.fields, value, std::string::npos);
  for (const json& entry : value) {
    if (field.form == FieldForm::List)
      container.add(field.entryTag, textOf(entry));
    else
      encodeFields(container.add(field.entryTag), page, field.fields, entry, std::string::npos);
  }
}

std::string checkedText(const ItemField& field, const std::string& text) {
  if (!isItemText(text)) fail(field, "holds control characters or is not UTF-8");
  return text;
}

std::string checkedTime(const ItemField& field, const std::string& time) {
  if (time.empty()) fail(field, "is not a time such as 2026-11-21T09:00:00Z");
  return time;
}

std::string checkedZone(const ItemField& field, const std::string& text) {
  const auto block = base64Decoded(text);
  if (!block || block->size() != kZoneSize) fail(field, "is not the base64 of a block of 172 bytes");
  return text;
}

std::int32_t numberIn(const ItemField& field, std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size())
    fail(field, "is not a whole number of 32 bits");
  return number;
}

json decodeText(const ItemField& field, const std::string& text) {
  switch (field.form) {
    case FieldForm::Number:
      return numberIn(field, text);
    case FieldForm::Flag:
      return numberIn(field, text) != 0;
    case FieldForm::Time:
      return checkedTime(field, itemTime(text));
    case FieldForm::CompactTime:
      return checkedTime(field, itemTimeOfCompact(text));
    case FieldForm::Zone:
      return checkedZone(field, text);
    default:
      return checkedText(field, text);
  }
}

std::optional<std::string> plainText(const ItemField& field, const Element& element) {
  if (!element.children.empty()) fail(field, "holds elements where a text belongs");
  if (!element.text || element.text->empty()) return std::nullopt;
  return element.text;
}

void refuseMissing(const json& record, std::span<const ItemField> fields, const std::string& what) {
  for (const ItemField& field : fields)
    if (field.required && !record.contains(field.name))
      throw ItemError(what + " without " + std::string(field.name) + " is none");
}

json decodeRecord(const Element& element, const ItemField& container) {
  refuseUnknown(element, element.page, container.fields);
  json record = json::object();
  for (const ItemField& field : container.fields) {
    const Element* sent = element.child(field.tag);
    if (sent == nullptr) continue;
    json value = decodeField(*sent, field);
    if (!value.is_null()) record[std::string(field.name)] = std::move(value);
  }
  refuseMissing(record, container.fields, std::string(element.name));
  return record;
}

json decodeEntries(const Element& element, const ItemField& field) {
  if (element.children.size() > kMaxEntries) fail(field, "has more than 1000 entries");
  json entries = json::array();
  for (const Element& entry : element.children) {
    if (!entry.is(element.page, field.entryTag)) fail(field, "may not hold " + std::string(entry.name));
    if (field.form == FieldForm::List) {
      if (const auto text = plainText(field, entry)) entries.push_back(checkedText(field, *text));
    } else {
      json record = decodeRecord(entry, field);
      if (!record.empty()) entries.push_back(std::move(record));
    }
  }
  return entries.empty() ? json() : entries;
}

json checkEntries(const json& value, const ItemField& field) {
  if (!value.is_array()) fail(field, "must be an array");
  if (value.size() > kMaxEntries) fail(field, "has more than 1000 entries");
  json entries = json::array();
  for (const json& entry : value) {
    if (field.form == FieldForm::Records) {
      entries.push_back(checkFields(entry, field.fields, "an entry of " + std::string(field.name)));
    } else {
      if (!entry.is_string()) fail(field, "must be an array of texts");
      if (!textOf(entry).empty()) entries.push_back(checkedText(field, textOf(entry)));
    }
  }
  return entries.empty() ? json() : entries;
}

json checkNumber(const json& value, const ItemField& field) {
  const bool whole = value.is_number_integer();
  // An unsigned number beyond 63 bits would wrap.
  if (!whole || (value.is_number_unsigned() && value.get<std::uint64_t>() > INT32_MAX) ||
      value.get<std::int64_t>() < INT32_MIN || value.get<std::int64_t>() > INT32_MAX)
    fail(field, "must be a whole number of 32 bits");
  return value.get<std::int32_t>();
}

// Texts, and what is written as one.
json checkText(const json& value, const ItemField& field) {
  if (!value.is_string()) fail(field, "must be a text");
  const std::string& text = textOf(value);
  if (text.empty()) return {};
  if (field.form == FieldForm::Time || field.form == FieldForm::CompactTime)
    return checkedTime(field, itemTime(text));
  return field.form == FieldForm::Zone ? checkedZone(field, text) : checkedText(field, text);
}

json checkField(const json& value, const ItemField& field) {
  switch (field.form) {
    case FieldForm::BodySize:
    case FieldForm::Truncated:
      return {};
    case FieldForm::Number:
      return checkNumber(value, field);
    case FieldForm::Flag:
      if (!value.is_boolean()) fail(field, "must be true or false");
      return value;
    case FieldForm::Record:
      return checkFields(value, field.fields, std::string(field.name));
    case FieldForm::List:
    case FieldForm::Records:
      return checkEntries(value, field);
    default:
      return checkText(value, field);
  }
}

const ItemField* fieldNamed(std::span<const ItemField> fields, std::string_view name) {
  for (const ItemField& field : fields)
    if (field.name == name) return &field;
  return nullptr;
}

}  // namespace

void encodeFields(Element& parent, Page page, std::span<const ItemField> fields, const json& record,
                  std::size_t bodyLimit) {
  for (const ItemField& field : fields) {
    const auto value = record.find(field.name);
    if (isComputed(field.form) || value == record.end()) continue;
    if (field.form == FieldForm::Body)
      encodeBody(parent, page, fields, textOf(*value), bodyLimit);
    else if (field.form >= FieldForm::List)
      encodeContainer(parent, page, field, *value);
    else
      parent.children.emplace_back(page, field.tag, wireText(field, *value));
  }
}

void refuseUnknown(const Element& parent, Page page, std::span<const ItemField> fields,
                   std::string_view ignored) {
  const auto isField = [&](const Element& child) {
    for (const ItemField& field : fields)
      if (field.tag == child.name) return true;
    return ignored.find(std::string(child.name) + " ") != std::string_view::npos;
  };
  for (const Element& child : parent.children)
    if (child.page != page || !isField(child))
      throw ItemError(std::string(parent.name) + " may not hold " + std::string(child.name));
}

json decodeField(const Element& element, const ItemField& field) {
  if (isComputed(field.form)) return {};
  if (field.form == FieldForm::Record)
    return element.children.empty() ? json() : decodeRecord(element, field);
  if (field.form >= FieldForm::List) return decodeEntries(element, field);
  const auto text = plainText(field, element);
  return text ? decodeText(field, *text) : json();
}

json checkFields(const json& record, std::span<const ItemField> fields, const std::string& what) {
  if (!record.is_object()) throw ItemError(what + " must be a JSON object");
  json checked = json::object();
  for (const auto& [name, value] : record.items()) {
    const ItemField* field = fieldNamed(fields, name);
    if (field == nullptr) throw ItemError(std::string(what).append(" has no field ").append(name));
    if (value.is_null()) continue;
    json result = checkField(value, *field);
    if (!result.is_null()) checked[name] = std::move(result);
  }
  refuseMissing(checked, fields, what);
  return checked;
}

void showBody(json& record, std::span<const ItemField> fields) {
  const auto body = record.find("Body");
  if (body == record.end()) return;
  const std::size_t size = textOf(*body).size();
  for (const ItemField& field : fields) {
    if (field.form == FieldForm::BodySize) record[std::string(field.name)] = size;
    if (field.form == FieldForm::Truncated) record[std::string(field.name)] = false;
  }
}

}  // namespace demoserver
