// Contacts from the server: every field, the quoted addresses, the lists and the dates.
#include <cstring>

#include "ParserRig.h"
#include "support/FullContact.h"

namespace airsync_test {
namespace {

// Looks at the record itself while it lives.
class ContactStore : public RecordingStore {
 public:
  std::function<void(const AS_CONTACT_T&)> look;

  SYNC_RESULT AddServerItem(INT32 handle, const SERVER_ID* id, const void* record) override {
    return Look(record), RecordingStore::AddServerItem(handle, id, record);
  }
  SYNC_RESULT ChangeServerItem(INT32 handle, const SERVER_ID* id, const void* record) override {
    return Look(record), RecordingStore::ChangeServerItem(handle, id, record);
  }
  SYNC_RESULT FetchedItem(INT32 handle, const SERVER_ID* id, const void* record,
                          SYNC_RESULT result) override {
    return Look(record), RecordingStore::FetchedItem(handle, id, record, result);
  }

 private:
  void Look(const void* record) {
    if (look) look(*static_cast<const AS_CONTACT_T*>(record));
  }
};

class ParserContact : public ParserRig {
 protected:
  SYNC_RESULT SyncContacts(sml_element* tree) {
    contacts.ClearCalls();
    return Run(tree, [this](sml_element* root) { parser.Sync(root, &contacts, &folder, status); });
  }

  // The fields of an added contact with these elements.
  ContactFields Decoded(const Nodes& elements) {
    EXPECT_EQ(SyncContacts(TreeOf(elements)), 0U);
    return contacts.Calls().empty() ? ContactFields() : *contacts.Calls()[0].contact;
  }

  static sml_element* TreeOf(const Nodes& elements) {
    return Tree(Answer({Commands({{"Add", Nodes{{"ServerId", "1"}, {"ApplicationData", elements}}}})}), 0);
  }

  static Node List(const std::string& tag, const std::string& entryTag, const Lines& entries) {
    Nodes children;
    for (const std::string& entry : entries) children.push_back({entryTag, entry});
    return {tag, children};
  }

  std::string Birthday(const std::string& text) {
    const ContactFields fields = Decoded({{"Birthday", text}});
    return fields.count("Birthday") == 0 ? "(null)" : fields.at("Birthday");
  }

