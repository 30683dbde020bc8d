// Mails from the server: fields, times and attachments. Meeting requests have a file of their own.
#include "ItemRig.h"

namespace airsync_test {
namespace {

class ParserEmail : public ItemRig {
 protected:
  ParserEmail() : ItemRig(DATATYPE_EMAIL, "Email") {}

  // What is there of every mail.
  static ItemFields Mail(const ItemFields& fields) {
    ItemFields all = {{"Importance", "0"}, {"Read", "0"}, {"AttachmentCount", "0"}};
    for (const auto& [name, value] : fields) all[name] = value;
    return all;
  }

  std::string Received(const std::string& text) {
    return DecodedField({{"DateReceived", text}}, "DateReceived");
  }

  static Node Attachment(const std::string& name) { return {"Attachment", Nodes{{"AttName", name}}}; }
  static Node Attachments(const Nodes& children) { return {"Attachments", children}; }
};

TEST_F(ParserEmail, HasAllFieldsWhicheverCommandBringsIt) {
  const Lines golden = {"add", "change", "fetch"};
  const Lines calls = {"AddServerItem 42 id=2:1", "ChangeServerItem 42 id=2:1",
                       "FetchedItem 42 id=2:1 result=0x00000000"};
  for (std::size_t i = 0; i < golden.size(); ++i) {
    store.ClearCalls();
    EXPECT_EQ(SyncGolden("sync-answer-mail-all-fields-" + golden[i]), 0U);
    ASSERT_EQ(store.Lines(), (Lines{calls[i], "StoreSyncKey 42 key={7}13"}));
    EXPECT_EQ(store.Calls()[0].mail, FullMailFields());
  }
}

TEST_F(ParserEmail, IsHandedOutAlsoWhenTheServerRefusedToFetchIt) {
  const Node fetch = {"Fetch",
                      Nodes{{"Status", "8"}, {"ServerId", "1"}, {"ApplicationData", Nodes{{"To", "t"}}}}};
  EXPECT_EQ(Sync(AnswerOf({Responses({fetch})})), 0U);
  EXPECT_EQ(store.Lines()[0], "FetchedItem 42 id=1 result=0x80010008");
  EXPECT_EQ(store.Calls()[0].mail, Mail({{"To", "t"}}));
}

TEST_F(ParserEmail, IsNullOrZeroInEachFieldThatDidNotCome) {
  EXPECT_EQ(Decoded({}), Mail({}));
  EXPECT_EQ(Decoded({{"ReplyTo", "x"}, {"Unheard", "x"}}), Mail({})) << "another spelling";
}

const FieldRow kRows[] = {
    {"Body", "x", "Body", "x"},
    {"BodySize", "5000", "BodySize", "5000"},
    {"BodyTruncated", "1", "BodyTruncated", "1"},
    {"To", "x", "To", "x"},
    {"Cc", "x", "Cc", "x"},
    {"From", "x", "From", "x"},
    {"Replyto", "x", "ReplyTo", "x"},
    {"DateReceived", "2004-06-12T10:20:30.000Z", "DateReceived", "2004-06-12 10:20:30"},
    {"Subject", "x", "Subject", "x"},
    {"DisplayTo", "x", "DisplayTo", "x"},
    {"Importance", "2", "Importance", "2"},
    {"Read", "1", "Read", "1"},
    {"MessageClass", "x", "MessageClass", "x"},
    {"ThreadTopic", "x", "ThreadTopic", "x"},
};

TEST_F(ParserEmail, ReadsEachFieldUnderItsOwnTag) {
  for (const FieldRow& row : kRows) {
    EXPECT_EQ(Decoded({{row.tag, row.text}}), Mail({{row.name, row.value}})) << row.tag;
  }
}

TEST_F(ParserEmail, HasNoFieldForAnElementWithoutText) {
  Nodes elements = {{"Attachments"}};
  for (const FieldRow& row : kRows) elements.push_back({row.tag});
  EXPECT_EQ(Decoded(elements), Mail({}));
}

TEST_F(ParserEmail, KeepsTheEmptyTextAndScansNone) {
  for (const FieldRow& row : kRows) {
    const bool isText = std::string(row.value) == "x";
    EXPECT_EQ(Decoded({{row.tag, ""}}), isText ? Mail({{row.name, ""}}) : Mail({})) << row.tag;
  }
}

TEST_F(ParserEmail, IsReadForEveryNumberButZero) {
  const char* const rows[][2] = {{"0", "0"},   {"1", "1"},   {"2", "1"}, {"-1", "1"},
                                 {"256", "1"}, {"yes", "0"}, {"", "0"}};
  for (const auto& row : rows) EXPECT_EQ(DecodedField({{"Read", row[0]}}, "Read"), row[1]) << row[0];
}

TEST_F(ParserEmail, TellsATruncatedBodyByTwoFieldsOnly) {
  EXPECT_EQ(Decoded({{"Body", "the first part"}, {"BodySize", "70000"}, {"BodyTruncated", "1"}}),
            Mail({{"Body", "the first part"}, {"BodySize", "70000"}, {"BodyTruncated", "1"}}));
}

TEST_F(ParserEmail, RoundsItsTimeUpWithTheCarry) {
  EXPECT_EQ(Received("2004-12-31T23:59:59.000Z"), "2004-12-31 23:59:59");
  EXPECT_EQ(Received("2004-12-31T23:59:59.500Z"), "2005-01-01 00:00:00");
  EXPECT_EQ(Received("2004-02-28T23:59:59.001Z"), "2004-02-29 00:00:00");
  EXPECT_EQ(Received("2004-06-12T10:20:30.001Z"), "2004-06-12 10:20:31");
}

TEST_F(ParserEmail, ReadsOfItsTimeWhatFits) {
  EXPECT_EQ(Received("2004-06-12"), "2004-06-12 00:00:00");
  EXPECT_EQ(Received("20041231T235959Z"), "2004-00-00 00:00:00") << "the compact form is not read";
  EXPECT_EQ(Received("unknown"), "0000-00-00 00:00:00");
}

TEST_F(ParserEmail, InheritsNoPartsFromThePreviousMail) {
  EXPECT_EQ(SyncTree(TreeOf({{{"DateReceived", "2004-06-12T10:20:30.000Z"}}, {{"DateReceived", "x"}}})), 0U);
  EXPECT_EQ(store.Calls().at(1).mail, Mail({{"DateReceived", "0000-00-00 00:00:00"}}));
}

// Attachments.

const FieldRow kAttachmentRows[] = {
    {"AttName", "x", "Attachments[0].Name", "x"},
    {"AttSize", "1234", "Attachments[0].Size", "1234"},
    {"AttOID", "x", "Attachments[0].OID", "x"},
    {"AttMethod", "5", "Attachments[0].Method", "5"},
    {"DisplayName", "x", "Attachments[0].DisplayName", "x"},
};

TEST_F(ParserEmail, ReadsEachFieldOfAnAttachmentUnderItsOwnTag) {
  for (const FieldRow& row : kAttachmentRows) {
    ItemFields expected =
        Mail({{"AttachmentCount", "1"}, {"Attachments[0].Size", "0"}, {"Attachments[0].Method", "0"}});
    expected[row.name] = row.value;
    EXPECT_EQ(Decoded({Attachments({{"Attachment", Nodes{{row.tag, row.text}}}})}), expected) << row.tag;
  }
}

TEST_F(ParserEmail, HasAttachmentsInTheDocumentsOrder) {
  const ItemFields fields = Decoded({Attachments({Attachment("a"), Attachment("b"), Attachment("c")})});
  EXPECT_EQ(fields.at("AttachmentCount"), "3");
  EXPECT_EQ(fields.at("Attachments[0].Name"), "a");
  EXPECT_EQ(fields.at("Attachments[1].Name"), "b");
  EXPECT_EQ(fields.at("Attachments[2].Name"), "c");
}

TEST_F(ParserEmail, HasAttachmentsWithoutAnythingInThem) {
  Nodes empty;
  for (const FieldRow& row : kAttachmentRows) empty.push_back({row.tag});
  EXPECT_EQ(Decoded({Attachments({{"Attachment"}, {"Attachment", empty}})}),
            Mail({{"AttachmentCount", "2"},
                  {"Attachments[0].Size", "0"},
                  {"Attachments[0].Method", "0"},
                  {"Attachments[1].Size", "0"},
                  {"Attachments[1].Method", "0"}}));
}

TEST_F(ParserEmail, PassesOverForeignChildrenOfItsAttachments) {
  const ItemFields fields =
      Decoded({Attachments({{"Other", Nodes{{"AttName", "x"}}}, Attachment("a"), {"Other"}})});
  EXPECT_EQ(fields.at("AttachmentCount"), "1");
  EXPECT_EQ(fields.at("Attachments[0].Name"), "a");
}

TEST_F(ParserEmail, HasNoArrayWithoutAttachments) {
  Look<AS_EMAIL_T>([](const AS_EMAIL_T& mail) { EXPECT_EQ(mail.Attachments, nullptr); });
  EXPECT_EQ(Decoded({Attachments({})}), Mail({}));
  EXPECT_EQ(Decoded({Attachments({{"Other"}})}), Mail({}));
  EXPECT_EQ(Decoded({}), Mail({}));
}

TEST_F(ParserEmail, GrowsTheArrayByOneEntry) {
  sml_element* const tree = TreeOf({{Attachments({Attachment("a"), Attachment("b"), Attachment("c")})}});
  std::string calls;
  Look<AS_EMAIL_T>([&calls](const AS_EMAIL_T&) { calls = FailingMemory::CallsAsText(); });
  FailingMemory::Record(true);
  EXPECT_EQ(SyncTree(tree), 0U);
  const std::string entry = std::to_string(sizeof(AS_ATTACHMENT_T));
  EXPECT_THAT(calls, testing::EndsWith("malloc " + entry + ", realloc " +
                                       std::to_string(2 * sizeof(AS_ATTACHMENT_T)) + ", realloc " +
                                       std::to_string(3 * sizeof(AS_ATTACHMENT_T))));
}

// The array is gone, the count keeps its last value: storage tests the pointer first.
TEST_F(ParserEmail, LosesAttachmentsThatCantGrowAndNothingElse) {
  for (const std::size_t k : {3U, 4U}) {
    store.ClearCalls();
    Look<AS_EMAIL_T>([](const AS_EMAIL_T& mail) { EXPECT_EQ(mail.Attachments, nullptr); });
    sml_element* const tree =
        TreeOf({{{"ThreadTopic", "t"}, Attachments({Attachment("a"), Attachment("b"), Attachment("c")})}});
    FailingMemory::FailAt(k);
    EXPECT_EQ(SyncTree(tree), 0U);
    EXPECT_EQ(store.Calls().at(0).mail,
              Mail({{"ThreadTopic", "t"}, {"AttachmentCount", std::to_string(k - 2)}}));
  }
}

TEST_F(ParserEmail, MayHaveAThousandAttachments) {
  EXPECT_EQ(DecodedField({Attachments(Nodes(1000, Attachment("a")))}, "AttachmentCount"), "1000");
}

TEST_F(ParserEmail, LeavesNothingBehindWhicheverAllocationFails) {
  EXPECT_GT(FailEachAllocation("sync-answer-mail-all-fields-add"), 40U);
}

TEST_F(ParserEmail, ReleasesWhatItMadeForAMailBeforeTheNextOne) {
  const Nodes elements = {{"DateReceived", "2004-06-12T10:20:30.000Z"},
                          {"BodySize", "1"},
                          {"BodyTruncated", "1"},
                          Attachments({Attachment("a"), Attachment("b")})};
  sml_element* const tree = TreeOf(std::vector<Nodes>(20, elements));
  const std::size_t ofTree = FailingMemory::LiveBlocks();
  std::vector<std::size_t> live;
  Look<AS_EMAIL_T>([&live](const AS_EMAIL_T&) { live.push_back(FailingMemory::LiveBlocks()); });
  EXPECT_EQ(SyncTree(tree), 0U);
  EXPECT_EQ(live, std::vector<std::size_t>(20, ofTree + 2 * 4)) << "four values, each with its node";
}

}  // namespace
}  // namespace airsync_test
