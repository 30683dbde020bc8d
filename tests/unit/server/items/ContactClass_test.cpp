#include "items/ContactClass.h"

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

using nlohmann::json;

const ContactClass kContactClass;

Element data() { return {Page::Sync, "ApplicationData"}; }

void put(Element& element, std::string_view tag, const std::string& text) {
  element.children.emplace_back(Page::Contacts, tag, text);
}

json decoded(const Element& element, const json& previous = json::object(),
             const TransferOptions& options = {}) {
  return kContactClass.decode(element, previous, options);
}

TEST(DemoContact, IsWrittenInTheOrderOfTheRecord) {
  const json record = {{"FirstName", "A"},
                       {"Body", "n"},
                       {"Categories", {"X", "Y"}},
                       {"AssistantPhoneNumber", "1"},
                       {"Birthday", "1970-01-01T00:00:00.000Z"}};
  EXPECT_EQ(
      hexOf(encode(kContactClass.encode(record, {}))),
      "03 01 6A 00 5D 00 01 "
      "49 03 6E 00 01 "  // Body "n"
      "4A 03 31 00 01 "  // BodySize "1"
      "4B 03 30 00 01 "  // BodyTruncated "0"
      "47 03 31 00 01 "  // AssistnamePhoneNumber "1"
      "48 03 31 39 37 30 2D 30 31 2D 30 31 54 30 30 3A 30 30 3A 30 30 2E 30 30 30 5A 00 01 "  // Birthday
      "55 56 03 58 00 01 56 03 59 00 01 01 "  // Categories, Category "X", Category "Y"
      "5F 03 41 00 01 "                       // FirstName "A"
      "01");
}

TEST(DemoContact, SendsTheHeadOfALongBodyAndItsWholeSize) {
  TransferOptions options;
  options.bodyLimit = 3;
  const Element sent = kContactClass.encode({{"Body", "abäc"}}, options);
  EXPECT_EQ(sent.child(Page::Contacts, "Body")->text, "ab");
  EXPECT_EQ(sent.child(Page::Contacts, "BodySize")->text, "5");
  EXPECT_EQ(sent.child(Page::Contacts, "BodyTruncated")->text, "1");
}

TEST(DemoContact, ReadsTextsDatesAndLists) {
  Element element = data();
  put(element, "FirstName", "Zoë & <Co>");
  put(element, "Birthday", "1976-02-29T00:00:00.000Z");
  Element children(Page::Contacts, "Children");
  children.add("Child", "Mia");
  children.add("Child", "");
  children.add("Child", "Émile");
  element.add(std::move(children));
  EXPECT_EQ(decoded(element), json({{"FirstName", "Zoë & <Co>"},
                                    {"Birthday", "1976-02-29T00:00:00.000Z"},
                                    {"Children", {"Mia", "Émile"}}}));
}

TEST(DemoContact, TakesNoSizesAndNoUnknownTagsFromAClient) {
  Element element = data();
  put(element, "BodySize", "77");
  put(element, "BodyTruncated", "1");
  put(element, "CompressedRTF", "x");
  EXPECT_EQ(decoded(element), json::object());
}

TEST(DemoContact, ClearsWhatAChangeLacks) {
  Element element = data();
  put(element, "LastName", "B");
  EXPECT_EQ(decoded(element, {{"FirstName", "A"}, {"Categories", {"X"}}}), json({{"LastName", "B"}}));
}

TEST(DemoContact, KeepsFieldsThatTheClientDoesNotSupport) {
  TransferOptions options;
  options.supported = "FirstName Categories ";
  Element element = data();
  put(element, "LastName", "B");
  EXPECT_EQ(decoded(element, {{"FirstName", "A"}, {"Categories", {"X"}}, {"Spouse", "C"}}, options),
            json({{"LastName", "B"}, {"Spouse", "C"}}));
}

TEST(DemoContact, AFieldWhoseNameEndsLikeASupportedOneIsNotCleared) {
  TransferOptions options;
  options.supported = "Business2PhoneNumber ";
  EXPECT_EQ(decoded(data(), {{"HomePhoneNumber", "1"}}, options), json({{"HomePhoneNumber", "1"}}));
}

