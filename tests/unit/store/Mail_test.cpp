#include "store/Mail.h"

#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Commands = std::vector<Command>;

TEST(Mail, IsTheSameAfterTheWayThroughARecord) {
  const Mail mail = fullMail();
  MailRecord record(mail);
  const AS_EMAIL_T& raw = record.record();
  EXPECT_EQ(raw.Importance, -1010);
  EXPECT_EQ(raw.Read, 1);
  EXPECT_EQ(raw.AttachmentCount, 3);
  EXPECT_STREQ(raw.Attachments[2].OID, "value 302");
  EXPECT_EQ(raw.MeetingRequest->Recurrence->Type, -1500);
  EXPECT_EQ(Mail::fromRecord(raw), mail);
}

TEST(Mail, TakesTheAttachmentsThatAreCountedAndPointedTo) {
  AS_ATTACHMENT_T attachments[2] = {};
  attachments[1].Size = 5;
  AS_EMAIL_T raw = {};
  raw.AttachmentCount = 65'535;
  EXPECT_TRUE(Mail::fromRecord(raw).attachments.empty());
  raw.Attachments = attachments;
  raw.AttachmentCount = 2;
  ASSERT_EQ(Mail::fromRecord(raw).attachments.size(), 2U);
  EXPECT_EQ(*Mail::fromRecord(raw).attachments[1].get<std::int32_t>("Size"), 5);
}

TEST(Mail, IsCalledByItsSubjectOrTheBestThereIs) {
  Mail mail;
  EXPECT_EQ(mail.displayName(), "");
  mail.fields.set("DateReceived", UtcTime{.year = 2026, .month = 11, .day = 21, .hour = 9});
  EXPECT_EQ(mail.displayName(), "2026-11-21T09:00:00Z");
  mail.fields.set("From", std::string("ann@example.com"));
  EXPECT_EQ(mail.displayName(), "ann@example.com");
  mail.fields.set("Subject", std::string("Tea"));
  EXPECT_EQ(mail.displayName(), "Tea");
}

class MailInStore : public StoreTest {
 protected:
  // A mail "s1" in the inbox, and its number.
  ItemNumber received(const Mail& mail) {
    folder_ = inbox();
    exchange(folder_, [&](Library& library) { library.add("s1", mail); });
    return item(folder_, "s1");
  }
  Commands nextRequest() {
    Library library(store(), folder_);
    Commands commands = library.request();
    library.end(AS_RESULT_TRANSPORT_FAILED);
    return commands;
  }

  FolderNumber folder_ = 0;
};

TEST_F(MailInStore, KeepsEveryFieldOfEveryPart) {
  const ItemNumber number = received(fullMail());
  reopen();
  EXPECT_EQ(mailOf(number), fullMail());
}

TEST_F(MailInStore, TellsAbsentFromEmpty) {
  Mail mail;
  mail.fields.set("Subject", std::string());
  mail.fields.set("BodyTruncated", false);
  mail.attachments.resize(1);
  mail.meetingRequest.emplace();
  const ItemNumber number = received(mail);
  EXPECT_EQ(mailOf(number), mail);
  EXPECT_FALSE(mailOf(number).meetingRequest->recurrence);
}

TEST_F(MailInStore, KeepsBytesAndTimesAsTheyCame) {
  Mail odd = mail("\xff\xfe no UTF-8; DROP TABLE mail; --");
  odd.fields.set("DateReceived", UtcTime{.year = 1, .month = 99, .day = 0, .hour = 77});
  odd.attachments.resize(1);
  odd.attachments[0].set("Size", std::int32_t{-1});
  odd.attachments[0].set("DisplayName", std::string("../\x80"));
  EXPECT_EQ(mailOf(received(odd)), odd);
}

TEST_F(MailInStore, KeepsAsManyAttachmentsAsARecordCanHave) {
  Mail crowded = mail("Tea");
  crowded.attachments.resize(65'535);
  crowded.attachments.back().set("Size", std::int32_t{7});
  const ItemNumber number = received(crowded);
  store().listItems(folder_, [](const ItemSummary& line) {
    EXPECT_EQ(std::get<MailSummary>(line.details).attachments, 65'535U);
    return true;
  });
  EXPECT_TRUE(mailOf(number) == crowded);
}

TEST_F(MailInStore, IsListedWithWhatAListNeeds) {
  received(fullMail());
  exchange(folder_, [](Library& library) { library.add("s2", Mail()); });
  std::vector<MailSummary> lines;
  store().listItems(folder_, [&](const ItemSummary& line) {
    lines.push_back(std::get<MailSummary>(line.details));
    return true;
  });
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].from, "value 5");
  EXPECT_EQ(lines[0].subject, "value 8");
  EXPECT_EQ(lines[0].received, (UtcTime{.year = 1907, .month = 2, .day = 3, .hour = 4, .minute = 5}));
  EXPECT_TRUE(lines[0].read);
  EXPECT_EQ(lines[0].attachments, 3U);
  EXPECT_TRUE(lines[0].truncated);
  EXPECT_TRUE(lines[0].isMeetingRequest);
  EXPECT_EQ(lines[1].received, std::nullopt);
  EXPECT_FALSE(lines[1].read);
  EXPECT_EQ(lines[1].attachments, 0U);
  EXPECT_FALSE(lines[1].truncated);
  EXPECT_FALSE(lines[1].isMeetingRequest);
}

