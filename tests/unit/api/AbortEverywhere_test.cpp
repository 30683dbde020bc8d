// Each command broken off at every step there is, and run again on the same objects. AddressSanitizer tells
// of anything that still points into memory of the exchange that was broken off.
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/ApiSession.h"

namespace {

using namespace AIRSYNC_STACK;
using namespace airsync_test;

// A conversation with everything that may wait from one step to the next: two changes that do not fit into
// one request, items, answers to changes, folders whose parents come later.
class Conversation {
 public:
  Conversation() { large_.Body = body_.data(); }

  // The answers that `name` needs, and what storage has to hand out.
  void Prepare(ApiSession& session, const std::string& name) {
    session.folder = TestFolder();
    Put(session.key.text, "h1");
    session.hierarchy = nullptr;
    session.carriers = nullptr;
    session.entry = {"New", 12, {"9"}, {"3"}};
    session.store.ForgetChanges();
    session.store.ClearCalls();
    session.transport.ForgetAnswers();
    session.transport.ClearCalls();
    if (name == "Sync") {
      session.store.HandOut({AS_CHANGE_ADD, "", 1, &large_});
      session.store.HandOut({AS_CHANGE_CHANGE, "5:2", 0, &large_});
      session.transport.Answer(HexAndText(
          "03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k2' 00 01 52 03 '5' 00 01 4E 03 '1' 00 01 14"
          "  56 47 4D 03 '5:3' 00 01 5D 00 01 5E 03 'Ada' 00 01 55 56 03 'a' 00 01 56 03 'b' 00 01 01"
          "       48 03 '1960-01-02T00:00:00.000Z' 00 01 01 01 01"
          "  00 00 46 47 4C 03 '1' 00 01 4D 03 '5:4' 00 01 4E 03 '1' 00 01 01 01"
          "  01 01 01"));
      session.transport.Answer(
          HexAndText("03 01 6A 00 45 5C 4F 50 03 'Contacts' 00 01 4B 03 'k3' 00 01 52 03 '5' 00 01"
                     "  4E 03 '1' 00 01 46 48 4D 03 '5:2' 00 01 4E 03 '6' 00 01 01 01 01 01 01"));
    } else if (name == "FolderSync") {
      session.transport.Answer(
          HexAndText("03 01 6A 00 00 07 56 4C 03 '1' 00 01 52 03 'h2' 00 01 4E 57 03 '3' 00 01"
                     "  4F 48 03 '11' 00 01 49 03 '12' 00 01 47 03 'Child' 00 01 4A 03 '12' 00 01 01"
                     "  4F 48 03 '12' 00 01 49 03 '0' 00 01 47 03 'Parent' 00 01 4A 03 '12' 00 01 01"
                     "  4F 48 03 '5' 00 01 49 03 '0' 00 01 47 03 'Contacts' 00 01 4A 03 '9' 00 01 01 01 01"));
    } else {
      session.transport.Answer(HexAndText(CommandNamed(name).answer));
    }
  }

  // What a run that is not disturbed leaves behind: its requests, its storage calls.
  static std::string Trace(const ApiSession& session) {
    std::string trace;
    for (const TransportCall& call : session.transport.Calls()) trace += call.line + call.bytes + "\n";
    for (const std::string& line : session.store.Lines()) trace += line + "\n";
    return trace;
  }

 private:
  std::string body_ = std::string(6000, 'b');
  AS_CONTACT_T large_ = {};
};

class AbortEverywhere : public testing::TestWithParam<const char*> {
 protected:
  AbortEverywhere() {
    conversation_.Prepare(session_, name_);
    EXPECT_EQ(Run(), 0U);
    undisturbed_ = Conversation::Trace(session_);
    transportCalls_ = session_.transport.CallCount() - 1;  // without Open
    for (const StoreCall& call : session_.store.Calls()) storeCalls_.push_back(call.name);
    session_.ReleaseLists();
  }

  SYNC_RESULT Run() { return CommandNamed(name_).run(session_); }

  // Whether the command looks for a cancel once more when the response has been read.
  bool EndsWithACheck() const { return name_ == "Sync" || name_ == "Fetch" || name_ == "MeetingResponse"; }

  // After a run that was disturbed: nothing is left of it, and the next one is as if it had not been.
  void ExpectCleanRunAfter(std::size_t k) {
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U) << name_ << " at " << k;
    EXPECT_FALSE(session_.airSync->CancelRequested()) << name_ << " at " << k;
    FailingMemory::Reset();
    conversation_.Prepare(session_, name_);
    ASSERT_EQ(Run(), 0U) << name_ << " after " << k;
    ASSERT_EQ(Conversation::Trace(session_), undisturbed_) << name_ << " after " << k;
    session_.ReleaseLists();
    EXPECT_EQ(FailingMemory::LiveBlocks(), 0U) << name_ << " after " << k;
  }

  const std::string name_ = GetParam();
  Conversation conversation_;
  ApiSession session_;
  std::string undisturbed_;
  std::size_t transportCalls_ = 0;
  std::vector<std::string> storeCalls_;
};

