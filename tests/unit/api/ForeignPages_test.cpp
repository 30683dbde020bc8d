// A server names pages by "xmlns", and so leads an answer's elements to handlers of other commands. Each
// handler runs where the running command has what it needs; elsewhere the answer is malformed.
#include "support/ForeignPages.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "document/Vocabulary.h"
#include "support/ApiSession.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;
using testing::ElementsAre;
using testing::IsEmpty;

typedef std::vector<std::string> Strings;

// --- The answers that read through null once ---

const char* const kHead = "03 01 6A 06 'xmlns' 00";  // a string table with "xmlns"

SYNC_RESULT RunOn(ApiSession& session, const std::string& name) {
  for (const ForeignPageAnswer& answer : kForeignPageAnswers) {
    if (answer.name != name) continue;
    session.transport.FailWhereTheScriptEnds();
    session.transport.Answer(HexAndText(answer.document));
    return CommandNamed(answer.command).run(session);
  }
  ADD_FAILURE() << "no such answer: " << name;
  return 0;
}

// Keeps S3.
TEST(ForeignPages, AFolderSyncDeletesNoItem) {
  ApiSession session;
  EXPECT_EQ(RunOn(session, "foldersync-deletes-item"), 0x8001000bU);
  EXPECT_THAT(session.store.Calls(), IsEmpty());
}

TEST(ForeignPages, ANotificationAnswersNoSync) {
  ApiSession session;
  EXPECT_EQ(RunOn(session, "notification-answers-sync"), 0x8001000bU);
  EXPECT_THAT(session.store.Lines(), ElementsAre("GetFolderList 0"));
}

TEST(ForeignPages, AnEstimateHasNoCollectionOfASync) {
  ApiSession session;
  EXPECT_EQ(RunOn(session, "estimate-with-collection-of-sync"), 0x8001000bU);
  EXPECT_THAT(session.store.Lines(), ElementsAre("GetFolderList 0"));
}

TEST(ForeignPages, ANotificationFillsNoHierarchyOfAnEarlierCommand) {
  ApiSession session;
  // A folder that counts, but is a notification's and fills nothing.
  session.transport.Answer(HexAndText("03 01 6A 00 00 03 45 4B 01 01"));
  EXPECT_EQ(CommandNamed("GetHierarchy").run(session), 0U);
  session.ReleaseLists();
  EXPECT_EQ(RunOn(session, "notification-fills-hierarchy"), 0x8001000bU);
}

// --- Every row under every command ---

struct Place {
  const char* tag;
  int page;
};

std::string NameOf(const Place& place) { return std::string(place.tag) + "@" + std::to_string(place.page); }

const Place kRows[] = {
    {"Add", 0},
    {"Change", 0},
    {"Delete", 0},
    {"Class", 0},
    {"Version", 0},
    {"ApplicationData", 0},
    {"Collections", 0},
    {"Collection", 0},
    {"SyncKey", 0},
    {"Status", 0},
    {"MoreAvailable", 0},
    {"Commands", 0},
    {"Responses", 0},
    {"ClientId", 0},
    {"ServerId", 0},
    {"CollectionId", 0},
    {"SyncKey", 7},
    {"Status", 7},
    {"Changes", 7},
    {"Count", 7},
    {"Add", 7},
    {"Update", 7},
    {"Delete", 7},
    {"ServerId", 7},
    {"Folder", 7},
    {"Response", 6},
    {"Status", 6},
    {"Collection", 6},
    {"CollectionId", 6},
    {"Class", 6},
    {"Estimate", 6},
    {"Status", 3},
    {"Responses", 3},
    {"Folder", 3},
    {"ServerId", 3},
    {"ValidCarrierProfiles", 3},
    {"CarrierProfile", 3},
    {"NotifyGUID", 3},
    {"Response", 5},
    {"SrcMsgId", 5},
    {"Status", 5},
    {"DstMsgId", 5},
    {"Result", 8},
    {"ReqId", 8},
    {"Status", 8},
    {"CalId", 8},
};