TEST(DemoContact, KeepsAnAddressOfWhichTheClientHoldsTheDisplayNameOnly) {
  const json previous = {{"Email1Address", "\"Mia M\" <mia@example.org>"}};
  Element same = data();
  put(same, "Email1Address", "Mia M");
  EXPECT_EQ(decoded(same, previous), previous);
  Element edited = data();
  put(edited, "Email1Address", "new@example.org");
  EXPECT_EQ(decoded(edited, previous), json({{"Email1Address", "new@example.org"}}));
}

TEST(DemoContact, KeepsABodyOfWhichTheClientHoldsTheHeadOnly) {
  TransferOptions options;
  options.bodyLimit = 2;
  const json previous = {{"Body", "abcdef"}};
  Element same = data();
  put(same, "Body", "ab");
  EXPECT_EQ(decoded(same, previous, options), previous);
  Element edited = data();
  put(edited, "Body", "abX");
  EXPECT_EQ(decoded(edited, previous, options), json({{"Body", "abX"}}));
}

TEST(DemoContact, KeepsABodyThatTheClientWasNotGiven) {
  TransferOptions options;
  options.bodyLimit = 0;
  EXPECT_EQ(decoded(data(), {{"Body", "abc"}}, options), json({{"Body", "abc"}}));
}

TEST(DemoContact, RefusesBadDatesAndBadText) {
  Element date = data();
  put(date, "Birthday", "yesterday");
  EXPECT_THROW(decoded(date), ItemError);
  Element text = data();
  put(text, "FirstName", "a\xFF");
  EXPECT_THROW(decoded(text), ItemError);
  Element list(Page::Contacts, "Categories");
  list.add("Category", "a\x02");
  Element element = data();
  element.add(std::move(list));
  EXPECT_THROW(decoded(element), ItemError);
}

TEST(DemoContact, ARecordIsCheckedFieldByField) {
  EXPECT_EQ(kContactClass.check({{"FirstName", "A"},
                                 {"LastName", ""},
                                 {"Spouse", nullptr},
                                 {"BodySize", 9},
                                 {"Children", json::array()},
                                 {"Birthday", "1970-01-02T03:04:05Z"}}),
            json({{"FirstName", "A"}, {"Birthday", "1970-01-02T03:04:05.000Z"}}));
  for (const json& bad : {json(1), json::array(), json({{"Nickname", "x"}}), json({{"FirstName", 1}}),
                          json({{"Categories", "x"}}), json({{"Categories", {1}}}), json({{"Birthday", "x"}}),
                          json({{"FirstName", "a\x01"}})})
    EXPECT_THROW(kContactClass.check(bad), ItemError) << bad;
}

TEST(DemoContact, IsShownWithItsComputedFields) {
  EXPECT_EQ(kContactClass.view({{"Body", "aä"}}),
            json({{"Body", "aä"}, {"BodySize", 3}, {"BodyTruncated", false}}));
  EXPECT_EQ(kContactClass.view({{"Title", "Dr."}}), json({{"Title", "Dr."}}));
}

TEST(DemoItemClass, FollowsTheFolderType) {
  const struct {
    int type;
    std::string_view name;
  } table[] = {{1, "Email"},     {2, "Email"},     {3, "Email"},    {4, "Email"}, {5, "Email"}, {6, "Email"},
               {7, ""},          {8, "Calendar"},  {9, "Contacts"}, {10, ""},     {11, ""},     {12, "Email"},
               {13, "Calendar"}, {14, "Contacts"}, {15, ""},        {16, ""},     {17, ""}};
  for (const auto& row : table) {
    const ItemClass* found = itemClassOf(row.type);
    EXPECT_EQ(found == nullptr ? "" : found->name(), row.name) << row.type;
  }
}

TEST(DemoItemClass, TruncationNumbersMeanThese) {
  const std::size_t all = std::string::npos;
  const std::pair<int, std::size_t> table[] = {{-1, all},  {0, 0},     {1, 4096},  {2, 5120},   {3, 7168},
                                               {4, 10240}, {5, 20480}, {6, 51200}, {7, 102400}, {8, all}};
  for (const auto& [number, limit] : table) EXPECT_EQ(bodyLimitOf(number), limit) << number;
}

}  // namespace
}  // namespace demoserver
