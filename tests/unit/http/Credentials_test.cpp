#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "http/Communications.h"
#include "support/FailingMemory.h"

namespace {

using namespace AIRSYNC_STACK;
using airsync_test::FailingMemory;

// The Authorization value, or "refused", written into an area of exactly the size that is asked for.
std::string Encoded(const std::string& realm, const std::string& password) {
  const auto out = std::make_unique<char[]>(Communications::kCredentialsCapacity);
  const bool written =
      Communications::basic_authentication_encode(realm.c_str(), password.c_str(), out.get());
  return written ? out.get() : "refused";
}

TEST(Credentials, AreRealmColonAndPasswordInBase64) {
  EXPECT_EQ(Encoded("NIGHT/ada", "s3cret"), "Basic TklHSFQvYWRhOnMzY3JldA==");
}

TEST(Credentials, ArePaddedByTheirLength) {
  EXPECT_EQ(Encoded("", ""), "Basic Og==");
  EXPECT_EQ(Encoded("/", ""), "Basic Lzo=");
  EXPECT_EQ(Encoded("a", "b"), "Basic YTpi");
  EXPECT_EQ(Encoded("a/b", ""), "Basic YS9iOg==");
}

TEST(Credentials, KeepBytesAboveAsciiAsTheyAre) { EXPECT_EQ(Encoded("\xC3\xBC", "\xFF"), "Basic w7w6/w=="); }

TEST(Credentials, MayHave770CharactersAndNotOneMore) {
  // "aaa" is YWFh; 256 times "aaa", then "a:" is YTo=.
  std::string encoded = "Basic ";
  for (int i = 0; i < 256; ++i) encoded += "YWFh";
  EXPECT_EQ(Encoded(std::string(769, 'a'), ""), encoded + "YTo=");
  EXPECT_EQ(Encoded(std::string(770, 'a'), ""), "refused");
  EXPECT_EQ(Encoded(std::string(769, 'a'), "p"), "refused");
}

struct Realm {
  const char* address;
  const char* user;
  const char* realm;
};

TEST(RealmUsername, IsWhatFollowsTheFirstDotOfTheHostAndTheUser) {
  const Realm kRealms[] = {
      {"http://mail.example.test", "ada", "example.test/ada"},
      {"https://mail.example.test", "ada", "example.test/ada"},
      {"http://mail.example.test:8080/sync", "ada", "example.test/ada"},
      {"http://mail.example.test/sync:1", "ada", "example.test/ada"},
      {"http://mail.", "ada", "/ada"},
      {"http://mail.example", "", "example/"},
      {"see http://mail.example", "ada", "example/ada"},
      // Without a dot in the host, the first one after the scheme counts.
      {"http://localhost/a.b/c", "ada", "b/ada"},
      // "http://" is looked for first, wherever it stands.
      {"https://one.two/http://three.four", "ada", "four/ada"},
  };
  for (const Realm& row : kRealms) {
    // As many bytes as the header promises to be enough.
    const std::size_t room = std::string(row.address).size() + std::string(row.user).size() + 2;
    const auto out = std::make_unique<char[]>(room);
    EXPECT_EQ(Communications::RealmUsername(row.address, row.user, out.get()), 0U) << row.address;
    EXPECT_STREQ(out.get(), row.realm) << row.address;
  }
}

TEST(RealmUsername, RefusesAnAddressWithoutASchemeAndTellsTheHost) {
  FailingMemory::Reset();
  char out[64] = "untouched";
  EXPECT_EQ(Communications::RealmUsername("mail.example.test", "ada", out), 0x8001000fU);
  EXPECT_EQ(Communications::RealmUsername("HTTP://mail.example.test", "ada", out), 0x8001000fU);
  EXPECT_EQ(Communications::RealmUsername("", "ada", out), 0x8001000fU);
  EXPECT_EQ(FailingMemory::Unexpected(), 3U);
  EXPECT_STREQ(out, "untouched");
}

TEST(RealmUsername, RefusesAnAddressWithoutADotAfterItsScheme) {
  FailingMemory::Reset();
  char out[64] = "untouched";
  EXPECT_EQ(Communications::RealmUsername("http://localhost", "ada", out), 0x8001000fU);
  EXPECT_EQ(Communications::RealmUsername("a.b https://localhost/", "ada", out), 0x8001000fU);
  EXPECT_EQ(FailingMemory::Unexpected(), 0U);
  EXPECT_STREQ(out, "untouched");
}

}  // namespace
