// How far a failure reaches: a folder's ends that folder, the list of folders' ends nothing that is known
// already, and only what every folder would meet ends the account. What was cut off is told each time.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/Fixture.h"
#include "support/HexAndText.h"

namespace airsync::integration {
namespace {

using airsync_test::HexAndText;
using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

std::string text(const std::string& value) { return HexAndText("03") + value + HexAndText("00 01"); }

// A Sync answer about the Calendar: this status, and what comes after it.
std::string calendarAnswer(const std::string& status, const std::string& commands = {}) {
  return HexAndText("03 01 6A 00 45 5C 4F 4B") + text("evil.1") + HexAndText("52") + text("f8") +
         HexAndText("4E") + text(status) + commands + HexAndText("01 01 01");
}

const std::string kBadTimezone = HexAndText("56 47 4D") + text("evil:1") + HexAndText("5D 00 04 45") +
                                 text("no zone at all") + HexAndText("01 00 00 01 01");

// A document whose root has two attributes: the process that reads it stops itself.
const std::string kTwoAttributes = HexAndText("03 01 6A 02 'a' 00 C5 04 00 03 'x' 00 04 00 03 'y' 00 01 01");

class Reach : public AirsyncTest {
 protected:
  std::string answerFile(const std::string& bytes) const {
    writeFile(directory() / "answer", bytes);
    return (directory() / "answer").string();
  }

  void serveFault(const std::string& command, const std::vector<std::string>& fault) {
    std::vector<std::string> switches = {"--contacts", "20", "--fail-cmd", command};
    switches.insert(switches.end(), fault.begin(), fault.end());
    serve(switches);
    configure(url(), "idle_timeout = 1\n");
  }

  // The result of a folder in an account's report.
  static json resultOf(const json& account, const std::string& path) {
    for (const json& folder : account.at("folders")) {
      if (folder.at("path") == path) return folder.at("result");
    }
    return nullptr;
  }
};

struct Fault {
  const char* what;
  std::vector<std::string> switches;
  std::string told;
};

void PrintTo(const Fault& fault, std::ostream* stream) { *stream << fault.what; }

std::string nameOf(const testing::TestParamInfo<Fault>& info) { return info.param.what; }

class ReachOfAFolder : public Reach, public testing::WithParamInterface<Fault> {};

// The first answer with items of the run, the Calendar's, is the faulty one.
TEST_P(ReachOfAFolder, IsThatFolder) {
  std::vector<std::string> fault = {"--fail-after", "1", "--fail-count", "1"};
  fault.insert(fault.end(), GetParam().switches.begin(), GetParam().switches.end());
  serveFault("Sync", fault);
  const Finished result = run({"--json", "sync"});
  EXPECT_EQ(result.code, 7) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr("synchronising folder \"Calendar\" of account demo: "));
  EXPECT_THAT(result.errors, HasSubstr(GetParam().told));
  EXPECT_THAT(result.errors, Not(HasSubstr("defect of airsync")));
  const json account = result.json().at("accounts").at(0);
  EXPECT_EQ(account.at("error"), nullptr);
  EXPECT_EQ(resultOf(account, "Calendar"), "failed");
  EXPECT_EQ(resultOf(account, "Inbox"), "done");
  EXPECT_EQ(contactsHere().size(), 20U);
}

std::vector<Fault> faultsOfAFolder() {
  return {{"Status400", {"--fail-status", "400"}, "(HTTP 400)"},
          {"Status404", {"--fail-status", "404"}, "(HTTP 404)"},
          {"Status500", {"--fail-status", "500"}, "(HTTP 500)"},
          {"Status503", {"--fail-status", "503"}, "(HTTP 503)"},
          {"Status507", {"--fail-status", "507"}, "(HTTP 507)"},
          {"Silence", {"--delay-ms", "1000000"}, "127.0.0.1"},
          {"BodyCut", {"--cut-body", "20"}, "in the middle of its answer"}};
}

INSTANTIATE_TEST_SUITE_P(, ReachOfAFolder, testing::ValuesIn(faultsOfAFolder()), nameOf);

class ReachOfAnAnswer : public Reach, public testing::WithParamInterface<Fault> {
 protected:
  void serveAnswer(const std::string& bytes) {
    serveFault("Sync", {"--fail-after", "1", "--fail-count", "1", "--answer-file", answerFile(bytes)});
  }
};

TEST_P(ReachOfAnAnswer, IsItsFolder) {
  serveAnswer(GetParam().switches.at(0));
  const Finished result = run({"--json", "sync"});
  EXPECT_EQ(result.code, 7) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr(GetParam().told));
  const json account = result.json().at("accounts").at(0);
  EXPECT_EQ(account.at("error"), nullptr);
  for (const json& folder : account.at("folders")) {
    const bool faulty = folder.at("path") == "Calendar";
    if (faulty) {
      EXPECT_EQ(folder.at("result"), "failed");
      EXPECT_EQ(folder.at("error").at("exit").at("code"), 6);
    } else {
      EXPECT_THAT(folder.at("result"), testing::AnyOf("done", "skipped")) << folder;
    }
  }
  EXPECT_EQ(contactsHere().size(), 20U);
}

