#include "protocol/MeetingResponse.h"

#include <gtest/gtest.h>

#include "protocol/Status.h"
#include "support/Mailroom.h"

namespace demoserver {
namespace {

using nlohmann::json;

const json kMeeting = {{"StartTime", "2026-12-01T09:00:00Z"},
                       {"EndTime", "2026-12-01T10:00:00Z"},
                       {"DtStamp", "2026-11-20T08:00:00Z"},
                       {"Location", "Room 7"},
                       {"Reminder", 15},
                       {"AllDayEvent", false},
                       {"BusyStatus", 3},
                       {"Sensitivity", 2},
                       {"Categories", {"Work", "Plans"}},
                       {"Recurrence", {{"Type", 1}, {"Interval", 1}, {"DayOfWeek", 4}}},
                       {"InstanceType", 1},
                       {"Organizer", "\"Ada Lovelace\" <ada@example.org>"},
                       {"ResponseRequested", 1},
                       {"GlobalObjId", "BAAAAIIA4AB0xbcQ"}};

json mailWith(const json& meeting) {
  return {{"From", "Ada Lovelace <ada@example.org>"},
          {"To", "demo@example.com, Bob <bob@example.org>"},
          {"Cc", "carol@example.org"},
          {"Subject", "Plans"},
          {"Body", "Come!"},
          {"Importance", 1},
          {"Read", false},
          {"MessageClass", "IPM.Schedule.Meeting.Request"},
          {"MeetingRequest", meeting}};
}

class DemoMeetingResponse : public Mailroom {
 protected:
  Lines answer(const std::string& response, const std::string& id, const std::string& folder = "f2") {
    Element request(Page::Meeting, "MeetingResponse");
    Element& each = request.add("Request");
    each.add("UserResponse", response);
    each.add("CollectionId", folder);
    each.add("ReqId", id);
    const Element result = runMeetingResponse(state, request);
    EXPECT_TRUE(result.is(Page::Meeting, "MeetingResponse"));
    return linesOf(&result);
  }
  std::string invite(const json& meeting = kMeeting) { return state.items.add("f2", mailWith(meeting)).id; }
  std::string event(std::size_t index = 0) { return state.items.list("f8").at(index).id; }
};

TEST_F(DemoMeetingResponse, MakesAnEventOfEveryField) {
  const json expected = {
      {"StartTime", "2026-12-01T09:00:00Z"},
      {"EndTime", "2026-12-01T10:00:00Z"},
      {"DtStamp", "2026-11-20T08:00:00Z"},
      {"Location", "Room 7"},
      {"Reminder", 15},
      {"AllDayEvent", false},
      {"BusyStatus", 3},
      {"Sensitivity", 2},
      {"Categories", {"Work", "Plans"}},
      {"Recurrence", {{"Type", 1}, {"Interval", 1}, {"DayOfWeek", 4}}},
      {"OrganizerName", "Ada Lovelace"},
      {"OrganizerEmail", "ada@example.org"},
      {"Subject", "Plans"},
      {"Body", "Come!"},
      {"UID", "BAAAAIIA4AB0xbcQ"},
      {"MeetingStatus", 3},
      {"Attendees", json::array({{{"Name", "demo@example.com"}, {"Email", "demo@example.com"}},
                                 {{"Name", "Bob"}, {"Email", "bob@example.org"}},
                                 {{"Name", "carol@example.org"}, {"Email", "carol@example.org"}}})}};
  EXPECT_EQ(eventOf(mailWith(kMeeting), MeetingAnswer::Accept), expected);
}

TEST_F(DemoMeetingResponse, TentativeMakesATentativeEvent) {
  EXPECT_EQ(eventOf(mailWith(kMeeting), MeetingAnswer::Tentative)["BusyStatus"], 1);
  json meeting = kMeeting;
  meeting.erase("BusyStatus");
  EXPECT_EQ(eventOf(mailWith(meeting), MeetingAnswer::Tentative)["BusyStatus"], 1);
  EXPECT_EQ(eventOf(mailWith(meeting), MeetingAnswer::Accept)["BusyStatus"], 2);
}

TEST_F(DemoMeetingResponse, AnOccurrenceIsAMeetingOfItsOwn) {
  json meeting = kMeeting;
  meeting["RecurrenceId"] = "2026-12-08T09:00:00Z";
  EXPECT_EQ(eventOf(mailWith(meeting), MeetingAnswer::Accept)["UID"],
            "BAAAAIIA4AB0xbcQ/2026-12-08T09:00:00Z");
}

TEST_F(DemoMeetingResponse, AMeetingWithoutIdentityGetsOneThatStays) {
  json meeting = kMeeting;
  meeting.erase("GlobalObjId");
  meeting.erase("Organizer");
  const json made = eventOf(mailWith(meeting), MeetingAnswer::Accept);
  EXPECT_EQ(made["UID"], "/2026-12-01T09:00:00Z/Plans");
  EXPECT_EQ(made["OrganizerName"], "Ada Lovelace");
  EXPECT_EQ(made, eventOf(mailWith(meeting), MeetingAnswer::Accept));
}

TEST_F(DemoMeetingResponse, AcceptingAnswersTheEventAndPutsTheRequestAway) {
  const std::string id = invite();
  const Lines lines = answer("1", id);
  EXPECT_EQ(lines, Lines{"Result ReqId=" + id + " Status=1 CalId=" + event()});
  EXPECT_EQ(state.items.count("f2"), 0);
  EXPECT_EQ(records("f4").at(0)["Subject"], "Plans");
  EXPECT_EQ(records("f8").at(0)["BusyStatus"], 3);
}

TEST_F(DemoMeetingResponse, AnsweringTwiceMakesOneEvent) {
  const std::string id = invite();
  const Lines first = answer("1", id);
  EXPECT_EQ(answer("1", id), first);
  EXPECT_EQ(answer("2", id), first);
  EXPECT_EQ(state.items.count("f8"), 1);
  EXPECT_EQ(state.items.count("f4"), 1);
  EXPECT_EQ(records("f8").at(0)["BusyStatus"], 1);
  const std::string again = invite();
  EXPECT_EQ(answer("1", again), Lines{"Result ReqId=" + again + " Status=1 CalId=" + event()});
  EXPECT_EQ(state.items.count("f8"), 1);
}

TEST_F(DemoMeetingResponse, DecliningTakesTheEventOutAgain) {
  const std::string id = invite();
  answer("1", id);
  EXPECT_EQ(answer("3", id), Lines{"Result ReqId=" + id + " Status=1"});
  EXPECT_EQ(state.items.count("f8"), 0);
  const std::string other = invite();
  EXPECT_EQ(answer("3", other), Lines{"Result ReqId=" + other + " Status=1"});
  EXPECT_EQ(state.items.count("f8"), 0);
  EXPECT_EQ(state.items.count("f2"), 0);
  EXPECT_EQ(state.items.count("f4"), 2);
}

TEST_F(DemoMeetingResponse, RefusesWhatIsNoAnswerToARequest) {
  const std::string id = invite();
  const std::string plain = put("plain");
  for (const char* response : {"0", "4", "", "yes"})
    EXPECT_EQ(answer(response, id), Lines{"Result ReqId=" + id + " Status=2"}) << response;
  EXPECT_EQ(answer("1", plain), Lines{"Result ReqId=" + plain + " Status=2"});
  EXPECT_EQ(answer("1", "i/99"), Lines{"Result ReqId=i/99 Status=2"});
  EXPECT_EQ(answer("1", id, "f4"), Lines{"Result ReqId=" + id + " Status=2"});
  EXPECT_EQ(state.items.count("f2"), 2);
}

TEST_F(DemoMeetingResponse, NeedsACalendar) {
  const std::string id = invite();
  state.folders.remove("f8");
  EXPECT_EQ(answer("1", id), Lines{"Result ReqId=" + id + " Status=3"});
  EXPECT_EQ(state.items.count("f2"), 1);
}

TEST_F(DemoMeetingResponse, RefusesARequestThatMakesNoEvent) {
  json meeting = kMeeting;
  meeting["Recurrence"]["Type"] = 9;
  const std::string id = invite(meeting);
  EXPECT_EQ(answer("1", id), Lines{"Result ReqId=" + id + " Status=4"});
  EXPECT_EQ(state.items.count("f2"), 1);
}

TEST_F(DemoMeetingResponse, RefusesWhatIsNoRequest) {
  EXPECT_THROW(runMeetingResponse(state, Element(Page::Sync, "Sync")), BadRequest);
  EXPECT_THROW(answer("1", ""), BadRequest);
  Element request(Page::Meeting, "MeetingResponse");
  // All that a Request holds, under another name.
  Element& result = request.add("Result");
  result.add("UserResponse", "1");
  result.add("CollectionId", "f2");
  result.add("ReqId", invite());
  EXPECT_THROW(runMeetingResponse(state, request), BadRequest);
  EXPECT_EQ(state.items.count("f8"), 0);
}

}  // namespace
}  // namespace demoserver
