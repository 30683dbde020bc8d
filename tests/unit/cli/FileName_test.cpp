#include "cli/attachment/FileName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace airsync {
namespace {

struct NameRow {
  std::string given;
  std::string safe;
};

const NameRow kNames[] = {
    {"plan.pdf", "plan.pdf"},
    {"Überweisung März.pdf", "Überweisung März.pdf"},
    {"", "attachment"},
    {".", "attachment"},
    {"..", "attachment"},
    {" . . ", "attachment"},
    {"../../etc/passwd", "_.._etc_passwd"},
    {"/etc/passwd", "_etc_passwd"},
    {"C:\\Users\\ann\\a.txt", "C__Users_ann_a.txt"},
    {".bashrc", "bashrc"},
    {"...hidden", "hidden"},
    {"name. ", "name"},
    {"-rf", "_-rf"},
    {"~root", "_~root"},
    {"a*b?c\"d<e>f|g", "a_b_c_d_e_f_g"},
    {std::string("a\0b", 3), "a_x00b"},
    {"a\nb\x1b[31mc", "a_x0ab_x1b[31mc"},
    {"invoice\u202exe.txt", "invoice_u202exe.txt"},
    {"broken\xff.bin", "broken_xff.bin"},
    {"CON", "_CON"},
    {"nul.txt", "_nul.txt"},
    {"Com1 .log", "_Com1 .log"},
    {"console.txt", "console.txt"},
    {"com\u00b9", "_com\u00b9"},
    {"LPT\u00b3.txt", "_LPT\u00b3.txt"},
    {"COM\u2074", "COM\u2074"},
    {"conin$", "_conin$"},
    {"CONOUT$.log", "_CONOUT$.log"},
    {"CONIN", "CONIN"},
    {"a/b", "a_b"},
    {"/etc/x", "_etc_x"},
    {"\xc2\x9b"
     "2J",
     "_x9b2J"},
    {"\x7f", "_x7f"},
    {"\xff\xfe", "_xff_xfe"},
    {"--", "_--"},
};

// Keeps S16.
TEST(SafeFileName, TakesAwayWhatWouldSurprise) {
  for (const NameRow& row : kNames) EXPECT_EQ(safeFileName(row.given), row.safe) << row.given;
}

TEST(SafeFileName, CutsLongNamesAndKeepsTheirExtension) {
  const std::string name = safeFileName(std::string(500, 'n') + ".pdf");
  EXPECT_EQ(name, std::string(196, 'n') + ".pdf");
  EXPECT_EQ(safeFileName(std::string(100, 'n') + "." + std::string(400, 'e')),
            std::string(100, 'n') + "." + std::string(99, 'e'));
}

TEST(SafeFileName, EndsWithNoDotOrSpaceAlsoWhenItWasCut) {
  EXPECT_EQ(safeFileName(std::string(199, 'n') + " " + std::string(100, 'n')), std::string(199, 'n'));
  EXPECT_EQ(safeFileName(std::string(198, 'n') + ". " + std::string(100, 'n')), std::string(198, 'n'));
}

TEST(SafeFileName, CutsNoCharacterApart) {
  std::string umlauts;
  for (int i = 0; i < 150; ++i) umlauts += "ü";
  const std::string name = safeFileName("x" + umlauts);
  EXPECT_EQ(name.size(), 199U);
  EXPECT_EQ(name.substr(197), "ü");
}

}  // namespace
}  // namespace airsync
