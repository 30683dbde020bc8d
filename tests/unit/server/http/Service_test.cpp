#include "http/Service.h"

#include <gtest/gtest.h>

#include "support/FolderDevice.h"
#include "support/Requests.h"

namespace demoserver {
namespace {

class DemoService : public WithContacts {
 protected:
  HttpReply ask(const HttpRequest& request) { return Service(state, {}).answer(request).reply; }
};

TEST_F(DemoService, AnswersACommandWithADocument) {
  const HttpReply reply = ask(syncRequest({.key = "0"}));
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.contentType, "application/vnd.ms-sync.wbxml");
  EXPECT_EQ(partsOf(decode(reply.body)).status, "1");
}

TEST_F(DemoService, KnowsEveryCommand) {
  const std::string hierarchy = encode(folderRequest("FolderSync", {{"SyncKey", "0"}}));
  EXPECT_EQ(decode(ask(commandRequest("FolderSync", hierarchy)).body).name, "FolderSync");
  EXPECT_EQ(decode(ask(commandRequest("GetHierarchy", "")).body).name, "Folders");
  for (const auto& [command, root] :
       {std::pair{"FolderCreate", "CreateCmd"}, std::pair{"FolderDelete", "DeleteCmd"},
        std::pair{"FolderUpdate", "UpdateCmd"}}) {
    const Element request = folderRequest(root, {{"SyncKey", "9"}});
    EXPECT_EQ(decode(ask(commandRequest(command, encode(request))).body).name, root);
  }
  EXPECT_EQ(decode(ask(commandRequest("MoveItems", encode(Element(Page::Move, "Moves")))).body).name,
            "Moves");
  EXPECT_EQ(
      decode(ask(commandRequest("MeetingResponse", encode(Element(Page::Meeting, "MeetingResponse")))).body)
          .name,
      "MeetingResponse");
  Element estimate(Page::Estimate, "GetItemEstimate");
  estimate.add("Collections");
  EXPECT_EQ(decode(ask(commandRequest("GetItemEstimate", encode(estimate))).body).name, "GetItemEstimate");
  Element notify(Page::Notify, "AirNotify");
  notify.add("DeviceInfo");
  EXPECT_EQ(decode(ask(commandRequest("Notify", encode(notify))).body).name, "AirNotify");
}

TEST_F(DemoService, AsksForCredentials) {
  for (const char* target : {"/sync?Cmd=Sync&DeviceId=D1", "/admin/state", "/"}) {
    HttpRequest request = requestFor("POST", target);
    request.authorization = "Basic ZGVtbzpkZW1v";
    const HttpReply reply = ask(request);
    EXPECT_EQ(reply.status, 401) << target;
    ASSERT_EQ(reply.headers.size(), 1u);
    EXPECT_EQ(reply.headers[0].first, "WWW-Authenticate");
  }
}

TEST_F(DemoService, TellsItsCommandsToOptions) {
  const HttpReply reply = ask(requestFor("OPTIONS", "/sync?User=demo"));
  EXPECT_EQ(reply.status, 200);
  using Headers = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(reply.headers,
            (Headers{{"MS-ASProtocolVersions", "2.0"},
                     {"MS-ASProtocolCommands",
                      "Sync,SendMail,SmartForward,SmartReply,GetAttachment,GetHierarchy,FolderSync,"
                      "FolderCreate,FolderDelete,FolderUpdate,MoveItems,GetItemEstimate,MeetingResponse,"
                      "Notify"}}));
}

TEST_F(DemoService, RefusesWhatIsNoCommand) {
  EXPECT_EQ(ask(requestFor("GET", "/sync?Cmd=Sync&DeviceId=D1")).status, 405);
  EXPECT_EQ(ask(requestFor("POST", "/sync?DeviceId=D1")).status, 400);
  EXPECT_EQ(ask(requestFor("POST", "/sync?Cmd=Sync")).status, 400);
  EXPECT_EQ(ask(requestFor("POST", "/sync?Cmd=Sync&DeviceId=" + std::string(65, 'x'))).status, 400);
  EXPECT_EQ(ask(commandRequest("Dance", "")).status, 501);
  EXPECT_EQ(ask(commandRequest("sync", "")).status, 501);
}

TEST_F(DemoService, RefusesMalformedDocumentsAndSaysWhere) {
  const HttpReply reply = ask(commandRequest("Sync", "\x03\x01\x6A"));
  EXPECT_EQ(reply.status, 400);
  EXPECT_EQ(reply.body, "malformed WBXML at byte 3: the document ends too early\n");
  EXPECT_EQ(ask(commandRequest("Sync", "")).status, 400);
}

TEST_F(DemoService, ARequestThatIsRefusedHalfwayChangesNothing) {
  std::string key = partsOf(decode(ask(syncRequest({.key = "0"})).body)).key;
  const Element nonsense(Page::Sync, "Status", "1");
  EXPECT_EQ(ask(syncRequest({.key = key, .commands = {addCommand("1", "A"), nonsense}})).status, 400);
  EXPECT_EQ(count(), 0);
  EXPECT_EQ(partsOf(decode(ask(syncRequest({.key = key})).body)).status, "1");
}

TEST_F(DemoService, SurvivesEveryOneByteMutationOfARequest) {
  const std::string good = syncRequest({.key = "0", .commands = {addCommand("1", "A")}}).body;
  Service service(state, {});
  for (std::size_t at = 0; at < good.size(); ++at) {
    for (const unsigned byte : {0x00u, 0x01u, 0x03u, 0x40u, 0x43u, 0x7Fu, 0x83u, 0xC3u, 0xFFu}) {
      std::string bad = good;
      bad[at] = static_cast<char>(byte);
      const int status = service.answer(commandRequest("Sync", bad)).reply.status;
      EXPECT_TRUE(status == 200 || status == 400) << at << ' ' << byte << ' ' << status;
    }
  }
}

TEST_F(DemoService, AFailureOfItsOwnIsA500) {
  state.database.handle().exec("DROP TABLE chains");
  testing::internal::CaptureStderr();
  EXPECT_EQ(ask(syncRequest({.key = "0"})).status, 500);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("chains"), std::string::npos);
}

TEST_F(DemoService, TheLogShowsNoSecretsAndNoControlCharacters) {
  testing::internal::CaptureStderr();
  ServiceOptions options;
  options.verbose = true;
  Service service(state, options);
  service.answer(requestFor("POST", "/sync?Cmd=a%0Ab%1B&DeviceId=D1"));
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_EQ(log, "POST /sync Cmd=a?b? DeviceId=D1 0 bytes -> 501 38 bytes\n");
}

TEST_F(DemoService, HeadGetsNoBody) { EXPECT_EQ(ask(requestFor("HEAD", "/admin/nothing")).body, ""); }

}  // namespace
}  // namespace demoserver