// Keeps S4.
TEST_P(AbortEverywhere, WhereATransportCallFails) {
  for (std::size_t k = 1; k <= transportCalls_; ++k) {
    conversation_.Prepare(session_, name_);
    session_.transport.FailAt(k);
    const SYNC_RESULT result = Run();
    const bool head = session_.transport.Calls().back().line.rfind("ReadResponseHead", 0) == 0;
    ASSERT_EQ(result, head ? 0x80020000U : 0x8001000cU) << name_ << " at " << k;
    ASSERT_EQ(session_.transport.Calls().size(), k);
    ExpectCleanRunAfter(k);
  }
}

// Keeps S4.
TEST_P(AbortEverywhere, WhereAnAllocationFails) {
  std::size_t k = 1;
  for (;; ++k) {
    conversation_.Prepare(session_, name_);
    FailingMemory::FailAt(k);
    const SYNC_RESULT result = Run();
    if (result == 0) break;
    ASSERT_EQ(result, 0x8001000dU) << name_ << " at " << k;
    ExpectCleanRunAfter(k);
  }
  session_.ReleaseLists();
  EXPECT_GT(k, CommandNamed(name_).document ? 10U : 0U) << "that many allocations there must be";
}

TEST_P(AbortEverywhere, WhereItIsCancelledFromTheTransport) {
  for (std::size_t k = 1; k <= transportCalls_; ++k) {
    conversation_.Prepare(session_, name_);
    const std::size_t before = session_.transport.CallCount();
    session_.transport.OnCall([&](std::size_t number, const std::string&) {
      if (number == before + k) session_.airSync->CancelSync();
    });
    const SYNC_RESULT result = Run();
    session_.transport.OnCall(nullptr);
    if (k < transportCalls_ || EndsWithACheck()) {
      ASSERT_EQ(result, 0x80010010U) << name_ << " at " << k;
    } else {
      // Nothing is transferred any more: the command ends well, and the cancel is the next one's.
      ASSERT_EQ(result, 0U) << name_;
      session_.ReleaseLists();
      ASSERT_TRUE(session_.airSync->CancelRequested());
      ASSERT_EQ(Run(), 0x80010010U);
    }
    ExpectCleanRunAfter(k);
  }
}

TEST_P(AbortEverywhere, WhereItIsCancelledFromStorage) {
  for (std::size_t k = 1; k <= storeCalls_.size(); ++k) {
    conversation_.Prepare(session_, name_);
    std::size_t calls = 0;
    session_.store.OnCall([&](const StoreCall&) {
      if (++calls == k) session_.airSync->CancelSync();
    });
    const SYNC_RESULT result = Run();
    session_.store.OnCall(nullptr);
    if (EndsWithACheck() || storeCalls_[k - 1] == "GetFolderList") {
      ASSERT_EQ(result, 0x80010010U) << name_ << " at " << k;
    } else {
      // Storage is told of a whole response without a transfer in between.
      ASSERT_EQ(result, 0U) << name_ << " at " << k;
      session_.ReleaseLists();
      ASSERT_EQ(Run(), 0x80010010U) << name_ << " at " << k;
    }
    ExpectCleanRunAfter(k);
  }
}

// Keeps S3.
TEST_P(AbortEverywhere, WhereTheResponseIsCut) {
  const std::string answer = HexAndText(CommandNamed(name_).answer);
  for (std::size_t k = 0; k < answer.size(); ++k) {
    conversation_.Prepare(session_, name_);
    session_.transport.ForgetAnswers();
    session_.transport.Answer(answer.substr(0, k));
    ASSERT_EQ(Run(), 0x8001000cU) << name_ << " at " << k;
    ExpectCleanRunAfter(k);
  }
}

// Keeps S3.
TEST_P(AbortEverywhere, WhereAByteOfTheResponseIsWrong) {
  const std::string answer = HexAndText(CommandNamed(name_).answer);
  for (std::size_t k = 0; k < answer.size(); ++k) {
    for (const int wrong : {0x00, 0x01, 0x05, 0x43, 0x45, 0x7F, 0xC3, 0xFF}) {
      conversation_.Prepare(session_, name_);
      session_.store.ForgetChanges();
      session_.transport.ForgetAnswers();
      std::string damaged = answer;
      damaged[k] = static_cast<char>(wrong);
      session_.transport.Answer(damaged);
      // Whatever the result is: the next command works.
      Run();
      session_.ReleaseLists();
      EXPECT_EQ(FailingMemory::LiveBlocks(), 0U) << name_ << " at " << k;
      ExpectCleanRunAfter(k);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Of, AbortEverywhere,
                         testing::Values("FolderSync", "GetHierarchy", "FolderCreate", "FolderDelete",
                                         "FolderUpdate", "Sync", "Fetch", "GetItemEstimate", "MoveItems",
                                         "MeetingResponse", "NotifyEnable", "GetCarrierList", "SendMail",
                                         "SmartReply", "SmartForward", "GetAttachment", "GetOptions"),
                         [](const testing::TestParamInfo<const char*>& row) {
                           return std::string(row.param);
                         });

}  // namespace
