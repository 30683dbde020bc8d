#include "http/Faults.h"

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include "data/Chain.h"
#include "http/Service.h"
#include "support/Requests.h"

namespace demoserver {
namespace {

std::string picked(FaultPlan plan, const std::vector<std::string>& commands) {
  plan.fault.status = 500;
  std::string pattern;
  for (const std::string& command : commands) pattern += plan.next(command).status == 500 ? 'x' : '.';
  return pattern;
}

TEST(DemoFaults, WithoutConditionsEveryRequestIsPicked) {
  EXPECT_EQ(picked({}, {"Sync", "FolderSync", ""}), "xxx");
}

TEST(DemoFaults, PassSomeThenPickSome) {
  FaultPlan plan;
  plan.after = 2;
  plan.count = 1;
  EXPECT_EQ(picked(plan, {"Sync", "Sync", "Sync", "Sync"}), "..x.");
  plan.count = 0;
  EXPECT_EQ(picked(plan, {"Sync", "Sync", "Sync"}), "...");
}

TEST(DemoFaults, CountOnlyTheCommandThatIsMeant) {
  FaultPlan plan;
  plan.command = "Sync";
  plan.after = 1;
  EXPECT_EQ(picked(plan, {"FolderSync", "Sync", "FolderSync", "Sync", "Sync"}), "...xx");
}

class DemoFaultyService : public WithContacts {
 protected:
  Answer ask(const Fault& fault, const HttpRequest& request) {
    ServiceOptions options;
    options.faults.fault = fault;
    return Service(state, options).answer(request);
  }
};

TEST_F(DemoFaultyService, AStatusIsAnsweredInPlaceOfTheCommand) {
  Fault fault;
  fault.status = 503;
  const Answer answer = ask(fault, syncRequest({.key = "0"}));
  EXPECT_EQ(answer.reply.status, 503);
  EXPECT_EQ(answer.reply.body, "");
  EXPECT_EQ(Chain(state.database, "D1", "f9").match("0.0"), KeyMatch::Unknown);
}

TEST_F(DemoFaultyService, ADroppedRequestIsNotApplied) {
  Fault fault;
  fault.dropRequest = true;
  const std::string key = device.sync().key;
  HttpRequest request = syncRequest({.key = key, .commands = {addCommand("1", "A")}});
  request.query["DeviceId"] = "device-1";
  EXPECT_TRUE(ask(fault, request).fault.dropRequest);
  EXPECT_EQ(count(), 0);
}

TEST_F(DemoFaultyService, ADroppedAnswerIsApplied) {
  Fault fault;
  fault.dropAnswer = true;
  const std::string key = device.sync().key;
  HttpRequest request = syncRequest({.key = key, .commands = {addCommand("1", "A")}});
  request.query["DeviceId"] = "device-1";
  EXPECT_TRUE(ask(fault, request).fault.dropAnswer);
  EXPECT_EQ(count(), 1);
}

TEST_F(DemoFaultyService, ASyncMayBeAnsweredWithoutACollection) {
  Fault fault;
  fault.noCollection = true;
  const Element response = decode(ask(fault, syncRequest({.key = "0"})).reply.body);
  EXPECT_EQ(response.name, "Sync");
  EXPECT_EQ(response.textOf("Status"), "1");
  EXPECT_EQ(response.children.size(), 1u);
  EXPECT_EQ(decode(ask(fault, commandRequest("GetHierarchy", "")).reply.body).name, "Folders");
}

TEST_F(DemoFaultyService, AFileMayBeTheAnswerInPlaceOfTheCommand) {
  const std::string file = testing::TempDir() + "demo-answer-" + std::to_string(::getpid());
  std::ofstream(file) << "\x03 any bytes";
  Fault fault;
  fault.answerFile = file;
  const Answer answer = ask(fault, syncRequest({.key = "0"}));
  EXPECT_EQ(answer.reply.status, 200);
  EXPECT_EQ(answer.reply.contentType, "application/vnd.ms-sync.wbxml");
  EXPECT_EQ(answer.reply.body, "\x03 any bytes");
  EXPECT_EQ(Chain(state.database, "D1", "f9").match("0.0"), KeyMatch::Unknown);
  std::remove(file.c_str());
}

TEST_F(DemoFaultyService, TheAdministrationIsNeverPicked) {
  ServiceOptions options;
  options.faults.fault.status = 500;
  options.faults.count = 1;
  Service service(state, options);
  EXPECT_EQ(service.answer(requestFor("GET", "/admin/state")).reply.status, 200);
  EXPECT_EQ(service.answer(syncRequest({.key = "0"})).reply.status, 500);
  EXPECT_EQ(service.answer(syncRequest({.key = "0"})).reply.status, 200);
}

TEST_F(DemoFaultyService, AnIdleSyncMayGetAnEmptyBody) {
  const std::string key = device.sync().key;
  ServiceOptions options;
  options.habits.emptyWhenIdle = true;
  HttpRequest request = syncRequest({.key = key});
  request.query["DeviceId"] = "device-1";
  const HttpReply reply = Service(state, options).answer(request).reply;
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.body, "");
}

}  // namespace
}  // namespace demoserver
