#include "formats/EventJson.h"

#include <fmt/core.h>
#include <utility>

#include "support/Error.h"

namespace airsync {

namespace {

using namespace AIRSYNC_STACK;
using Kind = JsonNode::Kind;

constexpr const char* kRecurrence = "Recurrence";
constexpr const char* kExceptions = "Exceptions";

// A part of the record, of which one field has to be there.
template <typename Record>
FieldValues<Record> readPart(const JsonTree& tree, const JsonNode& node, const std::string& name,
                             const char* needed) {
  if (node.kind != Kind::object) {
    tree.fail(node.at, fmt::format("{} must be an object, and this is {}", name, node.found()));
  }
  const auto patch = readFields<Record>(tree, node, name + ".", [](const JsonMember&) { return false; });
  const auto index = FieldValues<Record>::field(needed);
  for (const auto& entry : patch.entries) {
    if (entry.field != index || std::holds_alternative<std::monostate>(entry.value)) continue;
    FieldValues<Record> values;
    patch.applyTo(values);
    return values;
  }
  tree.fail(node.at, fmt::format("{} needs {}", name, needed));
}

std::optional<Recurrence> readRecurrence(const JsonTree& tree, const JsonNode& node) {
  if (node.kind == Kind::null) return std::nullopt;
  return readPart<AS_RECURRENCE_T>(tree, node, kRecurrence, "Type");
}

std::vector<EventException> readExceptions(const JsonTree& tree, const JsonNode& node) {
  std::vector<EventException> exceptions;
  if (node.kind == Kind::null) return exceptions;
  if (node.kind != Kind::array) {
    tree.fail(node.at,
              fmt::format("{} must be an array of objects, and this is {}", kExceptions, node.found()));
  }
  for (const JsonNode& entry : node.entries) {
    const std::string name = fmt::format("{}[{}]", kExceptions, exceptions.size());
    exceptions.push_back(readPart<AS_EXCEPTION_T>(tree, entry, name, "ExceptionStartTime"));
  }
  return exceptions;
}

[[noreturn]] void refuse(const std::string& subject, const std::string& cause, const std::string& advice) {
  throw Error({.kind = ErrorKind::item,
               .operation = "checking",
               .subject = subject,
               .cause = cause,
               .advice = advice});
}

template <typename Values>
void checkOrder(const Values& values, const std::string& subject) {
  const auto* start = values.template get<UtcTime>("StartTime");
  const auto* end = values.template get<UtcTime>("EndTime");
  // Texts of valid times are in the order of the times.
  if (start == nullptr || end == nullptr || start->text() <= end->text()) return;
  refuse(subject, fmt::format("it ends ({}) before it starts ({})", end->text(), start->text()),
         "Correct StartTime or EndTime; nothing was changed.");
}

void checkThere(const Event& event, const char* field) {
  if (event.fields.get<UtcTime>(field) != nullptr) return;
  refuse("the event", fmt::format("it has no {}", field),
         "Give it one, like \"2026-11-21T09:00:00Z\"; nothing was changed.");
}

}  // namespace

bool EventPatch::names(std::string_view name) const {
  if (name == kRecurrence) return recurrence.has_value();
  if (name == kExceptions) return exceptions.has_value();
  return fields.names(name);
}

void EventPatch::applyTo(Event& event) const {
  fields.applyTo(event.fields);
  if (recurrence) event.recurrence = *recurrence;
  if (exceptions) event.exceptions = *exceptions;
}

EventPatch parseEventPatch(std::string_view json) {
  const JsonTree tree(json);
  requireRecord(tree, tree.root(), "\"Subject\": \"Lunch\"");
  EventPatch patch;
  patch.fields = readFields<AS_CALENDAR_T>(tree, tree.root(), "", [&tree, &patch](const JsonMember& member) {
    if (member.name == kRecurrence) {
      patch.recurrence = readRecurrence(tree, member.value);
    } else if (member.name == kExceptions) {
      patch.exceptions = readExceptions(tree, member.value);
    } else {
      return false;
    }
    return true;
  });
  return patch;
}

void checkInvitations(const FieldValues<AIRSYNC_STACK::AS_CALENDAR_T>& fields) {
  const auto* people = fields.get<std::vector<Attendee>>("Attendees");
  if (people == nullptr) return;
  for (const Attendee& person : *people) {
    if (!person.email.empty()) continue;
    refuse("the event", fmt::format("its attendee \"{}\" has no e-mail address", person.name),
           "Give the attendee an Email, or leave the name out; nothing was changed.");
  }
}

void checkEvent(const Event& event, const EventPatch& patch, bool isNew) {
  for (const char* field : {"StartTime", "EndTime"}) {
    if (isNew || patch.names(field)) checkThere(event, field);
  }
  if (patch.names("StartTime") || patch.names("EndTime")) checkOrder(event.fields, "the event");
  if (isNew || patch.names("Attendees")) checkInvitations(event.fields);
  if (!patch.recurrence && !patch.exceptions) return;
  if (!event.recurrence && !event.exceptions.empty()) {
    refuse("the event", "it has exceptions but no recurrence that they could be exceptions of",
           "Give it a Recurrence, or set Exceptions to null; nothing was changed.");
  }
  for (std::size_t i = 0; i < event.exceptions.size(); ++i) {
    checkOrder(event.exceptions[i], fmt::format("the event's {}[{}]", kExceptions, i));
  }
}

nlohmann::ordered_json recurrenceToJson(const Recurrence& recurrence) { return fieldsToJson(recurrence); }

nlohmann::ordered_json eventToJson(const Event& event) {
  nlohmann::ordered_json record = fieldsToJson(event.fields);
  if (event.recurrence) record[kRecurrence] = recurrenceToJson(*event.recurrence);
  for (const EventException& exception : event.exceptions) {
    record[kExceptions].push_back(fieldsToJson(exception));
  }
  return record;
}

}  // namespace airsync