// What each command asks its root for, and each handler its element. "=" asks by name alone, without the
// table.
const std::map<std::string, Strings> kAsked = {
    {"Sync", {"Version", "Status", "Collections"}},
    {"Fetch", {"Version", "Status", "Collections"}},
    {"FolderSync", {"Status", "SyncKey", "Changes"}},
    {"FolderCreate", {"Status", "SyncKey", "ServerId"}},
    {"FolderDelete", {"Status", "SyncKey"}},
    {"FolderUpdate", {"Status", "SyncKey"}},
    {"GetHierarchy", {"Folder"}},
    {"GetItemEstimate", {"Response"}},
    {"MoveItems", {"Response"}},
    {"MeetingResponse", {"Result"}},
    {"NotifyEnable", {"ValidCarrierProfiles", "Status", "Responses"}},
    {"GetCarrierList", {"Status", "ValidCarrierProfiles"}},
    {"Collections@0", {"Collection"}},
    {"Collection@0",
     {"SyncKey", "Status", "CollectionId", "Class", "MoreAvailable", "Commands", "Responses"}},
    {"Commands@0", {"Add", "Change", "Delete"}},
    {"Add@0", {"ServerId", "ApplicationData"}},
    {"Change@0", {"ServerId", "ApplicationData"}},
    {"Delete@0", {"ServerId"}},
    {"Responses@0", {"=Add", "=Change", "=Delete", "=Fetch"}},
    {"=Add", {"ClientId", "ServerId"}},
    {"=Change", {"ServerId"}},
    {"=Delete", {"ServerId"}},
    {"=Fetch", {"ServerId", "ApplicationData"}},
    {"Changes@7", {"Count", "Delete", "Update"}},
    {"Response@6", {"Status", "Collection"}},
    {"Collection@6", {"Class", "CollectionId", "Estimate"}},
    {"Response@5", {"SrcMsgId", "Status", "DstMsgId"}},
    {"Result@8", {"ReqId", "Status", "CalId"}},
    {"ValidCarrierProfiles@3", {"CarrierProfile"}},
    {"Responses@3", {"Folder"}},
    {"Folder@3", {"ServerId"}},
};

const std::map<std::string, std::string> kTexts = {
    {"Status", "1"},   {"CollectionId", "5"}, {"Class", "Contacts"}, {"ReqId", "5:1"},  {"SrcMsgId", "5:1"},
    {"ServerId", "5"}, {"SyncKey", "k2"},     {"Estimate", "3"},     {"DstMsgId", "6"}, {"ClientId", "1"},
};

// Where a handler has what it needs, and the result elsewhere.
struct Home {
  Strings rows;
  Strings commands;
  SYNC_RESULT elsewhere;
};

const Home kHomes[] = {
    {{"Add@0", "Change@0", "Delete@0", "ApplicationData@0", "Collection@0", "Responses@0"},
     {"Sync", "Fetch"},
     0x8001000b},
    {{"Class@0", "CollectionId@0"}, {"Sync", "Fetch"}, 0x80010011},
    {{"Changes@7", "Add@7", "Update@7", "Delete@7"}, {"FolderSync"}, 0x8001000b},
    {{"Folder@7"}, {"GetHierarchy"}, 0x8001000b},
    {{"CollectionId@6", "ServerId@3"}, {"GetItemEstimate", "NotifyEnable"}, 0x80010011},
    {{"Estimate@6"}, {"GetItemEstimate", "NotifyEnable"}, 0x8001000b},
    {{"ValidCarrierProfiles@3", "CarrierProfile@3"}, {"NotifyEnable", "GetCarrierList"}, 0x8001000b},
    {{"Response@5"}, {"MoveItems"}, 0x8001000b},
    {{"Result@8"}, {"MeetingResponse"}, 0x8001000b},
    {{"ReqId@8"}, {"MeetingResponse"}, 0x80010011},
};

bool Contains(const Strings& all, const std::string& one) {
  return std::find(all.begin(), all.end(), one) != all.end();
}