TEST_F(MailInStore, TakesReadAloneFromAChangeThatCarriesNothingElse) {
  const ItemNumber number = received(fullMail());
  exchange(folder_, [](Library& library) { library.change("s1", Mail()); });
  Mail expected = fullMail();
  expected.fields.set("Read", false);
  EXPECT_EQ(mailOf(number), expected);  // its importance, too
}

TEST_F(MailInStore, IsNotMadeOfAMarkAlone) {
  received(mail("Tea"));
  const SyncOutcome outcome = exchange(folder_, [](Library& library) {
    Mail mark;
    mark.fields.set("Read", true);
    library.change("s9", mark);
  });
  EXPECT_EQ(outcome.ignored, 1U);
  EXPECT_EQ(outcome.added, 0U);
  EXPECT_EQ(store().folder(folder_).items, 1U);
}

TEST_F(MailInStore, IsMadeOfAChangeThatHoldsMoreThanItsMark) {
  received(mail("Tea"));
  const SyncOutcome outcome =
      exchange(folder_, [](Library& library) { library.change("s9", mail("Coffee", true)); });
  EXPECT_EQ(outcome.added, 1U);
  EXPECT_EQ(mailOf(item(folder_, "s9")), mail("Coffee", true));
}

TEST_F(MailInStore, TakesImportanceFromAChangeThatCarriesMore) {
  const ItemNumber number = received(fullMail());
  Mail change;
  change.fields.set("Subject", std::string("Coffee"));
  change.fields.set("Importance", std::int32_t{2});
  change.fields.set("Read", true);
  exchange(folder_, [&](Library& library) { library.change("s1", change); });
  Mail expected = fullMail();
  expected.fields.set("Subject", std::string("Coffee"));
  expected.fields.set("Importance", std::int32_t{2});
  EXPECT_EQ(mailOf(number), expected);
}

TEST_F(MailInStore, TakesBodyFactsOnlyWithTheirBody) {
  Mail cut = mail("Tea");
  cut.fields.set("Body", std::string("Dear"));
  cut.fields.set("BodySize", std::int32_t{400});
  cut.fields.set("BodyTruncated", true);
  const ItemNumber number = received(cut);
  Mail change;
  change.fields.set("Body", std::string("Dear Ann"));
  exchange(folder_, [&](Library& library) { library.change("s1", change); });
  Mail expected = mail("Tea");
  expected.fields.set("Body", std::string("Dear Ann"));
  EXPECT_EQ(mailOf(number), expected);
}

TEST_F(MailInStore, TakesPartsFromAChangeWhole) {
  const ItemNumber number = received(fullMail());
  Mail change;
  change.fields.set("Read", true);
  change.attachments.resize(1);
  change.meetingRequest.emplace();
  exchange(folder_, [&](Library& library) { library.change("s1", change); });
  Mail expected = fullMail();
  expected.fields.set("Importance", std::int32_t{0});
  expected.attachments = change.attachments;
  expected.meetingRequest = change.meetingRequest;
  EXPECT_EQ(mailOf(number), expected);
}

TEST_F(MailInStore, IsReplacedWholeWhenItIsAddedAgain) {
  const ItemNumber number = received(fullMail());
  exchange(folder_, [](Library& library) { library.add("s1", mail("Tea")); });
  EXPECT_EQ(mailOf(number), mail("Tea"));
}

TEST_F(MailInStore, IsAsItWasWhenARunDiesBeforeItsKey) {
  const ItemNumber number = received(fullMail());
  store().markMail(number, false);
  Library library(store(), folder_);
  library.change("s1", mail("Coffee", true));
  reopen();
  Mail expected = fullMail();
  expected.fields.set("Read", false);
  EXPECT_EQ(mailOf(number), expected);
  receive(folder_);
  EXPECT_EQ(nextRequest(), Commands{changeOf("s1", "unread")});
}

TEST_F(MailInStore, IsMarkedAndTheMarkGoesOut) {
  const ItemNumber number = received(mail("Tea"));
  store().markMail(number, true);
  EXPECT_TRUE(mailOf(number).read());
  EXPECT_EQ(pending(number)->kind, ChangeKind::change);
  Library library(store(), folder_);
  EXPECT_EQ(library.request(), Commands{changeOf("s1", "read")});
  library.key("k2");
  EXPECT_EQ(library.end().sent, 1U);
  EXPECT_EQ(pending(number), std::nullopt);
  EXPECT_EQ(mailOf(number), mail("Tea", true));
}

