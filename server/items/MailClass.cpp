#include "items/MailClass.h"

#include "items/CalendarClass.h"
#include "items/FilterWindow.h"
#include "items/MailFields.h"

namespace demoserver {
namespace {

using nlohmann::json;

constexpr int kNormalImportance = 1;
constexpr std::array<ItemField, 1> kChangeable = {{{"Read", "Read", FieldForm::Flag}}};

constexpr std::array<FilterSpan, 5> kFilters = {{
    {1, std::chrono::days(1), {}},
    {2, std::chrono::days(3), {}},
    {3, std::chrono::days(7), {}},
    {4, std::chrono::days(14), {}},
    {5, {}, std::chrono::months(1)},
}};

}  // namespace

Element MailClass::encode(const json& record, const TransferOptions& options) const {
  Element data(Page::Sync, "ApplicationData");
  encodeFields(data, Page::Mail, kMailFields, record, options.bodyLimit);
  return data;
}

std::optional<Element> MailClass::encodeState(const json& record) const {
  Element data(Page::Sync, "ApplicationData");
  encodeFields(data, Page::Mail, kChangeable, record, std::string::npos);
  return data;
}

json MailClass::decode(const Element& data, const json& previous, const TransferOptions&) const {
  if (previous.empty()) throw ItemError("clients add no mails");
  refuseUnknown(data, Page::Mail, kChangeable);
  const Element* sent = data.child(Page::Mail, "Read");
  json read = sent == nullptr ? json() : decodeField(*sent, kChangeable.front());
  if (read.is_null()) throw ItemError("a change of a mail must hold Read");
  json record = previous;
  record["Read"] = std::move(read);
  return record;
}

json MailClass::check(const json& record) const {
  json checked = checkFields(record, kMailFields, "a mail");
  if (const auto request = checked.find("MeetingRequest"); request != checked.end())
    checkRecurrence(*request);
  if (!checked.contains("Importance")) checked["Importance"] = kNormalImportance;
  if (!checked.contains("Read")) checked["Read"] = false;
  return checked;
}

json MailClass::view(const json& record) const {
  json shown = record;
  showBody(shown, kMailFields);
  return shown;
}

std::int64_t MailClass::windowStart(int filter, Moment now) const {
  return startOfWindow(kFilters, filter, now);
}

}  // namespace demoserver
