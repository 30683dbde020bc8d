#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "wbxml/Codec.h"

namespace demoserver {
namespace {

Element decodeHex(const std::string& text) { return decode(fromHex(text)); }

TEST(DemoDecoder, ReadsTheRootAndItsPage) {
  const Element root = decodeHex("03 01 6A 00 05");
  EXPECT_TRUE(root.is(Page::Sync, "Sync"));
  EXPECT_FALSE(root.text.has_value());
  EXPECT_TRUE(root.children.empty());
}

TEST(DemoDecoder, ReadsAnUploadAsClientsWriteIt) {
  const Element commands = decodeHex(
      "03 01 6A 00 "
      "56 "                    // Commands
      "47 "                    // Add
      "4C 03 37 00 01 "        // ClientId "7"
      "5D "                    // ApplicationData
      "00 01 5F 03 41 00 01 "  // page 1, FirstName "A"
      "55 56 03 58 00 01 01 "  // Categories, Category "X"
      "01 "
      "01 "
      "00 00 49 4D 03 61 00 01 01 "  // page 0, Delete, ServerId "a"
      "01");
  ASSERT_EQ(commands.children.size(), 2u);
  const Element& add = commands.children[0];
  EXPECT_EQ(add.textOf("ClientId"), "7");
  const Element* data = add.child("ApplicationData");
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->child(Page::Contacts, "FirstName")->text, "A");
  EXPECT_EQ(data->child(Page::Contacts, "Categories")->textOf("Category"), "X");
  EXPECT_TRUE(commands.children[1].is(Page::Sync, "Delete"));
  EXPECT_EQ(commands.children[1].textOf("ServerId"), "a");
}

TEST(DemoDecoder, JoinsThePiecesOfAText) {
  // "a", ENTITY 0x26, "b", ENTITY U+20AC, opaque "cd", the string at offset 2 of the table.
  EXPECT_EQ(decodeHex("03 01 6A 05 78 00 65 66 00 "
                      "4E 03 61 00 02 26 03 62 00 02 C1 2C C3 02 63 64 83 02 01")
                .text,
            "a&b\xE2\x82\xAC"
            "cdef");
}

TEST(DemoDecoder, TellsEmptyTextFromNone) {
  EXPECT_EQ(decodeHex("03 01 6A 00 4E 03 00 01").text, "");
  EXPECT_FALSE(decodeHex("03 01 6A 00 4E 01").text.has_value());
}

TEST(DemoDecoder, AcceptsEachHeaderOfTheProtocol) {
  for (const char* header : {"03 01 6A 00", "03 00 00 6A 00", "03 01 03 00", "03 01 00 00", "03 05 6A 00"})
    EXPECT_TRUE(decodeHex(std::string(header) + " 05").is(Page::Sync, "Sync")) << header;
}

struct Malformed {
  const char* why;
  const char* bytes;
};

TEST(DemoDecoder, RefusesMalformedDocuments) {
  const Malformed table[] = {
      {"nothing at all", ""},
      {"version 1.2", "02 01 6A 00 05"},
      {"a head that ends early", "03 01 6A"},
      {"no root", "03 01 6A 00"},
      {"charset 4", "03 01 04 00 05"},
      {"a string table beyond the end", "03 01 6A 7F 05"},
      {"a string table of 4 GiB", "03 01 6A 8F FF FF FF 7F 05"},
      {"an integer of 33 bits", "03 01 6A 9F FF FF FF 7F 05"},
      {"an integer of six bytes", "03 01 6A 80 80 80 80 80 00 05"},
      {"an unknown token", "03 01 6A 00 3F"},
      {"token 0 with content", "03 01 6A 00 40 01"},
      {"a literal tag", "03 01 6A 00 04"},
      {"an END instead of the root", "03 01 6A 00 01"},
      {"attributes", "03 01 6A 00 85 01"},
      {"a switch to page 9", "03 01 6A 00 00 09 05"},
      {"a switch at the end", "03 01 6A 00 00"},
      {"a missing END", "03 01 6A 00 45"},
      {"a string that does not end", "03 01 6A 00 4E 03 31"},
      {"an offset at the end of the table", "03 01 6A 02 61 00 4E 83 02 01"},
      {"a table string that does not end", "03 01 6A 02 61 62 4E 83 00 01"},
      {"an opaque value beyond the end", "03 01 6A 00 4E C3 05 61 01"},
      {"an opaque value with a NUL", "03 01 6A 00 4E C3 02 61 00 01"},
      {"entity 0", "03 01 6A 00 4E 02 00 01"},
      {"a surrogate as entity", "03 01 6A 00 4E 02 83 B0 00 01"},
      {"an entity beyond Unicode", "03 01 6A 00 4E 02 C4 80 00 01"},
      {"a processing instruction", "03 01 6A 00 45 43 01 01"},
      {"bytes after the root", "03 01 6A 00 05 00"},
  };
  for (const Malformed& row : table) EXPECT_THROW(decodeHex(row.bytes), WbxmlError) << row.why;
}

std::string nested(int depth) {
  std::string document = fromHex("03 01 6A 00");
  document.append(static_cast<std::size_t>(depth - 1), '\x45');
  document += '\x05';
  return document.append(static_cast<std::size_t>(depth - 1), '\x01');
}

TEST(DemoDecoder, ReadsThirtyTwoLevelsAndNoMore) {
  EXPECT_NO_THROW(decode(nested(32)));
  EXPECT_THROW(decode(nested(33)), WbxmlError);
  EXPECT_THROW(decode(nested(100'000)), WbxmlError);
}

TEST(DemoDecoder, RefusesTooManyElements) {
  // The root counts as well.
  const std::string head = fromHex("03 01 6A 00 45");
  EXPECT_NO_THROW(decode(head + std::string(49'999, '\x05') + '\x01'));
  EXPECT_THROW(decode(head + std::string(50'000, '\x05') + '\x01'), WbxmlError);
}

// Three bytes lead to an entry of any length, as often as a client likes.
TEST(DemoDecoder, RefusesMoreTextOfTheTableThanItsBudget) {
  // A table of 1 MiB: 8 MiB and 16 MiB are 24 times its one entry.
  const std::string table = std::string(1024 * 1024 - 1, 'x') + '\0';
  const auto document = [&](int references) {
    std::string bytes = fromHex("03 01 6A C0 80 00") + table + "\x45";
    for (int i = 0; i < references; ++i) bytes += fromHex("4E 83 00 01");
    return bytes + '\x01';
  };
  EXPECT_EQ(decode(document(24)).children.size(), 24u);
  EXPECT_THROW(decode(document(25)), WbxmlError);
}

TEST(DemoDecoder, EveryHeadOfAValidDocumentIsRefused) {
  const std::string whole =
      fromHex("03 01 6A 05 78 00 65 66 00 45 5C 4E 03 61 00 02 26 C3 01 62 83 02 01 01 01");
  ASSERT_NO_THROW(decode(whole));
  for (std::size_t length = 0; length < whole.size(); ++length)
    EXPECT_THROW(decode(whole.substr(0, length)), WbxmlError) << length << " bytes";
}

}  // namespace
}  // namespace demoserver
