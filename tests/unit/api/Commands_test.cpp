// What holds for every command.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/ApiSession.h"
#include "support/LogRecorder.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::Each;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST(ApiCommand, SendsItsHeadAndItsDocument) {
  for (const ApiCommand& command : ApiCommands()) {
    ApiSession session;
    EXPECT_EQ(Perform(session, command.name), 0U) << command.name;
    if (std::string(command.request).empty()) continue;  // tested with the command itself
    const std::string request = HexAndText(command.request);
    ASSERT_EQ(session.transport.Requests().size(), 1U) << command.name;
    EXPECT_EQ(session.transport.Requests()[0].head,
              WbxmlHead(command.command, std::to_string(request.size())));
    EXPECT_EQ(session.transport.Requests()[0].contentLength, request.size());
    EXPECT_EQ(session.transport.Requests()[0].body, request) << command.name;
    EXPECT_EQ(session.transport.Unread(), 0U);
    session.ReleaseLists();
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U);
  }
}

TEST(ApiCommand, LogsItsEntryFirst) {
  for (const ApiCommand& command : ApiCommands()) {
    LogRecorder log({AS_LOG_SOURCE_AIRSYNC, AS_LOG_SOURCE_COMMUNICATIONS, AS_LOG_SOURCE_GENERATOR},
                    AS_LOG_LEVEL_TRACE);
    ApiSession session(ENCODING_WBXML, Log::getInstance());
    log.Clear();
    Perform(session, command.name);
    if (command.entryLine != nullptr) {
      EXPECT_EQ(log.Lines()[0], std::string("0 ") + command.entryLine);
    } else {
      EXPECT_THAT(log.Lines(), Each(Not(StartsWith("0 ")))) << command.name;
    }
    // So that the session's end writes to no destroyed log.
    session.airSync->Disconnect();
  }
}

TEST(ApiCommand, RaisesWhatTheResponsesHeadSays) {
  for (const ApiCommand& command : ApiCommands()) {
    ApiSession session;
    ScriptedResponse response;
    response.headResult = 1;
    response.status = 401;
    session.transport.Answer(response);
    EXPECT_EQ(command.run(session), 0x80010012U) << command.name;
    response.status = 400;
    session.transport.Answer(response);
    EXPECT_EQ(command.run(session), 0x80010013U) << command.name;
    response.status = 500;
    session.transport.Answer(response);
    EXPECT_EQ(command.run(session), 0x80010014U) << command.name;
    response.status = 404;
    session.transport.Answer(response);
    EXPECT_EQ(command.run(session), 0x80020194U) << command.name;
    EXPECT_EQ(Perform(session, command.name), 0U) << command.name;
  }
}

TEST(ApiCommand, SendsNothingWithAnAccountThatCantBeWrittenIntoAHead) {
  for (const ApiCommand& command : ApiCommands()) {
    ApiSession session;
    SERVER_INFO server = TestAccount();
    Put(server.path, "/\r\nX: y");
    session.airSync->Initialize(server, "", &session.transport, &session.store, ENCODING_WBXML, nullptr);
    session.airSync->Connect();
    session.transport.ClearCalls();
    EXPECT_EQ(command.run(session), 0x80000001U) << command.name;
    EXPECT_THAT(session.transport.Lines(), IsEmpty()) << command.name;
  }
}

TEST(ApiCommand, GoesOutInXmlButDeclaresWbxmlAndReadsNoAnswer) {
  for (const ApiCommand& command : ApiCommands()) {
    if (!command.document) continue;
    ApiSession session(ENCODING_XML);
    session.transport.Answer("<Any/>");
    EXPECT_EQ(command.run(session), 0x8001000bU) << command.name;
    EXPECT_EQ(session.transport.Unread(), 6U) << command.name;
  }
  ApiSession session(ENCODING_XML);
  session.transport.Answer("");
  CommandNamed("FolderSync").run(session);
  EXPECT_EQ(session.transport.Requests()[0].body,
            "<FolderSync xmlns=FolderHierarchy:><SyncKey>h1</SyncKey></FolderSync>");
  EXPECT_EQ(session.transport.Requests()[0].head, WbxmlHead("FolderSync", "69"));
}

// The parser asserts its root, so another one must not get that far.
TEST(ApiCommand, RefusesAnAnswerWithAnotherRoot) {
  for (const ApiCommand& command : ApiCommands()) {
    if (!command.document || std::string(command.name) == "GetHierarchy") continue;  // takes any
    ApiSession session;
    session.transport.Answer(HexAndText("03 01 6A 00 00 07 46 4C 03 '1' 00 01 01"));  // Folder
    EXPECT_EQ(command.run(session), 0x8001000bU) << command.name;
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U) << command.name;
  }
}

}  // namespace
