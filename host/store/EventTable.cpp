#include "store/EventTable.h"

#include <array>
#include <random>
#include <string>
#include <utility>

#include "store/EventRecord.h"
#include "store/FieldCover.h"

namespace airsync {
namespace {

using namespace AIRSYNC_STACK;

constexpr FieldPlace kEvents = {.table = "event", .entries = "event_category", .attendees = "event_attendee"};
constexpr FieldPlace kRecurrences = {.table = "event_recurrence"};
constexpr FieldPlace kExceptions = {.table = "event_exception",
                                    .position = "position",
                                    .entries = "event_exception_category",
                                    .listOwner = "exception"};

// Fields that a server sets, cuts or writes in a way of its own.
constexpr std::array<std::string_view, 7> kServersOwn = {
    "Body", "BodyTruncated", "DtStamp", "Timezone", "OrganizerName", "OrganizerEmail", "UID"};

// Fields that come out differently without anybody's edit, and those that a server fills in.
constexpr std::array<std::string_view, 2> kStamps = {"BodyTruncated", "DtStamp"};
constexpr std::array<std::string_view, 7> kFilledIn = {
    "UID", "OrganizerName", "OrganizerEmail", "MeetingStatus", "Timezone", "BusyStatus", "Sensitivity"};

// 128 random bits, as most calendars write them.
std::string freshUid() {
  constexpr const char* kDigits = "0123456789ABCDEF";
  constexpr std::size_t kLength = 32;
  std::random_device source;
  std::uniform_int_distribution<std::size_t> digit(0, 15);
  std::string uid;
  while (uid.size() < kLength) uid += kDigits[digit(source)];
  return uid;
}

bool covers(const Event& theirs, const Event& ours) {
  const Cover fields = coverOf(ours.fields, theirs.fields, kServersOwn);
  if (fields != Cover::yes || ours.exceptions.size() != theirs.exceptions.size() ||
      ours.recurrence.has_value() != theirs.recurrence.has_value()) {
    return false;
  }
  if (ours.recurrence && coverOf(*ours.recurrence, *theirs.recurrence, {}) == Cover::no) return false;
  for (std::size_t index = 0; index < ours.exceptions.size(); ++index) {
    if (coverOf(ours.exceptions[index], theirs.exceptions[index], kServersOwn) == Cover::no) return false;
  }
  return true;
}

}  // namespace

EventTable::EventTable(Database& database)
    : ClassContents(database, "event"),
      events_(database, kEvents),
      recurrences_(database, kRecurrences),
      exceptions_(database, kExceptions) {}

void EventTable::insert(ItemNumber item, Version version, const Event& event) {
  events_.insert(item, version, event.fields);
  if (event.recurrence) recurrences_.insert(item, version, *event.recurrence);
  std::int64_t position = 0;
  for (const auto& exception : event.exceptions) exceptions_.insert(item, version, exception, position++);
}

Event EventTable::get(ItemNumber item, Version version) {
  Event event;
  for (auto& fields : events_.load(item, version)) event.fields = std::move(fields);
  for (auto& recurrence : recurrences_.load(item, version)) event.recurrence = std::move(recurrence);
  event.exceptions = exceptions_.load(item, version);
  return event;
}

std::unique_ptr<OutgoingRecord> EventTable::read(ItemNumber item, Version version) {
  return std::make_unique<OwnedRecord<EventRecord>>(get(item, version));
}

bool EventTable::covered(ItemNumber item, Version version, const void* record) {
  return covers(valueFrom(record), get(item, version));
}

bool EventTable::sameValue(const Event& ours, const Event& theirs) const {
  if (ours.exceptions.size() != theirs.exceptions.size() ||
      ours.recurrence.has_value() != theirs.recurrence.has_value()) {
    return false;
  }
  const Unlike unlike = {
      .stamps = kStamps,
      .filledIn = kFilledIn,
      .body = bodyWasCut(ours.fields) || bodyWasCut(theirs.fields),
  };
  if (!sameFields(ours.fields, theirs.fields, unlike)) return false;
  if (ours.recurrence && !sameFields(*ours.recurrence, *theirs.recurrence, {})) return false;
  for (std::size_t index = 0; index < ours.exceptions.size(); ++index) {
    if (!sameFields(ours.exceptions[index], theirs.exceptions[index], unlike)) return false;
  }
  return true;
}

std::string EventTable::identity(const void* record) const {
  const auto& event = *static_cast<const AS_CALENDAR_T*>(record);
  return event.UID == nullptr ? std::string() : event.UID;
}

void EventTable::identify(ItemValue& value, bool anew) const {
  Event event = valueOf<Event>(value);
  const auto* uid = event.fields.get<std::string>("UID");
  if (!anew && uid != nullptr && !uid->empty()) return;
  event.fields.set("UID", freshUid());
  value = std::move(event);
}

std::string EventTable::likeness(const void* record) {
  const auto& event = *static_cast<const AS_CALENDAR_T*>(record);
  std::string text;
  for (const char* field : {event.Subject, event.Location}) {
    if (field != nullptr) text += field;
    text += '\0';
  }
  if (event.StartTime != nullptr) text += UtcTime::fromTm(*event.StartTime).text();
  return text;
}

const std::string& EventTable::summaryColumns() const {
  static const std::string columns =
      "event.\"Subject\", event.\"Location\", event.\"StartTime\", event.\"EndTime\", "
      "event.\"AllDayEvent\", EXISTS (SELECT 1 FROM event_recurrence WHERE "
      "event_recurrence.item_id = event.item_id AND event_recurrence.version = event.version)";
  return columns;
}

ItemDetails EventTable::summary(const Query& query, int column) const {
  return EventSummary{.subject = query.text(column),
                      .location = query.text(column + 1),
                      .start = UtcTime::parse(query.text(column + 2)),
                      .end = UtcTime::parse(query.text(column + 3)),
                      .allDay = query.integer(column + 4) != 0,
                      .recurring = query.integer(column + 5) != 0};
}

}  // namespace airsync
