// Answers of a server that means no good, over the real connection: each is a clear error, or is taken for
// what can be taken of it; none costs memory out of proportion; and the next run with a sane server
// converges.
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string_view>

#include "integration/Fixture.h"
#include "support/HexAndText.h"

namespace airsync::integration {
namespace {

using airsync_test::HexAndText;
using testing::HasSubstr;

std::string operator*(const std::string& text, std::size_t times) {
  std::string result;
  result.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

// The head of a document without a string table, and of one with this table of fewer than 16,384 bytes.
const std::string kHead = HexAndText("03 01 6A 00");
std::string headWith(const std::string& table) {
  return HexAndText("03 01 6A") + static_cast<char>(0x80 | (table.size() >> 7)) +
         static_cast<char>(table.size() & 0x7f) + table;
}

std::string text(const std::string& value) { return HexAndText("03") + value + HexAndText("00 01"); }

// A Sync answer about Contacts, up to its Commands, with one addition in it.
std::string syncWith(const std::string& commands, const std::string& key = "evil.1") {
  return HexAndText("45 5C 4F 4B") + text(key) + HexAndText("52") + text("f9") + HexAndText("4E") +
         text("1") + HexAndText("56") + commands + HexAndText("01 01 01 01");
}
std::string addition(const std::string& id, const std::string& fields) {
  return HexAndText("47 4D") + text(id) + HexAndText("5D 00 01") + fields + HexAndText("01 00 00 01");
}
std::string firstName(const std::string& name) { return HexAndText("5F") + text(name); }

std::string folderSyncWith(const std::string& folders) {
  return kHead + HexAndText("00 07 56 4C") + text("1") + HexAndText("52") + text("evil.1") +
         HexAndText("4E") + folders + HexAndText("01 01");
}
std::string folderEntry(const std::string& tag, const std::string& id, const std::string& parent,
                        const std::string& name, const std::string& type) {
  return HexAndText(tag + "48") + text(id) + HexAndText("49") + text(parent) + HexAndText("47") + text(name) +
         HexAndText("4A") + text(type) + HexAndText("01");
}

struct Row {
  const char* what;
  std::string answer;
  int code;
  std::string told;        // on standard error
  long allowance = 4'000;  // kilobytes beyond an ordinary run and the bytes received
};

constexpr char kMalformed[] =
    "synchronising folder \"Contacts\" of account demo: the server's answer breaks the rules of its "
    "encoding, "
    "or holds an element that has no place there (AS_RESULT_MALFORMED_DOCUMENT)";

constexpr char kEnded[] = "though it was not complete (AS_RESULT_TRANSPORT_FAILED)";

class Hostile : public AirsyncTest {
 protected:
  void serveAnswer(const std::string& command, const std::string& after, const std::string& answer,
                   std::vector<std::string> more = {}) {
    writeFile(directory() / "answer", answer);
    std::vector<std::string> switches = {
        "--contacts",   "20",  "--mails",      "3", "--fail-cmd",    command,
        "--fail-after", after, "--fail-count", "1", "--answer-file", (directory() / "answer").string()};
    switches.insert(switches.end(), more.begin(), more.end());
    serve(switches);
  }

  long peakOfAnOrdinaryRun() {
    serve({"--contacts", "20"});
    const long peak = run({"sync", "f9"}).peakKilobytes;
    std::filesystem::remove_all(directory() / "state");
    std::filesystem::remove(directory() / "server.db");
    return peak;
  }

  // How many folders are listed after this answer to FolderSync.
  std::size_t foldersFrom(const std::string& folders) {
    serveAnswer("FolderSync", "0", folderSyncWith(folders));
    const Finished result = run({"--json", "folders", "--refresh"});
    EXPECT_EQ(result.code, 0) << result.errors;
    return result.json().at("accounts").at(0).at("folders").size();
  }

  void expectToConverge() {
    serve({});
    sync();
    expectSameOnBothSides();
    EXPECT_EQ(contactsHere().size(), 20U);
  }
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.what; }

class HostileSync : public Hostile, public testing::WithParamInterface<Row> {};

TEST_P(HostileSync, IsToldWithoutHarm) {
  const Row& row = GetParam();
  static const long ordinary = peakOfAnOrdinaryRun();
  serveAnswer("Sync", "1", row.answer);
  const Finished result = run({"sync", "f9"});
  EXPECT_EQ(result.code, row.code) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr(row.told));
  EXPECT_EQ(result.errors.empty(), row.code == 0) << result.errors;
  const long received = static_cast<long>(row.answer.size() / 1024);
  EXPECT_LE(result.peakKilobytes, ordinary + received + row.allowance);
  expectToConverge();
}

const Row kRows[] = {
    {"NestingOf65Levels", kHead + std::string(65, '\x45') + std::string(65, '\x01'), 6, kMalformed},
    {"NestingOfAMillionLevels", kHead + std::string(1'000'000, '\x45'), 6, kMalformed},
    {"OpaqueLengthNear4GiB", kHead + HexAndText("45 C3 8F FF FF FF 7F 'x'"), 6, kMalformed},
    {"OpaqueLengthNear2GiB", kHead + HexAndText("45 C3 87 FF FF FF 7F 'x'"), 6, kEnded},
    {"StringTableLengthNear4GiB", HexAndText("03 01 6A 8F FF FF FF 7F 'x'"), 6, kMalformed},
    {"StringTableLengthNear2GiB", HexAndText("03 01 6A 87 FF FF FF 7F 'x'"), 6, kEnded},
    {"IntegerOfSixBytes", HexAndText("03 01 6A 80 80 80 80 80 00 45"), 6, kMalformed},
    {"IntegerBeyond32Bits", HexAndText("03 01 6A FF FF FF FF 7F 45"), 6, kMalformed},
    {"OffsetOutsideTheStringTable", headWith(HexAndText("'abc' 00")) + HexAndText("45 83 04 01"), 6,
     kMalformed},
    {"OffsetWithoutAStringTable", kHead + HexAndText("45 83 00 01"), 6, kMalformed},
    {"OffsetIntoATextWithoutAnEnd", headWith("abc") + HexAndText("45 83 00 01"), 6, kMalformed},
    {"StringTableRepeated",
     headWith(std::string(16'000, 'x') + std::string(1, '\0')) + HexAndText("45 48") +
         HexAndText("83 00") * 100'000 + HexAndText("01 01"),
     6, kMalformed, 60'000},
    {"Children65536", kHead + HexAndText("45") + std::string(65'536, '\x06') + HexAndText("01"), 6,
     kMalformed, 20'000},
    {"TokenThatNobodyHas", kHead + HexAndText("45 3F 01"), 6, kMalformed},
    {"PageThatNobodyHas", kHead + HexAndText("45 00 09 01"), 6, kMalformed},
    {"RootOfAnotherCommand", kHead + HexAndText("00 07 56 4C") + text("1") + HexAndText("01"), 6, kMalformed},
    {"NoDocumentAtAll", "<html>Please log in</html>", 6, kMalformed},
    {"SecondAttribute",
     headWith(HexAndText("'a' 00")) + HexAndText("C5 04 00 03 'x' 00 04 00 03 'y' 00 01 01"), 6,
     "the server's answer to Sync broke a rule of the protocol: it holds an element with a second attribute"},
    {"ExtensionAsAnAttributesValue", headWith(HexAndText("'a' 00")) + HexAndText("C5 04 00 C0 01 01"), 6,
     "it holds an extension in the place of an attribute's value"},
    {"CutInTheMiddle", kHead + syncWith(addition("evil:1", firstName("Ann"))).substr(0, 40), 6, kEnded},
    {"AnotherCollection",
     kHead + HexAndText("45 5C 4F 4B") + text("evil.1") + HexAndText("4E") + text("1") + HexAndText("52") +
         text("f8") + HexAndText("01 01 01"),
     6, "AS_RESULT_WRONG_COLLECTION"},
    {"TextsLongerThanAnyField",
     kHead + syncWith(addition(std::string(5'000, 'i'), firstName(std::string(1'000'000, 'n'))),
                      std::string(5'000, 'k')),
     0, "", 8'000},
    {"IdsThatComeTwice",
     kHead + syncWith(addition("evil:1", firstName("Ann")) + addition("evil:1", firstName("Ben"))), 0, ""},
    {"AdditionWithoutAnId",
     kHead + syncWith(HexAndText("47 5D 00 01") + firstName("Ann") + HexAndText("01 00 00 01")), 0, ""},
};

INSTANTIATE_TEST_SUITE_P(, HostileSync, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.what); });

TEST_F(Hostile, OfAnIdThatComesTwiceTheLastItemIsKept) {
  serveAnswer("Sync", "1",
              kHead + syncWith(addition("evil:1", firstName("Ann")) + addition("evil:1", firstName("Ben"))));
  EXPECT_EQ(run({"sync", "f9"}).code, 0);
  const auto contacts = contactsHere();
  ASSERT_EQ(contacts.size(), 1U);
  EXPECT_EQ(contacts.at("evil:1").at("FirstName"), "Ben");
}

TEST_F(Hostile, FoldersThatAreTheirOwnParentsAreListedAndSynchronised) {
  const std::string folders = folderEntry("4F", "a", "b", "A", "14") +
                              folderEntry("4F", "b", "a", "B", "14") + folderEntry("4F", "c", "c", "C", "14");
  EXPECT_EQ(foldersFrom(folders), 3U);
  expectToConverge();
}

TEST_F(Hostile, FolderIdsThatComeTwiceAreOneFolder) {
  const std::string folders =
      folderEntry("4F", "a", "0", "A", "14") + folderEntry("4F", "a", "0", "B", "14") +
      folderEntry("4F", "i", "0", "Inbox", "2") + folderEntry("4F", "i", "0", "Intray", "2");
  EXPECT_EQ(foldersFrom(folders), 2U);
  expectToConverge();
}

TEST_F(Hostile, HierarchyWithACircleIsShownWithEveryEntryOnce) {
  const std::string folders = folderEntry("46", "a", "b", "A", "12") +
                              folderEntry("46", "b", "a", "B", "12") + folderEntry("46", "b", "a", "B", "12");
  serveAnswer("GetHierarchy", "0", kHead + HexAndText("00 07 45") + folders + HexAndText("01"));
  const Finished result = run({"--json", "hierarchy"});
  EXPECT_EQ(result.code, 0) << result.errors;
  EXPECT_EQ(result.json().at("folders").size(), 3U);
}

// Servers that promise more for ever, and answer every request for items with the same document.
class Endless : public Hostile {
 protected:
  // The answers that arrive before the run gives up.
  int answersTaken(const std::string& commands) {
    const std::string answer = kHead + HexAndText("45 5C 4F 4B") + text("evil.1") + HexAndText("52") +
                               text("f9") + HexAndText("4E") + text("1") + HexAndText("14") + commands +
                               HexAndText("01 01 01");
    writeFile(directory() / "answer", answer);
    serve({"--contacts", "20", "--fail-cmd", "Sync", "--fail-after", "1", "--answer-file",
           (directory() / "answer").string()});
    const Finished result = run({"-v", "sync", "f9"});
    EXPECT_EQ(result.code, 6);
    EXPECT_THAT(result.errors, HasSubstr("the server keeps promising more and sends nothing new"));
    int taken = 0;
    const std::string_view trace = "current SyncKey:evil.1\n";
    for (std::size_t at = 0; (at = result.errors.find(trace, at)) != std::string::npos; at += trace.size()) {
      ++taken;
    }
    return taken;
  }
};

// The first brings a new key; three more bring nothing.
// Keeps S11.
TEST_F(Endless, NothingEndsAfterThreeExchanges) {
  EXPECT_EQ(answersTaken(""), 4);
  expectToConverge();
}

// The first brings a new key; a hundred more bring what was there.
// Keeps S11.
TEST_F(Endless, TheSameItemEndsAfterAHundredExchanges) {
  EXPECT_EQ(answersTaken(HexAndText("56") + addition("evil:1", firstName("Ann")) + HexAndText("01")), 101);
  expectToConverge();
}

// Ids and handles of the server that would end a request line, and begin another one.
class HostileTexts : public Hostile {
 protected:
  // A mail in the Inbox with this id and an attachment of this handle.
  void serveMail(const std::string& id, const std::string& handle) {
    const std::string attachment =
        HexAndText("46 45 48") + text("5") + HexAndText("49") + text(handle) + HexAndText("01 01");
    const std::string mail = HexAndText("47 4D") + text(id) + HexAndText("5D 00 02 54") + text("Hello") +
                             attachment + HexAndText("01 00 00 01");
    const std::string answer = HexAndText("45 5C 4F 4B") + text("evil.1") + HexAndText("52") + text(kInbox) +
                               HexAndText("4E") + text("1") + HexAndText("56") + mail +
                               HexAndText("01 01 01 01");
    serveAnswer("Sync", "1", kHead + answer, {"--verbose"});
    ASSERT_EQ(run({"sync", kInbox}).code, 0);
  }

  static constexpr char kInbox[] = "f2";
};

// Keeps S5.
TEST_F(HostileTexts, HandleWithALineEndReachesNoRequest) {
  serveMail("evil:1", "x HTTP/1.1\r\nX-Evil: 1\r\n\r\n");
  const Finished result = run({"attachment", kInbox, "evil:1"});
  EXPECT_EQ(result.code, 6);
  EXPECT_THAT(result.errors, HasSubstr("its name on the server has spaces, control characters, '&', '#'"));
}

// Keeps S5.
TEST_F(HostileTexts, IdWithALineEndReachesNoRequest) {
  serveMail("x HTTP/1.1\r\nX-Evil: 1", "ok");
  writeFile(directory() / "letter.eml", "To: a@example.com\r\n\r\nHello\r\n");
  const Finished result = run({"reply", kInbox, "1", (directory() / "letter.eml").string()});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.errors, HasSubstr("holds characters that can't stand in a request's address"));
}

}  // namespace
}  // namespace airsync::integration