std::vector<Fault> faultyAnswers() {
  return {{"ABadTimezone",
           {calendarAnswer("1", kBadTimezone)},
           "an event in the server's answer has a time zone that can't be decoded "
           "(AS_RESULT_INVALID_ARGUMENT)"},
          {"AStatusOf256", {calendarAnswer("256")}, "a status that does not exist (0x80010f00)"},
          {"AStatusBeyond16Bits", {calendarAnswer("131072")}, "a status that does not exist (0x80030e00)"},
          {"AStatusBelow0", {calendarAnswer("-1")}, "a status that does not exist (0xffffffff)"},
          {"AnUnknownStatus", {calendarAnswer("99")}, "refused to synchronise the folder (status 99)"},
          {"Nonsense", {"<html>no WBXML</html>"}, "AS_RESULT_MALFORMED_DOCUMENT"}};
}

INSTANTIATE_TEST_SUITE_P(, ReachOfAnAnswer, testing::ValuesIn(faultyAnswers()), nameOf);

class ReachOfARefusal : public Reach, public testing::WithParamInterface<Fault> {};

TEST_P(ReachOfARefusal, IsTheAccountAndTheRestIsNotReached) {
  std::vector<std::string> fault = {"--fail-after", "1"};
  fault.insert(fault.end(), GetParam().switches.begin(), GetParam().switches.end());
  serveFault("Sync", fault);
  const Finished result = run({"--json", "sync"});
  const json account = result.json().at("accounts").at(0);
  EXPECT_EQ(account.at("exit").at("code"), result.code);
  EXPECT_THAT(account.at("error").at("message").get<std::string>(), HasSubstr(GetParam().told));
  EXPECT_EQ(resultOf(account, "Calendar"), "failed");
  EXPECT_EQ(resultOf(account, "Contacts"), "not reached");
  EXPECT_EQ(resultOf(account, "Inbox"), "not reached");
  EXPECT_THAT(result.errors,
              testing::ContainsRegex("account demo: [0-9]+ folders were not reached: .*Contacts.*Inbox"));
}

std::vector<Fault> refusals() {
  return {{"OfTheLogin", {"--fail-status", "401"}, "(HTTP 401)"},
          {"OfTheDevice", {"--fail-status", "403"}, "(HTTP 403)"},
          {"OfAProxy", {"--fail-status", "407"}, "(HTTP 407)"},
          {"WithoutAPolicy", {"--fail-status", "449"}, "(HTTP 449)"},
          {"OfTooManyRequests", {"--fail-status", "429"}, "(HTTP 429)"},
          {"OfTheAddress", {"--fail-status", "302"}, "(HTTP 302)"}};
}

