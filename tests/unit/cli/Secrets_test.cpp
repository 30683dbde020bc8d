#include "cli/session/Secrets.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace airsync {
namespace {

const std::vector<std::string>& secrets() {
  static const std::vector<std::string> all = secretsOf("corp", "ann", "hunter2");
  return all;
}

TEST(WithoutSecrets, PutsAsterisksInTheirPlaces) {
  EXPECT_EQ(
      withoutSecrets("X-Echo: Basic Y29ycC9hbm46aHVudGVyMg==, hunter2hunter2; corp/ann:hunter2", secrets()),
      "X-Echo: Basic ***, ******; ***");
  EXPECT_EQ(withoutSecrets("(\"Basic Y29ycC9hbm46aHVu...\")", secrets()), "(\"Basic ***...\")");
  EXPECT_EQ(withoutSecrets("hunt...", secrets()), "***...");
  EXPECT_EQ(withoutSecrets("hun...", secrets()), "hun...");
  EXPECT_EQ(withoutSecrets("nothing", secretsOf("corp", "ann", "")), "nothing");
}

struct FormRow {
  const char* what;
  std::string said;
  std::string shown;
};

// The encodings were made with base64(1), xxd(1) and by hand.
const FormRow kForms[] = {
    {"credentials without their padding", "Basic Y29ycC9hbm46aHVudGVyMg", "Basic ***"},
    {"behind no other byte", "[aHVudGVyMnl6]", "[***l6]"},
    {"behind one other byte", "[eGh1bnRlcjJ5eg==]", "[eG***5eg==]"},
    {"behind two other bytes", "[eHhodW50ZXIyeXo=]", "[eHh***Xo=]"},
    {"digits", "68756e74657232", "***"},
    {"capital digits", "68756E74657232.", "***."},
    {"digits with blanks", "68 75 6e 74 65 72 32", "***"},
    {"digits with colons", "68:75:6E:74:65:72:32", "***"},
    {"percent", "%68%75%6e%74%65%72%32", "***"},
    {"percent here and there", "h%75nter%32", "***"},
    {"quoted-printable", "=68unter=32", "***"},
    {"escapes of a terminal", "\\x68unter2", "***"},
    {"escapes of JSON", "hunter\\u0032", "***"},
    {"entities", "&#104;unter&#x32;", "***"},
    {"wide characters",
     std::string("h\0u\0n\0t\0e\0r\0"
                 "2\0",
                 14),
     "***"},
    {"digits before a cut", "68756e7465...", "***..."},
    {"base64 before a cut", "Y29ycC9hbm46aH...", "***..."},
    {"percent before a cut", "%68%75%6...", "***..."},
    {"another word", "hunter9 68756e74657239 aHVudGVyOQ==", "hunter9 68756e74657239 aHVudGVyOQ=="},
};

// Keeps S12.
TEST(WithoutSecrets, FindsThemInEveryForm) {
  for (const FormRow& row : kForms) EXPECT_EQ(withoutSecrets(row.said, secrets()), row.shown) << row.what;
}

TEST(WithoutSecrets, FindsASecretWhoseOwnCharactersLookLikeEscapes) {
  const std::vector<std::string> odd = secretsOf("", "", "%25 \\x&");
  EXPECT_EQ(withoutSecrets("a%25 \\x&b", odd), "a***b");
  EXPECT_EQ(withoutSecrets("a%2525%20%5Cx%26b", odd), "a***b");
  EXPECT_EQ(withoutSecrets("a%2525+%5cx%26b", odd), "a***b");
}

TEST(WithoutSecrets, FindsBase64InTheAlphabetForAddresses) {
  const std::vector<std::string> odd = secretsOf("", "", "\xfb\xff\xfe\xfb\xff\xbf");
  EXPECT_EQ(withoutSecrets("+//++/+/ -__--_-_", odd), "*** ***");
}

}  // namespace
}  // namespace airsync
