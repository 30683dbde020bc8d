#include "items/CalendarClass.h"

#include "items/CalendarFields.h"
#include "items/FilterWindow.h"
#include "support/Utf8.h"

namespace demoserver {
namespace {

using nlohmann::json;

// Tags that clients may send, and that mean nothing here.
constexpr std::string_view kIgnored = "CompressedRtf ";

constexpr std::array<FilterSpan, 4> kFilters = {{
    {4, std::chrono::days(14), {}},
    {5, {}, std::chrono::months(1)},
    {6, {}, std::chrono::months(3)},
    {7, {}, std::chrono::months(6)},
}};

bool isEcho(const ItemField& field, const json& record, const json& value, const TransferOptions& options) {
  const auto old = record.find(field.name);
  if (field.form != FieldForm::Body || old == record.end()) return false;
  const std::string_view sent = value.is_string() ? value.get_ref<const std::string&>() : std::string_view();
  return sent == utf8Head(old->get_ref<const std::string&>(), options.bodyLimit);
}

bool isOrganizer(const ItemField& field) { return field.tag.starts_with("Organizer"); }

}  // namespace

void checkRecurrence(const json& record) {
  const auto rule = record.find("Recurrence");
  if (rule == record.end()) return;
  const int type = rule->at("Type").get<int>();
  if (type < 0 || type > 6 || type == 4)
    throw ItemError("Recurrence has the unknown Type " + std::to_string(type));
}

Element CalendarClass::encode(const json& record, const TransferOptions& options) const {
  Element data(Page::Sync, "ApplicationData");
  encodeFields(data, Page::Calendar, kCalendarFields, record, options.bodyLimit);
  return data;
}

json CalendarClass::decode(const Element& data, const json& previous, const TransferOptions& options) const {
  refuseUnknown(data, Page::Calendar, kCalendarFields, kIgnored);
  json record = previous;
  for (const ItemField& field : kCalendarFields) {
    const Element* sent = data.child(Page::Calendar, field.tag);
    json value = sent == nullptr ? json() : decodeField(*sent, field);
    const bool mayStay = sent != nullptr || !options.clearsUnnamed;
    if (mayStay && isEcho(field, record, value, options)) continue;
    if (!value.is_null())
      record[std::string(field.name)] = std::move(value);
    else if (sent != nullptr || (options.replaces(field.tag) && !(mayStay && isOrganizer(field))))
      record.erase(std::string(field.name));
  }
  checkRecurrence(record);
  return record;
}

json CalendarClass::check(const json& record) const {
  json checked = checkFields(record, kCalendarFields, "an event");
  checkRecurrence(checked);
  return checked;
}

json CalendarClass::view(const json& record) const {
  json shown = record;
  showBody(shown, kCalendarFields);
  return shown;
}

std::int64_t CalendarClass::windowStart(int filter, Moment now) const {
  return startOfWindow(kFilters, filter, now);
}

}  // namespace demoserver
