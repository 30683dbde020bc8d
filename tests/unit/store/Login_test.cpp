// A store knows whose mailbox it is a copy of.
#include "StoreFixture.h"

namespace airsync::test {
namespace {

using Logins = StoreTest;

const Login kAnn = {.host = "sync.example.com:8443", .path = "/service", .user = "ann", .domain = "corp"};

TEST_F(Logins, AreUnknownInANewStore) {
  reopen();
  EXPECT_EQ(store().login(), std::nullopt);
}

TEST_F(Logins, StayWithTheStore) {
  store().setLogin(kAnn);
  reopen();
  EXPECT_EQ(store().login(), kAnn);
}

TEST_F(Logins, ReplaceEachOther) {
  store().setLogin(kAnn);
  const Login moved = {.host = "new.example.com", .path = "/", .user = "ann@example.com", .domain = ""};
  store().setLogin(moved);
  reopen();
  EXPECT_EQ(store().login(), moved);
}

TEST(Login, DiffersWhenOneOfItsPartsDoes) {
  for (std::string Login::*part : {&Login::host, &Login::path, &Login::user, &Login::domain}) {
    Login other = kAnn;
    other.*part += 'x';
    EXPECT_FALSE(other == kAnn);
  }
}

}  // namespace
}  // namespace airsync::test
