// Events that clients add and change, from the request to the item and to another device.
#include <gtest/gtest.h>

#include "support/Base64.h"
#include "support/Device.h"
#include "support/Trees.h"

namespace demoserver {
namespace {

using nlohmann::json;

class DemoEventChanges : public WithMail {
 protected:
  DemoEventChanges() { device.catchUp(events); }

  static Element add(const std::string& clientId, Element data) {
    Element command(Page::Sync, "Add");
    command.add("ClientId", clientId);
    command.add(std::move(data));
    return command;
  }
  static Element add(const std::string& clientId, const std::string& tree) {
    return add(clientId, dataOfTree(Page::Calendar, tree));
  }
  static Element change(const std::string& serverId, const std::string& tree) {
    Element command(Page::Sync, "Change");
    command.add("ServerId", serverId);
    command.add(dataOfTree(Page::Calendar, tree));
    return command;
  }
  SyncAnswer send(std::vector<Element> commands) {
    SyncRequest request = events;
    request.commands = std::move(commands);
    return device.sync(request);
  }
  Item only() { return state.items.list("f8").at(0); }
};

TEST_F(DemoEventChanges, AnEventThatIsAddedReachesAnotherDevice) {
  const SyncAnswer answer = send(
      {add("7", "Starttime\"20261121T090000Z\" Subject\"S\" Endtime\"20261121T100000Z\" Alldayevent\"0\"")});
  EXPECT_EQ(answer.responses, Lines{"Add ClientId=7 ServerId=" + only().id + " Status=1"});
  EXPECT_EQ(only().record, json({{"StartTime", "2026-11-21T09:00:00Z"},
                                 {"Subject", "S"},
                                 {"EndTime", "2026-11-21T10:00:00Z"},
                                 {"AllDayEvent", false}}));
  Device other(state, "device-2");
  other.sync(events);
  EXPECT_EQ(other.sync(events).commands,
            Lines{"Add ServerId=" + only().id +
                  " Starttime=20261121T090000Z Endtime=20261121T100000Z Alldayevent=0 Subject=S"});
}

TEST_F(DemoEventChanges, AChangeReplacesTheSeriesAndKeepsTheOrganizer) {
  const std::string id = state.items
                             .add("f8", {{"Subject", "S"},
                                         {"OrganizerEmail", "ann@example.org"},
                                         {"Recurrence", {{"Type", 0}, {"Occurrences", 3}}},
                                         {"Exceptions", {{{"Deleted", true}}}}})
                             .id;
  device.sync(events);
  EXPECT_EQ(
      send({change(id, "Subject\"T\" Recurrence(RecurrenceType\"1\" RecurrenceDayofweek\"2\")")}).responses,
      Lines{});
  EXPECT_EQ(only().record, json({{"Subject", "T"},
                                 {"OrganizerEmail", "ann@example.org"},
                                 {"Recurrence", {{"Type", 1}, {"DayOfWeek", 2}}}}));
}

TEST_F(DemoEventChanges, SupportedOfTheInitialRequestLimitsWhatAChangeClears) {
  const std::string id = state.items.add("f8", {{"Subject", "S"}, {"Location", "L"}, {"Reminder", 5}}).id;
  SyncRequest first = events;
  first.key = "0";
  Element start = documentOf(first);
  Element& supported = start.children[0].children[0].add("Supported");
  supported.children.emplace_back(Page::Calendar, "Location");
  device.key = partsOf(*runSync(state, {}, "device-1", start)).key;
  device.sync(events);
  send({change(id, "Subject\"T\"")});
  EXPECT_EQ(only().record, json({{"Subject", "T"}, {"Reminder", 5}}));
}

TEST_F(DemoEventChanges, HostileDataGetsStatus6AndTheRestIsApplied) {
  Element exceptions(Page::Sync, "ApplicationData");
  Element& list = exceptions.add(Element(Page::Calendar, "Exceptions"));
  for (int i = 0; i < 10'000; ++i) list.add("Exception").add("ExceptionIsdeleted", "1");
  const SyncAnswer answer =
      send({add("1", exceptions), add("2", "Timezone\"" + base64(std::string(171, 'x')) + "\""),
            add("3", "Recurrence(RecurrenceType\"4\")"), add("4", "Subject(Subject(Subject\"x\"))"),
            add("5", "Alldayevent\"yes\""), add("6", dataOfTree(Page::Mail, "Read\"1\"")),
            add("7", "Subject\"S\"")});
  ASSERT_EQ(answer.responses.size(), 7u);
  for (int i = 0; i < 6; ++i)
    EXPECT_EQ(answer.responses[static_cast<std::size_t>(i)],
              "Add ClientId=" + std::to_string(i + 1) + " Status=6");
  EXPECT_EQ(answer.responses[6], "Add ClientId=7 ServerId=" + only().id + " Status=1");
}

TEST_F(DemoEventChanges, ARefusedChangeLeavesTheEventAsItWas) {
  const std::string id = putEvent("S", "2026-11-21T10:00:00Z");
  device.sync(events);
  EXPECT_EQ(send({change(id, "Subject\"T\" Endtime\"never\"")}).responses,
            Lines{"Change ServerId=" + id + " Status=6"});
  EXPECT_EQ(only().record, json({{"Subject", "S"}, {"EndTime", "2026-11-21T10:00:00Z"}}));
}

}  // namespace
}  // namespace demoserver
