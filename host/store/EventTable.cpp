#include "store/EventTable.h"

#include <array>

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

bool EventTable::covered(ItemNumber item, const void* record) {
  return covers(valueFrom(record), get(item, Version::shown));
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
