// Habits and faults that are switched while the server runs.
#include "http/Controls.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "http/Service.h"
#include "support/Requests.h"

namespace demoserver {
namespace {

using nlohmann::json;

class DemoControls : public WithContacts {
 protected:
  DemoControls() : service(state, {}) { device.catchUp(); }

  HttpReply ask(const std::string& method, const std::string& target, const std::string& body = "") {
    return service.answer(requestFor(method, "/admin/" + target, body)).reply;
  }
  // A Sync of the device under its key, with an Add.
  Answer add(const std::string& clientId) {
    HttpRequest request = syncRequest({.key = device.key, .commands = {addCommand(clientId, "A")}});
    request.query["DeviceId"] = "device-1";
    return service.answer(request);
  }

  Service service;
};

TEST_F(DemoControls, ShowEveryHabitAndSwitchIt) {
  const json before = json::parse(ask("GET", "habits").body);
  EXPECT_EQ(before.size(), kHabits.size());
  for (const auto& [name, on] : before.items()) EXPECT_EQ(on, false) << name;
  const HttpReply reply = ask("PUT", "habits", R"({"answer-successes": true, "more-forever": true})");
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(json::parse(reply.body)["more-forever"], true);
  ask("PUT", "habits", R"({"more-forever": false})");
  const json after = json::parse(ask("GET", "habits").body);
  EXPECT_EQ(after["answer-successes"], true);
  EXPECT_EQ(after["more-forever"], false);
}

TEST_F(DemoControls, AHabitThatIsSwitchedOnActs) {
  ask("PUT", "habits", R"({"half-batch-stored-then-501": true})");
  HttpRequest request =
      syncRequest({.key = device.key, .commands = {addCommand("1", "A"), addCommand("2", "B")}});
  request.query["DeviceId"] = "device-1";
  const HttpReply reply = service.answer(request).reply;
  EXPECT_EQ(reply.status, 501);
  EXPECT_EQ(reply.body, "the second half of the commands is not stored\n");
  EXPECT_EQ(count(), 1);
}

TEST_F(DemoControls, AnUnknownPageComesWithEveryItemWhenThatIsOn) {
  put("A");
  ask("PUT", "habits", R"({"unknown-page-in-answers": true})");
  HttpRequest request = syncRequest({.key = device.key});
  request.query["DeviceId"] = "device-1";
  EXPECT_NE(service.answer(request).reply.body.find(std::string("\x5D\0\x11\x45\x03"
                                                                "1\0\x01\0\x01",
                                                                10)),
            std::string::npos);
}

TEST_F(DemoControls, ThePlanPicksTheAnswerThatIsLost) {
  EXPECT_EQ(ask("PUT", "faults", R"({"command": "Sync", "after": 1, "count": 1, "closeBeforeAnswer": true})")
                .status,
            200);
  EXPECT_FALSE(add("1").fault.dropAnswer);
  EXPECT_EQ(json::parse(ask("GET", "faults").body)["picked"], 0);
  EXPECT_TRUE(add("2").fault.dropAnswer);
  EXPECT_EQ(json::parse(ask("GET", "faults").body)["picked"], 1);
  EXPECT_FALSE(add("3").fault.dropAnswer);
  ask("PUT", "faults", R"({"status": 503})");
  EXPECT_EQ(add("4").reply.status, 503);
  ask("PUT", "faults", "{}");
  EXPECT_EQ(add("5").reply.status, 200);
}

TEST_F(DemoControls, APlanHoldsEveryFault) {
  const json plan = {{"command", "Sync"},
                     {"after", 1},
                     {"count", 2},
                     {"status", 503},
                     {"cutBody", 7},
                     {"delayMs", 3},
                     {"closeBeforeHandling", true},
                     {"closeBeforeAnswer", true},
                     {"closeAfterAnswer", true},
                     {"noCollection", true}};
  json expected = plan;
  expected["picked"] = 0;
  EXPECT_EQ(json::parse(ask("PUT", "faults", plan.dump()).body), expected);
}

TEST_F(DemoControls, AFoldersKeyIsForgotten) {
  Device other(state, "device-2");
  other.catchUp();
  EXPECT_EQ(ask("DELETE", "keys?folder=f9&device=device-2").body, "{\n \"forgotten\": 1\n}\n");
  EXPECT_EQ(other.sync().status, "3");
  EXPECT_EQ(device.sync().status, "1");
  other.catchUp();
  EXPECT_EQ(ask("DELETE", "keys?folder=f9").body, "{\n \"forgotten\": 2\n}\n");
  EXPECT_EQ(device.sync().status, "3");
  EXPECT_EQ(other.sync().status, "3");
  EXPECT_EQ(ask("DELETE", "keys?folder=hierarchy").body, "{\n \"forgotten\": 0\n}\n");
}

TEST_F(DemoControls, RefuseWhatTheyDoNotKnowAndChangeNothing) {
  const std::pair<std::string, std::string> table[] = {
      {"habits", R"({"more-forever": true, "good-manners": true})"},
      {"habits", R"({"more-forever": 1})"},
      {"habits", "[]"},
      {"habits", "{"},
      {"faults", R"({"status": 503, "colour": 1})"},
      {"faults", R"({"status": 99})"},
      {"faults", R"({"status": "503"})"},
      {"faults", R"({"status": 503, "after": 99999999999})"},
      {"faults", R"({"status": 503, "cutBody": -1})"},
      {"faults", R"({"status": 503, "closeAfterAnswer": "yes"})"},
      {"faults", "7"},
  };
  for (const auto& [page, body] : table) EXPECT_EQ(ask("PUT", page, body).status, 400) << page << body;
  EXPECT_EQ(ask("DELETE", "keys").status, 400);
  EXPECT_EQ(ask("POST", "habits", "{}").status, 404);
  EXPECT_EQ(json::parse(ask("GET", "habits").body)["more-forever"], false);
  EXPECT_EQ(add("1").reply.status, 200);
}

}  // namespace
}  // namespace demoserver
