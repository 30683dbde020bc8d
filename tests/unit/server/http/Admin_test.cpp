#include "http/Admin.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/Requests.h"

namespace demoserver {
namespace {

using nlohmann::json;

class DemoAdmin : public WithContacts {
 protected:
  Habits habits;
  FaultPlan faults;

  HttpReply ask(const std::string& method, const std::string& target, const json& body = nullptr) {
    return runAdmin(state, {habits, faults}, requestFor(method, target, body.is_null() ? "" : body.dump()));
  }
  json shown(const std::string& target) { return json::parse(ask("GET", target).body); }
  // The slash of the id, as a query may carry it.
  static std::string escaped(const std::string& id) { return "i%2F" + id.substr(2); }
};

TEST_F(DemoAdmin, ShowsTheContactsOfAFolder) {
  const std::string id = put("Zoë");
  EXPECT_EQ(shown("/admin/items?folder=f9"),
            json::parse(R"([{"id": ")" + id + R"(", "record": {"FirstName": "Zoë"}}])"));
  EXPECT_EQ(shown("/admin/items?folder=f9&id=" + escaped(id))["record"]["FirstName"], "Zoë");
}

TEST_F(DemoAdmin, AContactThatIsAddedReachesDevices) {
  device.catchUp();
  const HttpReply reply = ask("POST", "/admin/items?folder=f9", {{"FirstName", "A"}});
  EXPECT_EQ(reply.status, 201);
  const std::string id = json::parse(reply.body)["id"];
  EXPECT_EQ(device.sync().commands, Lines{"Add ServerId=" + id + " FirstName=A"});
}

TEST_F(DemoAdmin, ChangesAndDeletesReachDevices) {
  const std::string a = put("A");
  const std::string b = put("B");
  device.catchUp();
  EXPECT_EQ(ask("PUT", "/admin/items?folder=f9&id=" + escaped(a), {{"LastName", "C"}}).status, 200);
  EXPECT_EQ(ask("DELETE", "/admin/items?folder=f9&id=" + escaped(b)).status, 200);
  EXPECT_EQ(device.sync().commands, (Lines{"Change ServerId=" + a + " LastName=C", "Delete ServerId=" + b}));
}

TEST_F(DemoAdmin, ShowsAndChangesEvents) {
  state.folders.create("0", "Calendar", kCalendar, "f8");
  const json event = {{"Subject", "S"}, {"Body", "B"}, {"StartTime", "2026-11-21T09:00:00Z"}};
  const HttpReply reply = ask("POST", "/admin/items?folder=f8", event);
  EXPECT_EQ(reply.status, 201) << reply.body;
  const std::string id = json::parse(reply.body)["id"];
  json expected = event;
  expected["BodyTruncated"] = false;
  EXPECT_EQ(shown("/admin/items?folder=f8&id=" + escaped(id)), json({{"id", id}, {"record", expected}}));
  EXPECT_EQ(ask("PUT", "/admin/items?folder=f8&id=" + escaped(id), {{"Subject", "T"}}).status, 200);
  EXPECT_EQ(shown("/admin/items?folder=f8"), json::array({{{"id", id}, {"record", {{"Subject", "T"}}}}}));
  EXPECT_EQ(ask("POST", "/admin/items?folder=f8", {{"Recurrence", {{"Type", 4}}}}).status, 400);
}

TEST_F(DemoAdmin, ShowsMailsWithTheirAttachments) {
  state.folders.create("0", "Inbox", kInbox, "f2");
  const json mail = {{"Subject", "S"}, {"Attachments", {{{"Name", "a.txt"}, {"Size", 3}, {"OID", "x:1"}}}}};
  const HttpReply reply = ask("POST", "/admin/items?folder=f2", mail);
  EXPECT_EQ(reply.status, 201) << reply.body;
  json expected = mail;
  expected["Importance"] = 1;
  expected["Read"] = false;
  EXPECT_EQ(shown("/admin/items?folder=f2")[0]["record"], expected);
}

TEST_F(DemoAdmin, FoldersOfTasksHoldNoItems) {
  state.folders.create("0", "Tasks", kTasks, "f7");
  EXPECT_EQ(ask("GET", "/admin/items?folder=f7").status, 404);
  EXPECT_EQ(ask("POST", "/admin/items?folder=f7", json::object()).status, 404);
}

TEST_F(DemoAdmin, SaysWhatIsWrong) {
  const std::string id = put("A");
  EXPECT_EQ(ask("GET", "/admin/nothing").status, 404);
  EXPECT_EQ(ask("PATCH", "/admin/items?folder=f9").status, 404);
  EXPECT_EQ(ask("GET", "/admin/items").status, 404);
  EXPECT_EQ(ask("GET", "/admin/items?folder=f9&id=i/99").status, 404);
  EXPECT_EQ(ask("PUT", "/admin/items?folder=f9&id=i/99", json::object()).status, 404);
  EXPECT_EQ(ask("DELETE", "/admin/items?folder=f9&id=i/99").status, 404);
  EXPECT_EQ(ask("POST", "/admin/items?folder=f9").status, 400);
  const HttpReply reply = ask("POST", "/admin/items?folder=f9", {{"Nickname", "x"}});
  EXPECT_EQ(reply.status, 400);
  EXPECT_EQ(json::parse(reply.body)["error"], "a contact has no field Nickname");
  EXPECT_EQ(nameOf(id), "A");
}

TEST_F(DemoAdmin, SurvivesBytesThatAreNoJson) {
  for (const std::string& body : {std::string("\xFF\xFE"), std::string("{\"FirstName\": \"\xFF\"}"),
                                  std::string(100'000, '['), std::string("{\"\xC3\x28\": 1}")})
    EXPECT_EQ(runAdmin(state, {habits, faults}, requestFor("POST", "/admin/items?folder=f9", body)).status,
              400);
  EXPECT_EQ(count(), 0);
}

TEST_F(DemoAdmin, ShowsAndChangesFolders) {
  EXPECT_EQ(shown("/admin/folders"),
            json::parse(R"([{"id": "f9", "parent": "0", "name": "Contacts", "type": 9, "items": 0}])"));
  const HttpReply reply = ask("POST", "/admin/folders", {{"name", "Neu"}, {"type", 13}});
  EXPECT_EQ(reply.status, 201);
  const std::string id = json::parse(reply.body)["id"];
  EXPECT_EQ(state.folders.find(id)->type, kUserCalendar);
  EXPECT_EQ(ask("PUT", "/admin/folders?id=" + id, {{"name", "Neuer"}, {"parent", "f9"}}).status, 200);
  EXPECT_EQ(state.folders.find(id)->name, "Neuer");
  EXPECT_EQ(state.folders.find(id)->parent, "f9");
  EXPECT_EQ(ask("DELETE", "/admin/folders?id=" + id).status, 200);
  EXPECT_FALSE(state.folders.find(id).has_value());
  EXPECT_EQ(ask("DELETE", "/admin/folders?id=" + id).status, 404);
  EXPECT_EQ(ask("DELETE", "/admin/folders?id=f9").status, 409);
}

TEST_F(DemoAdmin, ShowsTheKeysOfEveryDevice) {
  put("A");
  device.catchUp();
  const json seen = shown("/admin/state");
  EXPECT_EQ(seen["folders"], 1);
  EXPECT_EQ(seen["items"], 1);
  ASSERT_EQ(seen["chains"].size(), 1u);
  EXPECT_EQ(seen["chains"][0]["device"], "device-1");
  EXPECT_EQ(seen["chains"][0]["collection"], "f9");
  EXPECT_EQ(seen["chains"][0]["key"], device.key);
  EXPECT_EQ(seen["chains"][0]["held"], 1);
}

}  // namespace
}  // namespace demoserver
