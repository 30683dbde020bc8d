#include "data/SeedMails.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

#include "data/Seed.h"
#include "items/MailClass.h"
#include "items/MailFields.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

using nlohmann::json;

constexpr int kMany = 500;
const Moment kNow = *momentOf("2026-11-21T12:00:00Z");

SeedMail mail(int number) { return seedMail(1, number, kNow); }

class DemoSeedMails : public ::testing::Test {
 protected:
  // A new data file with so many mails, and nothing else.
  void fill(int mails) {
    state.clock.fixed = kNow;
    seed(state, {.contacts = 0, .mails = mails});
  }
  // All mails as the administration shows them.
  std::vector<json> all() {
    std::vector<json> records;
    for (const Folder& folder : state.folders.list())
      for (const Item& item : state.items.list(folder.id)) records.push_back(MailClass().view(item.record));
    return records;
  }

  State state{":memory:"};
};

TEST_F(DemoSeedMails, AreTheSameForTheSameSeedAndTime) {
  EXPECT_EQ(seedMail(42, 7, kNow).record, seedMail(42, 7, kNow).record);
  EXPECT_NE(seedMail(42, 7, kNow).record, seedMail(42, 8, kNow).record);
  EXPECT_NE(seedMail(42, 7, kNow).record, seedMail(43, 7, kNow).record);
}

TEST_F(DemoSeedMails, AreRecordsAsTheyAreStored) {
  fill(kMany);
  int count = 0;
  for (const Folder& folder : state.folders.list())
    for (const Item& item : state.items.list(folder.id)) {
      EXPECT_EQ(MailClass().check(item.record), item.record) << item.record;
      ++count;
    }
  EXPECT_EQ(count, kMany);
}

TEST_F(DemoSeedMails, UseEveryField) {
  fill(kMany);
  std::map<std::string, int> uses, inAttachments, inRequests, inRules;
  const auto count = [](std::map<std::string, int>& counts, const json& record) {
    for (const auto& [name, value] : record.items()) ++counts[name];
  };
  for (const json& record : all()) {
    count(uses, record);
    if (record.contains("Attachments"))
      for (const json& each : record["Attachments"]) count(inAttachments, each);
    if (!record.contains("MeetingRequest")) continue;
    count(inRequests, record["MeetingRequest"]);
    if (record["MeetingRequest"].contains("Recurrence"))
      count(inRules, record["MeetingRequest"]["Recurrence"]);
  }
  for (const ItemField& field : kMailFields) EXPECT_GT(uses[std::string(field.name)], 0) << field.name;
  for (const ItemField& field : kAttachmentFields)
    EXPECT_GT(inAttachments[std::string(field.name)], 0) << field.name;
  for (const ItemField& field : kMeetingRequestFields)
    EXPECT_GT(inRequests[std::string(field.name)], 0) << field.name;
  for (const ItemField& field : kMeetingRecurrenceFields)
    EXPECT_GT(inRules[std::string(field.name)], 0) << field.name;
}

TEST_F(DemoSeedMails, AreReadAndUnreadOfAllImportancesAndAllKindsOfMeetings) {
  std::set<int> importances, instances, types;
  std::set<bool> read;
  for (int number = 0; number < kMany; ++number) {
    const json record = mail(number).record;
    importances.insert(record["Importance"].get<int>());
    read.insert(record["Read"].get<bool>());
    if (!record.contains("MeetingRequest")) continue;
    const json& request = record["MeetingRequest"];
    instances.insert(request["InstanceType"].get<int>());
    EXPECT_EQ(request["InstanceType"] == 1, request.contains("Recurrence")) << number;
    EXPECT_EQ(request["InstanceType"] == 2, request.contains("RecurrenceId")) << number;
    if (request.contains("Recurrence")) types.insert(request["Recurrence"]["Type"].get<int>());
  }
  EXPECT_EQ(importances, (std::set<int>{0, 1, 2}));
  EXPECT_EQ(read, (std::set<bool>{false, true}));
  EXPECT_EQ(instances, (std::set<int>{0, 1, 2}));
  EXPECT_EQ(types, (std::set<int>{0, 1, 2, 3, 5, 6}));
}

TEST_F(DemoSeedMails, LieInTheInboxInSentAndDeletedItemsAndInUserFolders) {
  fill(100);
  for (const char* folder : {"f2", "f4", "f5", "m/1", "m/3", "m%2F4"})
    EXPECT_GT(state.items.count(folder), 0) << folder;
}

TEST_F(DemoSeedMails, OfEveryAgeSoThatEachFilterCutsSome) {
  const MailClass mails;
  std::set<std::size_t> sizes;
  for (const int filter : {0, 1, 2, 3, 4, 5}) {
    std::size_t size = 0;
    for (int number = 0; number < kMany; ++number) {
      const Moment received = *momentOf(mail(number).record["DateReceived"].get<std::string>());
      EXPECT_LT(received, kNow);
      size += received.time_since_epoch().count() >= mails.windowStart(filter, kNow) ? 1 : 0;
    }
    EXPECT_GT(size, 0u);
    sizes.insert(size);
  }
  EXPECT_EQ(sizes.size(), 6u);
}

TEST_F(DemoSeedMails, HaveBodiesBeyondEveryLimit) {
  for (int truncation = 1; truncation <= 7; ++truncation)
    EXPECT_GT(mail(10 * (truncation - 1) + 4).record["Body"].get<std::string>().size(),
              bodyLimitOf(truncation));
}

TEST_F(DemoSeedMails, AttachmentsHaveContentUnderTheirHandles) {
  fill(200);
  std::set<std::string> names;
  bool empty = false, message = false;
  for (const json& record : all()) {
    if (!record.contains("Attachments")) continue;
    for (const json& each : record["Attachments"]) {
      const auto found = state.attachments.find(each["OID"]);
      ASSERT_TRUE(found.has_value()) << each;
      EXPECT_EQ(found->name, each["Name"]);
      EXPECT_EQ(each["Size"], announcedSize(found->content.size()));
      names.insert(found->name);
      empty = empty || found->content.empty();
      message = message || (each["Method"] == 5 && found->type == "message/rfc822");
    }
  }
  EXPECT_EQ(names.size(), 8u);
  EXPECT_TRUE(empty);
  EXPECT_TRUE(message);
}

TEST_F(DemoSeedMails, CanBeSentWhole) {
  for (int number = 0; number < kMany; ++number)
    EXPECT_NO_THROW(encode(MailClass().encode(mail(number).record, TransferOptions()))) << number;
}

}  // namespace
}  // namespace demoserver
