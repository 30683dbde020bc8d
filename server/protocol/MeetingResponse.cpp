#include "protocol/MeetingResponse.h"

#include <array>
#include <optional>

#include "items/ItemClass.h"
#include "mime/Message.h"
#include "protocol/Status.h"
#include "support/Json.h"
#include "support/Numbers.h"

namespace demoserver {
namespace {

using nlohmann::json;

constexpr std::size_t kMaxRequests = 100;
constexpr int kTentative = 1;        // BusyStatus
constexpr int kBusy = 2;             // BusyStatus
constexpr int kReceivedMeeting = 3;  // MeetingStatus

// What event and request have under the same names.
constexpr std::array<const char*, 10> kSharedFields = {
    "Timezone", "StartTime",   "EndTime",     "DtStamp",    "Location",
    "Reminder", "AllDayEvent", "Sensitivity", "Categories", "Recurrence"};

void setText(json& record, const char* name, const std::string& text) {
  if (!text.empty()) record[name] = text;
}

const std::string& nameOf(const Mailbox& mailbox) {
  return mailbox.name.empty() ? mailbox.address : mailbox.name;
}

// The same for every answer to the same request. An occurrence of a series is a meeting of its own.
std::string uidOf(const json& mail, const json& meeting) {
  std::string uid = textOf(meeting, "GlobalObjId");
  if (uid.empty())
    uid = textOf(meeting, "Organizer") + "/" + textOf(meeting, "StartTime") + "/" + textOf(mail, "Subject");
  const std::string occurrence = textOf(meeting, "RecurrenceId");
  return occurrence.empty() ? uid : uid + "/" + occurrence;
}

json attendeesOf(const json& mail) {
  json attendees = json::array();
  for (const char* field : {"To", "Cc"})
    for (const Mailbox& mailbox : parseMailboxes(textOf(mail, field)))
      if (!mailbox.address.empty())
        attendees.push_back({{"Name", nameOf(mailbox)}, {"Email", mailbox.address}});
  return attendees;
}

std::optional<Item> findRequest(State& state, const std::string& folder, const std::string& id) {
  auto item = state.items.find(folder, id);
  if (!item || item->gone) item = state.moves.movedFrom(folder, id);
  if (!item || item->record.find("MeetingRequest") == item->record.end()) return std::nullopt;
  return item;
}

void putAway(State& state, const Item& request) {
  const auto deleted = state.folders.findByType(kDeletedItems);
  if (deleted && deleted->id != request.folder) state.moves.move(request, deleted->id);
}

// The id of the calendar item; empty when there is to be none.
std::string book(State& state, const std::string& calendar, const Item& request, MeetingAnswer answer) {
  const json event = eventOf(request.record, answer);
  const auto before = state.items.findByText(calendar, "UID", textOf(event, "UID"));
  if (answer == MeetingAnswer::Decline) {
    if (before) state.items.remove(before->id);
    return {};
  }
  const json checked = itemClassOf(kCalendar)->check(event);
  if (!before) return state.items.add(calendar, checked).id;
  if (before->record != checked) state.items.replace(before->id, checked);
  return before->id;
}

struct Outcome {
  int status;
  std::string event = {};
};

Outcome respond(State& state, const Element& each) {
  const int answer = numberOr(each.textOf("UserResponse"), 0);
  const auto request =
      findRequest(state, std::string(each.textOf("CollectionId")), std::string(each.textOf("ReqId")));
  const bool known =
      answer >= static_cast<int>(MeetingAnswer::Accept) && answer <= static_cast<int>(MeetingAnswer::Decline);
  if (!request || !known) return {kInvalidMeetingRequest};
  const auto calendar = state.folders.findByType(kCalendar);
  if (!calendar) return {kMailboxFailure};
  try {
    const std::string event = book(state, calendar->id, *request, static_cast<MeetingAnswer>(answer));
    putAway(state, *request);
    return {kSuccess, event};
  } catch (const ItemError&) {
    return {kMeetingFailure};
  }
}

}  // namespace

json eventOf(const json& mail, MeetingAnswer answer) {
  const json& meeting = mail.at("MeetingRequest");
  json event = json::object();
  for (const char* name : kSharedFields)
    if (const auto found = meeting.find(name); found != meeting.end()) event[name] = *found;
  event["BusyStatus"] = answer == MeetingAnswer::Tentative ? kTentative : meeting.value("BusyStatus", kBusy);
  event["MeetingStatus"] = kReceivedMeeting;
  event["UID"] = uidOf(mail, meeting);
  const std::string organizer = textOf(meeting, "Organizer");
  const auto mailboxes = parseMailboxes(organizer.empty() ? textOf(mail, "From") : organizer);
  setText(event, "OrganizerName", mailboxes.empty() ? organizer : nameOf(mailboxes.front()));
  if (!mailboxes.empty()) setText(event, "OrganizerEmail", mailboxes.front().address);
  setText(event, "Subject", textOf(mail, "Subject"));
  setText(event, "Body", textOf(mail, "Body"));
  if (json attendees = attendeesOf(mail); !attendees.empty()) event["Attendees"] = std::move(attendees);
  return event;
}

Element runMeetingResponse(State& state, const Element& request) {
  if (!request.is(Page::Meeting, "MeetingResponse"))
    throw BadRequest("the root of a MeetingResponse request must be MeetingResponse");
  if (request.children.size() > kMaxRequests) throw BadRequest("MeetingResponse holds too many answers");
  Element response(Page::Meeting, "MeetingResponse");
  for (const Element& each : request.children) {
    if (!each.is(Page::Meeting, "Request")) throw BadRequest("MeetingResponse may hold nothing but Request");
    if (each.textOf("ReqId").empty()) throw BadRequest("a Request has no ReqId");
    const Outcome outcome = respond(state, each);
    Element& result = response.add("Result");
    result.add("ReqId", std::string(each.textOf("ReqId")));
    result.add("Status", std::to_string(outcome.status));
    if (!outcome.event.empty()) result.add("CalId", outcome.event);
  }
  return response;
}

}  // namespace demoserver