SYNC_RESULT Refusal(const std::string& row, const std::string& command) {
  for (const Home& home : kHomes) {
    if (Contains(home.rows, row)) return Contains(home.commands, command) ? 0 : home.elsewhere;
  }
  return 0;
}

// These commands take the status of their own page; the one of an estimate is another value.
SYNC_RESULT Expected(const std::string& row, const std::string& command, bool atRoot) {
  if (row == "Status@6" && atRoot) {
    if (command.rfind("Folder", 0) == 0) return 0x80010100;
    if (command == "NotifyEnable" || command == "GetCarrierList") return 0x80010a00;
  }
  return Refusal(row, command);
}

// An element as bytes: in some page that has its tag, with an "xmlns" for its children.
std::string Bytes(const std::string& tag, int childrensPage, const std::string& content) {
  for (int page = 0; page < kCodePages; ++page) {
    const UINT8 token = TokenOfTag(static_cast<UINT8>(page), tag.c_str());
    if (token == 0) continue;
    std::string bytes = {0, static_cast<char>(page), static_cast<char>(token | 0xC0), 4, 0, 3};
    bytes += std::string(NamespaceOfPage(static_cast<UINT8>(childrensPage))) + std::string({0, 1});
    return bytes + content + '\x01';
  }
  ADD_FAILURE() << "no page has the tag " << tag;
  return {};
}

std::string WithText(const std::string& tag) {
  const auto text = kTexts.find(tag);
  return Bytes(tag, 0, text == kTexts.end() ? std::string() : '\x03' + text->second + '\0');
}

// A way from a command's root to a handler: the tags, and the page that each has.
struct Step {
  std::string tag;
  int page;           // -1: asked for by name alone
  std::string state;  // of kAsked
};
typedef std::vector<Step> Way;

// An answer in which the last step's element stands at the end of its way, and with it what its command or
// its parent's handler must have read before.
std::string AnswerWith(const std::string& root, const Way& way, const std::string& command) {
  std::string content;
  for (std::size_t i = way.size(); i-- > 0;) {
    const Step& step = way[i];
    const std::string state = i == 0 ? command : way[i - 1].state;
    const int next = i + 1 < way.size() ? std::max(way[i + 1].page, 0) : 0;
    content = i + 1 == way.size() ? WithText(step.tag) : Bytes(step.tag, next, content);
    if (state == "Response@5" && step.page == 5) {
      if (step.tag != "SrcMsgId") content += WithText("SrcMsgId");
      if (step.tag == "DstMsgId") content += WithText("Status");
    } else if (i == 0 && step.tag != "Status" && Contains(kAsked.at(command), "Status")) {
      content += WithText("Status");
    }
  }
  const int page = way.empty() ? 0 : std::max(way[0].page, 0);
  return HexAndText(kHead) + Bytes(root, page, content);
}

// Every way that a command can be led, to handlers that it runs and to those that it refuses; no handler
// twice on one.
void CollectWays(const std::string& command, const std::string& state, Way& way, std::vector<Way>& all) {
  const auto asked = kAsked.find(state);
  if (asked == kAsked.end()) return;
  for (const std::string& tag : asked->second) {
    if (tag[0] == '=') {
      way.push_back({tag.substr(1), -1, tag});
      CollectWays(command, tag, way, all);
      way.pop_back();
      continue;
    }
    for (const Place& row : kRows) {
      if (tag != row.tag) continue;
      way.push_back({tag, row.page, NameOf(row)});
      all.push_back(way);
      if (Refusal(NameOf(row), command) == 0) CollectWays(command, NameOf(row), way, all);
      way.pop_back();
    }
  }
}

