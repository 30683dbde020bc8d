#include "store/Contact.h"

#include <cstring>

#include "StoreFixture.h"

namespace airsync::test {
namespace {

// A contact with every field present and different.
Contact fullContact() {
  Contact contact;
  for (std::size_t index = 0; index < Contact::kFields; ++index) {
    const int number = static_cast<int>(index);
    switch (AS_CONTACT_FIELDS[index].form) {
      case AS_FORM_NUMBER:
        contact.set(index, std::int32_t{-1000 - number});
        break;
      case AS_FORM_FLAG:
        contact.set(index, true);
        break;
      case AS_FORM_TIME:
        contact.set(index, UtcTime{.year = 1900 + number, .month = 2, .day = 3, .hour = 4, .minute = 5});
        break;
      case AS_FORM_LIST:
        contact.set(index, Contact::List{"first " + std::to_string(number), "", "third"});
        break;
      default:
        contact.set(index, "value " + std::to_string(number));
        break;
    }
  }
  return contact;
}

TEST(Contact, HasTheFieldsOfTheRecordByTheirNames) {
  EXPECT_EQ(Contact::kFields, 52U);
  EXPECT_EQ(Contact::field("Body"), 0U);
  EXPECT_EQ(Contact::field("YomiLastName"), 51U);
  EXPECT_EQ(Contact::field("body"), std::nullopt);
}

TEST(Contact, BecomesARecordWithEveryField) {
  const Contact contact = fullContact();
  ContactRecord record(contact);
  const AS_CONTACT_T& raw = record.record();
  EXPECT_STREQ(raw.Body, "value 0");
  EXPECT_EQ(*raw.BodySize, -1001);
  EXPECT_EQ(*raw.BodyTruncated, 1);
  EXPECT_EQ(raw.Anniversary->tm_year, 3);
  EXPECT_EQ(raw.Birthday->tm_mon, 1);
  EXPECT_STREQ(raw.Categories, "first 16@@@@third");
  EXPECT_STREQ(raw.Children, "first 17@@@@third");
  EXPECT_STREQ(raw.YomiLastName, "value 51");
  EXPECT_EQ(Contact::fromRecord(raw), contact);
}

TEST(Contact, TellsAbsentFromEmpty) {
  AS_CONTACT_T raw = {};
  char empty[] = "";
  raw.Title = empty;
  const Contact contact = Contact::fromRecord(raw);
  ASSERT_NE(contact.get<std::string>("Title"), nullptr);
  EXPECT_EQ(*contact.get<std::string>("Title"), "");
  EXPECT_EQ(contact.get<std::string>("Suffix"), nullptr);

  ContactRecord record(contact);
  EXPECT_STREQ(record.record().Title, "");
  EXPECT_EQ(record.record().Suffix, nullptr);
}

TEST(Contact, IsARecordOfNullPointersWhenItIsEmpty) {
  ContactRecord record((Contact()));
  const AS_CONTACT_T nothing = {};
  EXPECT_EQ(std::memcmp(&record.record(), &nothing, sizeof(nothing)), 0);
}

TEST(Contact, TakesOnlyValuesOfTheFieldsForm) {
  Contact contact;
  EXPECT_THROW(contact.set("FirstName", true), Error);
  EXPECT_THROW(contact.set("BodySize", std::string("3")), Error);
  EXPECT_THROW(contact.set("BodyTruncated", std::int32_t{1}), Error);
  EXPECT_THROW(contact.set("Birthday", std::string("1815-12-10")), Error);
  EXPECT_THROW(contact.set("Children", std::string("Byron")), Error);
  EXPECT_THROW(contact.set("Shoe size", std::string("38")), Error);
  EXPECT_EQ(contact, Contact());
}

TEST(Contact, LosesAFieldThatIsSetToNothing) {
  Contact contact = person("Ada");
  contact.set("FirstName", std::monostate());
  contact.set("LastName", std::monostate());
  EXPECT_EQ(contact, Contact());
}

TEST(Contact, RefusesWhatCanNotBeSent) {
  const auto refused = [](const char* field, Contact::Value value) {
    Contact contact;
    contact.set(field, std::move(value));
    try {
      contact.validate();
    } catch (const Error& error) {
      return std::string(error.what()).find(field) != std::string::npos;
    }
    return false;
  };
  EXPECT_TRUE(refused("FirstName", std::string("A\0da", 5)));
  EXPECT_TRUE(refused("Birthday", UtcTime{.year = 2004, .month = 13}));
  EXPECT_TRUE(refused("Children", Contact::List{"a@@b"}));
  EXPECT_TRUE(refused("Children", Contact::List{"a@", "b"}));
  EXPECT_TRUE(refused("Children", Contact::List{std::string("a\0b", 3)}));
  EXPECT_FALSE(refused("Children", Contact::List{"a", "@b", "c@"}));
  EXPECT_FALSE(refused("Children", Contact::List{""}));
  EXPECT_FALSE(refused("Children", Contact::List{}));
  EXPECT_FALSE(refused("FirstName", std::string("\xff\xfe")));
  EXPECT_FALSE(refused("Body", std::string(60'000, 'b')));
  EXPECT_TRUE(refused("Body", std::string(60'001, 'b')));
  EXPECT_FALSE(refused("Children", Contact::List(10'000, "ab")));
  EXPECT_TRUE(refused("Children", Contact::List(10'001, "ab")));
}

TEST(Contact, RefusesTheFieldWithWhichItGrowsTooLarge) {
  Contact contact;
  contact.set("Body", std::string(59'990, 'b'));
  contact.set("Title", std::string(11, 't'));
  try {
    contact.validate();
    FAIL() << "60,001 bytes were accepted";
  } catch (const Error& error) {
    EXPECT_NE(std::string(error.what()).find("Title"), std::string::npos) << error.what();
  }
}

TEST(Contact, IsCalledByTheFirstNameThatItHas) {
  Contact contact;
  EXPECT_EQ(contact.displayName(), "");
  contact.set("Email2Address", std::string("ada@example.com"));
  EXPECT_EQ(contact.displayName(), "ada@example.com");
  contact.set("CompanyName", std::string("Analytical Engines"));
  EXPECT_EQ(contact.displayName(), "Analytical Engines");
  contact.set("LastName", std::string("Lovelace"));
  EXPECT_EQ(contact.displayName(), "Lovelace");
  contact.set("FirstName", std::string("Ada"));
  EXPECT_EQ(contact.displayName(), "Ada Lovelace");
  contact.set("FileAs", std::string("Lovelace, Ada"));
  EXPECT_EQ(contact.displayName(), "Lovelace, Ada");
}

TEST(PackedList, ComesApartAtEachSeparatorFromTheLeft) {
  using List = Contact::List;
  EXPECT_EQ(unpackList(""), List{});
  EXPECT_EQ(unpackList("A"), (List{"A"}));
  EXPECT_EQ(unpackList("A@@B"), (List{"A", "B"}));
  EXPECT_EQ(unpackList("A@@@@B"), (List{"A", "", "B"}));
  EXPECT_EQ(unpackList("@@A@@"), (List{"", "A", ""}));
  EXPECT_EQ(unpackList("A@@@B"), (List{"A", "@B"}));
}

TEST(PackedList, IsTheSameTextAgainAfterBothWays) {
  for (const char* text : {"", "A", "@", "@@", "@@@", "@@@@", "A@@", "@@A", "A@@@@B", "a@b@@c@@@"}) {
    EXPECT_EQ(packList(unpackList(text)), text);
  }
}

class ContactInStore : public StoreTest {};

TEST_F(ContactInStore, KeepsEveryFieldThatTheServerSent) {
  const FolderNumber folder = contacts();
  Library library(store(), folder);
  library.add("s1", fullContact());
  library.key("k1");
  library.end();
  reopen();
  EXPECT_EQ(contactOf(item(folder, "s1")), fullContact());
}

TEST_F(ContactInStore, KeepsEveryFieldThatAPersonSet) {
  const FolderNumber folder = contacts();
  const ItemNumber added = store().addItem(folder, fullContact());
  reopen();
  EXPECT_EQ(contactOf(added), fullContact());
}

TEST_F(ContactInStore, KeepsBytesAsTheyCame) {
  const std::vector<std::string> texts = {"\xff\xfe\x80 no UTF-8",
                                          "it's \"quoted\"; DROP TABLE contact; --",
                                          "",
                                          "\xc3\x84rger",
                                          std::string(70'000, 'x'),
                                          "12",
                                          "1e5",
                                          "line\r\nline"};
  const FolderNumber folder = contacts();
  Library library(store(), folder);
  for (std::size_t index = 0; index < texts.size(); ++index) {
    Contact contact;
    contact.set("Body", texts[index]);
    contact.set("Categories", Contact::List{texts[index] + "."});
    library.add("s" + std::to_string(index), contact);
  }
  library.key("k1");
  library.end();
  for (std::size_t index = 0; index < texts.size(); ++index) {
    const Contact contact = contactOf(item(folder, "s" + std::to_string(index)));
    EXPECT_EQ(*contact.get<std::string>("Body"), texts[index]);
    EXPECT_EQ(*contact.get<Contact::List>("Categories"), Contact::List{texts[index] + "."});
  }
}

TEST_F(ContactInStore, TellsAbsentFromEmpty) {
  const FolderNumber folder = contacts();
  Contact contact;
  contact.set("Title", std::string());
  contact.set("Children", Contact::List{});
  contact.set("BodyTruncated", false);
  const Contact back = contactOf(store().addItem(folder, contact));
  EXPECT_EQ(back, contact);
  EXPECT_EQ(back.get<std::string>("Suffix"), nullptr);
  EXPECT_EQ(back.get<Contact::List>("Categories"), nullptr);
}

TEST_F(ContactInStore, KeepsLongLists) {
  const FolderNumber folder = contacts();
  Contact::List children;
  for (int number = 0; number < 3000; ++number) children.push_back("child " + std::to_string(number));
  Contact contact;
  contact.set("Children", children);
  const ItemNumber added = store().addItem(folder, contact);
  EXPECT_EQ(*contactOf(added).get<Contact::List>("Children"), children);
}

TEST_F(ContactInStore, LosesTheFieldsThatANewVersionDoesNotHave) {
  const FolderNumber folder = contacts();
  Library library(store(), folder);
  library.add("s1", fullContact());
  library.change("s1", person("Ada"));
  library.key("k1");
  library.end();
  EXPECT_EQ(contactOf(item(folder, "s1")), person("Ada"));
}

TEST_F(ContactInStore, KeepsDatesThatAreNone) {
  const FolderNumber folder = contacts();
  Contact contact;
  contact.set("Birthday", UtcTime{.year = 1, .month = 99, .day = 0, .hour = 77});
  Library library(store(), folder);
  library.add("s1", contact);
  library.key("k1");
  library.end();
  EXPECT_EQ(contactOf(item(folder, "s1")), contact);
}

}  // namespace
}  // namespace airsync::test