INSTANTIATE_TEST_SUITE_P(, ReachOfARefusal, testing::ValuesIn(refusals()), nameOf);

class ReachOfTheList : public Reach, public testing::WithParamInterface<Fault> {
 protected:
  std::vector<std::string> fault() const {
    std::vector<std::string> switches = GetParam().switches;
    if (!switches.empty() && switches[0] == "answer") {
      switches = {"--answer-file", answerFile(GetParam().switches.at(1))};
    }
    return switches;
  }
};

TEST_P(ReachOfTheList, EndsNothingThatIsKnownAlready) {
  serve({"--contacts", "20"});
  sync();
  server().add("f9", {{"LastName", "Late"}});
  serveFault("FolderSync", fault());
  const Finished result = run({"--json", "sync", "f9"});
  EXPECT_EQ(result.code, 7) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr(GetParam().told));
  const json account = result.json().at("accounts").at(0);
  EXPECT_EQ(account.at("error"), nullptr);
  EXPECT_THAT(account.at("folder_list_error").at("message").get<std::string>(), HasSubstr(GetParam().told));
  EXPECT_EQ(resultOf(account, "Contacts"), "done");
  EXPECT_EQ(contactsHere().size(), 21U);
}

TEST_P(ReachOfTheList, IsTheAccountWhereNoFolderIsKnown) {
  serveFault("FolderSync", fault());
  const Finished result = run({"--json", "sync", "f9"});
  EXPECT_THAT(result.code, testing::AnyOf(4, 6, 8)) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr(GetParam().told));
  EXPECT_TRUE(result.json().at("accounts").at(0).at("folders").empty());
}

std::vector<Fault> faultsOfTheList() {
  const std::string noFolders = HexAndText("03 01 6A 00 00 07 56 4C") + text("1") + HexAndText("52") +
                                text("h") + HexAndText("4E 57") + text("0") + HexAndText("01 01");
  return {{"Status500", {"--fail-status", "500"}, "(HTTP 500)"},
          {"Status507", {"--fail-status", "507"}, "(HTTP 507)"},
          {"Silence", {"--delay-ms", "1000000"}, "fetching the list of folders of account demo"},
          {"Nonsense", {"answer", "<html>no WBXML</html>"}, "AS_RESULT_MALFORMED_DOCUMENT"},
          {"StatusOfAnotherCommand",
           {"answer", HexAndText("03 01 6A 00 00 07 56 4C") + text("5") + HexAndText("52") + text("h") +
                          HexAndText("01")},
           "the server refused to list its folders (status 5)"},
          {"EndOfTheProcess", {"answer", kTwoAttributes}, "the process that read it stopped itself"}};
}

INSTANTIATE_TEST_SUITE_P(, ReachOfTheList, testing::ValuesIn(faultsOfTheList()), nameOf);

// --- What is named on the command line ---

TEST_F(Reach, EachFolderThatIsNamedIsSynchronised) {
  serve({"--contacts", "20"});
  const Finished result = run({"--json", "sync", "f9", "k1"});
  EXPECT_EQ(result.code, 0) << result.errors;
  const json folders = result.json().at("accounts").at(0).at("folders");
  ASSERT_EQ(folders.size(), 2U);
  EXPECT_EQ(folders.at(0).at("id"), "f9");
  EXPECT_EQ(folders.at(1).at("id"), "k1");
  EXPECT_NE(folder("k1").at("sync_key"), "0");
}

TEST_F(Reach, AFolderThatIsNamedTwiceIsSynchronisedOnce) {
  serve({"--contacts", "20"});
  const Finished result = run({"--json", "sync", "f9", "k1", "Contacts"});
  EXPECT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.json().at("accounts").at(0).at("folders").size(), 2U);
}

}  // namespace
}  // namespace airsync::integration