const std::map<std::string, std::string> kRoots = {
    {"Sync", "Sync"},
    {"Fetch", "Sync"},
    {"FolderSync", "FolderSync"},
    {"FolderCreate", "CreateCmd"},
    {"FolderDelete", "DeleteCmd"},
    {"FolderUpdate", "UpdateCmd"},
    {"GetHierarchy", "Folders"},
    {"GetItemEstimate", "GetItemEstimate"},
    {"MoveItems", "Moves"},
    {"MeetingResponse", "MeetingResponse"},
    {"NotifyEnable", "AirNotify"},
    {"GetCarrierList", "AirNotify"},
};

// The calls that a command makes of storage; GetFolderList and GetNextChange are for its request.
const std::map<std::string, Strings> kOwnCalls = {
    {"Sync",
     {"GetNextChange", "AddServerItem", "ChangeServerItem", "DeleteServerItem", "AddResult", "ChangeResult",
      "DeleteResult", "FetchedItem", "StoreSyncKey"}},
    {"Fetch",
     {"AddServerItem", "ChangeServerItem", "DeleteServerItem", "AddResult", "ChangeResult", "DeleteResult",
      "FetchedItem", "StoreSyncKey"}},
    {"FolderSync", {"UpdateFolder"}},
    {"GetItemEstimate", {"GetFolderList", "SetItemEstimate"}},
    {"NotifyEnable", {"GetFolderList", "SetNotifyFolderStatus"}},
};

void ExpectOnlyOwnCalls(const ApiSession& session, const std::string& command) {
  const auto own = kOwnCalls.find(command);
  for (const StoreCall& call : session.store.Calls()) {
    EXPECT_TRUE(own != kOwnCalls.end() && Contains(own->second, call.name)) << call.Line();
  }
}

// An answer that says nothing more: a Sync goes on until it has one.
void AnswerTheRest(ApiSession& session) {
  session.transport.Answer(HexAndText("03 01 6A 00 45 5C 4F 52 03 '5' 00 01 01 01 01"));
}

TEST(ForeignPages, EveryHandlerRunsOnlyWhereItsCommandHasWhatItNeeds) {
  std::size_t tried = 0;
  for (const auto& [command, root] : kRoots) {
    std::vector<Way> ways;
    Way way;
    CollectWays(command, command, way, ways);
    for (const Way& each : ways) {
      std::string trace = command;
      for (const Step& step : each) trace += "/" + step.state;
      SCOPED_TRACE(trace);
      ApiSession session;
      session.transport.FailWhereTheScriptEnds();
      session.transport.Answer(AnswerWith(root, each, command));
      AnswerTheRest(session);
      EXPECT_EQ(CommandNamed(command).run(session), Expected(each.back().state, command, each.size() == 1));
      ExpectOnlyOwnCalls(session, command);
      session.ReleaseLists();
      ++tried;
    }
  }
  EXPECT_GT(tried, 200U);
}

// What a command does not ask for is not visited, whichever page it is brought to.
TEST(ForeignPages, NoHandlerRunsUnasked) {
  std::size_t tried = 0;
  for (const auto& [command, root] : kRoots) {
    for (const Place& row : kRows) {
      if (Contains(kAsked.at(command), row.tag)) continue;
      SCOPED_TRACE(command + "/" + NameOf(row));
      ApiSession session;
      session.transport.FailWhereTheScriptEnds();
      const bool hasStatus = TokenOfTag(static_cast<UINT8>(row.page), "Status") != 0 && row.page != 6;
      std::string content = Bytes(row.tag, row.page, WithText("ServerId"));
      const bool asksForStatus = Contains(kAsked.at(command), "Status");
      if (asksForStatus && hasStatus) content += WithText("Status");
      session.transport.Answer(HexAndText(kHead) + Bytes(root, row.page, content));
      const bool strict = asksForStatus && !hasStatus && command != "Sync" && command != "Fetch";
      const SYNC_RESULT family = command.rfind("Folder", 0) == 0 ? 0x80010100 : 0x80010a00;
      EXPECT_EQ(CommandNamed(command).run(session), strict ? family : 0);
      ExpectOnlyOwnCalls(session, command);
      session.ReleaseLists();
      ++tried;
    }
  }
  EXPECT_GT(tried, 400U);
}

}  // namespace