TEST_F(MailInStore, IsNotMarkedAsWhatItIsAlready) {
  const ItemNumber number = received(mail("Tea", true));
  store().markMail(number, true);
  EXPECT_EQ(pending(number), std::nullopt);
  store().markMail(number, false);
  EXPECT_EQ(nextRequest(), Commands{changeOf("s1", "unread")});
}

TEST_F(MailInStore, IsUnreadAgainWhenItsMarkIsGivenUp) {
  const ItemNumber number = received(fullMail());
  store().markMail(number, false);
  store().discard(number);
  EXPECT_EQ(mailOf(number), fullMail());
}

TEST_F(MailInStore, KeepsItsMarkAndTakesWhatElseTheServerChanges) {
  const ItemNumber number = received(mail("Tea"));
  store().markMail(number, true);
  Mail change = mail("Coffee", false);
  change.attachments.resize(1);
  exchange(
      folder_, [&](Library& library) { library.change("s1", change); }, kLocalWins);
  Mail expected = change;
  expected.fields.set("Read", true);
  EXPECT_EQ(mailOf(number), expected);
  EXPECT_EQ(nextRequest(), Commands{changeOf("s1", "read")});
  Library library(store(), folder_);
  library.request();
  library.key("k3");
  library.end();
  EXPECT_EQ(mailOf(number), expected);
}

TEST_F(MailInStore, KeepsItsMarkWhenTheServerSaysWhatItSaidBefore) {
  const ItemNumber number = received(fullMail());
  store().markMail(number, false);
  const SyncOutcome outcome = exchange(folder_,
                                       [](Library& library) {
                                         Mail read;
                                         read.fields.set("Read", true);
                                         library.change("s1", read);
                                       },
                                       {.conflict = ConflictRule::server, .allowDeletes = true});
  EXPECT_TRUE(outcome.conflicts.empty());
  EXPECT_FALSE(mailOf(number).read());
  EXPECT_EQ(nextRequest(), Commands{changeOf("s1", "unread")});
}

TEST_F(MailInStore, IsGoneWhenTheServerDeletesItWhateverWasMarked) {
  const ItemNumber number = received(mail("Tea"));
  store().markMail(number, true);
  exchange(
      folder_, [](Library& library) { library.remove("s1"); }, kLocalWins);
  EXPECT_THROW(store().item(number), Error);
  EXPECT_EQ(nextRequest(), Commands{});
}

TEST_F(MailInStore, IsGoneAfterAResetThatDoesNotBringItWhateverWasMarked) {
  const ItemNumber number = received(mail("Tea"));
  store().markMail(number, true);
  store().resetFolder(folder_);
  exchange(folder_, [](Library&) {});
  exchange(folder_, [](Library& library) { library.add("s2", mail("Coffee")); });
  EXPECT_THROW(store().item(number), Error);
  EXPECT_EQ(store().folder(folder_).items, 1U);
  EXPECT_EQ(nextRequest(), Commands{});
}

TEST_F(MailInStore, GoesWithItsFolderWhateverWasMarked) {
  store().markMail(received(mail("Tea")), true);
  hierarchy(
      HierarchyFetch::changes, [&] { updateFolder("m1", "", 0, AS_FOLDER_DELETED); }, "h2");
  EXPECT_TRUE(store().folders().empty());
  EXPECT_TRUE(store().failures().empty());
}

TEST_F(MailInStore, IsDeleted) {
  store().deleteItem(received(mail("Tea")));
  EXPECT_EQ(nextRequest(), Commands{deleteOf("s1")});
}

TEST_F(MailInStore, IsNeitherAddedNorEdited) {
  const ItemNumber number = received(mail("Tea"));
  const auto adviceOf = [](const std::function<void()>& call) {
    try {
      call();
    } catch (const Error& error) {
      return error.advice();
    }
    return std::string();
  };
  EXPECT_EQ(adviceOf([&] { store().addItem(folder_, mail("Coffee")); }),
            "Send the message: see \"airsync send\".");
  EXPECT_EQ(adviceOf([&] { store().changeItem(number, mail("Coffee")); }),
            "Use \"airsync mark\" or \"airsync delete\"; \"airsync send\" sends a message.");
  EXPECT_EQ(mailOf(number), mail("Tea"));
  EXPECT_EQ(pending(number), std::nullopt);
}

TEST_F(MailInStore, IsNamedByAFailure) {
  const ItemNumber number = received(mail("Tea"));
  store().markMail(number, true);
  Library library(store(), folder_);
  library.request();
  library.changeResult("s1", itemResult(5));
  library.key("k2");
  EXPECT_EQ(library.end().refused, 1U);
  ASSERT_EQ(store().failures().size(), 1U);
  EXPECT_EQ(store().failures()[0].name, "Tea");
}

}  // namespace
}  // namespace airsync::test