  ContactStore contacts;
};

void ExpectTime(const struct tm* time, int year, int month, int day, int hour, int minute, int second) {
  ASSERT_NE(time, nullptr);
  EXPECT_EQ(time->tm_year, year - 1900);
  EXPECT_EQ(time->tm_mon, month - 1);
  EXPECT_EQ(time->tm_mday, day);
  EXPECT_EQ(time->tm_hour, hour);
  EXPECT_EQ(time->tm_min, minute);
  EXPECT_EQ(time->tm_sec, second);
  EXPECT_EQ(time->tm_wday, 0);
  EXPECT_EQ(time->tm_yday, 0);
  EXPECT_EQ(time->tm_isdst, 0);
}

TEST_F(ParserContact, HasAll52FieldsWhicheverCommandBringsIt) {
  int looked = 0;
  contacts.look = [&looked](const AS_CONTACT_T& contact) {
    ++looked;
    for (const ContactText& text : kContactTexts) EXPECT_STREQ(contact.*text.field, text.value) << text.tag;
    ASSERT_NE(contact.BodySize, nullptr);
    EXPECT_EQ(*contact.BodySize, 5000);
    ASSERT_NE(contact.BodyTruncated, nullptr);
    EXPECT_EQ(*contact.BodyTruncated, 1);
    EXPECT_STREQ(contact.Categories, "Friends@@Chess");
    EXPECT_STREQ(contact.Children, "Anna@@Bert@@Cleo");
    ExpectTime(contact.Anniversary, 2004, 6, 12, 10, 20, 30);
    ExpectTime(contact.Birthday, 1970, 1, 2, 0, 0, 0);
  };
  const Lines golden = {"add", "change", "fetch"};
  const Lines calls = {"AddServerItem 42 id=2:1", "ChangeServerItem 42 id=2:1",
                       "FetchedItem 42 id=2:1 result=0x00000000"};
  for (std::size_t i = 0; i < golden.size(); ++i) {
    const std::string name = "sync-answer-contact-all-fields-" + golden[i];
    EXPECT_EQ(SyncContacts(ReadTree(GoldenDocument(name))), 0U);
    EXPECT_EQ(contacts.Lines(), (airsync_test::Lines{calls[i], "StoreSyncKey 42 key={7}13"}));
  }
  EXPECT_EQ(looked, 3);
}

TEST_F(ParserContact, IsNullInEachFieldThatDidNotCome) {
  int looked = 0;
  contacts.look = [&looked](const AS_CONTACT_T& contact) {
    ++looked;
    const AS_CONTACT_T nothing = {};
    EXPECT_EQ(std::memcmp(&contact, &nothing, sizeof nothing), 0);
  };
  EXPECT_EQ(SyncContacts(TreeOf({})), 0U);
  EXPECT_EQ(SyncContacts(TreeOf({{"AssistantPhoneNumber", "not this tag"}, {"Unheard", "x"}})), 0U);
  EXPECT_EQ(looked, 2);
}

TEST_F(ParserContact, ReadsEachTextUnderItsOwnTag) {
  for (const ContactText& text : kContactTexts) {
    contacts.look = [&text](const AS_CONTACT_T& contact) {
      AS_CONTACT_T expected = {};
      expected.*text.field = contact.*text.field;
      EXPECT_STREQ(contact.*text.field, "x") << text.tag;
      EXPECT_EQ(std::memcmp(&contact, &expected, sizeof expected), 0) << text.tag << " alone";
    };
    Decoded({{text.tag, "x"}});
  }
}

TEST_F(ParserContact, KeepsTheEmptyTextOfAnElement) {
  EXPECT_EQ(Decoded({{"FirstName", ""}, {"LastName"}}), (ContactFields{{"FirstName", ""}}));
}

TEST_F(ParserContact, FindsAFieldAtAnyDepthAndTakesTheFirst) {
  EXPECT_EQ(Decoded({{"Wrapper", Nodes{{"Deeper", Nodes{{"Body", "deep"}}}}}, {"Body", "flat"}}),
            (ContactFields{{"Body", "deep"}}));
}

TEST_F(ParserContact, KeepsTheQuotedPartOfAnAddress) {
  const char* const tags[] = {"Email1Address", "Email2Address", "Email3Address"};
  for (const char* const tag : tags) {
    EXPECT_EQ(Decoded({{tag, "\"Ada Byron\" <ada@example.test>"}}), (ContactFields{{tag, "Ada Byron"}}));
    EXPECT_EQ(Decoded({{tag, "ada@example.test"}}), (ContactFields{{tag, "ada@example.test"}}));
    EXPECT_EQ(Decoded({{tag, "\"\"\"Ada\"\"Byron\""}}), (ContactFields{{tag, "Ada"}}));
    EXPECT_EQ(Decoded({{tag, "ada \"Byron\""}}), (ContactFields{{tag, "ada "}}));
    EXPECT_EQ(Decoded({{tag, "\"Ada"}}), (ContactFields{{tag, "Ada"}}));
    EXPECT_EQ(Decoded({{tag, "\" \""}}), (ContactFields{{tag, " "}}));
  }
}

TEST_F(ParserContact, HasNoAddressWhereThereIsNothingButQuotes) {
  EXPECT_EQ(Decoded({{"Email1Address", "\""}, {"Email2Address", "\"\"\"\""}, {"Email3Address", ""}}),
            ContactFields());
}

TEST_F(ParserContact, EndsTheAddressInTheResponsesOwnText) {
  sml_element* const tree = TreeOf({{"Email1Address", "\"Ada\" <a@b>"}});
  const SYNC_RESULT result = CatchAbort([&]() { parser.Sync(tree, &contacts, &folder, status); });
  ASSERT_EQ(result, 0U);
  EXPECT_EQ(std::memcmp(Parser::ProcessDataElement(tree, "Email1Address"), "\"Ada\0 <a@b>", 12), 0);
  SE_Destroy(tree);
}

TEST_F(ParserContact, PacksCategoriesWithoutTheEmptyOnes) {
  EXPECT_EQ(Decoded({List("Categories", "Category", {"A", "", "B"})}),
            (ContactFields{{"Categories", "A@@B"}}));
  EXPECT_EQ(Decoded({List("Categories", "Category", {"", "A"})}), (ContactFields{{"Categories", "A"}}));
  EXPECT_EQ(Decoded({List("Categories", "Category", {"", ""})}), ContactFields());
  EXPECT_EQ(Decoded({{"Categories"}}), ContactFields());
  EXPECT_EQ(Decoded({{"Categories", "text"}}), ContactFields());
}

TEST_F(ParserContact, PacksChildrenWithTheEmptyOnes) {
  EXPECT_EQ(Decoded({List("Children", "Child", {"A", "", "B"})}), (ContactFields{{"Children", "A@@@@B"}}));
  EXPECT_EQ(Decoded({List("Children", "Child", {"", "A"})}), (ContactFields{{"Children", "@@A"}}));
  EXPECT_EQ(Decoded({List("Children", "Child", {"", ""})}), (ContactFields{{"Children", "@@"}}));
  EXPECT_EQ(Decoded({{"Children", Nodes{{"Child", "A"}, {"Child"}}}}), (ContactFields{{"Children", "A@@"}}));
  EXPECT_EQ(Decoded({{"Children"}}), ContactFields());
}

TEST_F(ParserContact, PacksOnlyEntriesOfTheListsOwnKind) {
  EXPECT_EQ(
      Decoded({{"Categories", Nodes{{"Child", "x"}, {"Category", "A"}, {"x", Nodes{{"Category", "B"}}}}},
               {"Children", Nodes{{"Category", "x"}, {"Child", "C"}}}}),
      (ContactFields{{"Categories", "A"}, {"Children", "C"}}));
}

TEST_F(ParserContact, PacksAListOfAnyLength) {
  const std::string entry(1000, 'c');
  Lines entries(300, entry);
  std::string packed = entry;
  for (int i = 1; i < 300; ++i) packed += "@@" + entry;
  EXPECT_EQ(Decoded({List("Categories", "Category", entries)}), (ContactFields{{"Categories", packed}}));
}

TEST_F(ParserContact, ReadsSizeAndTruncationOfTheBody) {
  struct {
    const char* text;
    const char* size;
    const char* truncated;
  } const rows[] = {{"0", "0", "0"},   {"1", "1", "1"},      {"5000", "5000", "1"},
                    {"-7", "-7", "1"}, {" 12ab", "12", "1"}, {"many", "0", "0"},
                    {"007", "7", "1"}, {"0x1", "0", "0"},    {"2147483647", "2147483647", "1"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Decoded({{"BodySize", row.text}, {"BodyTruncated", row.text}}),
              (ContactFields{{"BodySize", row.size}, {"BodyTruncated", row.truncated}}))
        << row.text;
  }
  EXPECT_EQ(Decoded({{"BodySize"}, {"BodyTruncated"}}), ContactFields());
}

TEST_F(ParserContact, ReadsADateOfTheExtendedForm) {
  EXPECT_EQ(Birthday("2004-12-31T23:59:59.000Z"), "2004-12-31 23:59:59");
  EXPECT_EQ(Birthday("1815-12-10T00:00:00.000Z"), "1815-12-10 00:00:00");
}

TEST_F(ParserContact, RoundsAFractionUpWithItsCarry) {
  EXPECT_EQ(Birthday("2004-12-31T23:59:59.500Z"), "2005-01-01 00:00:00");
  EXPECT_EQ(Birthday("2004-02-28T23:59:59.001Z"), "2004-02-29 00:00:00");
  EXPECT_EQ(Birthday("2004-06-12T10:20:30.001Z"), "2004-06-12 10:20:31");
}

TEST_F(ParserContact, InheritsWhatABirthdayDoesNotSayFromTheAnniversary) {
  EXPECT_EQ(Decoded({{"Birthday", "unknown"}, {"Anniversary", "2004-06-12T10:20:30.000Z"}}),
            (ContactFields{{"Anniversary", "2004-06-12 10:20:30"}, {"Birthday", "2004-06-12 10:20:30"}}));
  EXPECT_EQ(Decoded({{"Anniversary", "2004-06-12T10:20:59.500Z"}, {"Birthday", "1970-01"}}),
            (ContactFields{{"Anniversary", "2004-06-12 10:21:00"}, {"Birthday", "1970-01-12 10:21:00"}}))
      << "rounded once only";
}

TEST_F(ParserContact, InheritsNothingFromThePreviousItem) {
  EXPECT_EQ(Birthday("2004-06-12T10:20:30.000Z"), "2004-06-12 10:20:30");
  EXPECT_EQ(Birthday("unknown"), "0000-00-00 00:00:00");
}

TEST_F(ParserContact, SurvivesDatesThatAreNone) {
  for (const char* const text :
       {"9999-99-99T99:99:99.999Z", "-999--9--9T-9:-9:-9.-99Z", "0000-00-00T00:00:59.9Z",
        "99999999999999999999", "2004-12-31T23:59:59.500", "%n%s%d"}) {
    EXPECT_NE(Birthday(text), "(null)") << text;
  }
  EXPECT_EQ(Decoded({{"Birthday"}}), ContactFields());
}

// Every item leaves as many blocks behind as it found, however many there are.
TEST_F(ParserContact, ReleasesWhatItMadeForAnItemBeforeTheNextOne) {
  Nodes items;
  for (int i = 0; i < 20; ++i) {
    items.push_back({"Add", Nodes{{"ServerId", "1"},
                                  {"ApplicationData", Nodes{{"BodySize", "1"},
                                                            {"BodyTruncated", "1"},
                                                            {"Birthday", "2004-06-12T10:20:30.000Z"},
                                                            {"Anniversary", "2004-06-12T10:20:30.000Z"},
                                                            List("Categories", "Category", {"A", "B"}),
                                                            List("Children", "Child", {"A", "B"})}}}});
  }
  std::vector<std::size_t> live;
  contacts.look = [&live](const AS_CONTACT_T&) { live.push_back(FailingMemory::LiveBlocks()); };
  sml_element* const tree = Tree(Answer({Commands(items)}), 0);
  const std::size_t ofTree = FailingMemory::LiveBlocks();
  EXPECT_EQ(SyncContacts(tree), 0U);
  EXPECT_EQ(live, std::vector<std::size_t>(20, ofTree + 12)) << "six values, each with its node";
}

// The first entry of a list is a new block (two allocations), each further one grows it.
TEST_F(ParserContact, LosesAListThatCantGrowAndNothingElse) {
  const Nodes elements = {List("Categories", "Category", {"A", "B", "C"}),
                          List("Children", "Child", {"D"}),
                          {"FirstName", "Ada"}};
  for (const std::size_t k : {3U, 4U}) {
    sml_element* const tree = TreeOf(elements);
    FailingMemory::FailAt(k);
    EXPECT_EQ(SyncContacts(tree), 0U);
    EXPECT_EQ(*contacts.Calls().at(0).contact, (ContactFields{{"Children", "D"}, {"FirstName", "Ada"}})) << k;
    EXPECT_EQ(contacts.Calls().size(), 2U) << "the key is stored";
  }
  for (const std::size_t k : {1U, 2U, 5U, 6U}) {
    sml_element* const tree = TreeOf(elements);
    FailingMemory::FailAt(k);
    EXPECT_EQ(SyncContacts(tree), 0x8001000dU) << k;
    EXPECT_TRUE(contacts.Calls().empty());
  }
}

TEST_F(ParserContact, EndsTheExchangeAtEachNewBlockThatFails) {
  const Nodes elements = {{"BodySize", "1"},
                          {"BodyTruncated", "1"},
                          {"Anniversary", "2004-06-12T10:20:30.000Z"},
                          {"Birthday", "2004-06-12T10:20:30.000Z"}};
  for (std::size_t k = 1; k <= 8; ++k) {
    sml_element* const tree = TreeOf(elements);
    FailingMemory::FailAt(k);
    EXPECT_EQ(SyncContacts(tree), 0x8001000dU) << k;
    EXPECT_TRUE(contacts.Calls().empty());
  }
  sml_element* const tree = TreeOf(elements);
  FailingMemory::FailAt(9);
  EXPECT_EQ(SyncContacts(tree), 0U) << "four blocks are all";
}

}  // namespace
}  // namespace airsync_test
